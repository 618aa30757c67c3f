#include <gtest/gtest.h>

#include <algorithm>
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

// What reaches SNMP is checked by the Fake mode system test; here: no
// warning, the neighbours' TLVs decode, and an idle port's holder stays put.
TEST(FakeMonitoringCollectorTest, PublishesAConsistentSwitchWithoutWarnings) {
  auto values = std::make_unique<Values>();
  auto now = std::chrono::steady_clock::time_point{};
  FakeMonitoringCollector collector([&] { return now; });
  SnmpLogCapture log;
  collector.Collect(values.get());
  EXPECT_TRUE(log.Lines().empty());
  const auto neighbour = values->lLDPInfoMetrics[0].Value();
  EXPECT_EQ(neighbour.interfaceName, "uplink to access rack 3");
  EXPECT_EQ(values->lLDPInfoMetrics[3].Value().macAddress, "8c:1f:64:52:0b:04");
  const auto idle = values->ethernetInterfaceMetrics[6].ChangeTime();
  now += 5s;
  collector.Collect(values.get());
  EXPECT_EQ(values->ethernetInterfaceMetrics[6].ChangeTime(), idle);
  EXPECT_NE(values->ethernetInterfaceMetrics[2].ChangeTime(), idle);
}

// Over a day of 7-second cycles: counters never go back, the bytes counted
// between two cycles match the advertised rates, one port flaps, and the same
// seed gives the same switch.
TEST(FakeMonitoringCollectorTest, CountersFollowTheSwingingRatesAndOnePortFlaps) {
  auto values = std::make_unique<Values>();
  auto now = std::chrono::steady_clock::time_point{};
  FakeMonitoringCollector collector([&] { return now; }, 4);
  collector.Collect(values.get());
  auto previous = values->ethernetInterfaceMetrics[2].Value().ethernet;
  int downCycles = 0;
  int flapsSeen = 0;
  bool wasDown = false;
  long long minRate = previous.rxSpeed;
  long long maxRate = previous.rxSpeed;
  for (int cycle = 0; cycle < 12000; ++cycle) {
    now += 7s;
    collector.Collect(values.get());
    const auto current = values->ethernetInterfaceMetrics[2].Value().ethernet;
    for (std::size_t i = 0; i < current.counters.size(); ++i) {
      ASSERT_GE(current.counters[i], previous.counters[i]) << "counter " << i;
    }
    // The bytes of the interval at a rate between the two advertised ones
    // (the swing is slow: a few percent per cycle at most).
    const double average = (current.counters[0] - previous.counters[0]) * 8.0 / 7;
    const double low = std::min(previous.rxSpeed, current.rxSpeed) * 0.97;
    const double high = std::max(previous.rxSpeed, current.rxSpeed) * 1.03;
    ASSERT_TRUE(average >= low && average <= high) << average << " " << low << " " << high;
    minRate = std::min<long long>(minRate, current.rxSpeed);
    maxRate = std::max<long long>(maxRate, current.rxSpeed);
    previous = current;

    const auto flapping =
        values->ethernetInterfaceMetrics[12].Value().ethernet;  // eth13 for seed 4
    const bool down = flapping.state == 0;
    if (down) {
      ++downCycles;
      EXPECT_EQ(flapping.rxSpeed, 0);
    }
    if (down && !wasDown) ++flapsSeen;
    wasDown = down;
  }
  EXPECT_GT(maxRate, minRate * 1.5);  // a quarter either side of the mean
  EXPECT_EQ(flapsSeen, 12000 * 7 / 300);
  EXPECT_GE(downCycles, flapsSeen * 2);

  auto again = std::make_unique<Values>();
  auto later = std::chrono::steady_clock::time_point{} + 12000 * 7s;
  FakeMonitoringCollector same([&] { return later; }, 4);
  later += 12000 * 7s;
  same.Collect(again.get());
  EXPECT_EQ(again->ethernetInterfaceMetrics[2].Value(),
            values->ethernetInterfaceMetrics[2].Value());
}

}  // namespace
