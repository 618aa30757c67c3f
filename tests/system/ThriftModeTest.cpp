#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <mutex>
#include <regex>
#include <sstream>
#include <thread>

#include "Arq/OrvoViaSwitchService/Simulator/LoopbackAcceptor.h"
#include "Daemon.h"

#ifdef ARQ_SIMULATOR_PATH

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::RunCommand;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;
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
// (without its service) and sequence number, then closes.
class HostilePeer {
 public:
  using Reply = std::function<std::string(const std::string& method, std::uint32_t sequence)>;
  explicit HostilePeer(int port) : acceptor_(port, [this](int connection) { Serve(connection); }) {}
  void Answer(Reply reply) {
    std::lock_guard<std::mutex> lock(mutex_);
    reply_ = std::move(reply);
  }
  int Answered() const { return answered_; }

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
    (void)!send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    ++answered_;
  }

  std::mutex mutex_;
  Reply reply_;
  std::atomic<int> answered_{0};
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
    simulator = std::make_unique<ChildProcess>(command, std::map<std::string, std::string>{},
                                               setup.Dir().File("simulator.out"));
    ASSERT_TRUE(WaitUntil(
        [&] {
          return ReadFile(setup.Dir().File("simulator.out"))
                     .find("listening on port " + std::to_string(port)) != std::string::npos;
        },
        10s));
  }
  void StopSimulator() {
    simulator->Signal(SIGKILL);
    simulator->WaitExit(10s);
    simulator.reset();
  }
  // `extra` words come last and override the earlier ones; without a receive
  // time-out the daemon uses its default one (60 s).
  void StartDaemon(const std::vector<std::string>& extra = {"remote_ms_receive_timeout:2000"}) {
    std::vector<std::string> arguments{"monitoring_processor_mode:Thrift",
                                       "remote_ip_address:127.0.0.1",
                                       "remote_port_number:" + std::to_string(port),
                                       "remote_ms_connection_timeout:500",
                                       "collect_metrics_period:1",
                                       "log_level:Warning"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    setup.StartDaemon(arguments);
  }
  // One line to the simulator's control port; its one-line answer.
  std::string Control(const std::string& line) {
    return Arq::TestSupport::SendLine(controlPort, line);
  }

  DaemonSetup setup;
  int port = Arq::TestSupport::FreeHighTcpPort();
  int controlPort = Arq::TestSupport::FreeTcpPort();
  std::unique_ptr<ChildProcess> simulator;
};

