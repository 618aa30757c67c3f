#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <regex>
#include <set>
#include <sstream>
#include <thread>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Daemon.h"
#include "Standard/Views/PortCounterTables.h"

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::SystemTests::IfMibScalar;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::RunCommand;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;
using namespace std::chrono_literals;

// Samples of one exporter scrape ("name{labels}" to value) and its "# TYPE" lines.
struct Scrape {
  std::map<std::string, double> samples;
  std::string types;
  double At(const std::string& series) const {
    const auto found = samples.find(series);
    return found == samples.end() ? NAN : found->second;
  }
  std::size_t Rows(const std::string& name) const {
    std::size_t rows = 0;
    for (const auto& sample : samples) rows += sample.first.rfind(name + "{", 0) == 0;
    return rows;
  }
};

// The daemon, started before the switch's service (the simulator's
// full-capacity switch on a fixed port), and the monitoring tools of Debian
// with the files this project ships.
class MonitoringToolsTest : public testing::Test {
 protected:
  void StartDaemonWithoutSwitch() {
    setup.StartDaemon({"monitoring_processor_mode:Thrift", "remote_ip_address:127.0.0.1",
                       "remote_port_number:" + std::to_string(port),
                       "remote_ms_connection_timeout:500", "remote_ms_receive_timeout:2000",
                       "collect_metrics_period:1"});
    // Every call refused: unreachable(3), every table row without data.
    ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s)) << setup.Stderr();
  }
  void StartSwitch() {
    simulator = Arq::TestSupport::StartSimulator(
                    {ARQ_SIMULATOR_PATH, "--port", std::to_string(port), "--scenario",
                     std::string(ARQ_SOURCE_DIR) + "/etc/simulator/full-capacity.json"},
                    setup.Dir().File("simulator.out"))
                    .process;
    // 48 Ethernet ports, 24 PRS interfaces of 2 ports, 3 LAGs of 6 ports.
    ASSERT_TRUE(WaitUntil(
        [&] { return setup.Master().Get(IfMibScalar("ifNumber")) == "INTEGER: 141"; }, 15s));
  }
  Scrape ScrapeExporter(const std::string& module) {
    const std::string address = setup.Master().Address();
    const auto result =
        RunCommand({"curl", "-sSf",
                    "http://127.0.0.1:" + std::to_string(webPort) + "/snmp?module=" + module +
                        "&target=" + address.substr(address.find(':') + 1)},
                   {}, 30s, true);
    // A duplicate series fails the whole scrape (HTTP 500).
    EXPECT_EQ(result.status, 0) << result.output;
    Scrape scrape;
    std::istringstream in(result.output);
    std::string line;
    while (std::getline(in, line)) {
      if (line.rfind("# TYPE ", 0) == 0) scrape.types += line + "\n";
      if (line.empty() || line[0] == '#') continue;
      const auto space = line.rfind(' ');
      scrape.samples[line.substr(0, space)] = std::stod(line.substr(space + 1));
    }
    return scrape;
  }

  DaemonSetup setup;
  int port = Arq::TestSupport::FreeHighTcpPort();
  int webPort = Arq::TestSupport::FreeTcpPort();
  std::unique_ptr<ChildProcess> simulator;
};

