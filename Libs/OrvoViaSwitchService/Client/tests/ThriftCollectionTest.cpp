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