TEST_F(ThriftModeTest, SwitchDataReachesEveryTable) {
  StartSimulator();
  StartDaemon();
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 6s)) << setup.Stderr();
  EXPECT_EQ(setup.Get("2.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("3.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("5.1.0"), "Counter32: 6");
  EXPECT_EQ(setup.Get("7.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("1.2.1.2.15"), "STRING: \"eth16\"");
  EXPECT_EQ(setup.Get("1.2.1.8.0"), "INTEGER: 2");  // 10G, coded plus one
  EXPECT_EQ(setup.Get("2.2.1.6.0"), "STRING: \"eth17\"");
  EXPECT_EQ(setup.Get("3.2.1.3.0"), "INTEGER: 1");  // IEEE
  EXPECT_EQ(setup.Get("4.2.0"), "STRING: \"Arq OrvoVia-24 media\"");
  EXPECT_EQ(setup.Get("4.6.0"), "STRING: \"SN OV24-0000001\"");
  EXPECT_EQ(setup.Get("5.2.1.6.3"), "STRING: \"8c:1f:64:52:0b:03\"");
  EXPECT_EQ(setup.Get("5.2.1.8.3"), "STRING: \"8c:1f:64:52:0b:04\"");
  EXPECT_EQ(setup.Get("6.1.0"), "STRING: \"studio-b-2026-11.cfg\"");
  EXPECT_EQ(setup.Get("7.3.1.0"), "STRING: \"lag2\"");
  EXPECT_EQ(setup.Get("7.3.6.1.2.1"), "STRING: \"eth24\"");
}

// A switch at the MIB's capacity fills every row of every table, the last
// ones included.
TEST_F(ThriftModeTest, FullCapacitySwitchFillsTheLastRowOfEveryTable) {
  StartSimulator("full-capacity.json");
  StartDaemon();
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 48", 6s)) << setup.Stderr();
  EXPECT_EQ(setup.Get("2.1.0"), "Counter32: 24");
  EXPECT_EQ(setup.Get("3.1.0"), "Counter32: 5");
  EXPECT_EQ(setup.Get("5.1.0"), "Counter32: 60");
  EXPECT_EQ(setup.Get("7.1.0"), "Counter32: 3");
  EXPECT_EQ(setup.Get("1.2.1.2.47"), "STRING: \"eth48\"");
  EXPECT_EQ(setup.Get("2.2.1.2.23"), "STRING: \"prs24\"");
  EXPECT_EQ(setup.Get("3.2.1.2.4"), "INTEGER: 4");
  EXPECT_EQ(setup.Get("5.2.1.5.59"), "STRING: \"peer-60\"");
  EXPECT_EQ(setup.Get("5.2.1.6.59"), "STRING: \"00:1b:21:00:00:3c\"");
  EXPECT_EQ(setup.Get("5.2.1.7.59"), "IpAddress: 198.51.100.60");
  EXPECT_EQ(setup.Get("5.2.1.10.59"), "INTEGER: 120");
  EXPECT_EQ(setup.Get("7.4.1.0"), "STRING: \"lag3\"");
  EXPECT_EQ(setup.Get("7.4.6.1.2.5"), "STRING: \"3/18\"");
  EXPECT_THAT(setup.Stderr(), testing::Not(testing::HasSubstr("Error: ")));
}

// A switch whose answers contradict each other: the daemon logs each
// inconsistency, publishes the interfaces it can and keeps serving.
TEST_F(ThriftModeTest, InconsistentSwitchIsLoggedAndServedWhatCanBe) {
  StartSimulator("inconsistent.json");
  StartDaemon();
  ASSERT_TRUE(WaitUntil(
      [&] {
        return setup.Stderr().find("Duplicate Ethernet Name: 3/12 for Interface Name: lag-twice") !=
               std::string::npos;
      },
      10s))
      << setup.Stderr();
  const std::string log = setup.Stderr();
  for (const char* warning :
       {"Inconsistent Number of Ethernet (1/2) for Interface Name: eth-two-ports",
        "Missing Ethernet Info with Name: 1/4 for Interface Name: eth-no-info",
        "Missing Ethernet Counters with Name: 1/5 for Interface Name: eth-no-counters",
        "Missing Ethernet Stats with Name: 1/6 for Interface Name: eth-no-rates",
        "Inconsistent Number of Ethernet (2/3) for Interface Name: prs-three",
        "Inconsistent Number of Ethernet (6/7) for Interface Name: lag-seven"}) {
    EXPECT_THAT(log, testing::HasSubstr(warning));
  }
  EXPECT_TRUE(setup.Daemon().IsRunning());
  // Every listed interface of a type counts; an inconsistent one is served empty.
  EXPECT_EQ(setup.Get("1.1.0"), "Counter32: 7");
  EXPECT_EQ(setup.Get("1.2.1.2.0"), "STRING: \"eth-ok\"");
  EXPECT_EQ(setup.Get("1.2.1.2.1"), "\"\"");
  EXPECT_EQ(setup.Get("2.1.0"), "Counter32: 4");
  EXPECT_EQ(setup.Get("7.1.0"), "Counter32: 3");
}

TEST_F(ThriftModeTest, SwitchDownAtStartThenUpThenKilledAndBack) {
  StartDaemon();
  ASSERT_TRUE(WaitUntil([&] { return setup.Stderr().find("Error: ") != std::string::npos; }, 10s));
  EXPECT_EQ(setup.Get("1.1.0"), "Counter32: 0");
  EXPECT_THAT(setup.Stderr(), testing::HasSubstr("Connection refused"));

  StartSimulator();
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 10s));
  const std::string counter = setup.Get("1.2.1.10.2");

  StopSimulator();
  const auto errorsBefore = setup.Stderr().size();
  ASSERT_TRUE(WaitUntil([&] { return setup.Stderr().size() > errorsBefore; }, 10s));
  // The agent keeps answering; a collection whose every call failed publishes
  // what it got: no interfaces.
  EXPECT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 0", 10s));
  EXPECT_EQ(setup.Get("1.2.1.2.0"), "\"\"");
  EXPECT_EQ(setup.Get("6.2.0"), "INTEGER: -1");

  StartSimulator();
  // A restarted switch counts from zero again: a new value shows collection resumed.
  EXPECT_TRUE(WaitUntil([&] { return setup.Get("1.2.1.10.2") != counter; }, 10s));
  EXPECT_TRUE(setup.Daemon().IsRunning());
}

