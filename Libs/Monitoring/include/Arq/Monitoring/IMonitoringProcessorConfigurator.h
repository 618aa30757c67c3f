#pragma once

namespace Arq::Monitoring {

// Run-time configuration of the collection; every operation is safe to call
// from another thread than the collection thread.
class IMonitoringProcessorConfigurator {
 public:
  virtual ~IMonitoringProcessorConfigurator() = default;
  virtual void SetCollectMetrics(bool collectMetrics) = 0;
  virtual bool IsCollectMetrics() = 0;
  virtual void SetCollectMetricsPeriod(int seconds) = 0;
  virtual int GetCollectMetricsPeriod() = 0;
};

}  // namespace Arq::Monitoring
