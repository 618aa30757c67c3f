#include "Arq/Worker/StoppableWorker.h"

#include <chrono>

namespace Arq::Worker {

StoppableWorker::StoppableWorker() : futureObj(exitSignal.get_future()) {}

void StoppableWorker::Stop() {
  exitSignal.set_value();
}

bool StoppableWorker::StopRequested() const {
  return futureObj.wait_for(std::chrono::milliseconds(0)) != std::future_status::timeout;
}

void StoppableWorker::operator()() {
  Run();
}

}  // namespace Arq::Worker
