#pragma once

#include <future>

#include "Arq/Worker/IWorker.h"

namespace Arq::Worker {

// Base of the workers that run a loop on their own thread: a one-shot stop
// signal that the loop polls with StopRequested(). Stop() may be called once;
// a second call raises std::future_error (promise already satisfied).
class StoppableWorker : public IWorker {
 public:
  StoppableWorker();
  ~StoppableWorker() override = default;

  StoppableWorker(const StoppableWorker&) = delete;
  StoppableWorker& operator=(const StoppableWorker&) = delete;

  void Stop() override;
  bool StopRequested() const;
  void operator()();

 private:
  std::promise<void> exitSignal;
  std::future<void> futureObj;
};

}  // namespace Arq::Worker