TEST_F(ThriftModeTest, OptionsFileStopsAndResumesTheCalls) {
  StartSimulator();
  StartDaemon();
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 6s));
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
  ASSERT_TRUE(WaitUntil(
      [&] {
        return setup.Stdout().find("Collect Metrics Transition from True to False") !=
               std::string::npos;
      },
      10s));
  std::this_thread::sleep_for(1500ms);
  const std::string paused = setup.Get("1.2.1.10.0");
  std::this_thread::sleep_for(2500ms);
  EXPECT_EQ(setup.Get("1.2.1.10.0"), paused);
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  EXPECT_TRUE(WaitUntil([&] { return setup.Get("1.2.1.10.0") != paused; }, 10s));
}

// The collector's health group (arc 8) through every state: before the first
// collection, ok, one call failing, switch stopped, collection disabled, back
// to ok; and the call table for a fault and a receive time-out.
TEST_F(ThriftModeTest, CollectorHealthTellsEveryStateAndFailingCall) {
  const auto now = [] {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  };
  const auto seconds = [&](const std::string& arcs) {
    const std::string value = setup.Get(arcs);
    return value.rfind("Gauge32: ", 0) == 0 ? std::stoll(value.substr(9)) : -1LL;
  };
  const long long started = now();
  StartSimulator();
  StartDaemon({"remote_ms_receive_timeout:2000", "collect_metrics_period:30"});
  // Before the first collection (one period after start).
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 5", 10s));
  const std::map<std::string, std::string> initial{
      {"8.1.0", "INTEGER: 5"},
      {"8.2.0", "Gauge32: 0"},
      {"8.3.0", "Gauge32: 0"},
      {"8.4.0", "Gauge32: 0"},
      {"8.5.0", "Counter32: 0"},
      {"8.6.0", "Gauge32: 0"},
      {"8.7.0", "INTEGER: 1"},
      {"8.8.0", "INTEGER: 30"},
      {"8.9.0", "INTEGER: 40"},
      {"8.10.0", "\"\""},
      {"8.11.0", "STRING: \"2.2.23\""},
      {"8.13.1.2.1", "STRING: \"Interfaces:GetIfList\""},
      {"8.13.1.2.10", "STRING: \"Config:GetCurrentConfig\""},
      {"8.13.1.3.1", "INTEGER: 7"},
      {"8.13.1.4.1", "Counter32: 0"}};
  for (const auto& [arcs, expected] : initial) EXPECT_EQ(setup.Get(arcs), expected) << arcs;
  EXPECT_GE(seconds("8.12.0"), started);
  EXPECT_LE(seconds("8.12.0"), now());

  // The options file shortens the period: the collector wakes and collects.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":1}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));
  EXPECT_EQ(setup.Get("8.8.0"), "INTEGER: 1");
  EXPECT_EQ(setup.Get("8.6.0"), "Gauge32: 0");
  EXPECT_EQ(setup.Get("8.13.1.3.8"), "INTEGER: 1");
  EXPECT_GE(seconds("8.3.0"), started);
  EXPECT_LE(seconds("8.3.0"), now());

  // One call answers with the service's fault: partial, and its row says why.
  EXPECT_EQ(Control("only LLDP:GetInfo"), "ok");
  EXPECT_EQ(Control("fault 3 neighbour table locked"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 2", 10s));
  EXPECT_EQ(setup.Get("8.13.1.2.8"), "STRING: \"LLDP:GetInfo\"");
  EXPECT_EQ(setup.Get("8.13.1.3.8"), "INTEGER: 2");
  EXPECT_EQ(setup.Get("8.13.1.5.8"), "STRING: \"neighbour table locked\"");
  EXPECT_EQ(setup.Get("8.13.1.3.7"), "INTEGER: 1");
  EXPECT_EQ(setup.Get("8.13.1.4.7"), "Counter32: 0");
  EXPECT_EQ(setup.Get("8.10.0"), "STRING: \"neighbour table locked\"");
  EXPECT_NE(setup.Get("8.13.1.4.8"), "Counter32: 0");
  EXPECT_NE(setup.Get("8.6.0"), "Gauge32: 0");

  // A reply later than the receive time-out: timeout.
  EXPECT_EQ(Control("answer"), "ok");
  EXPECT_EQ(Control("only PTP:GetConfig"), "ok");
  EXPECT_EQ(Control("delay 3000"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.13.1.3.9", "INTEGER: 3", 15s));
  EXPECT_EQ(setup.Get("8.13.1.2.9"), "STRING: \"PTP:GetConfig\"");
  EXPECT_THAT(setup.Get("8.13.1.5.9"), testing::HasSubstr("timed out"));
  EXPECT_EQ(Control("answer"), "ok");

  // Switch stopped: every call refused.
  StopSimulator();
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s));
  EXPECT_EQ(setup.Get("8.13.1.3.1"), "INTEGER: 4");
  EXPECT_THAT(setup.Get("8.10.0"), testing::HasSubstr("Connection refused"));
  EXPECT_LT(seconds("8.3.0"), seconds("8.2.0"));

  // Back: ok, the failure run ends.
  StartSimulator();
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));
  EXPECT_EQ(setup.Get("8.6.0"), "Gauge32: 0");
  EXPECT_EQ(setup.Get("8.13.1.3.1"), "INTEGER: 1");

  // Collection and log level as the options file sets them.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false,"DebugLevel":"Info"}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 4", 10s));
  EXPECT_EQ(setup.Get("8.7.0"), "INTEGER: 2");
  EXPECT_EQ(setup.Get("8.9.0"), "INTEGER: 30");
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));
  EXPECT_EQ(setup.Get("8.7.0"), "INTEGER: 1");
}

