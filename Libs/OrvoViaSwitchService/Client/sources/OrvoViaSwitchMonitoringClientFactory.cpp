#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftClientsFabric.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftConfigProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftEthernetProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftInterfacesProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftLLDPProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftPTPProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftDiagnostics.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"

namespace Arq::OrvoViaSwitchService::Client {

namespace Interfaces = OrvoViaSwitch::Domain::Interfaces;

OrvoViaSwitchMonitoringClientFactory::OrvoViaSwitchMonitoringClientFactory(
    std::shared_ptr<Thrift::IThriftTransportProtocolLayerFactory> layerFactory,
    std::shared_ptr<Thrift::CallInterrupter> interrupter)
    : layerFactory(std::move(layerFactory)), interrupter(std::move(interrupter)) {}

std::unique_ptr<Interfaces::IOrvoViaSwitchMonitoringClientFactory>
OrvoViaSwitchMonitoringClientFactory::CreateSimpleClientFactory(const std::string& host,
                                                                std::uint16_t port,
                                                                std::int32_t connectionTimeout,
                                                                std::int32_t receiveTimeout) {
  Thrift::RouteThriftDiagnosticsToLoggers();
  auto interrupter = std::make_shared<Thrift::CallInterrupter>();
  return std::make_unique<OrvoViaSwitchMonitoringClientFactory>(
      std::make_shared<Thrift::ThriftTransportProtocolLayerFactory>(host, port, connectionTimeout,
                                                                    receiveTimeout, interrupter),
      interrupter);
}

void OrvoViaSwitchMonitoringClientFactory::InterruptCalls() {
  if (interrupter) interrupter->Interrupt();
}

template <typename Proxy>
std::unique_ptr<Proxy> OrvoViaSwitchMonitoringClientFactory::CreateProxy() {
  return std::make_unique<Proxy>(
      std::make_shared<Thrift::OrvoViaSwitchThriftClientsFabric>(layerFactory->Create()));
}

std::unique_ptr<Interfaces::IOrvoViaSwitchConfigClient>
OrvoViaSwitchMonitoringClientFactory::CreateOrvoViaSwitchConfigProxyClient() {
  return CreateProxy<Thrift::OrvoViaSwitchThriftConfigProxyClient>();
}

std::unique_ptr<Interfaces::IOrvoViaSwitchEthernetClient>
OrvoViaSwitchMonitoringClientFactory::CreateOrvoViaSwitchEthernetProxyClient() {
  return CreateProxy<Thrift::OrvoViaSwitchThriftEthernetProxyClient>();
}

std::unique_ptr<Interfaces::IOrvoViaSwitchInterfacesClient>
OrvoViaSwitchMonitoringClientFactory::CreateOrvoViaSwitchInterfacesProxyClient() {
  return CreateProxy<Thrift::OrvoViaSwitchThriftInterfacesProxyClient>();
}

std::unique_ptr<Interfaces::IOrvoViaSwitchLLDPClient>
OrvoViaSwitchMonitoringClientFactory::CreateOrvoViaSwitchLLDPProxyClient() {
  return CreateProxy<Thrift::OrvoViaSwitchThriftLLDPProxyClient>();
}

std::unique_ptr<Interfaces::IOrvoViaSwitchPTPClient>
OrvoViaSwitchMonitoringClientFactory::CreateOrvoViaSwitchPTPProxyClient() {
  return CreateProxy<Thrift::OrvoViaSwitchThriftPTPProxyClient>();
}

}  // namespace Arq::OrvoViaSwitchService::Client
