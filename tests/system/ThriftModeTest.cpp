#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <mutex>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "Arq/OrvoViaSwitchService/Simulator/LoopbackAcceptor.h"
#include "Daemon.h"
#include "Standard/Views/PortCounterTables.h"

#ifdef ARQ_SIMULATOR_PATH

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::RunCommand;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;
using Map = std::map<std::string, std::string>;
using testing::HasSubstr;
using namespace std::chrono_literals;

// Under AddressSanitizer or ThreadSanitizer (the asan and tsan presets) the
// daemon runs several times slower and its resident set carries the
// sanitizer's shadow memory: waits get longer, and the resident-set bound,
// a figure of the Release build, is not checked.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

std::string BigEndian32(std::uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
          static_cast<char>(value >> 8), static_cast<char>(value)};
}

// A peer on the switch's port that is no Thrift server: it reads each request
// and answers with whatever `Answer` builds from the called method's name
// (without its service) and sequence number, then closes. An empty answer
// holds the call, as a hung switch does, until the daemon lets it go.
class HostilePeer {
 public:
  using Reply = std::function<std::string(const std::string& method, std::uint32_t sequence)>;
  explicit HostilePeer(int port) : acceptor_(port, [this](int connection) { Serve(connection); }) {}
  void Answer(Reply reply) {
    std::lock_guard<std::mutex> lock(mutex_);
    reply_ = std::move(reply);
  }
  int Answered() const { return answered_; }
  int Holding() const { return holding_; }

 private:
  void Serve(int connection) {
    const timeval second{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &second, sizeof second);
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &second, sizeof second);
    // Version word, name length, "Service:Method", sequence number.
    char request[512];
    const ssize_t got = read(connection, request, sizeof request);
    std::string method;
    std::uint32_t sequence = 0;
    if (got >= 8) {
      const std::string bytes(request, static_cast<std::size_t>(got));
      const auto length = static_cast<std::size_t>((static_cast<std::uint8_t>(bytes[6]) << 8) |
                                                   static_cast<std::uint8_t>(bytes[7]));
      if (8 + length + 4 <= bytes.size()) {
        const std::string name = bytes.substr(8, length);
        method = name.substr(name.find(':') + 1);
        for (int i = 0; i < 4; ++i) {
          sequence = (sequence << 8) | static_cast<std::uint8_t>(bytes[8 + length + i]);
        }
      }
    }
    std::string reply;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (reply_) reply = reply_(method, sequence);
    }
    if (reply.empty()) {
      ++holding_;
      while (acceptor_.WaitReadable(connection) && read(connection, request, sizeof request) > 0) {
      }
    }
    (void)!send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    ++answered_;
  }

  std::mutex mutex_;
  Reply reply_;
  std::atomic<int> answered_{0};
  std::atomic<int> holding_{0};
  Arq::OrvoViaSwitchService::Simulator::LoopbackAcceptor acceptor_;
};

