#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <ArqOrvoAPI/Management.h>

#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftClientsFabric.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"
#include "Arq/OrvoViaSwitchService/Simulator/Scenario.h"
#include "SnmpLogCapture.h"

namespace Arq::OrvoViaSwitchService::Simulator {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Client::OrvoViaSwitchMonitoringClientFactory;
using Client::Thrift::ThriftTransportProtocolLayerFactory;
using OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using std::chrono::milliseconds;

std::string ScenarioFile(const std::string& name) {
  return ARQ_SCENARIO_DIR "/" + name;
}

// A scenario served over loopback TCP at an elapsed time the test sets.
class ScenarioServer {
 public:
  explicit ScenarioServer(const std::string& name)
      : scenario(Scenario::Load(ScenarioFile(name))),
        server([this] { return std::make_shared<const ServerData>(scenario.At(elapsed.load())); },
               LoopbackSwitchServer::PortRange::Any) {}

  std::unique_ptr<OrvoViaSwitchMonitoringClientFactory> Clients() const {
    return std::make_unique<OrvoViaSwitchMonitoringClientFactory>(
        std::make_shared<ThriftTransportProtocolLayerFactory>("127.0.0.1", server.Port(), 2000,
                                                              5000));
  }

  std::unique_ptr<OrvoViaMonitoringValues_s> Collect() const {
    auto values = std::make_unique<OrvoViaMonitoringValues_s>();
    Monitoring::ThriftMonitoringCollector(Clients()).Collect(values.get());
    return values;
  }

  const Scenario scenario;
  std::atomic<milliseconds> elapsed{milliseconds(0)};
  LoopbackSwitchServer server;
};

// The SNMP log lines of one priority written while it lives, without it.
class SnmpLog {
 public:
  std::vector<std::string> Lines(int priority) const {
    const std::string prefix = std::to_string(priority) + " ";
    std::vector<std::string> lines;
    for (const auto& line : capture.Lines()) {
      if (line.rfind(prefix, 0) == 0) lines.push_back(line.substr(prefix.size()));
    }
    return lines;
  }
  std::size_t Count() const { return capture.Lines().size(); }