// Notifications through the master's trap2sink to a private snmptrapd: one
// unreachable and one recovery for an outage, none for a failed collection
// shorter than the debounce (3 collections), and linkDown/linkUp with the
// port's ifIndex when its state changes between two collections.
TEST_F(ThriftModeTest, NotificationsReachTheTrapSinkOnTransitionsOnly) {
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
  const auto count = [&](const std::string& oid) {
    const std::string log = ReadFile(traps);
    std::size_t n = 0;
    for (auto at = log.find("OID: " + oid + "\n"); at != std::string::npos;
         at = log.find("OID: " + oid + "\n", at + 1)) {
      ++n;
    }
    // A trap's varbinds may share its line: count those too.
    for (auto at = log.find("OID: " + oid + "\t"); at != std::string::npos;
         at = log.find("OID: " + oid + "\t", at + 1)) {
      ++n;
    }
    return n;
  };
  const std::string unreachable = "." + Arq::SystemTests::Base() + ".8.0.1";
  const std::string recovered = "." + Arq::SystemTests::Base() + ".8.0.2";
  const std::string linkDown = ".1.3.6.1.6.3.1.1.5.3";
  const std::string linkUp = ".1.3.6.1.6.3.1.1.5.4";

  StartSimulator();
  StartDaemon();
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));

  // One collection with every call failing: below the debounce.
  EXPECT_EQ(Control("fault 1 busy"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 3", 10s));
  EXPECT_EQ(Control("answer"), "ok");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));

  // An outage: exactly one unreachable, then exactly one recovery.
  StopSimulator();
  ASSERT_TRUE(WaitUntil([&] { return count(unreachable) == 1; }, 15s)) << ReadFile(traps);
  std::this_thread::sleep_for(2s);
  StartSimulator();
  ASSERT_TRUE(WaitUntil([&] { return count(recovered) == 1; }, 15s)) << ReadFile(traps);
  std::this_thread::sleep_for(2s);
  EXPECT_EQ(count(unreachable), 1u);
  EXPECT_EQ(count(recovered), 1u);
  const std::string log = ReadFile(traps);
  EXPECT_THAT(log, testing::HasSubstr("." + Arq::SystemTests::Base() + ".8.1.0 = INTEGER: 3"));
  EXPECT_THAT(log, testing::HasSubstr("Connection refused"));

  // A port goes down, then up: the port's own ifIndex in each.
  std::string index;
  for (const auto& [name, value] : setup.Master().Walk("1.3.6.1.2.1.31.1.1.1.1")) {
    if (value == "STRING: \"eth3\"") index = name.substr(name.rfind('.') + 1);
  }
  ASSERT_FALSE(index.empty());
  ASSERT_EQ(setup.Master().Get("1.3.6.1.2.1.2.2.1.8." + index), "INTEGER: 1");
  EXPECT_EQ(count(linkDown) + count(linkUp), 0u);
  EXPECT_EQ(Control("port eth3 down"), "ok");
  ASSERT_TRUE(WaitUntil([&] { return count(linkDown) == 1; }, 10s)) << ReadFile(traps);
  EXPECT_EQ(Control("port eth3 up"), "ok");
  ASSERT_TRUE(WaitUntil([&] { return count(linkUp) == 1; }, 10s)) << ReadFile(traps);
  const std::string links = ReadFile(traps);
  EXPECT_THAT(links, testing::HasSubstr(".1.3.6.1.2.1.2.2.1.1." + index + " = INTEGER: " + index));
  EXPECT_THAT(links, testing::HasSubstr(".1.3.6.1.2.1.2.2.1.8." + index + " = INTEGER: 2"));
  EXPECT_THAT(links, testing::HasSubstr(".1.3.6.1.2.1.2.2.1.7." + index + " = INTEGER: 1"));
  EXPECT_EQ(count(linkDown), 1u);
  EXPECT_EQ(count(unreachable), 1u);
  trapd.Signal(SIGTERM);
  trapd.WaitExit(10s);
}