// The daemon in Thrift mode against the simulator on a fixed port above
// 32767 (a TCP port is 1 to 65535 to an operator), so that the simulator can
// be started late or restarted.
class ThriftModeTest : public testing::Test {
 protected:
  // `scenario`: a file of etc/simulator (or an absolute path), or empty for
  // the synthetic 24-port switch.
  void StartSimulator(const std::string& scenario = std::string()) {
    std::vector<std::string> command{ARQ_SIMULATOR_PATH, "--port", std::to_string(port),
                                     "--control-port", std::to_string(controlPort)};
    if (!scenario.empty()) {
      command.insert(command.end(),
                     {"--scenario", scenario[0] == '/' ? scenario
                                                       : std::string(ARQ_SOURCE_DIR) +
                                                             "/etc/simulator/" + scenario});
    }
    auto started = Arq::TestSupport::StartSimulator(command, setup.Dir().File("simulator.out"));
    simulator = std::move(started.process);
    ASSERT_EQ(started.port, port);
  }
  void StopSimulator() {
    simulator->Signal(SIGKILL);
    simulator->WaitExit(10s);
    simulator.reset();
  }
  // `extra` words come last and override the earlier ones; without a receive
  // time-out the daemon uses its default one (60 s).
  void StartDaemon(const std::vector<std::string>& extra = {"remote_ms_receive_timeout:2000"},
                   const Map& environment = {}) {
    std::vector<std::string> arguments{"monitoring_processor_mode:Thrift",
                                       "remote_ip_address:127.0.0.1",
                                       "remote_port_number:" + std::to_string(port),
                                       "remote_ms_connection_timeout:500",
                                       "collect_metrics_period:1",
                                       "log_level:Warning"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    setup.StartDaemon(arguments, environment);
  }
  // One line to the simulator's control port; its one-line answer.
  std::string Control(const std::string& line) {
    return Arq::TestSupport::SendLine(controlPort, line);
  }
  void ExpectGets(const Map& expected) {
    for (const auto& [arcs, value] : expected) EXPECT_EQ(setup.Get(arcs), value) << arcs;
  }
  // The cells of a numeric walk, keyed by the identifier after `table`.
  Map Walk(const std::string& table) {
    Map cells;
    for (const auto& [oid, value] : setup.Master().Walk(table)) {
      if (oid.size() > table.size()) cells[oid.substr(table.size() + 1)] = value;
    }
    return cells;
  }

  // Every served column of each port table of PortCounterObjects.def has a
  // cell for every port row of IF-MIB (a MAC address where the switch gives
  // one): no broken or missing row. RMON's rows are numbered on their own, and
  // the data source of exactly one row names each port.
  void ExpectWholePortRows() {
    std::set<std::string> ports, rmonRows, sources;
    for (const auto& [index, type] : Walk("1.3.6.1.2.1.2.2.1.3")) {
      if (type == "INTEGER: 6") ports.insert(index);
    }
    const auto rows = Walk("1.3.6.1.2.1.16.1.1.1.2");
    for (const auto& [row, source] : rows) {
      rmonRows.insert(row);
      sources.insert(source.substr(source.rfind('.') + 1));
    }
    EXPECT_EQ(sources, ports);
    EXPECT_EQ(rows.size(), ports.size());
    for (const auto& table : Arq::Snmp::Standard::PortCounterTables()) {
      const std::string name = table.name, entry = table.Oid(table.columns.front());
      if (name.rfind("ether", 0) != 0 && name != "dot3StatsTable" && name != "dot3HCStatsTable" &&
          name != "dot3PauseTable" && name != "dot3adAggPortTable")
        continue;
      std::map<std::string, std::set<std::string>> columns;
      for (const auto& [cell, value] : Walk(entry.substr(0, entry.rfind('.')))) {
        columns[cell.substr(0, cell.find('.'))].insert(cell.substr(cell.find('.') + 1));
      }
      for (const auto& column : table.columns) {
        const std::string syntax = column.syntax;
        if (column.use == Arq::Snmp::Standard::ColumnUse::Absent || syntax == "MacAddress")
          continue;
        EXPECT_EQ(columns[std::to_string(column.number)], name[0] == 'e' ? rmonRows : ports)
            << column.name;
      }
    }
  }

  // Two reads of one port's counters, each in one request (one collection):
  // FCS errors grow 1000 a second, pause frames 2000, octets at 8000 bit/s.
  void ExpectGrowthByTheRates() {
    const auto read = [&] {
      std::vector<std::uint64_t> values;
      const auto result =
          setup.Master().Tool("snmpget", {"-Oqv"},
                              {"1.3.6.1.2.1.10.7.11.1.2.1001", "1.3.6.1.2.1.10.7.10.1.5.1001",
                               "1.3.6.1.2.1.16.1.7.1.4.1001"});
      std::istringstream lines(result.output);
      for (std::uint64_t value = 0; lines >> value;) values.push_back(value);
      return values;
    };
    const auto first = read();
    ASSERT_EQ(first.size(), 3u);
    std::vector<std::uint64_t> second;
    ASSERT_TRUE(
        WaitUntil([&] { return (second = read()).size() == 3 && second[0] != first[0]; }, 10s));
    const std::uint64_t fcs = second[0] - first[0];
    EXPECT_GT(fcs, 0u);
    EXPECT_EQ(second[1] - first[1], 2 * fcs);
    EXPECT_EQ(second[2] - first[2], fcs);
  }

  DaemonSetup setup;
  int port = Arq::TestSupport::FreeHighTcpPort();
  int controlPort = Arq::TestSupport::FreeTcpPort();
  std::unique_ptr<ChildProcess> simulator;
};

// One daemon through the life of its switch: down at start, up, one call
// failing, one call late, every call failing for less than the debounce (3
// collections), the switch killed and back, a port down and up, collection
// paused and resumed. The collector's health group (arc 8) follows each step,
// and the master's trap sink gets one unreachable and one recovery per
// outage, and linkDown/linkUp with the port's ifIndex.
TEST_F(ThriftModeTest, CollectorFollowsTheSwitchThroughOutagesFaultsAndOptions) {
  const int trapPort = Arq::TestSupport::FreeUdpPort();
  const std::string traps = setup.Dir().File("traps.log");
  WriteFile(setup.Dir().File("snmptrapd.conf"), "disableAuthorization yes\n");
  ChildProcess trapd(
      {"snmptrapd", "-f", "-On", "-Lf", traps, "-C", "-c", setup.Dir().File("snmptrapd.conf"), "-p",
       setup.Dir().File("snmptrapd.pid"), "udp:127.0.0.1:" + std::to_string(trapPort)},
      setup.Master().Environment(), setup.Dir().File("snmptrapd.out"));
  ASSERT_TRUE(
      WaitUntil([&] { return ReadFile(traps).find("NET-SNMP") != std::string::npos; }, 10s));
  setup.Master().Stop();
  setup.Master().AppendConfig("trap2sink udp:127.0.0.1:" + std::to_string(trapPort) + " public\n");
  ASSERT_TRUE(setup.Master().Start());
  // A trap's varbinds may share its line: "OID: <oid>" ends with a newline or a tab.
  const auto count = [&](const std::string& oid) {
    const std::string log = ReadFile(traps);
    const std::regex text("OID: " + oid + "[\n\t]");
    return std::distance(std::sregex_iterator(log.begin(), log.end(), text), {});
  };
  const std::string unreachable = "." + Arq::SystemTests::Base() + ".8.0.1";
  const std::string recovered = "." + Arq::SystemTests::Base() + ".8.0.2";
  const std::string linkDown = ".1.3.6.1.6.3.1.1.5.3";
  const std::string linkUp = ".1.3.6.1.6.3.1.1.5.4";
  const auto now = [] {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  };
  const auto seconds = [&](const std::string& arcs) {
    const std::string value = setup.Get(arcs);
    return value.rfind("Gauge32: ", 0) == 0 ? std::stoll(value.substr(9)) : -1LL;
  };

  // Before the first collection (one period after start).
  const long long started = now();
  StartDaemon({"remote_ms_receive_timeout:2000", "collect_metrics_period:30"});
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 5", 10s)) << setup.Stderr();
  // clang-format off
  ExpectGets({{"8.2.0", "Gauge32: 0"}, {"8.3.0", "Gauge32: 0"}, {"8.4.0", "Gauge32: 0"},
              {"8.5.0", "Counter32: 0"}, {"8.6.0", "Gauge32: 0"}, {"8.7.0", "INTEGER: 1"},
              {"8.8.0", "INTEGER: 30"}, {"8.9.0", "INTEGER: 40"}, {"8.10.0", "\"\""},
              {"8.11.0", "STRING: \"2.2.23\""}, {"8.13.1.3.1", "INTEGER: 7"},
              {"8.13.1.4.1", "Counter32: 0"}, {"8.13.1.2.1", "STRING: \"Interfaces:GetIfList\""},
              {"8.13.1.2.10", "STRING: \"Config:GetCurrentConfig\""}});
  // clang-format on
  EXPECT_GE(seconds("8.12.0"), started);
  EXPECT_LE(seconds("8.12.0"), now());

  // The options file shortens the period: the collector wakes and finds no
  // switch; after three such collections, one unreachable notification.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":1}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s));
  ExpectGets({{"8.8.0", "INTEGER: 1"}, {"8.13.1.3.1", "INTEGER: 4"}, {"1.1.0", "Counter32: 0"}});
  EXPECT_THAT(setup.Get("8.10.0"), HasSubstr("Connection refused"));
  EXPECT_THAT(setup.Stderr(), HasSubstr("Connection refused"));
  ASSERT_TRUE(WaitUntil([&] { return count(unreachable) == 1; }, 15s)) << ReadFile(traps);
  EXPECT_THAT(ReadFile(traps), HasSubstr("." + Arq::SystemTests::Base() + ".8.1.0 = INTEGER: 3"));

  // The switch comes up: ok, one recovery, its data in every table.
  StartSimulator();
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 10s)) << setup.Stderr();
  // clang-format off
  // 1.2.1.8: the speed, 10G coded plus one; 3.2.1.3: 1 is IEEE.
  ExpectGets({{"2.1.0", "Counter32: 2"}, {"3.1.0", "Counter32: 2"}, {"5.1.0", "Counter32: 6"},
              {"7.1.0", "Counter32: 2"}, {"1.2.1.2.15", "STRING: \"eth16\""},
              {"1.2.1.8.0", "INTEGER: 2"}, {"3.2.1.3.0", "INTEGER: 1"},
              {"2.2.1.6.0", "STRING: \"eth17\""}, {"4.2.0", "STRING: \"Arq OrvoVia-24 media\""},
              {"4.6.0", "STRING: \"SN OV24-0000001\""},
              {"6.1.0", "STRING: \"studio-b-2026-11.cfg\""},
              {"5.2.1.6.3", "STRING: \"8c:1f:64:52:0b:03\""},
              {"5.2.1.8.3", "STRING: \"8c:1f:64:52:0b:04\""}, {"7.3.1.0", "STRING: \"lag2\""},
              {"7.3.6.1.2.1", "STRING: \"eth24\""}, {"8.1.0", "INTEGER: 1"},
              {"8.6.0", "Gauge32: 0"}, {"8.13.1.3.8", "INTEGER: 1"}});
  // clang-format on
  EXPECT_GE(seconds("8.3.0"), started);
  EXPECT_LE(seconds("8.3.0"), now());
  ASSERT_TRUE(WaitUntil([&] { return count(recovered) == 1; }, 10s)) << ReadFile(traps);

  // One call answers with the service's fault: partial, and its row says why;
  // only that call's failure count grows.
  const std::string failures7 = setup.Get("8.13.1.4.7"), failures8 = setup.Get("8.13.1.4.8");
  EXPECT_EQ(Control("only LLDP:GetInfo"), "ok");
  EXPECT_EQ(Control("fault 3 neighbour table locked"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 2", 10s));
  // clang-format off
  ExpectGets({{"8.13.1.2.8", "STRING: \"LLDP:GetInfo\""}, {"8.13.1.3.8", "INTEGER: 2"},
              {"8.13.1.5.8", "STRING: \"neighbour table locked\""}, {"8.13.1.3.7", "INTEGER: 1"},
              {"8.13.1.4.7", failures7}, {"8.10.0", "STRING: \"neighbour table locked\""}});
  // clang-format on
  EXPECT_NE(setup.Get("8.13.1.4.8"), failures8);
  EXPECT_NE(setup.Get("8.6.0"), "Gauge32: 0");

  // A reply later than the receive time-out: timeout.
  EXPECT_EQ(Control("answer"), "ok");
  EXPECT_EQ(Control("only PTP:GetConfig"), "ok");
  EXPECT_EQ(Control("delay 3000"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.13.1.3.9", "INTEGER: 3", 15s));
  EXPECT_EQ(setup.Get("8.13.1.2.9"), "STRING: \"PTP:GetConfig\"");
  EXPECT_THAT(setup.Get("8.13.1.5.9"), HasSubstr("timed out"));

  // Every call failing for a collection or two: below the debounce, no notification.
  EXPECT_EQ(Control("answer"), "ok");
  EXPECT_EQ(Control("fault 1 busy"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s));
  EXPECT_EQ(Control("answer"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));

  // The switch killed: every call refused, no interfaces published, one more
  // unreachable; back, counting from zero again, and one more recovery.
  // Meanwhile IF-MIB keeps every row with its state unknown and its counters
  // frozen, so that a manager does not take the ports for deleted.
  const std::string counter = setup.Get("1.2.1.10.2");
  const std::string ifInOctets = "1.3.6.1.2.1.2.2.1.10";
  StopSimulator();
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s));
  EXPECT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 0", 10s));
  ExpectGets({{"1.2.1.2.0", "\"\""}, {"6.2.0", "INTEGER: -1"}, {"8.13.1.3.1", "INTEGER: 4"}});
  const Map frozen = Walk(ifInOctets);
  const Map states = Walk("1.3.6.1.2.1.2.2.1.8");
  EXPECT_EQ(states.size(), frozen.size());
  EXPECT_GT(states.size(), 20u);
  for (const auto& [row, state] : states) EXPECT_EQ(state, "INTEGER: 4") << row;
  EXPECT_LT(seconds("8.3.0"), seconds("8.2.0"));
  ASSERT_TRUE(WaitUntil([&] { return count(unreachable) == 2; }, 15s)) << ReadFile(traps);
  const std::string collections = setup.Get("8.5.0");
  ASSERT_TRUE(WaitUntil([&] { return setup.Get("8.5.0") != collections; }, 10s));
  EXPECT_EQ(Walk(ifInOctets), frozen);  // a later collection: the counters stay
  StartSimulator();
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));
  EXPECT_TRUE(WaitUntil([&] { return setup.Get("1.2.1.10.2") != counter; }, 10s));
  ASSERT_TRUE(WaitUntil([&] { return count(recovered) == 2; }, 10s)) << ReadFile(traps);

  // A port goes down, then up: the port's own ifIndex in each notification.
  std::string index;
  for (const auto& [name, value] : Walk("1.3.6.1.2.1.31.1.1.1.1")) {
    if (value == "STRING: \"eth3\"") index = name;
  }
  ASSERT_FALSE(index.empty());
  ASSERT_EQ(setup.Master().Get("1.3.6.1.2.1.2.2.1.8." + index), "INTEGER: 1");
  EXPECT_EQ(count(linkDown) + count(linkUp), 0);
  EXPECT_EQ(Control("port eth3 down"), "ok");
  ASSERT_TRUE(WaitUntil([&] { return count(linkDown) == 1; }, 10s)) << ReadFile(traps);
  EXPECT_EQ(Control("port eth3 up"), "ok");
  ASSERT_TRUE(WaitUntil([&] { return count(linkUp) == 1; }, 10s)) << ReadFile(traps);
  const std::string log = ReadFile(traps);
  EXPECT_THAT(log, HasSubstr(".1.3.6.1.2.1.2.2.1.1." + index + " = INTEGER: " + index));
  EXPECT_THAT(log, HasSubstr(".1.3.6.1.2.1.2.2.1.8." + index + " = INTEGER: 2"));
  EXPECT_THAT(log, HasSubstr(".1.3.6.1.2.1.2.2.1.7." + index + " = INTEGER: 1"));

  // Collection and log level as the options file sets them.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false,"DebugLevel":"Info"}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 4", 10s));
  ExpectGets({{"8.7.0", "INTEGER: 2"}, {"8.9.0", "INTEGER: 30"}});
  EXPECT_THAT(setup.Stdout(), HasSubstr("Collect Metrics Transition from True to False"));
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));
  EXPECT_EQ(setup.Get("8.7.0"), "INTEGER: 1");
  EXPECT_EQ(count(unreachable), 2);
  EXPECT_EQ(count(recovered), 2);
  EXPECT_EQ(count(linkDown), 1);

  // Another switch, then the first again: the inventory changes twice, one
  // entConfigChange each (the second held to 5 s after the first); the
  // first inventory, outages and link changes sent none.
  const std::string configChange = ".1.3.6.1.2.1.47.2.0.1";
  const std::string lastChange = "1.3.6.1.2.1.47.1.4.1.0";
  EXPECT_EQ(count(configChange), 0);
  EXPECT_EQ(setup.Master().Get(lastChange), "Timeticks: (0) 0:00:00.00");
  StopSimulator();
  StartSimulator("small.json");
  ASSERT_TRUE(WaitUntil([&] { return count(configChange) == 1; }, 15s)) << ReadFile(traps);
  EXPECT_NE(setup.Master().Get(lastChange), "Timeticks: (0) 0:00:00.00");
  StopSimulator();
  StartSimulator();
  ASSERT_TRUE(WaitUntil([&] { return count(configChange) == 2; }, 15s)) << ReadFile(traps);
  EXPECT_TRUE(setup.Daemon().IsRunning());
  EXPECT_EQ(count(configChange), 2);
}