 private:
  Monitoring::Testing::SnmpLogCapture capture;
};

const Dto::Header kNoToken;

// The scenario's names and numbers reach the domain records: counters by
// their names, enums by theirs, the time the test sets.
TEST(ScenarioServingTest, SmallScenarioReachesTheProxyClientsAsRecords) {
  ScenarioServer small("small.json");
  const auto clients = small.Clients();
  auto interfaces = clients->CreateOrvoViaSwitchInterfacesProxyClient();
  interfaces->Open();
  EXPECT_EQ(interfaces->GetIfList(kNoToken),
            (std::vector<std::string>{"eth1", "eth2", "prs1", "lag1"}));
  const auto infos = interfaces->GetIfInfo(kNoToken, {"lag1"});
  ASSERT_EQ(infos.size(), 4u);
  EXPECT_EQ(infos.at("lag1").Type, Dto::IfType::BasicLag);
  EXPECT_EQ(infos.at("lag1").IfList, (std::vector<std::string>{"3/1", "3/2", "3/3"}));
  EXPECT_EQ(infos.at("eth2").Status, Dto::IfStatus::Disabled);
  EXPECT_EQ(infos.at("eth1").IpConfig.Gateway.Address, "10.0.100.1");
  // Whatever names are asked for, every interface comes with its ports' records.
  small.elapsed = milliseconds(4000);
  const auto counters = interfaces->GetEthCnt(kNoToken, {"no-such-port"});
  ASSERT_EQ(counters.size(), 4u);
  ASSERT_EQ(counters.at("prs1").size(), 2u);
  EXPECT_EQ(counters.at("prs1")[1].EthName, "2/2");
  EXPECT_EQ(counters.at("prs1")[1].NbOfGoodOctetsReceived, 6000 + 250000000LL * 4);
  EXPECT_EQ(counters.at("eth1")[0].NbOfCrcErrorEvents, 3 + 2 * 4);
  EXPECT_EQ(counters.at("eth2")[0].NbOfBadOctetsReceived, 5);
  EXPECT_EQ(interfaces->GetEthStats(kNoToken, {}).at("eth1")[0].TxSpeed, 8000000000LL);

  auto ethernet = clients->CreateOrvoViaSwitchEthernetProxyClient();
  ethernet->Open();
  const auto ports = ethernet->GetEthInfo(kNoToken, {});
  ASSERT_EQ(ports.size(), 7u);
  EXPECT_EQ(ports[1].EthName, "1/2");
  EXPECT_EQ(ports[1].FecType, Dto::EthFecType::FC_FEC);
  EXPECT_EQ(ports[1].FecTypeState, Dto::EthFecType::Disable);
  EXPECT_EQ(ports[1].FailureSts, Dto::EthFailureSts::TrainingFailed);
  EXPECT_EQ(ports[0].Speed, Dto::EthSpeed::S100G);
  EXPECT_EQ(ethernet->GetHardwareDesc(kNoToken).at(0).NbSubPort, 4);

  auto config = clients->CreateOrvoViaSwitchConfigProxyClient();
  config->Open();
  const auto current = config->GetCurrentConfig(kNoToken);
  EXPECT_EQ(current.State, Dto::ConfigState::altered);
  EXPECT_EQ(config->ListConfigFile(kNoToken, Dto::ConfigType::All).size(), 2u);
  EXPECT_EQ(config->GetConfigComment(kNoToken, current), "after maintenance");
}

TEST(ScenarioServingTest, ManagementServiceAnswersFromTheScenario) {
  ScenarioServer small("small.json");
  Client::Thrift::OrvoViaSwitchThriftClientsFabric fabric("127.0.0.1", small.server.Port(), 2000,
                                                          5000);
  fabric.Open();
  const auto management = fabric.GetManagementClient();

  std::string text;
  management->GetVersion(text, ArqOrvoAPI::MODULE_VERSION::API);
  EXPECT_EQ(text, "2.3");
  management->GetHostname(text);
  EXPECT_EQ(text, "orvo-sim-small");
  ArqOrvoAPI::IPAddress_t address;
  management->GetIpAddress(address);
  EXPECT_EQ(address.SubNetMask, "255.255.255.0");
  management->SetHostname("renamed", ArqOrvoAPI::CHANGE_MODE::Immediate);
  management->GetHostname(text);
  EXPECT_EQ(text, "renamed");

  // A configured fault reaches the management service as its own exception,
  // with the code of the same name, or RuntimeError where it has none.
  small.server.Behaviour().Only("Management:GetHostname");
  const std::pair<ArqSwitchApi::ErrorCode_t::type, ArqOrvoAPI::ERROR_CODE::type> codes[] = {
      {ArqSwitchApi::ErrorCode_t::NotFound, ArqOrvoAPI::ERROR_CODE::NotFound},
      {ArqSwitchApi::ErrorCode_t::OutOfRange, ArqOrvoAPI::ERROR_CODE::OutOfRange},
      {ArqSwitchApi::ErrorCode_t::NotConfigured, ArqOrvoAPI::ERROR_CODE::RuntimeError}};
  for (const auto& [switchCode, managementCode] : codes) {
    small.server.Behaviour().Fault(switchCode, "gone");
    try {
      management->GetHostname(text);
      FAIL() << "no fault";
    } catch (const ArqOrvoAPI::Fault& fault) {
      EXPECT_EQ(fault.ErrCode, managementCode);
      EXPECT_EQ(fault.What, "gone");
    }
  }
}

TEST(ScenarioServingTest, SmallScenarioThroughTheCollectorDecodesEveryNeighbour) {
  SnmpLog log;
  ScenarioServer small("small.json");
  small.elapsed = milliseconds(1500);

  const auto values = small.Collect();

  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 2);
  EXPECT_EQ(values->nbPRSInterfaces.Value(), 1);
  EXPECT_EQ(values->nbLAGInterfaces.Value(), 1);
  EXPECT_EQ(values->nbLLDPInfos.Value(), 2);
  EXPECT_EQ(values->nbPTPs.Value(), 1);
  const auto eth1 = values->ethernetInterfaceMetrics[0].Value();
  EXPECT_EQ(eth1.vlanIds, "100 110");
  EXPECT_EQ(eth1.ethernet.state, 1);
  EXPECT_EQ(eth1.ethernet.counters[0], 1000000 + 500000000LL * 3 / 2);
  EXPECT_EQ(eth1.ethernet.rxSpeed, 4000000000LL);
  EXPECT_EQ(values->lAGInterfaceMetrics[0].Value().ethernets[2].ethName, "3/3");
  const auto core = values->lLDPInfoMetrics[0].Value();
  EXPECT_EQ(core.localInterface, "1/1");
  EXPECT_EQ(core.chassisId, "00:1b:21:3a:4f:5e");
  EXPECT_EQ(core.deviceName, "core-sw-01");
  EXPECT_EQ(core.deviceType, "CoreSwitch 9000");
  EXPECT_EQ(core.serialNumber, "CS9K-12345");
  EXPECT_EQ(core.version, "7.2.1");
  EXPECT_EQ(core.ipAddress, "192.0.2.1");
  EXPECT_EQ(core.interfaceName, "to orvo-sim-small");
  EXPECT_EQ(core.macAddress, "");
  EXPECT_EQ(core.timeToLive, 120);
  const auto edge = values->lLDPInfoMetrics[1].Value();
  EXPECT_EQ(edge.chassisId, "192.0.2.2");
  EXPECT_EQ(edge.macAddress, "00:1b:21:3a:4f:60");
  EXPECT_EQ(edge.interfaceName, "");
  EXPECT_EQ(edge.timeToLive, 90);
  EXPECT_EQ(values->pTPMetrics[0].Value().interfaces, "1/1 2/1");
  EXPECT_EQ(values->currentConfigMetric.Value().name, "running");
  EXPECT_EQ(log.Lines(LOG_WARNING), std::vector<std::string>{});
  EXPECT_EQ(log.Lines(LOG_ERR), std::vector<std::string>{});
  // Ten calls, each over a connection of its own, in the collector's order.
  EXPECT_EQ(small.server.Connections(), 10);
  const auto& names = OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallNames;
  std::vector<std::string> called;
  for (const auto& call : small.server.Behaviour().Calls())
    called.push_back(call.substr(0, call.find(' ')));
  EXPECT_EQ(called, std::vector<std::string>(std::begin(names), std::end(names)));
}