// A peer that answers every call with bytes that are no proper reply never
// makes the daemon allocate what those bytes spell: each call fails with one
// error line and the peak resident set stays small.
TEST_F(ThriftModeTest, HostileRepliesOnEveryCallKeepThePeakResidentSetSmall) {
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
  StartDaemon({"remote_ms_receive_timeout:2000", "collect_metrics_period:0"});
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
  EXPECT_TRUE(setup.Daemon().IsRunning());
}

// SIGTERM or SIGINT while the switch holds a call: the call is cut short, the
// rest of the collection skipped, and the process ends at once, the end line last.
TEST_F(ThriftModeTest, StopDuringAHungCallEndsWithinTwoSeconds) {
  StartSimulator();
  ASSERT_EQ(Control("delay 600000"), "ok");
  for (int signal : {SIGTERM, SIGINT}) {
    SCOPED_TRACE(signal);
    const int before = std::atoi(Control("calls").c_str() + 6);
    StartDaemon({});  // the default receive time-out: 60 s
    // A call has reached the switch: it hangs there now.
    ASSERT_TRUE(WaitUntil([&] { return std::atoi(Control("calls").c_str() + 6) > before; }, 5s));
    const auto start = std::chrono::steady_clock::now();
    const auto status = setup.StopDaemon(signal, 2s);
    std::cout << "exit after signal " << signal << " during a hung call: "
              << std::chrono::duration_cast<std::chrono::milliseconds>(
                     std::chrono::steady_clock::now() - start)
                     .count()
              << " ms" << std::endl;
    ASSERT_TRUE(status);
    ASSERT_TRUE(WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 0);
    const auto lines = setup.StdoutLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "--- The End With Exit Code: (0) ---");
  }
}

