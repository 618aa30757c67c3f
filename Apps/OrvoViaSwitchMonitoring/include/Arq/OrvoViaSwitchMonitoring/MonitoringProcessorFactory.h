#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Arq/Monitoring/MonitoringProcessor.h"

namespace Arq::OrvoViaSwitchMonitoring {

// Builds the monitoring processor of either mode; both start collecting at
// once (first collection one period later).
class MonitoringProcessorFactory {
 public:
  static std::shared_ptr<Monitoring::MonitoringProcessor> CreateThriftMonitoringProcessor(
      int collectMetricsPeriod, const std::string& ipAddress, std::uint16_t port,
      int connectionTimeoutMs, int receiveTimeoutMs);
  static std::shared_ptr<Monitoring::MonitoringProcessor> CreateFakeMonitoringProcessor(
      int collectMetricsPeriod);
};

}  // namespace Arq::OrvoViaSwitchMonitoring