// One daemon restarted on switch after switch: the MIB's capacity filled to
// the last row of every table, and a 128-port switch whole in IF-MIB and
// LLDP-MIB; contradicting answers logged, with what can be served; LLDP-MIB
// neighbours decoded (raw TLVs included) without the columns of broken TLVs,
// texts cut to the MIB's sizes and an identifier SNMP cannot carry left out;
// ports whose names the ifIndex rule cannot place keep the index they were
// given first, across a restart in which one disappears and across a
// hostile index file.
TEST_F(ThriftModeTest, ScenariosFillTheMibsAcrossRestarts) {
  const std::string remTable = "1.0.8802.1.1.2.1.4.1.1";
  const std::string manAddrTable = "1.0.8802.1.1.2.1.4.2.1";
  const std::string ifNameTable = "1.3.6.1.2.1.31.1.1.1.1";
  Map full, fullManagement, spine, spineManagement, spineNames;
  // The spine switch's interface rows: 194 ports, 24 PRS and 3 LAG interfaces.
  for (int n = 1; n <= 128; ++n)
    spineNames[std::to_string(1000 + n)] = "STRING: \"1/" + std::to_string(n) + "\"";
  for (int n = 1; n <= 48; ++n)
    spineNames[std::to_string(2000 + n)] = "STRING: \"2/" + std::to_string(n) + "\"";
  for (int n = 1; n <= 18; ++n)
    spineNames[std::to_string(3000 + n)] = "STRING: \"3/" + std::to_string(n) + "\"";
  for (int n = 1; n <= 24; ++n)
    spineNames[std::to_string(200000 + n)] = "STRING: \"prs" + std::to_string(n) + "\"";
  for (int n = 1; n <= 3; ++n)
    spineNames[std::to_string(100000 + n)] = "STRING: \"lag" + std::to_string(n) + "\"";
  for (int n = 1; n <= 140; ++n) {
    const bool second = n > 48 && n <= 60;
    const int number = n <= 48 ? n : second ? n - 48 : n - 12;
    const std::string local = (second ? "2/" : "1/") + std::to_string(number);
    const std::string row =
        ".0." + std::to_string((second ? 2000 : 1000) + number) + "." + std::to_string(n);
    Map neighbour, management;
    char text[64];
    neighbour["4" + row] = "INTEGER: 4";  // macAddress
    std::snprintf(text, sizeof text, "Hex-STRING: 00 1B 21 00 %02X %02X ", n / 256, n % 256);
    neighbour["5" + row] = text;
    neighbour["6" + row] = "INTEGER: 5";  // interfaceName
    neighbour["7" + row] = "STRING: \"Ethernet1/" + std::to_string(n) + "\"";
    neighbour["8" + row] = "STRING: \"to orvo-sim-full " + local + "\"";
    std::snprintf(text, sizeof text, "STRING: \"peer-%02d\"", n);
    neighbour["9" + row] = text;
    std::snprintf(text, sizeof text, "STRING: \"PeerSwitch; SN-%04d; 1.0.%d\"", n, n);
    neighbour["10" + row] = text;
    neighbour["11" + row] = "STRING: \"(\"";  // bridge and router: 0x28
    neighbour["12" + row] = "STRING: \" \"";  // bridge: 0x20
    const std::string address = row + ".1.4.198.51.100." + std::to_string(n);
    management["3" + address] = "INTEGER: 2";  // ifIndex numbering
    management["4" + address] = "INTEGER: 0";
    management["5" + address] = "OID: .0.0";
    spine.insert(neighbour.begin(), neighbour.end());
    spineManagement.insert(management.begin(), management.end());
    if (n > 60) continue;
    full.insert(neighbour.begin(), neighbour.end());
    fullManagement.insert(management.begin(), management.end());
  }
  // Ports named outside the rule, and one raw LLDP neighbour: capabilities
  // beyond the first octet, an IPv6 management address with its interface
  // number and OID (1.3.6.1).
  const auto scenario = [&](const std::string& file, const std::vector<std::string>& names,
                            const std::string& lldp) {
    std::string interfaces, ports;
    for (const auto& name : names) {
      interfaces += std::string(interfaces.empty() ? "" : ",") + R"({"name":"if-)" + name +
                    R"(","type":"Ethernet","status":"Enabled","members":[")" + name + R"("]})";
      ports +=
          std::string(ports.empty() ? "" : ",") + R"({"name":")" + name + R"(","state":"LinkUp"})";
    }
    WriteFile(setup.Dir().File(file),
              R"({"interfaces":[)" + interfaces + R"(],"ports":[)" + ports + "]" + lldp + "}");
    return setup.Dir().File(file);
  };
  const std::string raw =
      scenario("raw.json", {"xe-a", "xe-b", "1/5"},
               R"(,"lldp":{"neighbours":[{"interface":"1/3","chassisId":)"
               R"({"subtype":"MacAddress","id":"00:1b:21:00:00:09"},"raw":{"7":"0e04 0214 0004",)"
               R"("8":"101b 11 02 20010db8000000000000000000000001 03 00000007 03 2b0601"}}]})");
  const std::string v6 = ".0.1003.1.2.16.32.1.13.184.0.0.0.0.0.0.0.0.0.0.0.1";
  // A neighbour's content chosen to hurt: a port description and a system
  // name of 511 bytes (the MIB's size is 255), and a management address whose
  // interface OID has 201 arcs (SNMP carries 128).
  const auto tlv = [](int type, const std::string& valueHex) {
    const std::size_t length = valueHex.size() / 2;
    char header[16];
    std::snprintf(header, sizeof header, "%02x%02x", static_cast<unsigned>(type << 1 | length >> 8),
                  static_cast<unsigned>(length & 0xff));
    return header + valueHex;
  };
  std::string longOid = "2b";
  for (int arc = 0; arc < 199; ++arc) longOid += "01";
  const std::string hostile =
      scenario("hostile.json", {"xe-a", "xe-b", "xe-c"},
               R"(,"lldp":{"neighbours":[{"interface":"xe-a","chassisId":)"
               R"({"subtype":"MacAddress","id":"00:1b:21:00:00:0a"},"raw":{"4":")" +
                   tlv(4, std::string(1022, '6')) + R"(","5":")" + tlv(5, std::string(1022, '6')) +
                   R"(","8":")" +
                   tlv(8,
                       "05010a000001"
                       "02"
                       "00000007"
                       "c8" +
                           longOid) +
                   R"("}}]})");
  const std::string hostileRow = ".0.1000001.1";
  // Counters beyond 32 bits and growing 1000 and 2000 a second, octets at
  // 8000 bit/s (1000 a second); 1/1 SGMII having sent half-duplex frames; a
  // LAG with one port down; the management address on eth1.
  WriteFile(setup.Dir().File("counters.json"), R"({"mainMacAddress":"02:A0:C9:00:00:01",
    "interfaces":[{"name":"eth1","type":"Ethernet","status":"Enabled","members":["1/1"],
                   "ip":{"address":"192.0.2.9"}},
                  {"name":"lag1","type":"BasicLag","status":"Enabled","members":["3/1","3/2"],
                   "macAddress":"02:A0:C9:00:00:31"}],
    "ports":[{"name":"1/1","mode":"SGMII","state":"LinkUp","rates":{"rx":8000},
              "counters":{"NbOfCrcErrorEvents":7,"NbOfValidFrameSentHalfDupWithCollision":3,
                          "NbOfGoodPackets1024toMaxBytes":5000000000},
              "growth":{"NbOfCrcErrorEvents":1000,"NbOfGoodFlowControlFrameReceived":2000}},
             {"name":"3/1","mode":"KR","state":"LinkUp"},{"name":"3/2","mode":"KR","state":"LinkDown"}],
    "lldp":{"local":{"managementIp":"192.0.2.9"}}})");
  const std::string dot3 = "1.3.6.1.2.1.10.7.", rmon = "1.3.6.1.2.1.16.1.";
  const std::string lag = "1.2.840.10006.300.43.1.", lldp = "1.0.8802.1.1.2.1.";
  struct Case {
    std::string scenario;
    Map gets;  // B.<arcs>
    Map neighbours, management, ifNames;
    std::vector<std::string> warnings;  // empty: no error at all in the log
    std::string ifIndexFile = {};       // written before the daemon starts, when set
    Map standard = {};                  // cells of the standard views, by full OID
  };
  const std::string entity = "1.3.6.1.2.1.47.1.", ptp = "1.3.6.1.2.1.241.1.";
  const std::string basePort = "1.3.6.1.2.1.17.1.4.1.2.";
  // clang-format off
  const Case cases[] = {
      {"full-capacity.json",
       {{"1.1.0", "Counter32: 48"}, {"2.1.0", "Counter32: 24"}, {"3.1.0", "Counter32: 5"},
        {"5.1.0", "Counter32: 60"}, {"7.1.0", "Counter32: 3"}, {"1.2.1.2.47", "STRING: \"eth48\""},
        {"2.2.1.2.23", "STRING: \"prs24\""}, {"3.2.1.2.4", "INTEGER: 4"},
        {"5.2.1.5.59", "STRING: \"peer-60\""}, {"5.2.1.6.59", "STRING: \"00:1b:21:00:00:3c\""},
        {"5.2.1.7.59", "IpAddress: 198.51.100.60"}, {"5.2.1.10.59", "INTEGER: 120"},
        {"7.4.1.0", "STRING: \"lag3\""}, {"7.4.6.1.2.5", "STRING: \"3/18\""}},
       full, fullManagement, {}, {}, {},
       {{dot3 + "2.1.19.1001", "INTEGER: 3"}, {rmon + "1.1.6.1001", "Counter32: 10"},
        {rmon + "1.1.7.1001", "Counter32: 20"}, {lag + "1.1.1.2.100001", "Hex-STRING: 02 A0 C9 20 01 2D "},
        {lag + "2.1.1.12.3001", "INTEGER: 100001"}, {lldp + "3.8.1.3.1.4.192.0.2.20", "INTEGER: 5"},
        {lldp + "2.2.0", "Gauge32: 60"} /* lldpStatsRemTablesInserts */,
        // Bridge ports numbered in ifIndex order at first sight: 1/1 is 1.
        {"1.3.6.1.2.1.17.1.2.0", "INTEGER: 75"}, {basePort + "1", "INTEGER: 1001"},
        {"1.3.6.1.2.1.17.7.1.4.5.1.1.1", "Gauge32: 101"},
        {entity + "1.1.1.7.1", "STRING: \"orvo-sim-full\""},
        {entity + "1.1.1.11.1", "STRING: \"SIM-0048\""},
        {entity + "1.1.1.4.1001", "INTEGER: 1000001001"},
        {entity + "3.2.1.2.1001.0", "OID: .1.3.6.1.2.1.2.2.1.1.1001"},
        {ptp + "1.2.1.2.1", "Gauge32: 2"}, {ptp + "1.2.1.2.3", "Gauge32: 1"},
        {ptp + "2.9.1.7.0.2.1.1", "INTEGER: 2"}, {ptp + "2.9.1.8.0.2.1.2", "INTEGER: 1002"}}},
      {setup.Dir().File("counters.json"), {}, {}, {}, {}, {}, {},
       {{dot3 + "2.1.19.1001", "INTEGER: 2"}, {rmon + "7.1.16.1001", "Counter64: 5000000000"},
        {lag + "2.1.1.13.3002", "INTEGER: 0"}, {lldp + "3.8.1.5.1.4.192.0.2.9", "INTEGER: 1001"}}},
      {raw, {},
       {{"4.0.1003.1", "INTEGER: 4"}, {"5.0.1003.1", "Hex-STRING: 00 1B 21 00 00 09 "},
        {"11.0.1003.1", "STRING: \"(@\""} /* bits 2, 4 and 9 */, {"12.0.1003.1", "STRING: \" \""}},
       {{"3" + v6, "INTEGER: 3"}, {"4" + v6, "INTEGER: 7"}, {"5" + v6, "OID: .1.3.6.1"}},
       {{"1005", "STRING: \"1/5\""}, {"1000000", "STRING: \"xe-a\""},
        {"1000001", "STRING: \"xe-b\""}},
       {}, "",
       {{basePort + "5", "INTEGER: 1005"}, {basePort + "77", "INTEGER: 1000001"}}},
      // xe-b keeps its bridge port across the restart; xe-new takes the next.
      {scenario("changed.json", {"xe-new", "xe-b"}, ""), {}, {}, {},
       {{"1000001", "STRING: \"xe-b\""}, {"1000002", "STRING: \"xe-new\""}}, {}, "",
       {{basePort + "77", "INTEGER: 1000001"}, {basePort + "78", "INTEGER: 1000002"}}},
      // Two names with one index (the first keeps it, the other is placed
      // again), a garbage line costing only itself, and a link at the file's
      // temporary name that the daemon must not follow.
      {hostile, {},
       {{"4" + hostileRow, "INTEGER: 4"}, {"5" + hostileRow, "Hex-STRING: 00 1B 21 00 00 0A "},
        {"8" + hostileRow, "STRING: \"" + std::string(255, 'f') + "\""},
        {"9" + hostileRow, "STRING: \"" + std::string(255, 'f') + "\""}},
       {{"3" + hostileRow + ".1.4.10.0.0.1", "INTEGER: 2"},
        {"4" + hostileRow + ".1.4.10.0.0.1", "INTEGER: 7"}},
       {{"1000000", "STRING: \"xe-b\""}, {"1000001", "STRING: \"xe-a\""},
        {"1000007", "STRING: \"xe-c\""}},
       {}, "1000000 xe-b\n1000000 xe-a\nnot an entry\n1000007 xe-c\n"},
      // A spine switch: every port in IF-MIB and every neighbour in LLDP-MIB,
      // beyond the private MIB's 48 and 60 rows.
      {"ports-128.json",
       {{"1.1.0", "Counter32: 128"}, {"1.2.1.2.47", "STRING: \"eth48\""},
        {"5.1.0", "Counter32: 140"}},
       spine, spineManagement, spineNames, {}, {},
       {{dot3 + "2.1.19.1128", "INTEGER: 3"}, {rmon + "1.1.7.1001", "Counter32: 20"},
        {lag + "2.1.1.12.3018", "INTEGER: 100003"}, {lag + "2.1.1.12.1128", "INTEGER: 0"},
        // Its new ports numbered after those of the switches before, 1/128 last.
        {"1.3.6.1.2.1.17.1.2.0", "INTEGER: 155"}, {basePort + "159", "INTEGER: 1128"},
        {entity + "1.1.1.4.1128", "INTEGER: 1000001128"},
        {entity + "3.2.1.2.1128.0", "OID: .1.3.6.1.2.1.2.2.1.1.1128"}}},
      // Every listed interface of a type counts; an inconsistent one is served
      // empty; a neighbour with a truncated chassis id has an empty name.
      {"inconsistent.json",
       {{"1.1.0", "Counter32: 7"}, {"1.2.1.2.0", "STRING: \"eth-ok\""}, {"1.2.1.2.1", "\"\""},
        {"2.1.0", "Counter32: 4"}, {"7.1.0", "Counter32: 3"}},
       {{"9.0.1001.1", "\"\""}, {"4.0.9099.2", "INTEGER: 6"}, {"5.0.9099.2", "STRING: \"mgmt0\""},
        {"6.0.9099.2", "INTEGER: 7"}, {"7.0.9099.2", "STRING: \"port-7\""},
        {"9.0.9099.2", "STRING: \"not-on-this-switch\""}},
       {}, {},
       // The converters' warnings reach the log (ScenarioServingTest has them all).
       {"Inconsistent Number of Ethernet (6/7) for Interface Name: lag-seven"}},
  };
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scenario);
    if (simulator) {
      StopSimulator();
      setup.StopDaemon(SIGTERM, 10s);
    }
    const auto logStart = setup.Stderr().size();
    const std::string victim = setup.Dir().File("victim");
    if (!c.ifIndexFile.empty()) {
      const std::string file = setup.Master().Dir() + "/persist/orvovia-ifindex.conf";
      WriteFile(file, c.ifIndexFile);
      WriteFile(victim, "not the daemon's\n");
      ASSERT_EQ(symlink(victim.c_str(), (file + ".new").c_str()), 0);
    }
    StartSimulator(c.scenario);
    StartDaemon();
    const auto matches = [&] {
      return Walk(remTable) == c.neighbours && Walk(manAddrTable) == c.management &&
             (c.ifNames.empty() || Walk(ifNameTable) == c.ifNames) &&
             (c.gets.empty() || setup.Get(c.gets.begin()->first) == c.gets.begin()->second) &&
             (c.standard.empty() ||
              setup.Master().Get(c.standard.begin()->first) == c.standard.begin()->second);
    };
    EXPECT_TRUE(WaitUntil(matches, 15s));
    ExpectGets(c.gets);
    EXPECT_EQ(Walk(remTable), c.neighbours);
    EXPECT_EQ(Walk(manAddrTable), c.management);
    if (!c.ifNames.empty()) {
      EXPECT_EQ(Walk(ifNameTable), c.ifNames);
    }
    const std::string log = setup.Stderr().substr(logStart);
    if (c.warnings.empty()) {
      EXPECT_THAT(log, testing::Not(HasSubstr("Error: ")));
    }
    for (const auto& warning : c.warnings) EXPECT_THAT(log, HasSubstr(warning));
    if (!c.ifIndexFile.empty()) {
      EXPECT_EQ(ReadFile(victim), "not the daemon's\n");
    }
    if (c.scenario == "ports-128.json") {
      // One request reads one collection: in every answer lag1's octets are
      // the sum of its six ports', while the counters grow between answers.
      std::vector<std::string> oids{"1.3.6.1.2.1.31.1.1.1.6.100001"};
      for (int p = 3001; p <= 3006; ++p)
        oids.push_back("1.3.6.1.2.1.31.1.1.1.6." + std::to_string(p));
      std::set<std::uint64_t> seen;
      for (int round = 0; round < 15; ++round) {
        std::istringstream lines(setup.Master().Tool("snmpget", {}, oids).output);
        std::uint64_t lag = 0, ports = 0;
        int n = 0;
        for (std::string line; std::getline(lines, line); ++n) {
          (n == 0 ? lag : ports) += std::stoull(line.substr(line.rfind(' ') + 1));
        }
        EXPECT_EQ(n, 7);
        EXPECT_EQ(lag, ports);
        seen.insert(lag);
        std::this_thread::sleep_for(200ms);
      }
      EXPECT_GT(seen.size(), 1u);
    }
    for (const auto& [oid, value] : c.standard) EXPECT_EQ(setup.Master().Get(oid), value) << oid;
    ExpectWholePortRows();
    if (c.scenario.find("counters.json") != std::string::npos) ExpectGrowthByTheRates();
    EXPECT_TRUE(setup.Daemon().IsRunning());
  }
  // The inconsistent scenario's PTP domains have clock modes the interface
  // does not define (one of them on UDP, that the conversion's 0 would make a
  // transparent clock): no row.
  EXPECT_EQ(Walk(ptp.substr(0, ptp.size() - 1)), Map{});
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.3.0"), "STRING: \"orvo-sim-inconsistent\"");
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.1.0"), "INTEGER: 4");  // main MAC address
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.7.1.3.1001"), "STRING: \"1/1\"");
}

