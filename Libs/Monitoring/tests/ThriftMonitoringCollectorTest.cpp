#include <gtest/gtest.h>
#include <syslog.h>
#include <thrift/TToString.h>

#include <memory>
#include <string>
#include <vector>

#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"
#include "SnmpLogCapture.h"

namespace Arq::Monitoring {
namespace {

using OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using OrvoViaSwitchService::Simulator::LoopbackSwitchServer;
using OrvoViaSwitchService::Simulator::ServerData;

// The collector with the real proxy clients, against the project's loopback
// switch over TCP.
std::unique_ptr<ThriftMonitoringCollector> CollectorFor(int port) {
  namespace Client = OrvoViaSwitchService::Client;
  return std::make_unique<ThriftMonitoringCollector>(
      std::make_unique<Client::OrvoViaSwitchMonitoringClientFactory>(
          std::make_shared<Client::Thrift::ThriftTransportProtocolLayerFactory>("127.0.0.1", port,
                                                                                2000, 5000)));
}

// The sample switch with p2 in both eth2 and lag1.
ServerData SharedPortSwitch() {
  auto data = ServerData::Sample();
  data.ifInfos["lag1"].IfList = {"p5", "p2"};
  return data;
}

const std::vector<std::string> kCalls(
    std::begin(OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallNames),
    std::end(OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallNames));

// The port names asked for are the members of the interfaces in key order,
// each once; every call gets its own connection.
TEST(ThriftMonitoringCollectorTest, AsksForEveryMemberPortOnce) {
  LoopbackSwitchServer server(SharedPortSwitch());
  auto values = std::make_unique<OrvoViaMonitoringValues_s>();
  CollectorFor(server.Port())->Collect(values.get());

  const auto calls = server.Behaviour().Calls();
  ASSERT_EQ(calls.size(), kCalls.size());
  const std::string ports =
      apache::thrift::to_string(std::vector<std::string>{"p1", "p2", "p5", "p3", "p4"});
  EXPECT_EQ(calls[2].substr(calls[2].find(' ') + 1), ports);
  EXPECT_EQ(server.Connections(), 10);
  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 2);
  EXPECT_EQ(values->nbLAGInterfaces.Value(), 1);
}

// Each call failing in turn costs only its own data: one error line, and the
// other nine calls are still made.
TEST(ThriftMonitoringCollectorTest, OneFailedCallLogsOnceAndTheOthersStillRun) {
  LoopbackSwitchServer server(SharedPortSwitch());
  std::size_t callsBefore = 0;
  for (const auto& failing : kCalls) {
    SCOPED_TRACE(failing);
    server.Behaviour().Fault(ArqSwitchApi::ErrorCode_t::NotFound, failing + " failed");
    server.Behaviour().Only(failing);
    Testing::SnmpLogCapture log;
    auto values = std::make_unique<OrvoViaMonitoringValues_s>();

    CollectorFor(server.Port())->Collect(values.get());

    EXPECT_EQ(log.Lines(LOG_ERR), std::vector<std::string>{"Error: " + failing + " failed\n"});
    const auto calls = server.Behaviour().Calls();
    EXPECT_EQ(calls.size() - callsBefore, kCalls.size());
    callsBefore = calls.size();
    EXPECT_EQ(values->nbPTPs.Value(), failing == "PTP:GetConfig" ? 0 : 1);
    // Every call, failed or not, has its duration.
    for (const auto& call : values->collectorCalls) EXPECT_GT(call.Value().durationUs, 0);
  }
}

}  // namespace
}  // namespace Arq::Monitoring
