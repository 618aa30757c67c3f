#include "Arq/OrvoViaSwitchMonitoring/MonitoringProcessorFactory.h"

#include "Arq/Monitoring/FakeMonitoringCollector.h"
#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"

namespace Arq::OrvoViaSwitchMonitoring {

std::shared_ptr<Monitoring::MonitoringProcessor>
MonitoringProcessorFactory::CreateThriftMonitoringProcessor(int collectMetricsPeriod,
                                                            const std::string& ipAddress,
                                                            std::uint16_t port,
                                                            int connectionTimeoutMs,
                                                            int receiveTimeoutMs) {
  return std::make_shared<Monitoring::MonitoringProcessor>(
      true, collectMetricsPeriod,
      std::make_unique<Monitoring::ThriftMonitoringCollector>(
          OrvoViaSwitchService::Client::OrvoViaSwitchMonitoringClientFactory::
              CreateSimpleClientFactory(ipAddress, port, connectionTimeoutMs, receiveTimeoutMs)));
}

std::shared_ptr<Monitoring::MonitoringProcessor>
MonitoringProcessorFactory::CreateFakeMonitoringProcessor(int collectMetricsPeriod) {
  return std::make_shared<Monitoring::MonitoringProcessor>(
      true, collectMetricsPeriod, std::make_unique<Monitoring::FakeMonitoringCollector>());
}

}  // namespace Arq::OrvoViaSwitchMonitoring