// A switch whose ports are not named <slot>/<port> (ifIndex values from
// 1000000 on): every port still has its RMON and HC-RMON row, numbered in
// ifIndex order from 1, with its ifIndex as data source, and the same number
// as LAG actor port.
TEST_F(ThriftModeTest, PortsNamedOutsideTheRuleHaveRmonRowsAndActorPorts) {
  StartSimulator("ge-ports.json");
  const std::string metrics = "127.0.0.1:" + std::to_string(Arq::TestSupport::FreeTcpPort());
  StartDaemon({"remote_ms_receive_timeout:2000"}, {{"ORVOVIA_METRICS_ADDRESS", metrics}});
  const std::string source = "1.3.6.1.2.1.16.1.1.1.2", hcPkts = "1.3.6.1.2.1.16.1.7.1.2";
  const std::string actor = "1.2.840.10006.300.43.1.2.1.1.14";
  // ifIndex by first sight: the Ethernet interfaces' ports, prs1's, then ae0
  // and its ports; port numbers in ifIndex order.
  const std::vector<std::pair<long, const char*>> ports{
      {1000000, "ge-0/0/1"}, {1000001, "ge-0/0/2"}, {1000002, "ge-0/0/3"}, {1000003, "ge-0/0/4"},
      {1000004, "ge-0/0/5"}, {1000005, "ge-0/0/6"}, {1000006, "ge-0/0/9"}, {1000007, "ge-0/0/10"},
      {1000009, "ge-0/0/7"}, {1000010, "ge-0/0/8"}};
  Map sources, actors, names;
  std::set<std::string> rows;
  for (std::size_t n = 0; n < ports.size(); ++n) {
    const std::string ifIndex = std::to_string(ports[n].first), row = std::to_string(n + 1);
    sources[row] = "OID: .1.3.6.1.2.1.2.2.1.1." + ifIndex;
    actors[ifIndex] = "INTEGER: " + row;
    names[ifIndex] = std::string("STRING: \"") + ports[n].second + "\"";
    rows.insert(row);
  }
  names["1000008"] = "STRING: \"ae0\"";
  names["200001"] = "STRING: \"prs1\"";
  ASSERT_TRUE(WaitUntil([&] { return Walk(source) == sources; }, 15s)) << Walk(source).size();
  EXPECT_EQ(Walk("1.3.6.1.2.1.31.1.1.1.1"), names);
  EXPECT_EQ(Walk(actor), actors);
  std::set<std::string> hcRows;
  for (const auto& [row, value] : Walk(hcPkts)) hcRows.insert(row);
  EXPECT_EQ(hcRows, rows);
  // ae0's members ge-0/0/7 and ge-0/0/8 as a PortList of actor ports 9 and 10.
  EXPECT_EQ(setup.Master().Get("1.2.840.10006.300.43.1.1.2.1.1.1000008"), "Hex-STRING: 00 C0 ");
  EXPECT_EQ(setup.Master().Get("1.2.840.10006.300.43.1.2.1.1.12.1000009"), "INTEGER: 1000008");
  // ge-0/0/1's broadcast frames.
  EXPECT_EQ(setup.Master().Get("1.3.6.1.2.1.16.1.1.1.6.1"), "Counter32: 1");
  ExpectWholePortRows();
  // The Prometheus endpoint labels each port with the ifIndex IF-MIB serves.
  const std::string scrape =
      RunCommand({"curl", "-sS", "--max-time", "5", "http://" + metrics + "/metrics"}, {}, 10s)
          .output;
  for (const auto& [ifIndex, name] : ports) {
    EXPECT_THAT(scrape, HasSubstr("orvovia_port_oper_status{ifIndex=\"" + std::to_string(ifIndex) +
                                  "\",ifName=\"" + name + "\""));
  }
}

