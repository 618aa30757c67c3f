#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftClientsFabric.h"

#include <utility>

#include <thrift/protocol/TMultiplexedProtocol.h>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Logging/Log.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace {

constexpr const char* kServiceNames[OrvoViaSwitchThriftClientsFabric::kServiceCount] = {
    "Config", "Ethernet", "GeneralPurpose",    "HwMonitoring", "Interfaces",
    "LagIf",  "LLDP",     "McRoute",           "Mirroring",    "Natting",
    "PrsIf",  "PTP",      "VirtualInterfaces", "Vlan",         "Management"};

bool IsKnown(OrvoViaSwitchThriftClientsFabric::ServiceName name) {
  return name >= 0 &&
         static_cast<std::size_t>(name) < OrvoViaSwitchThriftClientsFabric::kServiceCount;
}

std::shared_ptr<IThriftTransportProtocolLayer> MakeLayer(const std::string& host, std::int32_t port,
                                                         std::int32_t connectionTimeout,
                                                         std::int32_t receiveTimeout) {
  auto layer =
      std::make_shared<ThriftTransportProtocolLayer>(host, port, connectionTimeout, receiveTimeout);
  layer->Create();
  return layer;
}

}  // namespace

std::string OrvoViaSwitchThriftClientsFabric::ToServiceName(ServiceName name) {
  return IsKnown(name) ? kServiceNames[name] : std::string();
}

OrvoViaSwitchThriftClientsFabric::OrvoViaSwitchThriftClientsFabric(
    std::shared_ptr<IThriftTransportProtocolLayer> layer)
    : layer(std::move(layer)),
      logger(
          Logging::Loader::Loggers::GetInstance().GetLogger("OrvoViaSwitchThriftClientsFabric")) {}

OrvoViaSwitchThriftClientsFabric::OrvoViaSwitchThriftClientsFabric(const std::string& host,
                                                                   std::int32_t port,
                                                                   std::int32_t connectionTimeout,
                                                                   std::int32_t receiveTimeout)
    : OrvoViaSwitchThriftClientsFabric(MakeLayer(host, port, connectionTimeout, receiveTimeout)) {}

void OrvoViaSwitchThriftClientsFabric::Open() {
  layer->Open();
}

bool OrvoViaSwitchThriftClientsFabric::IsOpen() {
  return layer->IsOpen();
}

void OrvoViaSwitchThriftClientsFabric::Close() {
  layer->Close();
}

std::shared_ptr<apache::thrift::protocol::TProtocol> OrvoViaSwitchThriftClientsFabric::GetProtocol(
    ServiceName name) {
  if (!IsKnown(name)) {
    return nullptr;
  }
  auto& slot = protocols[name];
  if (!slot) {
    ARQ_LOG(logger, arq::logging::ILogger::Trace,
            "Multiplexed protocol for service: " << kServiceNames[name]);
    slot = std::make_shared<apache::thrift::protocol::TMultiplexedProtocol>(layer->GetProtocol(),
                                                                            kServiceNames[name]);
  }
  return slot;
}

std::shared_ptr<ArqSwitchApi::ConfigClient> OrvoViaSwitchThriftClientsFabric::GetConfigClient() {
  return GetClient(configClient, Config);
}

std::shared_ptr<ArqSwitchApi::EthernetClient>
OrvoViaSwitchThriftClientsFabric::GetEthernetClient() {
  return GetClient(ethernetClient, Ethernet);
}

std::shared_ptr<ArqSwitchApi::GeneralPurposeClient>
OrvoViaSwitchThriftClientsFabric::GetGeneralPurposeClient() {
  return GetClient(generalPurposeClient, GeneralPurpose);
}

std::shared_ptr<ArqSwitchApi::HwMonitoringClient>
OrvoViaSwitchThriftClientsFabric::GetHwMonitoringClient() {
  return GetClient(hwMonitoringClient, HwMonitoring);
}

std::shared_ptr<ArqSwitchApi::InterfacesClient>
OrvoViaSwitchThriftClientsFabric::GetInterfacesClient() {
  return GetClient(interfacesClient, Interfaces);
}

std::shared_ptr<ArqSwitchApi::LagIfClient> OrvoViaSwitchThriftClientsFabric::GetLagIfClient() {
  return GetClient(lagIfClient, LagIf);
}

std::shared_ptr<ArqSwitchApi::LLDPClient> OrvoViaSwitchThriftClientsFabric::GetLLDPClient() {
  return GetClient(lldpClient, LLDP);
}

std::shared_ptr<ArqSwitchApi::McRouteClient> OrvoViaSwitchThriftClientsFabric::GetMcRouteClient() {
  return GetClient(mcRouteClient, McRoute);
}

std::shared_ptr<ArqSwitchApi::MirroringClient>
OrvoViaSwitchThriftClientsFabric::GetMirroringClient() {
  return GetClient(mirroringClient, Mirroring);
}

std::shared_ptr<ArqSwitchApi::NattingClient> OrvoViaSwitchThriftClientsFabric::GetNattingClient() {
  return GetClient(nattingClient, Natting);
}

std::shared_ptr<ArqSwitchApi::PrsIfClient> OrvoViaSwitchThriftClientsFabric::GetPrsIfClient() {
  return GetClient(prsIfClient, PrsIf);
}

std::shared_ptr<ArqSwitchApi::PTPClient> OrvoViaSwitchThriftClientsFabric::GetPTPClient() {
  return GetClient(ptpClient, PTP);
}

std::shared_ptr<ArqSwitchApi::VirtualInterfacesClient>
OrvoViaSwitchThriftClientsFabric::GetVirtualInterfacesClient() {
  return GetClient(virtualInterfacesClient, VirtualInterfaces);
}

std::shared_ptr<ArqSwitchApi::VlanClient> OrvoViaSwitchThriftClientsFabric::GetVlanClient() {
  return GetClient(vlanClient, Vlan);
}

std::shared_ptr<ArqOrvoAPI::ManagementClient>
OrvoViaSwitchThriftClientsFabric::GetManagementClient() {
  return GetClient(managementClient, Management);
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
