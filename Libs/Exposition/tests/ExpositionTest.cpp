#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

#include "Arq/Exposition/Families.h"
#include "Arq/Exposition/SwitchExposition.h"
#include "Arq/Monitoring/Model/Numbers.h"

namespace {

using namespace Arq::Exposition;
namespace Model = Arq::OrvoViaSwitch::Domain::Model;
namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace Metrics = Arq::OrvoViaSwitch::Domain::Dto::Metrics;

// Counter c of a port is first + c, so that a counter in the wrong family or
// with the wrong label shows.
Model::Port MakePort(const std::string& name, Model::LinkState link, Dto::EthSpeed speed,
                     std::uint64_t first) {
  Model::Port port;
  port.name = name;
  port.link = link;
  port.speed = speed;
  port.hasInfo = port.hasCounters = port.hasRates = true;
  for (std::size_t c = 0; c < port.counters.size(); ++c) port.counters[c] = first + c;
  port.rxRate = 4004;
  port.txRate = 8000;
  return port;
}

Model::Interface MakeInterface(const std::string& name, Dto::IfType type,
                               std::vector<std::size_t> members, bool consistent = true) {
  Model::Interface interface;
  interface.name = name;
  interface.type = type;
  interface.status = Dto::IfStatus::Enabled;
  interface.members = std::move(members);
  interface.consistent = consistent;
  return interface;
}

// Port 1/1 (up) under eth1 and in lag1 (served once, under eth1); port 3/1
// only in an interface that does not hold together; a neighbour said twice;
// one PTP domain said twice.
Model::SwitchModel SmallSwitch() {
  Model::SwitchModel model;
  model.ports = {MakePort("1/1", Model::LinkState::Up, Dto::EthSpeed::S100G, 1000),
                 MakePort("3/1", Model::LinkState::Down, Dto::EthSpeed::S25G, 2000)};
  model.interfaces = {MakeInterface("eth1", Dto::IfType::Ethernet, {0}),
                      MakeInterface("lag1", Dto::IfType::BasicLag, {0}),
                      MakeInterface("eth3", Dto::IfType::Ethernet, {1}, false)};
  model.interfaces[0].description = "uplink";
  model.interfaces[1].link = Model::LinkState::Up;
  Model::LldpNeighbour neighbour;
  neighbour.localPort = "1/1";
  neighbour.chassisId = Model::LldpId{4, std::string("\x02\xa0\xc9\x00\x00\x01", 6)};
  neighbour.portId = Model::LldpId{5, "Ethernet7"};
  neighbour.systemName = "core-1";
  neighbour.managementAddress = Model::LldpManagementAddress{1, std::string("\x0a\x00\x00\x01", 4)};
  model.neighbours = {neighbour, neighbour};
  Model::PtpDomain domain;
  domain.domain = 24;
  domain.ports = {"1/1", "3/1"};
  domain.slavePorts = {"1/1"};
  model.ptpDomains = {domain, domain};
  Arq::Monitoring::Numbers("").Assign(model, 0);
  return model;
}

// The text from `start` on, without its HELP lines.
std::string From(const std::string& text, const std::string& start) {
  std::istringstream in(text.substr(std::min(text.find(start), text.size())));
  std::string line, kept;
  while (std::getline(in, line)) {
    if (line.rfind("# HELP ", 0) != 0) kept += line + "\n";
  }
  return kept;
}

std::set<std::string> Lines(const std::string& text, bool samples) {
  std::set<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if ((line[0] != '#') == samples) lines.insert(line);
  }
  return lines;
}

