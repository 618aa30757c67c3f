#pragma once

namespace Arq::Worker {

// A background activity that can be started and asked to stop.
class IWorker {
 public:
  virtual ~IWorker() = default;
  virtual void Run() = 0;
  virtual void Stop() = 0;
};

}  // namespace Arq::Worker