TEST_F(MonitoringToolsTest, ExporterReadsTheShippedModulesExactlyAndNoRowWithoutData) {
  StartDaemonWithoutSwitch();
  const ChildProcess exporter({"prometheus-snmp-exporter", "--config.file=" ARQ_SNMP_YML,
                               "--web.listen-address=127.0.0.1:" + std::to_string(webPort)},
                              {}, setup.Dir().File("exporter.out"));
  ASSERT_TRUE(WaitUntil(
      [&] {
        return ReadFile(setup.Dir().File("exporter.out")).find("Listening on") != std::string::npos;
      },
      10s));
  const auto unreachable = ScrapeExporter("orvovia");
  EXPECT_EQ(unreachable.At(
                R"(arqSwitchOrvoViaCollectorState{arqSwitchOrvoViaCollectorState="unreachable"})"),
            1);
  const std::regex row(
      "arqSwitchOrvoVia(Ptp|Prs|Hw|Lag[123]Port|LAG[123]Interface(Status|VlanId|Nb)).*");
  for (const auto& sample : unreachable.samples)
    EXPECT_FALSE(std::regex_match(sample.first, row)) << sample.first;
  EXPECT_EQ(ScrapeExporter("if_mib").At("ifNumber"), 0);
  for (const auto& sample : ScrapeExporter("orvovia_ports").samples) {
    EXPECT_EQ(sample.first.find("ifIndex"), std::string::npos) << sample.first;
  }
  const auto empty = ScrapeExporter("orvovia_inventory");
  for (const char* name : {"entPhysicalModelName", "dot1qPvid", "ptpbaseClockPortRunningRole"}) {
    EXPECT_EQ(empty.Rows(name), 0u) << name;
  }

  StartSwitch();
  // A collection after the switch's first instant (its octets moved from their
  // initial 1000000), then a pause in the collections, so that a scrape reads
  // one collection.
  ASSERT_TRUE(WaitUntil(
      [&] { return setup.Master().Get("1.3.6.1.2.1.31.1.1.1.6.1001") != "Counter64: 1000000"; },
      15s));
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
  std::this_thread::sleep_for(2500ms);
  const auto interfaces = ScrapeExporter("if_mib");
  const auto orvovia = ScrapeExporter("orvovia");
  const auto ports = ScrapeExporter("orvovia_ports");
  std::cout << "scrape duration: if_mib " << interfaces.At("snmp_scrape_duration_seconds")
            << " s, orvovia " << orvovia.At("snmp_scrape_duration_seconds") << " s\n";

  // Octet counters: initial + rate / 8 per second for one elapsed time common
  // to every port of the collection.
  struct Port {
    std::string labels;
    double inOctets, inPerMs, outOctets, outPerMs, highSpeed;
  };
  double elapsedMs = -1;
  for (
      const Port& port : std::vector<Port>{
          {R"(ifAlias="eth1 of the full-capacity switch",ifDescr="eth1",ifIndex="1001",ifName="1/1")",
           1e6, 1e4, 2e6, 12500, 100000},
          {R"(ifAlias="",ifDescr="prs1 port 2/1",ifIndex="2001",ifName="2/1")", 1e6, 5e4, 2e6,
           62500, 25000},
          {R"(ifAlias="",ifDescr="lag1 port 3/1",ifIndex="3001",ifName="3/1")", 1e6, 2e5, 2e6,
           250000, 10000}}) {
    const double in = interfaces.At("ifHCInOctets{" + port.labels + "}");
    if (elapsedMs < 0) elapsedMs = (in - port.inOctets) / port.inPerMs;
    EXPECT_EQ(in, port.inOctets + port.inPerMs * elapsedMs) << port.labels;
    EXPECT_EQ(interfaces.At("ifHCOutOctets{" + port.labels + "}"),
              port.outOctets + port.outPerMs * elapsedMs);
    EXPECT_EQ(interfaces.At("ifHighSpeed{" + port.labels + "}"), port.highSpeed);
    EXPECT_EQ(interfaces.At("ifOperStatus{" + port.labels + "}"), 1);
  }
  EXPECT_GT(elapsedMs, 0);
  EXPECT_EQ(interfaces.At("ifNumber"), 141);
  EXPECT_EQ(
      interfaces.At(
          R"(ifType_info{ifAlias="lag1 of the full-capacity switch",ifDescr="lag1",ifIndex="100001",ifName="lag1",ifType="ieee8023adLag"})"),
      1);

  const std::string prs24 =
      R"(arqSwitchOrvoViaPRSInterfacesIndex="23",arqSwitchOrvoViaPrsAEthName="2/47",arqSwitchOrvoViaPrsBEthName="2/48",arqSwitchOrvoViaPrsName="prs24"})";
  const std::vector<std::pair<std::string, double>> expected{
      {R"(arqSwitchOrvoViaPtpClockMode{arqSwitchOrvoViaPTPsIndex="3",arqSwitchOrvoViaPtpDomain="3",arqSwitchOrvoViaPtpInterfaces="1/13 1/14 1/15 1/16"})",
       3},
      {R"(arqSwitchOrvoViaPtpPacketType{arqSwitchOrvoViaPTPsIndex="4",arqSwitchOrvoViaPtpDomain="4",arqSwitchOrvoViaPtpInterfaces="1/17 1/18 1/19 1/20"})",
       2},
      {"arqSwitchOrvoViaPrsVlanId{" + prs24, 224},
      {"arqSwitchOrvoViaPrsBEthSpeed{" + prs24, 5},
      {"arqSwitchOrvoViaPrsAEthState{" + prs24, 1},
      {R"(arqSwitchOrvoViaLag3PortEthState{arqSwitchOrvoViaLAG3InterfaceEthernetPortsIndex="5",arqSwitchOrvoViaLag3PortEthName="3/18"})",
       1},
      {R"(arqSwitchOrvoViaLag2PortEthSpeed{arqSwitchOrvoViaLAG2InterfaceEthernetPortsIndex="0",arqSwitchOrvoViaLag2PortEthName="3/7"})",
       2},
      {R"(arqSwitchOrvoViaHwTimeToLive{arqSwitchOrvoViaHardwareInfosIndex="59",arqSwitchOrvoViaHwChassisId="00:1b:21:00:00:3c",arqSwitchOrvoViaHwDeviceName="peer-60",arqSwitchOrvoViaHwInterfaceName="to orvo-sim-full 2/1",arqSwitchOrvoViaHwIpAddress="198.51.100.60",arqSwitchOrvoViaHwLocalInterface="2/12"})",
       120},
      {R"(arqSwitchOrvoViaLAG1InterfaceName{arqSwitchOrvoViaLAG1InterfaceName="lag1"})", 1},
      {"arqSwitchOrvoViaLAG2InterfaceVlanId", 302},
      {"arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts", 6},
      {R"(arqSwitchOrvoViaConfigCurrentConfigName{arqSwitchOrvoViaConfigCurrentConfigName="running"})",
       1},
      {"arqSwitchOrvoViaConfigCurrentConfigState", 0},
      {R"(arqSwitchOrvoViaLLDPLocalDeviceName{arqSwitchOrvoViaLLDPLocalDeviceName="orvo-sim-full"})",
       1},
      {"arqSwitchOrvoViaNbEthernetInterfaces", 48},
      {"arqSwitchOrvoViaNbHardwareInfos", 60},
      {R"(arqSwitchOrvoViaCollectorState{arqSwitchOrvoViaCollectorState="disabled"})", 1},
      {"arqSwitchOrvoViaCollectorEnabled", 2},
      {R"(arqSwitchOrvoViaCollectorCallOutcome{arqSwitchOrvoViaCollectorCallIndex="10",arqSwitchOrvoViaCollectorCallName="Config:GetCurrentConfig",arqSwitchOrvoViaCollectorCallOutcome="ok"})",
       1}};
  for (const auto& [series, value] : expected) EXPECT_EQ(orvovia.At(series), value) << series;
  // The standard MIBs' module: the chassis, bridge port 1 (1/1), 1/1 a PTP slave.
  const auto inventory = ScrapeExporter("orvovia_inventory");
  EXPECT_EQ(
      inventory.At(
          R"(entPhysicalModelName{entPhysicalIndex="1",entPhysicalModelName="OrvoVia Switch",entPhysicalName="orvo-sim-full",entPhysicalSerialNum="SIM-0048",entPhysicalSoftwareRev="4.1.0"})"),
      1);
  EXPECT_EQ(inventory.At(R"(dot1qPvid{dot1dBasePort="1",ifIndex="1001"})"), 101);
  EXPECT_EQ(
      inventory.At(
          R"(ptpbaseClockPortRunningRole{ifIndex="1001",ptpbaseClockPortRunningClockInstanceIndex="1",ptpbaseClockPortRunningClockTypeIndex="2",ptpbaseClockPortRunningDomainIndex="0",ptpbaseClockPortRunningName="1/1",ptpbaseClockPortRunningPortNumberIndex="1"})"),
      2);
  EXPECT_EQ(inventory.Rows("entPhysicalModelName"), 1u);
  EXPECT_EQ(inventory.Rows("dot1qPvid"), 75u);
  EXPECT_EQ(inventory.Rows("ptpbaseClockPortRunningRole"), 20u);
  for (const auto& [name, rows] : std::vector<std::pair<std::string, std::size_t>>{
           {"arqSwitchOrvoViaPtpClockMode", 5},
           {"arqSwitchOrvoViaPrsStatus", 24},
           {"arqSwitchOrvoViaHwTimeToLive", 60},
           {"arqSwitchOrvoViaLag1PortEthState", 6},
           {"arqSwitchOrvoViaCollectorCallFailures", 10}}) {
    EXPECT_EQ(orvovia.Rows(name), rows) << name;
  }
  EXPECT_GE(
      orvovia.At(
          R"(arqSwitchOrvoViaCollectorCallFailures{arqSwitchOrvoViaCollectorCallIndex="1",arqSwitchOrvoViaCollectorCallName="Interfaces:GetIfList"})"),
      1);
  for (const std::string type : {"ifHCInOctets counter", "ifHCOutOctets counter",
                                 "arqSwitchOrvoViaCollectorCollections counter",
                                 "arqSwitchOrvoViaCollectorCallFailures counter",
                                 "arqSwitchOrvoViaNbEthernetInterfaces gauge"}) {
    EXPECT_THAT(interfaces.types + orvovia.types, testing::HasSubstr("# TYPE " + type + "\n"));
  }
  // Every exported column of the standard port tables, one sample per port
  // (114), typed as its syntax; 1/1 (KR4, up, no error counted) exactly.
  const std::string port11 =
      R"({ifAlias="eth1 of the full-capacity switch",ifIndex="1001",ifName="1/1"})";
  int exported = 0;
  for (const auto& table : Arq::Snmp::Standard::PortCounterTables()) {
    for (const auto& column : table.columns) {
      if (column.use != Arq::Snmp::Standard::ColumnUse::Export) continue;
      ++exported;
      EXPECT_EQ(ports.Rows(column.name), 114u) << column.name;
      EXPECT_THAT(ports.types, testing::HasSubstr(std::string("# TYPE ") + column.name +
                                                  (column.Counter() ? " counter\n" : " gauge\n")));
      EXPECT_EQ(ports.At(column.name + port11), column.Counter() ? 0 : 3) << column.name;
    }
  }
  EXPECT_EQ(exported, 19);
}

