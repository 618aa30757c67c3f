#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <ArqOrvoAPI/Management.h>
#include <ArqSwitchApi/Config.h>
#include <ArqSwitchApi/Ethernet.h>
#include <ArqSwitchApi/GeneralPurpose.h>
#include <ArqSwitchApi/HwMonitoring.h>
#include <ArqSwitchApi/Interfaces.h>
#include <ArqSwitchApi/LLDP.h>
#include <ArqSwitchApi/LagIf.h>
#include <ArqSwitchApi/McRoute.h>
#include <ArqSwitchApi/Mirroring.h>
#include <ArqSwitchApi/Natting.h>
#include <ArqSwitchApi/PTP.h>
#include <ArqSwitchApi/PrsIf.h>
#include <ArqSwitchApi/VirtualInterfaces.h>
#include <ArqSwitchApi/Vlan.h>

#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayer.h"
#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// Hands out one multiplexed generated client per service, all over the one
// connection of its layer. Protocols and clients are made on first request
// and kept for the fabric's lifetime. Not locked: one user at a time.
class OrvoViaSwitchThriftClientsFabric {
 public:
  enum ServiceName {
    Config = 0,
    Ethernet = 1,
    GeneralPurpose = 2,
    HwMonitoring = 3,
    Interfaces = 4,
    LagIf = 5,
    LLDP = 6,
    McRoute = 7,
    Mirroring = 8,
    Natting = 9,
    PrsIf = 10,
    PTP = 11,
    VirtualInterfaces = 12,
    Vlan = 13,
    Management = 14,
  };
  static constexpr std::size_t kServiceCount = 15;

  // The multiplexed name of `name`; empty for a value outside the enum.
  static std::string ToServiceName(ServiceName name);

  explicit OrvoViaSwitchThriftClientsFabric(std::shared_ptr<IThriftTransportProtocolLayer> layer);
  OrvoViaSwitchThriftClientsFabric(const std::string& host, std::int32_t port,
                                   std::int32_t connectionTimeout, std::int32_t receiveTimeout);

  void Open();
  bool IsOpen();
  void Close();

  // Empty for a value outside the enum.
  std::shared_ptr<apache::thrift::protocol::TProtocol> GetProtocol(ServiceName name);

  std::shared_ptr<ArqSwitchApi::ConfigClient> GetConfigClient();
  std::shared_ptr<ArqSwitchApi::EthernetClient> GetEthernetClient();
  std::shared_ptr<ArqSwitchApi::GeneralPurposeClient> GetGeneralPurposeClient();
  std::shared_ptr<ArqSwitchApi::HwMonitoringClient> GetHwMonitoringClient();
  std::shared_ptr<ArqSwitchApi::InterfacesClient> GetInterfacesClient();
  std::shared_ptr<ArqSwitchApi::LagIfClient> GetLagIfClient();
  std::shared_ptr<ArqSwitchApi::LLDPClient> GetLLDPClient();
  std::shared_ptr<ArqSwitchApi::McRouteClient> GetMcRouteClient();
  std::shared_ptr<ArqSwitchApi::MirroringClient> GetMirroringClient();
  std::shared_ptr<ArqSwitchApi::NattingClient> GetNattingClient();
  std::shared_ptr<ArqSwitchApi::PrsIfClient> GetPrsIfClient();
  std::shared_ptr<ArqSwitchApi::PTPClient> GetPTPClient();
  std::shared_ptr<ArqSwitchApi::VirtualInterfacesClient> GetVirtualInterfacesClient();
  std::shared_ptr<ArqSwitchApi::VlanClient> GetVlanClient();
  std::shared_ptr<ArqOrvoAPI::ManagementClient> GetManagementClient();

 private:
  template <typename GeneratedClient>
  std::shared_ptr<GeneratedClient> GetClient(std::shared_ptr<GeneratedClient>& slot,
                                             ServiceName name) {
    if (!slot) {
      slot = std::make_shared<GeneratedClient>(GetProtocol(name));
    }
    return slot;
  }

  // Declared first so that it is released last, after the clients and
  // protocols built on it.
  std::shared_ptr<IThriftTransportProtocolLayer> layer;
  std::shared_ptr<arq::logging::ILogger> logger;
  std::array<std::shared_ptr<apache::thrift::protocol::TProtocol>, kServiceCount> protocols;
  std::shared_ptr<ArqSwitchApi::ConfigClient> configClient;
  std::shared_ptr<ArqSwitchApi::EthernetClient> ethernetClient;
  std::shared_ptr<ArqSwitchApi::GeneralPurposeClient> generalPurposeClient;
  std::shared_ptr<ArqSwitchApi::HwMonitoringClient> hwMonitoringClient;
  std::shared_ptr<ArqSwitchApi::InterfacesClient> interfacesClient;
  std::shared_ptr<ArqSwitchApi::LagIfClient> lagIfClient;
  std::shared_ptr<ArqSwitchApi::LLDPClient> lldpClient;
  std::shared_ptr<ArqSwitchApi::McRouteClient> mcRouteClient;
  std::shared_ptr<ArqSwitchApi::MirroringClient> mirroringClient;
  std::shared_ptr<ArqSwitchApi::NattingClient> nattingClient;
  std::shared_ptr<ArqSwitchApi::PrsIfClient> prsIfClient;
  std::shared_ptr<ArqSwitchApi::PTPClient> ptpClient;
  std::shared_ptr<ArqSwitchApi::VirtualInterfacesClient> virtualInterfacesClient;
  std::shared_ptr<ArqSwitchApi::VlanClient> vlanClient;
  std::shared_ptr<ArqOrvoAPI::ManagementClient> managementClient;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