// A failing switch makes the SNMP library log every cycle; with a small size
// limit the redirected output is split again and again. The library's log
// must follow each split: no descriptor left on the backup or on a deleted
// file, and both files near the limit.
TEST_F(ThriftModeTest, SnmpLogFollowsEverySplitOfTheRedirectedOutput) {
  constexpr long kLimit = 2000;
  // What one split period (1 s) adds beyond the limit: a cycle or two of logs.
  constexpr long kPeriodOutput = 4000;
  StartSimulator();
  ASSERT_EQ(Arq::TestSupport::SendLine(controlPort, "fault 3 switch is broken"), "ok");
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

// snmp_exporter's stock if_mib module, generated from the package's example
// and the IETF MIB texts, serving on a free port; Scrape() returns the samples
// ("name{labels}" to value) and the "# TYPE" lines.
class IfMibExporter {
 public:
  explicit IfMibExporter(const std::string& dir) : dir(dir) {
    std::ifstream example("/usr/share/doc/prometheus-snmp-exporter/examples/generator.yml");
    std::string line, module = "modules:\n";
    bool inside = false;
    while (std::getline(example, line)) {
      if (line == "  if_mib:") inside = true;
      if (inside && line.empty()) break;
      if (inside) module += line + "\n";
    }
    WriteFile(dir + "/generator.yml", module);
    const auto generated = RunCommand(
        {"sh", "-c",
         "cd '" + dir + "' && exec prometheus-snmp-generator --fail-on-parse-errors generate"},
        {{"MIBDIRS", ARQ_MIB_DIR}}, 60s, true);
    EXPECT_EQ(generated.status, 0) << generated.output;
    process = std::make_unique<ChildProcess>(
        std::vector<std::string>{"prometheus-snmp-exporter", "--config.file=" + dir + "/snmp.yml",
                                 "--web.listen-address=127.0.0.1:" + std::to_string(port)},
        std::map<std::string, std::string>{}, dir + "/exporter.out");
  }

  std::map<std::string, double> Scrape(const std::string& target, std::string& types) const {
    const std::string url = "http://127.0.0.1:" + std::to_string(port) +
                            "/snmp?module=if_mib&target=" + target.substr(target.find(':') + 1);
    std::string text;
    WaitUntil(
        [&] {
          text = RunCommand({"curl", "-sf", url}, {}, 30s).output;
          return !text.empty();
        },
        20s, 500ms);
    std::map<std::string, double> samples;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
      if (line.rfind("# TYPE ", 0) == 0) types += line + "\n";
      if (line.empty() || line[0] == '#') continue;
      const auto space = line.rfind(' ');
      samples[line.substr(0, space)] = std::stod(line.substr(space + 1));
    }
    return samples;
  }

 private:
  std::string dir;
  int port = Arq::TestSupport::FreeTcpPort();
  std::unique_ptr<ChildProcess> process;
};

// The full-capacity switch through the stock if_mib module: every port, LAG
// and PRS interface with its labels; the octet counters typed counter and
// exactly the simulator's: initial + rate / 8 per second for one elapsed
// time common to every port of a collection, larger at the second scrape.
TEST_F(ThriftModeTest, StockIfMibExporterSeesEveryPortWithExactCounters) {
  StartSimulator("full-capacity.json");
  StartDaemon();
  // 48 Ethernet ports, 24 PRS interfaces of 2 ports, 3 LAGs of 6 ports.
  ASSERT_TRUE(
      WaitUntil([&] { return setup.Master().Get("1.3.6.1.2.1.2.1.0") == "INTEGER: 141"; }, 15s));
  const IfMibExporter exporter(setup.Dir().File(""));
  struct Port {
    std::string labels;
    double inOctets, inPerMs, outOctets, outPerMs;  // initial values, growth per millisecond
    double highSpeed;
  };
  const std::vector<Port> ports{
      {R"(ifAlias="eth1 of the full-capacity switch",ifDescr="eth1",ifIndex="1001",ifName="1/1")",
       1e6, 1e4, 2e6, 12500, 100000},
      {R"(ifAlias="eth2 of the full-capacity switch",ifDescr="eth2",ifIndex="1002",ifName="1/2")",
       2e6, 2e4, 4e6, 25000, 100000},
      {R"(ifAlias="",ifDescr="prs1 port 2/1",ifIndex="2001",ifName="2/1")", 1e6, 5e4, 2e6, 62500,
       25000},
      {R"(ifAlias="",ifDescr="lag1 port 3/1",ifIndex="3001",ifName="3/1")", 1e6, 2e5, 2e6, 250000,
       10000}};
  double previousMs = 0;
  for (int scrape = 0; scrape < 2; ++scrape) {
    SCOPED_TRACE(scrape);
    // A pause in the collections, so that the scrape reads one collection.
    setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
    std::this_thread::sleep_for(2500ms);
    std::string types;
    const auto samples = exporter.Scrape(setup.Master().Address(), types);
    EXPECT_THAT(types, testing::HasSubstr("# TYPE ifHCInOctets counter\n"));
    EXPECT_THAT(types, testing::HasSubstr("# TYPE ifHCOutOctets counter\n"));
    EXPECT_EQ(samples.at("ifNumber"), 141);
    double elapsedMs = -1;
    for (const auto& port : ports) {
      SCOPED_TRACE(port.labels);
      const double in = samples.at("ifHCInOctets{" + port.labels + "}");
      const double out = samples.at("ifHCOutOctets{" + port.labels + "}");
      if (elapsedMs < 0) elapsedMs = (in - port.inOctets) / port.inPerMs;
      EXPECT_EQ(in, port.inOctets + port.inPerMs * elapsedMs);
      EXPECT_EQ(out, port.outOctets + port.outPerMs * elapsedMs);
      EXPECT_EQ(samples.at("ifHighSpeed{" + port.labels + "}"), port.highSpeed);
      EXPECT_EQ(samples.at("ifOperStatus{" + port.labels + "}"), 1);
    }
    EXPECT_EQ(elapsedMs, static_cast<double>(static_cast<long long>(elapsedMs)));
    EXPECT_GT(elapsedMs, previousMs + 1000);
    previousMs = elapsedMs;
    EXPECT_EQ(
        samples.at(
            R"(ifType_info{ifAlias="lag1 of the full-capacity switch",ifDescr="lag1",ifIndex="100001",ifName="lag1",ifType="ieee8023adLag"})"),
        1);
    setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
    std::this_thread::sleep_for(1500ms);
  }
}