TEST(ExpositionTest, ServesEachPortIfMibServesWithEveryCounterInItsFamily) {
  EXPECT_EQ(
      From(Render(SmallSwitch(), {"2.2.23"}, Format::Text), "# TYPE orvovia_port_admin_status"),
      R"(# TYPE orvovia_port_admin_status gauge
orvovia_port_admin_status{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1
# TYPE orvovia_port_oper_status gauge
orvovia_port_oper_status{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1
# TYPE orvovia_port_speed_bytes_per_second gauge
orvovia_port_speed_bytes_per_second{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 12500000000
# TYPE orvovia_port_receive_rate_bytes_per_second gauge
orvovia_port_receive_rate_bytes_per_second{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 500.5
# TYPE orvovia_port_transmit_rate_bytes_per_second gauge
orvovia_port_transmit_rate_bytes_per_second{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1000
# TYPE orvovia_port_received_bytes_total counter
orvovia_port_received_bytes_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="good"} 1000
orvovia_port_received_bytes_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="bad"} 1001
# TYPE orvovia_port_transmitted_bytes_total counter
orvovia_port_transmitted_bytes_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1011
# TYPE orvovia_port_received_packets_total counter
orvovia_port_received_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="broadcast"} 1003
orvovia_port_received_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="multicast"} 1004
orvovia_port_received_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="unicast"} 1026
# TYPE orvovia_port_transmitted_packets_total counter
orvovia_port_transmitted_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="multicast"} 1013
orvovia_port_transmitted_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="broadcast"} 1014
orvovia_port_transmitted_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="unicast"} 1027
# TYPE orvovia_port_received_packets_by_size_total counter
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="64"} 1005
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="65-127"} 1006
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="128-255"} 1007
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="256-511"} 1008
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="512-1023"} 1009
orvovia_port_received_packets_by_size_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",size="1024-max"} 1010
# TYPE orvovia_port_receive_errors_total counter
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="undersize"} 1018
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="fragment"} 1019
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="oversize"} 1020
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="jabber"} 1021
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="mac"} 1022
orvovia_port_receive_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="fcs"} 1023
# TYPE orvovia_port_transmit_errors_total counter
orvovia_port_transmit_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="excessive_collision"} 1012
orvovia_port_transmit_errors_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="late_collision"} 1025
# TYPE orvovia_port_collisions_total counter
orvovia_port_collisions_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1024
# TYPE orvovia_port_receive_discards_total counter
orvovia_port_receive_discards_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1017
# TYPE orvovia_port_transmit_discards_total counter
orvovia_port_transmit_discards_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1002
# TYPE orvovia_port_received_pause_frames_total counter
orvovia_port_received_pause_frames_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1016
# TYPE orvovia_port_transmitted_pause_frames_total counter
orvovia_port_transmitted_pause_frames_total{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 1015
# TYPE orvovia_port_half_duplex_transmitted_packets_total counter
orvovia_port_half_duplex_transmitted_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",collision="yes"} 1028
orvovia_port_half_duplex_transmitted_packets_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",collision="no"} 1029
# TYPE orvovia_lag_member_info gauge
orvovia_lag_member_info{lag="lag1",ifIndex="1001",ifName="1/1"} 1
# TYPE orvovia_lag_oper_status gauge
orvovia_lag_oper_status{lag="lag1"} 1
# TYPE orvovia_lag_speed_bytes_per_second gauge
orvovia_lag_speed_bytes_per_second{lag="lag1"} 12500000000
# TYPE orvovia_lldp_neighbour_info gauge
orvovia_lldp_neighbour_info{ifIndex="1001",ifName="1/1",chassis_id="02:a0:c9:00:00:01",port_id="Ethernet7",port_description="",system_name="core-1",system_description="",management_address="10.0.0.1"} 1
# TYPE orvovia_ptp_port_role gauge
orvovia_ptp_port_role{domain="24",ifName="1/1"} 2
orvovia_ptp_port_role{domain="24",ifName="3/1"} 1
# TYPE orvovia_ptp_domain_slave_ports gauge
orvovia_ptp_domain_slave_ports{domain="24"} 1
)");
}

TEST(ExpositionTest, TellsTheCollectorsHealthAndTheBuild) {
  Model::SwitchModel model = SmallSwitch();
  auto& health = model.collection.health;
  health.state = Metrics::CollectorState::Partial;
  health.collections = 12;
  health.lastCollection = 1700000060;
  health.lastSuccess = 1700000000;
  health.lastDurationMs = 250;
  health.consecutiveFailures = 2;
  health.period = 5;
  model.collection.calls[Metrics::CollectorCall::LLDP_GetInfo] = {Metrics::CallOutcome::Timeout, 3,
                                                                  "x", 2000250};
  // An outage: the ports keep their last data, their state unknown.
  model.collection.interfacesCurrent = false;
  model.ports[0].link = Model::LinkState::Unknown;
  const auto lines = Lines(Render(model, {"2.2.23"}, Format::Text), true);
  for (
      const char* line : {
          R"(orvovia_build_info{version="2.2.23"} 1)",
          R"(orvovia_collector_state{state="ok"} 0)",
          R"(orvovia_collector_state{state="partial"} 1)",
          "orvovia_collector_enabled 1",
          "orvovia_collector_period_seconds 5",
          "orvovia_collector_collections_total 12",
          "orvovia_collector_last_collection_timestamp_seconds 1700000060",
          "orvovia_collector_last_success_timestamp_seconds 1700000000",
          "orvovia_collector_last_duration_seconds 0.25",
          "orvovia_collector_consecutive_failures 2",
          "orvovia_collector_consecutive_unreachable 0",
          "orvovia_collector_interfaces_current 0",
          R"(orvovia_collector_call_outcome{call="LLDP:GetInfo",outcome="timeout"} 1)",
          R"(orvovia_collector_call_outcome{call="LLDP:GetInfo",outcome="not_called"} 0)",
          R"(orvovia_collector_call_outcome{call="PTP:GetConfig",outcome="not_called"} 1)",
          R"(orvovia_collector_call_failures_total{call="LLDP:GetInfo"} 3)",
          R"(orvovia_collector_call_duration_seconds{call="LLDP:GetInfo"} 2.00025)",
          R"(orvovia_port_oper_status{ifIndex="1001",ifName="1/1",ifAlias="uplink"} 4)",
          R"(orvovia_port_received_bytes_total{ifIndex="1001",ifName="1/1",ifAlias="uplink",kind="good"} 1000)",
      }) {
    EXPECT_EQ(lines.count(line), 1u) << line;
  }
  // Only the call made has a duration.
  EXPECT_EQ(lines.size(), 1u + 5 + 9 + 70 + 10 + 1 + 5 + 30 + 1 + 1 + 1 + 1 + 2 + 1);

  // Before the first collection: no time of it, and no port at all.
  const auto empty = Render(Model::SwitchModel{}, {"2.2.23"}, Format::Text);
  EXPECT_EQ(empty.find("\norvovia_collector_last_success_timestamp_seconds "), std::string::npos);
  EXPECT_EQ(empty.find("\norvovia_collector_last_duration_seconds "), std::string::npos);
  EXPECT_EQ(empty.find("ifName="), std::string::npos);
}

