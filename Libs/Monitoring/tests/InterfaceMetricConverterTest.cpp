#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace {

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace Metrics = Arq::OrvoViaSwitch::Domain::Dto::Metrics;
using Arq::Monitoring::MetricConverter::InterfaceMetricConverter;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

// One collection's answers, built port by port.
struct Answers {
  std::vector<std::string> names;
  InterfaceMetricConverter::IfInfos ifInfos;
  InterfaceMetricConverter::EthInfos ethInfos;
  InterfaceMetricConverter::EthCounters counters;
  InterfaceMetricConverter::EthStats stats;
  mutable InterfaceMetricConverter::SearchCursors cursors;

  void Port(const std::string& port, Dto::EthState state = Dto::EthState::LinkUp) {
    Dto::EthInfo info;
    info.EthName = port;
    info.Mode = Dto::EthMode::KR;
    info.Speed = Dto::EthSpeed::S25G;
    info.State = state;
    ethInfos.push_back(info);
  }
  void Interface(const std::string& name, Dto::IfType type, std::vector<std::string> members,
                 bool withPortData = true) {
    Dto::IfInfo info;
    info.Type = type;
    info.Status = Dto::IfStatus::Enabled;
    info.Vid = 42;
    info.Vlan = {42, 43};
    info.IfList = members;
    names.push_back(name);
    ifInfos[name] = info;
    if (!withPortData) return;
    for (const auto& member : members) {
      Dto::EthCnt cnt;
      cnt.EthName = member;
      cnt.NbOfGoodOctetsReceived = 1000 + member.size();
      cnt.NbOfGoodOctectsSent = 2000;
      cnt.NbOfValidFrameSentHalfDupWithOutCollision = 30;
      counters[name].push_back(cnt);
      Dto::EthStat stat;
      stat.EthName = member;
      stat.TxSpeed = 1500000;
      stat.RxSpeed = 2500000;
      stats[name].push_back(stat);
    }
  }
  template <typename Holder>
  std::uint32_t Convert(Holder* holders) const {
    return InterfaceMetricConverter::ToMetric(names, ifInfos, ethInfos, counters, stats, holders,
                                              cursors);
  }
};

TEST(InterfaceMetricConverterTest, EthernetInterfaceCopiesEveryField) {
  auto values = std::make_unique<Values>();
  Answers a;
  a.Port("eth1");
  a.Interface("eth1", Dto::IfType::Ethernet, {"eth1"});
  a.Interface("lag1", Dto::IfType::BasicLag, {}, false);
  EXPECT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), 1u);
  const auto metric = values->ethernetInterfaceMetrics[0].Value();
  EXPECT_EQ(metric.name, "eth1");
  EXPECT_EQ(metric.status, 1);
  EXPECT_EQ(metric.vid, 42);
  EXPECT_EQ(metric.vlanIds, "42 43");
  EXPECT_EQ(metric.ethernet.ethName, "eth1");
  EXPECT_EQ(metric.ethernet.mode, 0);   // KR
  EXPECT_EQ(metric.ethernet.speed, 4);  // S25G
  EXPECT_EQ(metric.ethernet.state, 1);
  EXPECT_EQ(metric.ethernet.counters[0], 1004);
  EXPECT_EQ(metric.ethernet.counters[11], 2000);
  EXPECT_EQ(metric.ethernet.counters[29], 30);
  EXPECT_EQ(metric.ethernet.txSpeed, 1500000);
  EXPECT_EQ(metric.ethernet.rxSpeed, 2500000);
  EXPECT_EQ(values->ethernetInterfaceMetrics[1].Value(), Metrics::EthernetInterfaceMetric());
  EXPECT_EQ(InterfaceMetricConverter::ToEthStateMetric(Dto::EthState::Unknown), -1);
  EXPECT_EQ(InterfaceMetricConverter::ToEthStateMetric(Dto::EthState::Failure), 0);
}

