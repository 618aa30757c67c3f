#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/CallInterrupter.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayerFactory.h"

namespace Arq::OrvoViaSwitchService::Client {

// Makes Thrift proxy clients, each over a new connection of its own (layer
// from the layer factory, fabric over it, proxy over the fabric).
class OrvoViaSwitchMonitoringClientFactory
    : public OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchMonitoringClientFactory {
 public:
  // With an interrupter (the one the layer factory's connections register
  // with), InterruptCalls() ends the calls under way.
  explicit OrvoViaSwitchMonitoringClientFactory(
      std::shared_ptr<Thrift::IThriftTransportProtocolLayerFactory> layerFactory,
      std::shared_ptr<Thrift::CallInterrupter> interrupter = nullptr);

  // Time-outs in milliseconds. Also routes the Thrift library's own
  // diagnostics into the loggers.
  static std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchMonitoringClientFactory>
  CreateSimpleClientFactory(const std::string& host, std::uint16_t port,
                            std::int32_t connectionTimeout, std::int32_t receiveTimeout);

  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchConfigClient>
  CreateOrvoViaSwitchConfigProxyClient() override;
  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchEthernetClient>
  CreateOrvoViaSwitchEthernetProxyClient() override;
  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchInterfacesClient>
  CreateOrvoViaSwitchInterfacesProxyClient() override;
  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchLLDPClient>
  CreateOrvoViaSwitchLLDPProxyClient() override;
  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchPTPClient>
  CreateOrvoViaSwitchPTPProxyClient() override;
  void InterruptCalls() override;

 private:
  template <typename Proxy>
  std::unique_ptr<Proxy> CreateProxy();

  std::shared_ptr<Thrift::IThriftTransportProtocolLayerFactory> layerFactory;
  std::shared_ptr<Thrift::CallInterrupter> interrupter;
};

}  // namespace Arq::OrvoViaSwitchService::Client