TEST(ExpositionTest, OpenMetricsNamesFamiliesByTheirBaseAndEnds) {
  const Model::SwitchModel model = SmallSwitch();
  const std::string text = Render(model, {"2.2.23"}, Format::Text);
  const std::string open = Render(model, {"2.2.23"}, Format::OpenMetrics);
  // The same samples, _total and _info included; no _created.
  EXPECT_EQ(Lines(open, true), Lines(text, true));
  EXPECT_EQ(open.find("_created"), std::string::npos);
  EXPECT_EQ(open.substr(open.size() - 6), "# EOF\n");
  EXPECT_EQ(text.find("# EOF"), std::string::npos);
  const auto metadata = Lines(open, false);
  for (const char* line :
       {"# TYPE orvovia_port_received_bytes counter", "# UNIT orvovia_port_received_bytes bytes",
        "# TYPE orvovia_port_received_packets counter", "# TYPE orvovia_build info",
        "# TYPE orvovia_lldp_neighbour info", "# TYPE orvovia_lag_member info",
        "# TYPE orvovia_collector_collections counter",
        "# UNIT orvovia_collector_last_duration_seconds seconds",
        "# UNIT orvovia_port_speed_bytes_per_second bytes_per_second",
        "# TYPE orvovia_port_oper_status gauge"}) {
    EXPECT_EQ(metadata.count(line), 1u) << line;
  }
  for (const char* absent : {"# UNIT orvovia_port_received_packets", "# TYPE orvovia_build_info",
                             "# TYPE orvovia_port_received_bytes_total"}) {
    for (const auto& line : metadata) EXPECT_EQ(line.rfind(absent, 0), std::string::npos) << line;
  }
  EXPECT_EQ(Lines(text, false).count("# TYPE orvovia_build_info gauge"), 1u);
}

TEST(ExpositionTest, EscapesHostileNamesAndRepairsUtf8) {
  Model::SwitchModel model = SmallSwitch();
  // A quote, a backslash, a line feed, a stray byte, a whole é, a surrogate.
  model.ports[0].name = "a\"b\\c\nd\xff\xc3\xa9\xed\xa0\x80";
  model.ports[0].link = Model::LinkState::Down;
  model.interfaces[0].description = "\"quoted\" \\ line\nbreak \xe2\x82";  // cut character
  model.neighbours.resize(1);
  model.neighbours[0].localPort = model.ports[0].name;
  model.neighbours[0].systemDescription = "tab\t\xc0\xaf";  // overlong
  model.neighbours[0].portId = Model::LldpId{5, "}\"} 1\n# EOF"};
  // Numbered again: a name no rule places takes the first fallback ifIndex.
  Arq::Monitoring::Numbers("").Assign(model, 0);
  const std::string bad = "\xef\xbf\xbd";  // U+FFFD
  const std::string name = R"(a\"b\\c\nd)" + bad + "\xc3\xa9" + bad + bad + bad;
  const auto lines = Lines(Render(model, {"2.2.23"}, Format::OpenMetrics), true);
  for (const std::string& line : {
           R"(orvovia_port_oper_status{ifIndex="1000000",ifName=")" + name +
               R"(",ifAlias="\"quoted\" \\ line\nbreak )" + bad + bad + R"("} 2)",
           R"(orvovia_lldp_neighbour_info{ifIndex="1000000",ifName=")" + name +
               R"(",chassis_id="02:a0:c9:00:00:01",port_id="}\"} 1\n# EOF",port_description="",)" +
               R"(system_name="core-1",system_description="tab)" + "\t" + bad + bad +
               R"(",management_address="10.0.0.1"} 1)",
       }) {
    EXPECT_EQ(lines.count(line), 1u) << line;
  }
}