// A peer that answers every call with bytes that are no proper reply never
// makes the daemon allocate what those bytes spell: each call fails with one
// error line and the peak resident set stays small. Then the peer holds a
// call, as a hung switch does: SIGTERM cuts it short, the rest of the
// collection is skipped, and the daemon ends at once (the receive time-out is
// the default 60 s), the end line last.
TEST_F(ThriftModeTest, HostileRepliesKeepThePeakSmallAndAHungCallNeverHoldsTheStop) {
  const std::string kVersionReply = BigEndian32(0x80010002u);
  const auto header = [&](const std::string& method, std::uint32_t sequence) {
    return kVersionReply + BigEndian32(static_cast<std::uint32_t>(method.size())) + method +
           BigEndian32(sequence);
  };
  const struct {
    const char* name;
    HostilePeer::Reply reply;
    const char* error;
  } patterns[] = {
      {"web server", [](auto&&...) { return std::string("HTTP/1.1 400 Bad Request\r\n\r\n"); },
       "Error: No version identifier"},
      {"0x7fffffff", [](auto&&...) { return BigEndian32(0x7fffffffu) + std::string(60, 'x'); },
       "Error: No version identifier"},
      {"version then text",
       [&](auto&&...) { return kVersionReply + "HTTP/1.1 400 Bad Request\r\n\r\n"; },
       "Error: TProtocolException: Exceeded size limit"},
      {"huge container count",
       [&](const std::string& method, std::uint32_t sequence) {
         // Field 0, a list of 2^31 - 1 records.
         return header(method, sequence) + std::string("\x0f\x00\x00\x0c", 4) +
                BigEndian32(0x7fffffffu);
       },
       "Error: TProtocolException: Exceeded size limit"},
      {"full containers of empty records",
       [&](const std::string& method, std::uint32_t sequence) {
         // Field 0, a map of 8 names to lists of 60000 records, every record
         // sent (one stop byte): 480 kB that a naive reader turns into 150 MB.
         std::string reply =
             header(method, sequence) + std::string("\x0d\x00\x00\x0b\x0f", 5) + BigEndian32(8);
         for (int i = 0; i < 8; ++i) {
           reply += BigEndian32(1) + std::string(1, static_cast<char>('a' + i)) +
                    std::string("\x0c", 1) + BigEndian32(60000) + std::string(60000, '\0');
         }
         return reply;
       },
       "Error: reply larger than 16 MiB once read"},
  };
  HostilePeer peer(port);
  // Collections back to back: every call meets each pattern within a moment.
  // At Info, the level that lets the SNMP library's stop line through.
  StartDaemon({"collect_metrics_period:0", "log_level:Info"});
  const std::string statusPath = "/proc/" + std::to_string(setup.Daemon().Pid());
  for (const auto& pattern : patterns) {
    SCOPED_TRACE(pattern.name);
    peer.Answer(pattern.reply);
    // Wait out any call begun under the previous pattern, then measure from here.
    const int first = peer.Answered() + 2;
    ASSERT_TRUE(WaitUntil([&] { return peer.Answered() >= first; }, 10s, 20ms));
    std::ofstream(statusPath + "/clear_refs") << "5";
    const auto errorsBefore = setup.Stderr().size();
    // Every one of the ten calls of a collection, at least once.
    ASSERT_TRUE(
        WaitUntil([&] { return peer.Answered() >= first + 12; }, kSanitized ? 40s : 10s, 20ms));
    const long peakKb = Arq::TestSupport::PeakResidentKb(setup.Daemon().Pid());
    std::cout << "peak resident set under \"" << pattern.name << "\": " << peakKb << " kB"
              << std::endl;
    EXPECT_GT(peakKb, 0);
    if (!kSanitized) {
      EXPECT_LT(peakKb, 64 * 1024);
    }
    EXPECT_TRUE(WaitUntil(
        [&] { return setup.Stderr().find(pattern.error, errorsBefore) != std::string::npos; }, 5s))
        << setup.Stderr().substr(errorsBefore, 600);
  }
  peer.Answer([](auto&&...) { return std::string(); });
  ASSERT_TRUE(WaitUntil([&] { return peer.Holding() > 0; }, 5s));
  setup.ExpectOrderlyStop(SIGTERM, 2s);
}