TEST(ScenarioServingTest, InconsistentScenarioGivesTheConvertersWarningsAndDefaults) {
  SnmpLog log;
  ScenarioServer inconsistent("inconsistent.json");

  const auto values = inconsistent.Collect();

  EXPECT_EQ(log.Lines(LOG_WARNING),
            (std::vector<std::string>{
                "Inconsistent Number of Ethernet (1/2) for Interface Name: eth-two-ports\n",
                "Inconsistent Number of Ethernet (1/0) for Interface Name: eth-no-ports\n",
                "Missing Ethernet Info with Name: 1/4 for Interface Name: eth-no-info\n",
                "Missing Ethernet Counters with Name: 1/5 for Interface Name: eth-no-counters\n",
                "Missing Ethernet Stats with Name: 1/6 for Interface Name: eth-no-rates\n",
                "Missing Ethernet Counters with Name: 1/7 for Interface Name: "
                "eth-counters-dropped\n",
                "Inconsistent Number of Ethernet (2/3) for Interface Name: prs-three\n",
                "Duplicate Ethernet Name: 2/6 for Interface Name: prs-twice\n",
                "Inconsistent Number of Ethernet (6/7) for Interface Name: lag-seven\n",
                "Duplicate Ethernet Name: 3/12 for Interface Name: lag-twice\n"}));
  EXPECT_EQ(log.Lines(LOG_ERR), std::vector<std::string>{});

  // Failing interfaces still count; those neither listed with a record nor
  // of a known type do not.
  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 7);
  EXPECT_EQ(values->nbPRSInterfaces.Value(), 4);
  EXPECT_EQ(values->nbLAGInterfaces.Value(), 3);
  EXPECT_EQ(values->ethernetInterfaceMetrics[0].Value().name, "eth-ok");
  EXPECT_EQ(values->ethernetInterfaceMetrics[0].Value().ethernet.counters[0], 11);
  EXPECT_EQ(values->ethernetInterfaceMetrics[0].Value().ethernet.rxSpeed, 1600);
  for (std::size_t i = 1; i < 7; ++i) {
    EXPECT_EQ(values->ethernetInterfaceMetrics[i].Value(), Dto::Metrics::EthernetInterfaceMetric())
        << i;
  }
  EXPECT_EQ(values->pRSInterfaceMetrics[1].Value(), Dto::Metrics::PRSInterfaceMetric());
  EXPECT_EQ(values->pRSInterfaceMetrics[3].Value().name, "prs-shares");
  EXPECT_EQ(values->pRSInterfaceMetrics[3].Value().ethernets[0].counters[0], 21);
  EXPECT_EQ(values->lAGInterfaceMetrics[0].Value(), Dto::Metrics::LAGInterfaceMetric());
  const auto four = values->lAGInterfaceMetrics[1].Value();
  EXPECT_EQ(four.nbEthernetPorts, 4);
  EXPECT_EQ(four.ethernets[3].counters[23], 4);

  // A port two interfaces share is asked for once.
  const auto calls = inconsistent.server.Behaviour().Calls();
  ASSERT_EQ(calls.size(), 10u);
  EXPECT_EQ(calls[2].rfind("Ethernet:GetEthInfo [", 0), 0u) << calls[2];
  EXPECT_EQ(calls[2].find("2/1,"), calls[2].rfind("2/1,")) << calls[2];

  // Neighbours with TLVs cut short are published with what can be read.
  EXPECT_EQ(values->nbLLDPInfos.Value(), 2);
  const auto broken = values->lLDPInfoMetrics[0].Value();
  EXPECT_EQ(broken.chassisId, "");
  EXPECT_EQ(broken.timeToLive, 121);
  EXPECT_EQ(values->lLDPInfoMetrics[1].Value().chassisId, "mgmt0");
  EXPECT_EQ(values->pTPMetrics[0].Value().domain, 127);
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Simulator