// Ports whose names the ifIndex rule cannot place keep the index they were
// given first, across a daemon restart in which one of them disappears and
// another appears.
TEST_F(ThriftModeTest, FallbackIfIndexesSurviveRestartsAndChanges) {
  auto scenario = [](const std::vector<std::string>& names) {
    std::string interfaces, ports;
    for (const auto& name : names) {
      interfaces += std::string(interfaces.empty() ? "" : ",") + R"({"name":"if-)" + name +
                    R"(","type":"Ethernet","status":"Enabled","members":[")" + name + R"("]})";
      ports +=
          std::string(ports.empty() ? "" : ",") + R"({"name":")" + name + R"(","state":"LinkUp"})";
    }
    return R"({"interfaces":[)" + interfaces + R"(],"ports":[)" + ports + "]}";
  };
  const std::string ifName = "1.3.6.1.2.1.31.1.1.1.1";
  auto names = [&] {
    std::map<std::string, std::string> byIndex;
    for (const auto& [oid, value] : setup.Master().Walk(ifName)) {
      if (oid.size() > ifName.size()) byIndex[oid.substr(ifName.size() + 1)] = value;
    }
    return byIndex;
  };
  using Map = std::map<std::string, std::string>;
  const std::vector<std::pair<std::vector<std::string>, Map>> steps{
      {{"xe-a", "xe-b", "1/5"},
       {{"1005", "STRING: \"1/5\""},
        {"1000000", "STRING: \"xe-a\""},
        {"1000001", "STRING: \"xe-b\""}}},
      {{"xe-new", "xe-b"}, {{"1000001", "STRING: \"xe-b\""}, {"1000002", "STRING: \"xe-new\""}}}};
  for (const auto& [ports, expected] : steps) {
    const std::string file = setup.Dir().File("scenario.json");
    WriteFile(file, scenario(ports));
    if (simulator) {
      StopSimulator();
      setup.StopDaemon(SIGTERM, 10s);
    }
    StartSimulator(file);
    StartDaemon();
    EXPECT_TRUE(WaitUntil([&] { return names() == expected; }, 15s))
        << testing::PrintToString(names());
  }
}

