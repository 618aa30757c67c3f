#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "Arq/Monitoring/FakeMonitoringCollector.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "SnmpLogCapture.h"

namespace {

using Arq::Monitoring::FakeMonitoringCollector;
using Arq::Monitoring::Testing::SnmpLogCapture;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using namespace std::chrono_literals;

TEST(FakeMonitoringCollectorTest, PublishesAConsistentSwitchWithoutWarnings) {
  auto values = std::make_unique<Values>();
  auto now = std::chrono::steady_clock::time_point{};
  FakeMonitoringCollector collector([&] { return now; });
  SnmpLogCapture log;
  collector.Collect(values.get());
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(values->nbEthernetInterfaces.Value(), 16);
  EXPECT_EQ(values->nbPRSInterfaces.Value(), 2);
  EXPECT_EQ(values->nbLAGInterfaces.Value(), 2);
  EXPECT_EQ(values->nbPTPs.Value(), 2);
  EXPECT_EQ(values->nbLLDPInfos.Value(), 6);

  const auto eth7 = values->ethernetInterfaceMetrics[6].Value();
  EXPECT_EQ(eth7.name, "eth7");
  EXPECT_EQ(eth7.status, 0);
  EXPECT_EQ(eth7.ethernet.state, 0);
  const auto lag = values->lAGInterfaceMetrics[0].Value();
  EXPECT_EQ(lag.name, "lag1");
  EXPECT_EQ(lag.nbEthernetPorts, 2);
  EXPECT_EQ(lag.vlanIds, "10 20 30 100 200");
  EXPECT_EQ(lag.ethernets[1].ethName, "eth22");
  const auto neighbour = values->lLDPInfoMetrics[0].Value();
  EXPECT_EQ(neighbour.localInterface, "eth21");
  EXPECT_EQ(neighbour.deviceName, "core-sw-01");
  EXPECT_EQ(neighbour.chassisId, "00:1b:21:3a:4f:5e");
  EXPECT_EQ(neighbour.ipAddress, "10.20.0.1");
  EXPECT_EQ(neighbour.interfaceName, "uplink to access rack 3");
  EXPECT_EQ(neighbour.timeToLive, 120);
  EXPECT_EQ(neighbour.serialNumber, "SN OV48X-2210457");
  const auto camera = values->lLDPInfoMetrics[3].Value();
  EXPECT_EQ(camera.macAddress, "8c:1f:64:52:0b:04");
  EXPECT_EQ(camera.interfaceName, "");
  EXPECT_EQ(values->lLDPMetric.Value().chassisId, "02:a0:c9:00:00:01");
  EXPECT_EQ(values->pTPMetrics[1].Value().interfaces, "eth17 eth18 eth19 eth20");
  EXPECT_EQ(values->currentConfigMetric.Value().state, 0);
}

TEST(FakeMonitoringCollectorTest, CountersGrowAtTheAdvertisedRates) {
  auto values = std::make_unique<Values>();
  auto now = std::chrono::steady_clock::time_point{};
  FakeMonitoringCollector collector([&] { return now; });
  collector.Collect(values.get());
  const auto before = values->ethernetInterfaceMetrics[2].Value().ethernet;
  const auto lagBefore = values->lAGInterfaceMetrics[1].Value().ethernets[0];
  const auto changedAt = values->ethernetInterfaceMetrics[2].ChangeTime();
  now += 10s;
  collector.Collect(values.get());
  const auto after = values->ethernetInterfaceMetrics[2].Value().ethernet;
  EXPECT_NE(values->ethernetInterfaceMetrics[2].ChangeTime(), changedAt);
  EXPECT_EQ(after.counters[0] - before.counters[0], after.rxSpeed / 8 * 10);
  EXPECT_EQ(after.counters[11] - before.counters[11], after.txSpeed / 8 * 10);
  for (std::size_t i = 0; i < after.counters.size(); ++i) {
    EXPECT_GE(after.counters[i], before.counters[i]) << "counter " << i;
  }
  const auto lagAfter = values->lAGInterfaceMetrics[1].Value().ethernets[0];
  EXPECT_EQ(lagAfter.counters[0] - lagBefore.counters[0], lagAfter.rxSpeed / 8 * 10);
  EXPECT_GT(lagAfter.rxSpeed, 3000000000LL);
  // The disabled port stays idle: its metric does not change.
  const auto idle = values->ethernetInterfaceMetrics[6].ChangeTime();
  now += 5s;
  collector.Collect(values.get());
  EXPECT_EQ(values->ethernetInterfaceMetrics[6].ChangeTime(), idle);
}

}  // namespace
