#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <thrift/TOutput.h>
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/transport/TBufferTransports.h>

#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftClientsFabric.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftDiagnostics.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayer.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {
namespace {

using Fabric = OrvoViaSwitchThriftClientsFabric;
using Simulator::LoopbackSwitchServer;

// A layer whose protocol writes into memory, so that requests can be decoded.
class MemoryLayer : public IThriftTransportProtocolLayer {
 public:
  void Create() override {
    buffer = std::make_shared<apache::thrift::transport::TMemoryBuffer>();
    protocol = std::make_shared<apache::thrift::protocol::TBinaryProtocol>(buffer);
  }
  void Open() override { ++opens; }
  bool IsOpen() override { return opens > closes; }
  void Close() override { ++closes; }
  std::shared_ptr<apache::thrift::protocol::TProtocol> GetProtocol() override { return protocol; }

  // The name of the first message written.
  std::string FirstMessageName() {
    apache::thrift::protocol::TBinaryProtocol reader(buffer);
    std::string name;
    apache::thrift::protocol::TMessageType type;
    std::int32_t sequence = 0;
    reader.readMessageBegin(name, type, sequence);
    return name;
  }

  int opens = 0;
  int closes = 0;

 private:
  std::shared_ptr<apache::thrift::transport::TMemoryBuffer> buffer;
  std::shared_ptr<apache::thrift::protocol::TProtocol> protocol;
};

struct ServiceCase {
  Fabric::ServiceName service;
  const char* name;
  // Writes one request through the fabric's client of the service.
  std::function<void(Fabric&)> send;
  const char* messageName;
};

void PrintTo(const ServiceCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

class FabricServiceTest : public ::testing::TestWithParam<ServiceCase> {};

TEST_P(FabricServiceTest, ClientWritesMultiplexedMessageNameOverOneKeptProtocol) {
  auto layer = std::make_shared<MemoryLayer>();
  layer->Create();
  Fabric fabric(layer);

  EXPECT_EQ(Fabric::ToServiceName(GetParam().service), GetParam().name);
  const auto protocol = fabric.GetProtocol(GetParam().service);
  ASSERT_NE(protocol, nullptr);
  EXPECT_EQ(fabric.GetProtocol(GetParam().service), protocol);
  GetParam().send(fabric);

  EXPECT_EQ(layer->FirstMessageName(), GetParam().messageName);
}

const ArqSwitchApi::Header_t kHeader;

INSTANTIATE_TEST_SUITE_P(
    AllFifteen, FabricServiceTest,
    ::testing::Values(
        ServiceCase{Fabric::Config, "Config",
                    [](Fabric& f) { f.GetConfigClient()->send_Reset(kHeader); }, "Config:Reset"},
        ServiceCase{Fabric::Ethernet, "Ethernet",
                    [](Fabric& f) { f.GetEthernetClient()->send_GetHardwareDesc(kHeader); },
                    "Ethernet:GetHardwareDesc"},
        ServiceCase{Fabric::GeneralPurpose, "GeneralPurpose",
                    [](Fabric& f) { f.GetGeneralPurposeClient()->send_GetVersion(kHeader); },
                    "GeneralPurpose:GetVersion"},
        ServiceCase{Fabric::HwMonitoring, "HwMonitoring",
                    [](Fabric& f) { f.GetHwMonitoringClient()->send_FanSpeed(kHeader); },
                    "HwMonitoring:FanSpeed"},
        ServiceCase{Fabric::Interfaces, "Interfaces",
                    [](Fabric& f) { f.GetInterfacesClient()->send_GetCnt(kHeader, {}); },
                    "Interfaces:GetCnt"},
        ServiceCase{Fabric::LagIf, "LagIf",
                    [](Fabric& f) { f.GetLagIfClient()->send_Configure(kHeader, "lag1", {}); },
                    "LagIf:Configure"},
        ServiceCase{Fabric::LLDP, "LLDP",
                    [](Fabric& f) { f.GetLLDPClient()->send_GetInfo(kHeader); }, "LLDP:GetInfo"},
        ServiceCase{Fabric::McRoute, "McRoute",
                    [](Fabric& f) { f.GetMcRouteClient()->send_GetAllRoutes(kHeader); },
                    "McRoute:GetAllRoutes"},
        ServiceCase{Fabric::Mirroring, "Mirroring",
                    [](Fabric& f) { f.GetMirroringClient()->send_GetAll(kHeader); },
                    "Mirroring:GetAll"},
        ServiceCase{Fabric::Natting, "Natting",
                    [](Fabric& f) { f.GetNattingClient()->send_GetInfos(kHeader); },
                    "Natting:GetInfos"},
        ServiceCase{Fabric::PrsIf, "PrsIf",
                    [](Fabric& f) { f.GetPrsIfClient()->send_GetStatus(kHeader, "prs1"); },
                    "PrsIf:GetStatus"},
        ServiceCase{Fabric::PTP, "PTP",
                    [](Fabric& f) { f.GetPTPClient()->send_GetConfig(kHeader); }, "PTP:GetConfig"},
        ServiceCase{
            Fabric::VirtualInterfaces, "VirtualInterfaces",
            [](Fabric& f) { f.GetVirtualInterfacesClient()->send_Configure(kHeader, "v1", {}); },
            "VirtualInterfaces:Configure"},
        ServiceCase{Fabric::Vlan, "Vlan",
                    [](Fabric& f) { f.GetVlanClient()->send_GetDesc(kHeader); }, "Vlan:GetDesc"},
        ServiceCase{Fabric::Management, "Management",
                    [](Fabric& f) { f.GetManagementClient()->send_GetHostname(); },
                    "Management:GetHostname"}),
    [](const ::testing::TestParamInfo<ServiceCase>& info) { return info.param.name; });

TEST(FabricTest, ClientsAreMadeOnceAndOpenCloseReachTheLayer) {
  auto layer = std::make_shared<MemoryLayer>();
  layer->Create();
  Fabric fabric(layer);

  EXPECT_EQ(fabric.GetInterfacesClient(), fabric.GetInterfacesClient());
  fabric.Open();
  EXPECT_TRUE(fabric.IsOpen());
  fabric.Close();
  EXPECT_FALSE(fabric.IsOpen());
  EXPECT_EQ(layer->opens, 1);
  EXPECT_EQ(layer->closes, 1);
}

TEST(TransportLayerTest, FactoryMakesCreatedUnconnectedLayersThatConnectOnOpen) {
  LoopbackSwitchServer server;
  ThriftTransportProtocolLayerFactory factory("127.0.0.1", server.Port(), 2000, 2000);

  const auto layer = factory.Create();
  const auto other = factory.Create();
  ASSERT_NE(layer->GetProtocol(), nullptr);
  EXPECT_NE(layer->GetProtocol(), other->GetProtocol());
  EXPECT_FALSE(layer->IsOpen());
  layer->Open();
  EXPECT_TRUE(layer->IsOpen());
  layer->Close();
  EXPECT_FALSE(layer->IsOpen());
}

TEST(MonitoringClientFactoryTest, EveryProxyClientHasAConnectionOfItsOwn) {
  LoopbackSwitchServer server;
  const auto factory = std::make_unique<OrvoViaSwitchMonitoringClientFactory>(
      std::make_shared<ThriftTransportProtocolLayerFactory>("127.0.0.1", server.Port(), 2000,
                                                            2000));
  const OrvoViaSwitch::Domain::Dto::Header header;

  auto interfaces = factory->CreateOrvoViaSwitchInterfacesProxyClient();
  auto otherInterfaces = factory->CreateOrvoViaSwitchInterfacesProxyClient();
  auto config = factory->CreateOrvoViaSwitchConfigProxyClient();
  auto ethernet = factory->CreateOrvoViaSwitchEthernetProxyClient();
  auto lldp = factory->CreateOrvoViaSwitchLLDPProxyClient();
  auto ptp = factory->CreateOrvoViaSwitchPTPProxyClient();
  interfaces->Open();
  otherInterfaces->Open();
  config->Open();
  ethernet->Open();
  lldp->Open();
  ptp->Open();
  interfaces->GetMainMacAddr(header);
  otherInterfaces->GetMainMacAddr(header);
  config->GetCurrentConfig(header);
  ethernet->GetHardwareDesc(header);
  lldp->GetLldpConfig(header);
  ptp->GetPTPConfig(header);

  EXPECT_EQ(server.Connections(), 6);
  EXPECT_EQ(server.Behaviour().Calls(),
            (std::vector<std::string>{"Interfaces:GetMainMacAddr", "Interfaces:GetMainMacAddr",
                                      "Config:GetCurrentConfig", "Ethernet:GetHardwareDesc",
                                      "LLDP:GetConfig", "PTP:GetConfig"}));
}

TEST(ThriftDiagnosticsTest, LibraryDiagnosticsNoLongerReachStandardError) {
  apache::thrift::GlobalOutput.setOutputFunction(&apache::thrift::TOutput::errorTimeWrapper);
  ::testing::internal::CaptureStderr();
  apache::thrift::GlobalOutput("before routing");
  const std::string before = ::testing::internal::GetCapturedStderr();

  RouteThriftDiagnosticsToLoggers();
  ::testing::internal::CaptureStderr();
  apache::thrift::GlobalOutput("after routing");
  const std::string after = ::testing::internal::GetCapturedStderr();

  EXPECT_NE(before.find("before routing"), std::string::npos);
  EXPECT_EQ(after, "");
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