// collectd with the shipped drop-in, from a switch that does not answer to
// the full-capacity one: one file per instance, never one for a row without
// data, and rates of the simulator's growth.
TEST_F(MonitoringToolsTest, CollectdWritesEveryInterfaceWithItsRatesAndNoEmptyInstance) {
  StartDaemonWithoutSwitch();
  const std::string dir = setup.Dir().File("collectd");
  std::filesystem::create_directories(dir);
  std::string snippet = ReadFile(ARQ_COLLECTD_SNIPPET);
  const std::string address = setup.Master().Address();
  snippet.replace(snippet.find("\"localhost\""), 11,
                  "\"" + address.substr(address.find(':') + 1) + "\"");
  WriteFile(dir + "/orvovia-switch.conf", snippet);
  // Reads every 3 s: one read of the full-capacity switch (35 blocks, 114 and
  // 141 rows) takes about 2 s here; Debian's collectd reads every 10 s.
  WriteFile(dir + "/collectd.conf",
            "Interval 3\nBaseDir \"" + dir + "\"\nPIDFile \"" + dir + "/collectd.pid\"\n" +
                "TypesDB \"/usr/share/collectd/types.db\"\nLoadPlugin logfile\n<Plugin logfile>\n" +
                "  LogLevel info\n  PrintSeverity true\n  File \"" + dir +
                "/collectd.log\"\n</Plugin>\n" + "LoadPlugin csv\n<Plugin csv>\n  DataDir \"" +
                dir + "/csv\"\n  StoreRates true\n</Plugin>\n" + "Include \"" + dir +
                "/orvovia-switch.conf\"\n");
  ChildProcess collectd({"/usr/sbin/collectd", "-f", "-C", dir + "/collectd.conf"},
                        setup.Master().Environment(), dir + "/collectd.out");
  const std::string csv = dir + "/csv/orvovia-switch/snmp/";
  auto lines = [&](const std::string& prefix) {
    std::vector<std::string> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(csv, error)) {
      if (entry.path().filename().string().rfind(prefix, 0) != 0) continue;
      std::istringstream in(ReadFile(entry.path()));
      for (std::string line; std::getline(in, line);) found.push_back(line);
    }
    return found;
  };
  // Two reads while every row is without data, then three with the switch's.
  ASSERT_TRUE(WaitUntil([&] { return lines("gauge-collector_state-").size() >= 3; }, 20s));
  StartSwitch();
  ASSERT_TRUE(WaitUntil([&] { return lines("if_octets-1_1-").size() >= 5; }, 30s));
  collectd.Signal(SIGTERM);
  ASSERT_TRUE(collectd.WaitExit(10s).has_value());

  std::set<std::string> instances;
  for (const auto& entry : std::filesystem::directory_iterator(csv)) {
    const std::string name = entry.path().filename().string();
    instances.insert(name.substr(0, name.size() - std::string("-YYYY-MM-DD").size()));
  }
  std::set<std::string> expected;
  auto expect = [&](const std::string& prefix, int from, int to, const std::string& type) {
    for (int i = from; i <= to; ++i) expected.insert(type + prefix + std::to_string(i));
  };
  for (const std::string type :
       {"if_octets-", "if_packets-", "if_errors-", "if_dropped-", "gauge-oper_status-"}) {
    expect("1_", 1, 48, type), expect("2_", 1, 48, type), expect("3_", 1, 18, type);
    expect("lag", 1, 3, type), expect("prs", 1, 24, type);
  }
  expect("prs", 1, 24, "gauge-prs_port_a_state-"), expect("prs", 1, 24, "gauge-prs_port_b_state-");
  expect("3_", 1, 6, "gauge-lag1_port_state-"), expect("3_", 7, 12, "gauge-lag2_port_state-");
  expect("3_", 13, 18, "gauge-lag3_port_state-"), expect("", 0, 4, "gauge-ptp_clock_mode-");
  for (const char* call : Arq::OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallNames) {
    expected.insert(std::string("derive-call_failures-") + call);
  }
  expect("", 1, 75, "gauge-pvid-");
  expect("1_", 1, 20, "gauge-ptp_port_role-");
  expected.insert({"gauge-collector_state", "gauge-collector_consecutive_failures",
                   "derive-collector_collections", "gauge-config_state"});
  for (const auto& table : Arq::Snmp::Standard::PortCounterTables()) {
    for (const auto& column : table.columns) {
      if (column.use != Arq::Snmp::Standard::ColumnUse::Export) continue;
      const std::string type = (column.Counter() ? "derive-" : "gauge-") + std::string(column.name);
      expect("1_", 1, 48, type + "-"), expect("2_", 1, 48, type + "-"),
          expect("3_", 1, 18, type + "-");
    }
  }
  EXPECT_EQ(instances, expected);
  // The ports' duplex (full, 3) and error counters (rates 0) as collected.
  for (const std::string instance :
       {"gauge-dot3StatsDuplexStatus-2_48-", "derive-dot3HCStatsFCSErrors-1_1-"}) {
    std::set<std::string> values;
    for (const auto& line : lines(instance)) {
      if (line.find(',') != std::string::npos && line[0] != 'e' &&
          line.find("nan") == std::string::npos)
        values.insert(line.substr(line.find(',') + 1));
    }
    EXPECT_EQ(values, (std::set<std::string>{instance[0] == 'g' ? "3.000000" : "0.000000"}))
        << instance;
  }

  // Mean of the received and sent rates against the simulator's bytes per second.
  for (const auto& [port, rx, tx] : std::vector<std::tuple<std::string, double, double>>{
           {"1_1", 1e7, 1.25e7}, {"3_1", 2e8, 2.5e8}}) {
    double sums[2] = {0, 0};
    int count = 0;
    for (const auto& line : lines("if_octets-" + port + "-")) {
      double epoch, rates[2];
      if (std::sscanf(line.c_str(), "%lf,%lf,%lf", &epoch, &rates[0], &rates[1]) != 3 ||
          std::isnan(rates[0]))
        continue;
      sums[0] += rates[0], sums[1] += rates[1], ++count;
    }
    ASSERT_GE(count, 3) << port;
    EXPECT_NEAR(sums[0] / count, rx, rx / 2) << port;
    EXPECT_NEAR(sums[1] / count, tx, tx / 2) << port;
  }
  // Up to the stop: values of the read in flight at SIGTERM may be dropped.
  // A read slower than its interval (a sanitizer build on a loaded machine)
  // is the machine's speed, not a fault of what is read: its warning is left out.
  const std::string whole = std::regex_replace(
      ReadFile(dir + "/collectd.log"),
      std::regex(R"([^\n]*\[warning\] plugin_read_thread: read-function [^\n]* took [0-9.]+ )"
                 R"(seconds, which is above its read interval[^\n]*\n)"),
      "");
  const std::string log = whole.substr(0, whole.find("Exiting normally"));
  EXPECT_THAT(log, testing::HasSubstr("[info] Initialization complete"));
  EXPECT_THAT(log, testing::Not(testing::HasSubstr("[warning]"))) << log;
  EXPECT_THAT(log, testing::Not(testing::HasSubstr("[error]"))) << log;
  // Two rows under one instance would show as values "too old".
  EXPECT_THAT(log, testing::Not(testing::HasSubstr("[notice]"))) << log;
}

}  // namespace
