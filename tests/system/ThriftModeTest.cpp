#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <regex>
#include <thread>

#include "Daemon.h"

#ifdef ARQ_SIMULATOR_PATH

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

// The daemon in Thrift mode against the simulator on a fixed port below
// 32768, so that the simulator can be started late or restarted.
class ThriftModeTest : public testing::Test {
 protected:
  void StartSimulator() {
    simulator = std::make_unique<ChildProcess>(
        std::vector<std::string>{ARQ_SIMULATOR_PATH, "--port", std::to_string(port)},
        std::map<std::string, std::string>{}, setup.Dir().File("simulator.out"));
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
  void StartDaemon() {
    setup.StartDaemon({"monitoring_processor_mode:Thrift", "remote_ip_address:127.0.0.1",
                       "remote_port_number:" + std::to_string(port),
                       "remote_ms_connection_timeout:500", "remote_ms_receive_timeout:2000",
                       "collect_metrics_period:1", "log_level:Warning"});
  }

  DaemonSetup setup;
  int port = Arq::TestSupport::FreeShortTcpPort();
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

}  // namespace

#endif