// A failing switch makes the SNMP library log every cycle; with a small size
// limit the redirected output is split again and again. The library's log
// must follow each split: no descriptor left on the backup or on a deleted
// file, both files near the limit, and each new file headed by the banners.
TEST_F(ThriftModeTest, SnmpLogFollowsEverySplitOfTheRedirectedOutput) {
  constexpr long kLimit = 2000;
  // What one split period (1 s) adds beyond the limit: a cycle or two of logs.
  constexpr long kPeriodOutput = 4000;
  StartSimulator();
  ASSERT_EQ(Control("fault 3 switch is broken"), "ok");
  const std::string file = setup.Dir().File("out.log");
  StartDaemon({"redirect_output:" + file, "redirect_output_split_period:1",
               "redirect_output_file_size:" + std::to_string(kLimit)});
  // A split gives the path a new inode (the file system may reuse an old number).
  ino_t current = 0;
  int splits = -1;
  ASSERT_TRUE(WaitUntil(
      [&] {
        struct stat status {};
        if (stat(file.c_str(), &status) == 0 && status.st_ino != current) {
          current = status.st_ino;
          ++splits;
        }
        return splits >= 3;
      },
      15s, 50ms))
      << splits;
  const std::regex head(
      "^-{96}\n-{33} Criticity threshold: Warning -{33}\n------ ARQ VANTELLIS --- "
      "OrvoViaSwitchWarden version 2\\.2\\.23 --- \\w{3} \\w{3} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d "
      "\\d{4} ------\n-{96}\n");
  EXPECT_TRUE(std::regex_search(ReadFile(file), head)) << ReadFile(file).substr(0, 400);
  // The library's own lines reach the newest file.
  EXPECT_TRUE(WaitUntil([&] { return ReadFile(file).find("Error: ") != std::string::npos; }, 5s))
      << ReadFile(file);
  const std::string fds = "/proc/" + std::to_string(setup.Daemon().Pid()) + "/fd";
  for (const auto& entry : std::filesystem::directory_iterator(fds)) {
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(entry.path(), error).string();
    EXPECT_EQ(target.find("(deleted)"), std::string::npos) << target;
    EXPECT_EQ(target.find(".bak"), std::string::npos) << target;
  }
  const auto backup = static_cast<long>(std::filesystem::file_size(file + ".bak"));
  EXPECT_GT(backup, kLimit);
  EXPECT_LT(backup, kLimit + kPeriodOutput);
  EXPECT_LT(static_cast<long>(std::filesystem::file_size(file)), kLimit + kPeriodOutput);
}

}  // namespace

#endif