// LLDP-MIB by numeric identifiers (no package carries its text): every
// neighbour of the full-capacity switch decoded, and the inconsistent
// switch's neighbours without the columns of their broken TLVs.
TEST_F(ThriftModeTest, LldpMibShowsNeighboursDecodedWithoutBrokenColumns) {
  const std::string remTable = "1.0.8802.1.1.2.1.4.1.1";
  const std::string manAddrTable = "1.0.8802.1.1.2.1.4.2.1";
  using Map = std::map<std::string, std::string>;
  auto walk = [&](const std::string& table) {
    Map cells;
    for (const auto& [oid, value] : setup.Master().Walk(table)) {
      if (oid.size() > table.size()) cells[oid.substr(table.size() + 1)] = value;
    }
    return cells;
  };
  Map full, fullManagement;
  for (int n = 1; n <= 60; ++n) {
    const std::string local = n <= 48 ? "1/" + std::to_string(n) : "2/" + std::to_string(n - 48);
    const std::string row =
        ".0." + std::to_string(n <= 48 ? 1000 + n : 2000 + n - 48) + "." + std::to_string(n);
    char text[64];
    full["4" + row] = "INTEGER: 4";  // macAddress
    std::snprintf(text, sizeof text, "Hex-STRING: 00 1B 21 00 %02X %02X ", n / 256, n % 256);
    full["5" + row] = text;
    full["6" + row] = "INTEGER: 5";  // interfaceName
    full["7" + row] = "STRING: \"Ethernet1/" + std::to_string(n) + "\"";
    full["8" + row] = "STRING: \"to orvo-sim-full " + local + "\"";
    std::snprintf(text, sizeof text, "STRING: \"peer-%02d\"", n);
    full["9" + row] = text;
    std::snprintf(text, sizeof text, "STRING: \"PeerSwitch; SN-%04d; 1.0.%d\"", n, n);
    full["10" + row] = text;
    full["11" + row] = "STRING: \"(\"";  // bridge and router: 0x28
    full["12" + row] = "STRING: \" \"";  // bridge: 0x20
    const std::string address = row + ".1.4.198.51.100." + std::to_string(n);
    fullManagement["3" + address] = "INTEGER: 2";  // ifIndex numbering
    fullManagement["4" + address] = "INTEGER: 0";
    fullManagement["5" + address] = "OID: .0.0";
  }
  const Map inconsistent{{"9.0.1001.1", "\"\""},  // truncated chassis id, empty name
                         {"4.0.9099.2", "INTEGER: 6"},
                         {"5.0.9099.2", "STRING: \"mgmt0\""},
                         {"6.0.9099.2", "INTEGER: 7"},
                         {"7.0.9099.2", "STRING: \"port-7\""},
                         {"9.0.9099.2", "STRING: \"not-on-this-switch\""}};
  // Raw TLVs: capabilities beyond the first octet, an IPv6 management address
  // with its interface number and OID (1.3.6.1).
  const std::string raw = setup.Dir().File("raw-lldp.json");
  WriteFile(raw, R"({"lldp":{"neighbours":[{"interface":"1/3","chassisId":)"
                 R"({"subtype":"MacAddress","id":"00:1b:21:00:00:09"},"raw":{"7":"0e04 0214 0004",)"
                 R"("8":"101b 11 02 20010db8000000000000000000000001 03 00000007 03 2b0601"}}]}})");
  const std::string v6 = ".0.1003.1.2.16.32.1.13.184.0.0.0.0.0.0.0.0.0.0.0.1";
  const Map rawNeighbours{{"4.0.1003.1", "INTEGER: 4"},
                          {"5.0.1003.1", "Hex-STRING: 00 1B 21 00 00 09 "},
                          {"11.0.1003.1", "STRING: \"(@\""},  // bits 2, 4 and 9
                          {"12.0.1003.1", "STRING: \" \""}};
  const Map rawManagement{
      {"3" + v6, "INTEGER: 3"}, {"4" + v6, "INTEGER: 7"}, {"5" + v6, "OID: .1.3.6.1"}};
  struct Case {
    std::string scenario;
    Map neighbours, management;
  };
  for (const auto& c :
       {Case{"full-capacity.json", full, fullManagement}, Case{raw, rawNeighbours, rawManagement},
        Case{"inconsistent.json", inconsistent, {}}}) {
    SCOPED_TRACE(c.scenario);
    if (simulator) {
      StopSimulator();
      setup.StopDaemon(SIGTERM, 10s);
    }
    StartSimulator(c.scenario);
    StartDaemon();
    EXPECT_TRUE(WaitUntil([&] { return walk(remTable).size() == c.neighbours.size(); }, 15s));
    EXPECT_EQ(walk(remTable), c.neighbours);
    EXPECT_EQ(walk(manAddrTable), c.management);
  }
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.3.0"), "STRING: \"orvo-sim-inconsistent\"");
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.1.0"), "INTEGER: 4");  // main MAC address
  EXPECT_EQ(setup.Master().Get("1.0.8802.1.1.2.1.3.7.1.3.1001"), "STRING: \"1/1\"");
}

}  // namespace

#endif