TEST(InterfaceMetricConverterTest, CapacityOrderAndShiftWhenAnInterfaceDisappears) {
  auto values = std::make_unique<Values>();
  Answers a;
  for (int i = 0; i < 50; ++i) {
    const std::string name = "e" + std::to_string(i);
    a.Port(name);
    a.Interface(name, Dto::IfType::Ethernet, {name});
  }
  a.Interface("v", Dto::IfType::Virtual, {}, false);
  a.names.insert(a.names.begin() + 1, {"v", "ghost"});  // not Ethernet, no record
  EXPECT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), 50u);
  EXPECT_EQ(values->ethernetInterfaceMetrics[1].Value().name, "e1");
  EXPECT_EQ(values->ethernetInterfaceMetrics[47].Value().name, "e47");
  a.names.erase(a.names.begin() + 1, a.names.begin() + 4);  // v, ghost and e1

  const auto unchangedSince = values->ethernetInterfaceMetrics[0].ChangeTime();
  const auto shiftedSince = values->ethernetInterfaceMetrics[5].ChangeTime();
  // e1 disappears: from position 1 on, holders shift up; a rewrite of equal
  // metrics keeps the change time.
  EXPECT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), 49u);
  EXPECT_EQ(values->ethernetInterfaceMetrics[0].ChangeTime(), unchangedSince);
  EXPECT_NE(values->ethernetInterfaceMetrics[5].ChangeTime(), shiftedSince);
  EXPECT_EQ(values->ethernetInterfaceMetrics[1].Value().name, "e2");
  EXPECT_EQ(values->ethernetInterfaceMetrics[47].Value().name, "e48");

  a.names.resize(10);
  EXPECT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), 10u);
  EXPECT_EQ(values->ethernetInterfaceMetrics[9].Value().name, "e10");
  EXPECT_EQ(values->ethernetInterfaceMetrics[10].Value(), Metrics::EthernetInterfaceMetric());
}

// The ports' records may come in any order, and from one cycle to the next
// in a shorter list: each port still gets its own record.
TEST(InterfaceMetricConverterTest, PortRecordsAreFoundWhateverTheirOrder) {
  auto values = std::make_unique<Values>();
  const Dto::EthSpeed speeds[] = {Dto::EthSpeed::S1G, Dto::EthSpeed::S10G, Dto::EthSpeed::S25G,
                                  Dto::EthSpeed::S100G};
  Answers a;
  for (int i = 0; i < 8; ++i) {
    const std::string name = "e" + std::to_string(i);
    a.Port(name, i % 2 == 0 ? Dto::EthState::LinkUp : Dto::EthState::LinkDown);
    a.ethInfos.back().Speed = speeds[i % 4];
    a.Interface(name, Dto::IfType::Ethernet, {name});
  }
  // Answered as e7 e5 e3 e1 e6 e4 e2 e0.
  std::vector<Dto::EthInfo> shuffled;
  for (int i = 7; i >= 1; i -= 2) shuffled.push_back(a.ethInfos[i]);
  for (int i = 6; i >= 0; i -= 2) shuffled.push_back(a.ethInfos[i]);
  const auto inOrder = a.ethInfos;
  for (const auto& infos :
       {shuffled, inOrder, std::vector<Dto::EthInfo>(shuffled.begin() + 4, shuffled.end())}) {
    a.ethInfos = infos;
    const auto published = infos.size();
    a.names.clear();
    for (const auto& info : infos) a.names.push_back(info.EthName);
    ASSERT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), published);
    for (std::size_t row = 0; row < published; ++row) {
      const auto metric = values->ethernetInterfaceMetrics[row].Value();
      const int port = std::stoi(metric.name.substr(1));
      SCOPED_TRACE(metric.name);
      EXPECT_EQ(metric.ethernet.ethName, metric.name);
      EXPECT_EQ(metric.ethernet.speed, static_cast<std::int32_t>(speeds[port % 4]));
      EXPECT_EQ(metric.ethernet.state, port % 2 == 0 ? 1 : 0);
    }
  }
  EXPECT_EQ(values->ethernetInterfaceMetrics[3].Value().name, "e0");
  EXPECT_EQ(values->ethernetInterfaceMetrics[4].Value(), Metrics::EthernetInterfaceMetric());
}

}  // namespace
