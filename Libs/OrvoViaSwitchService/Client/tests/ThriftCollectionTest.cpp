#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"
#include "SnmpErrorLog.h"
#include "TestPeers.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {
namespace {

using OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using Simulator::LoopbackSwitchServer;
using Simulator::ServerData;
using Testing::ClosedPort;

std::unique_ptr<Monitoring::ThriftMonitoringCollector> CollectorFor(int port) {
  return std::make_unique<Monitoring::ThriftMonitoringCollector>(
      std::make_unique<OrvoViaSwitchMonitoringClientFactory>(
          std::make_shared<ThriftTransportProtocolLayerFactory>("127.0.0.1", port, 2000, 5000)));
}

TEST(ThriftCollectionTest, FullCapacityCycleFillsTheHoldersAndTheFiveCounts) {
  Monitoring::Testing::SnmpErrorLog log;
  LoopbackSwitchServer server(ServerData::FullCapacity());
  auto values = std::make_unique<OrvoViaMonitoringValues_s>();

  CollectorFor(server.Port())->Collect(values.get());

  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 48);
  EXPECT_EQ(values->nbPRSInterfaces.Value(), 24);
  EXPECT_EQ(values->nbLAGInterfaces.Value(), 3);
  EXPECT_EQ(values->nbLLDPInfos.Value(), 60);
  EXPECT_EQ(values->nbPTPs.Value(), 5);
  const auto lastEthernet = values->ethernetInterfaceMetrics[47].Value();
  EXPECT_EQ(lastEthernet.name, "eth47");
  EXPECT_EQ(lastEthernet.ethernet.ethName, "eth47-p0");
  EXPECT_EQ(lastEthernet.ethernet.state, 1);
  EXPECT_EQ(lastEthernet.ethernet.counters[0], 1000001);
  EXPECT_EQ(lastEthernet.ethernet.txSpeed, 25000000000LL);
  const auto lastPrs = values->pRSInterfaceMetrics[23].Value();
  EXPECT_EQ(lastPrs.name, "prs23");
  EXPECT_EQ(lastPrs.ethernets[1].ethName, "prs23-p1");
  EXPECT_EQ(lastPrs.ethernets[1].counters[0], 2000001);
  const auto lastLag = values->lAGInterfaceMetrics[2].Value();
  EXPECT_EQ(lastLag.name, "lag2");
  EXPECT_EQ(lastLag.nbEthernetPorts, 6);
  EXPECT_EQ(lastLag.ethernets[5].ethName, "lag2-p5");
  EXPECT_EQ(values->pTPMetrics[4].Value().domain, 4);
  EXPECT_EQ(values->currentConfigMetric.Value().name, "running");
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(server.Connections(), 10);
  const auto calls = server.Behaviour().Calls();
  ASSERT_EQ(calls.size(), 10u);
  const std::vector<std::string> methods = {"Interfaces:GetIfList", "Interfaces:GetInfo",
                                            "Ethernet:GetEthInfo",  "Interfaces:GetCnt",
                                            "Interfaces:GetStats",  "Interfaces:GetMainMacAddr",
                                            "LLDP:GetConfig",       "LLDP:GetInfo",
                                            "PTP:GetConfig",        "Config:GetCurrentConfig"};
  for (std::size_t i = 0; i < methods.size(); ++i) {
    EXPECT_EQ(calls[i].substr(0, calls[i].find(' ')), methods[i]);
  }
}

TEST(ThriftCollectionTest, UnreachableSwitchLogsTenErrorsAndCollectReturns) {
  Monitoring::Testing::SnmpErrorLog log;
  ClosedPort closed;
  auto values = std::make_unique<OrvoViaMonitoringValues_s>();

  CollectorFor(closed.Port())->Collect(values.get());

  EXPECT_EQ(log.Lines(),
            std::vector<std::string>(10, "Error: socket open() error: Connection refused\n"));
  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 0);
  EXPECT_EQ(values->nbLLDPInfos.Value(), 0);
}

TEST(ThriftCollectionTest, SwitchFaultIsLoggedOncePerCallWithItsText) {
  Monitoring::Testing::SnmpErrorLog log;
  LoopbackSwitchServer server(ServerData::FullCapacity());
  server.Behaviour().Fault(ArqSwitchApi::ErrorCode_t::NotConfigured, "lldp is off");
  auto values = std::make_unique<OrvoViaMonitoringValues_s>();

  CollectorFor(server.Port())->Collect(values.get());

  EXPECT_EQ(log.Lines(), std::vector<std::string>(10, "Error: lldp is off\n"));
  EXPECT_EQ(server.Connections(), 10);
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