TEST(ExpositionTest, NegotiatesTheFormatFromTheAcceptHeader) {
  const std::pair<const char*, Format> cases[] = {
      {"", Format::Text},
      {"*/*", Format::Text},
      {"text/plain", Format::Text},
      {"application/openmetrics-text", Format::OpenMetrics},
      {"application/openmetrics-text; version=1.0.0; charset=utf-8", Format::OpenMetrics},
      // What Prometheus 2.42 sends.
      {"application/openmetrics-text;version=1.0.0,application/openmetrics-text;version=0.0.1;"
       "q=0.75,text/plain;version=0.0.4;q=0.5,*/*;q=0.1",
       Format::OpenMetrics},
      {"application/openmetrics-text;version=0.0.1,text/plain;version=0.0.4;q=0.5", Format::Text},
      {"text/plain;version=0.0.4;q=0.9, application/openmetrics-text;q=0.5", Format::Text},
      {"text/plain;q=0.2, Application/OpenMetrics-Text;Q=0.3", Format::OpenMetrics},
      {"application/openmetrics-text;q=0, text/plain;q=0.1", Format::Text},
      {"application/json", Format::Text},
      {";;,,=;q=", Format::Text},
  };
  for (const auto& [accept, format] : cases) EXPECT_EQ(NegotiateFormat(accept), format) << accept;
}

TEST(WriterTest, EscapesHelpPerFormatAndWritesNumbersExactly) {
  constexpr Family kFamily{"test_seconds", MetricType::Gauge, "seconds", "",
                           "A \"quoted\" \\ help\nover two lines."};
  static_assert(IsWellFormed(kFamily));
  static_assert(!IsWellFormed({"test_total", MetricType::Gauge, "", "", "x"}));
  static_assert(!IsWellFormed({"test", MetricType::Counter, "", "", "x"}));
  static_assert(!IsWellFormed({"test_bytes_total", MetricType::Counter, "seconds", "", "x"}));
  static_assert(!IsWellFormed({"test-bytes", MetricType::Gauge, "", "", "x"}));
  const char* expected[] = {
      "# HELP test_seconds A \"quoted\" \\\\ help\\nover two lines.\n# TYPE test_seconds gauge\n"
      "test_seconds 0.25\ntest_seconds{a=\"1\",b=\"2\"} 18446744073709551615\n"
      "test_seconds NaN\ntest_seconds +Inf\ntest_seconds -1e+300\ntest_seconds 9007199254740991\n",
      "# HELP test_seconds A \\\"quoted\\\" \\\\ help\\nover two lines.\n# TYPE test_seconds "
      "gauge\n"
      "# UNIT test_seconds seconds\n"
      "test_seconds 0.25\ntest_seconds{a=\"1\",b=\"2\"} 18446744073709551615\n"
      "test_seconds NaN\ntest_seconds +Inf\ntest_seconds -1e+300\ntest_seconds 9007199254740991\n"
      "# EOF\n"};
  for (const Format format : {Format::Text, Format::OpenMetrics}) {
    std::string out;
    ExpositionWriter writer(format, out);
    writer.Begin(kFamily);
    writer.Sample({}, {}, 0.25);
    writer.Sample("a=\"1\"", "b=\"2\"", std::uint64_t{18446744073709551615u});
    writer.Sample({}, {}, std::nan(""));
    writer.Sample({}, {}, HUGE_VAL);
    writer.Sample({}, {}, -1e300);
    writer.Sample({}, {}, 9007199254740991.0);
    writer.Finish();
    EXPECT_EQ(out, expected[format == Format::OpenMetrics]);
  }
}

TEST(ExpositionTest, OperatorDocumentationListsEveryFamily) {
  std::ifstream file(ARQ_SOURCE_DIR "/doc/PROMETHEUS.md");
  const std::string doc((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_FALSE(doc.empty());
  for (const auto& family : Families::kAll) {
    EXPECT_NE(doc.find("`" + std::string(family.name) + "`"), std::string::npos) << family.name;
  }
  for (const auto& counters : kPortCounterFamilies) {
    EXPECT_NE(doc.find("`" + std::string(counters.family.name) + "`"), std::string::npos)
        << counters.family.name;
  }
}

}  // namespace
