#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <syslog.h>

#include <memory>

#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "SnmpLogCapture.h"

namespace {

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace Metrics = Arq::OrvoViaSwitch::Domain::Dto::Metrics;
using Arq::Monitoring::MetricConverter::InterfaceMetricConverter;
using Arq::Monitoring::Testing::SnmpLogCapture;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using testing::ElementsAre;

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

// Each inconsistency publishes the default metric, logs its warning and
// still counts the interface.
TEST(InterfaceMetricConverterTest, InconsistentInterfacesArePublishedAsDefault) {
  struct Case {
    const char* name;
    std::function<void(Answers&)> build;
    std::vector<std::string> warnings;
  };
  const std::vector<Case> cases = {
      {"two ports on an Ethernet interface",
       [](Answers& a) {
         a.Port("eth1");
         a.Port("eth2");
         a.Interface("eth1", Dto::IfType::Ethernet, {"eth1", "eth2"});
       },
       {"Inconsistent Number of Ethernet (1/2) for Interface Name: eth1\n"}},
      {"missing port info",
       [](Answers& a) { a.Interface("eth9", Dto::IfType::Ethernet, {"eth9"}); },
       {"Missing Ethernet Info with Name: eth9 for Interface Name: eth9\n"}},
      {"missing counters",
       [](Answers& a) {
         a.Port("eth3");
         a.Interface("eth3", Dto::IfType::Ethernet, {"eth3"});
         a.counters.clear();
       },
       {"Missing Ethernet Counters with Name: eth3 for Interface Name: eth3\n"}},
      {"missing stats for the port",
       [](Answers& a) {
         a.Port("eth4");
         a.Interface("eth4", Dto::IfType::Ethernet, {"eth4"});
         a.stats["eth4"][0].EthName = "other";
       },
       {"Missing Ethernet Stats with Name: eth4 for Interface Name: eth4\n"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto values = std::make_unique<Values>();
    Answers a;
    c.build(a);
    SnmpLogCapture log;
    EXPECT_EQ(a.Convert(values->ethernetInterfaceMetrics.data()), 1u);
    EXPECT_EQ(values->ethernetInterfaceMetrics[0].Value(), Metrics::EthernetInterfaceMetric());
    EXPECT_EQ(log.Lines(LOG_WARNING), c.warnings);
  }
}

TEST(InterfaceMetricConverterTest, PrsAndLagMemberRules) {
  auto values = std::make_unique<Values>();
  Answers a;
  for (int i = 1; i <= 13; ++i) a.Port("p" + std::to_string(i));
  a.Interface("prsDup", Dto::IfType::BasicPrs, {"p1", "p1"});
  a.Interface("prs3", Dto::IfType::BasicPrs, {"p1", "p2", "p3"});
  a.Interface("prsOk", Dto::IfType::BasicPrs, {"p2", "p3"});
  a.Interface("lag7", Dto::IfType::BasicLag, {"p1", "p2", "p3", "p4", "p5", "p6", "p7"});
  a.Interface("lag4", Dto::IfType::BasicLag, {"p8", "p9", "p10", "p11"});
  a.Interface("lagDup", Dto::IfType::BasicLag, {"p12", "p13", "p12"});
  SnmpLogCapture log;
  EXPECT_EQ(a.Convert(values->pRSInterfaceMetrics.data()), 3u);
  EXPECT_EQ(a.Convert(values->lAGInterfaceMetrics.data()), 3u);
  EXPECT_THAT(log.Lines(LOG_WARNING),
              ElementsAre("Duplicate Ethernet Name: p1 for Interface Name: prsDup\n",
                          "Inconsistent Number of Ethernet (2/3) for Interface Name: prs3\n",
                          "Inconsistent Number of Ethernet (6/7) for Interface Name: lag7\n",
                          "Duplicate Ethernet Name: p12 for Interface Name: lagDup\n"));
  EXPECT_EQ(values->pRSInterfaceMetrics[0].Value(), Metrics::PRSInterfaceMetric());
  EXPECT_EQ(values->pRSInterfaceMetrics[1].Value(), Metrics::PRSInterfaceMetric());
  const auto prs = values->pRSInterfaceMetrics[2].Value();
  EXPECT_EQ(prs.name, "prsOk");
  EXPECT_EQ(prs.ethernets[0].ethName, "p2");
  EXPECT_EQ(prs.ethernets[1].ethName, "p3");

  EXPECT_EQ(values->lAGInterfaceMetrics[0].Value(), Metrics::LAGInterfaceMetric());
  const auto lag = values->lAGInterfaceMetrics[1].Value();
  EXPECT_EQ(lag.name, "lag4");
  EXPECT_EQ(lag.vlanId, 42);
  EXPECT_EQ(lag.nbEthernetPorts, 4);
  EXPECT_EQ(lag.ethernets[3].ethName, "p11");
  EXPECT_EQ(lag.ethernets[4], Metrics::EthernetMetric());
  EXPECT_EQ(lag.ethernets[5], Metrics::EthernetMetric());
  EXPECT_EQ(values->lAGInterfaceMetrics[2].Value(), Metrics::LAGInterfaceMetric());
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
