#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "Daemon.h"

namespace {

using Arq::SystemTests::DaemonSetup;
using testing::HasSubstr;
using namespace std::chrono_literals;

// One daemon through its life: every table filled; the start-up lines logged
// whatever the threshold; collection paused (idle, not spinning, with a period
// of 0) with the threshold raised by the options file; the options folder
// lost and back, a FIFO and an oversized file refused at the options path;
// collection resumed; the master restarted; the folder lost again, and still
// an orderly end within 2 s.
TEST(FakeModeTest, OneDaemonThroughOptionsFaultsAndAMasterRestart) {
  DaemonSetup setup;
  const std::string folder = setup.Dir().File("options");
  const std::string path = folder + "/SwitchMonitoringOptions.json";
  const std::string vanished =
      "Folder '" + folder + "' vanished: watching it again when it reappears";
  const auto logged = [&](const std::string& text) {
    return Arq::TestSupport::WaitUntil(
        [&] { return setup.Stdout().find(text) != std::string::npos; }, 5s);
  };
  std::filesystem::create_directory(folder);
  // The last data_setup_folder wins over the setup's own.
  setup.StartDaemon({"monitoring_processor_mode:Fake", "collect_metrics_period:1",
                     "log_level:NoLog", "data_setup_folder:" + folder});
  // One period for the first collection, one more at most for the agent.
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
  // clang-format off
  const std::pair<const char*, const char*> values[] = {
      {"2.1.0", "Counter32: 2"}, {"3.1.0", "Counter32: 2"}, {"5.1.0", "Counter32: 6"},
      {"7.1.0", "Counter32: 2"}, {"1.2.1.2.0", "STRING: \"eth1\""},
      {"2.2.1.2.1", "STRING: \"prs2\""},
      {"3.2.1.2.1", "INTEGER: 127"}, {"4.1.0", "STRING: \"02:a0:c9:00:00:01\""},
      {"5.2.1.5.0", "STRING: \"core-sw-01\""}, {"6.1.0", "STRING: \"studio-b-2026-11.cfg\""},
      {"7.2.1.0", "STRING: \"lag1\""}, {"7.2.6.1.2.1", "STRING: \"eth22\""}};
  // clang-format on
  for (const auto& [arcs, expected] : values) EXPECT_EQ(setup.Get(arcs), expected) << arcs;
  const std::string out = setup.Stdout();
  EXPECT_THAT(out, HasSubstr(" Info OrvoViaSwitchMonitoring: * OrvoViaSwitchMonitoring started, "
                             "argc: 8 **********"));
  EXPECT_THAT(out, HasSubstr(" Info OrvoViaSwitchMonitoring: argv[6]: log_level:NoLog"));
  EXPECT_THAT(out, HasSubstr("Criticity threshold:   Info "));
  EXPECT_THAT(out, HasSubstr("project name: OrvoViaSwitchMonitoring version: 2.2.23"));

  const std::string counter = "1.2.1.10.0";  // eth1 octets received, grows every second
  Arq::TestSupport::WriteFile(
      path,
      R"({"SwitchMonitoringControl":{"CollectMetrics":false,"CollectMetricsPeriod":0,"DebugLevel":"Info"}})");
  ASSERT_TRUE(
      logged(" Warning DynamicParametersUpdater: Logging Level Transition from NoLog to Info"))
      << setup.Stdout();
  EXPECT_TRUE(logged("Collect Metrics Transition from True to False"));
  std::this_thread::sleep_for(1500ms);  // a collection under way completes
  const std::string paused = setup.Get(counter);
  const double cpuBefore = Arq::TestSupport::CpuSeconds(setup.Daemon().Pid());
  std::this_thread::sleep_for(2500ms);
  // A spinning thread would take a quarter of a core or more (0.6 s here).
  EXPECT_LT(Arq::TestSupport::CpuSeconds(setup.Daemon().Pid()) - cpuBefore, 0.2);
  EXPECT_EQ(setup.Get(counter), paused);

  std::filesystem::remove_all(folder);
  ASSERT_TRUE(logged(vanished)) << setup.Stdout();
  std::filesystem::create_directory(folder);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  int fd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);  // closed after writing
  ASSERT_GE(fd, 0);
  close(fd);
  EXPECT_TRUE(logged("Refused file:  " + path + " (not a regular file)")) << setup.Stdout();
  std::filesystem::remove(path);
  fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(ftruncate(fd, 50L * 1024 * 1024), 0);  // 50 MB, sparse
  close(fd);
  EXPECT_TRUE(logged("Refused file:  " + path + " (larger than 65536 bytes)")) << setup.Stdout();
  std::filesystem::remove(path);
  Arq::TestSupport::WriteFile(
      path, R"({"SwitchMonitoringControl":{"CollectMetrics":true,"CollectMetricsPeriod":1}})");
  EXPECT_TRUE(logged("Collect Metrics Transition from False to True")) << setup.Stdout();
  EXPECT_TRUE(logged(" Info DynamicParameters: DynamicParameters::Update() is called"));
  EXPECT_TRUE(Arq::TestSupport::WaitUntil([&] { return setup.Get(counter) != paused; }, 10s));

  setup.Master().Stop();
  ASSERT_TRUE(setup.Master().Start());
  // agentxPingInterval 2: the sub-agent registers again within a few seconds.
  EXPECT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 10s));

  std::filesystem::remove_all(folder);
  EXPECT_TRUE(Arq::TestSupport::WaitUntil(
      [&] {
        const std::string text = setup.Stdout();
        return text.find(vanished) != text.rfind(vanished);
      },
      5s));
  setup.ExpectOrderlyStop(SIGTERM, 2s);
  // At Info, the end line goes through the log as well.
  EXPECT_THAT(setup.Stdout(),
              HasSubstr(" Info OrvoViaSwitchMonitoring: --- The End With Exit Code: (0) ---"));
}

// Whatever signal ends it and wherever its output goes, the daemon ends in
// order. An unusable redirect path leaves standard output where it was, with
// one message on standard error; a standard output pipe without reader fails
// every write (EPIPE), also those of the options watcher's thread. At the
// default level the agent's start-up and shutdown lines are written where
// the SNMP library logs (the redirected file, else standard error), and its
// per-request change lines are not.
TEST(FakeModeTest, SignalsEndInOrderWhereverTheOutputGoes) {
  struct Case {
    const char* name;
    int signal;
    std::string redirect;  // below the setup's folder
    const char* reason;    // why it cannot be used; nullptr: it can
  };
  const Case cases[] = {
      {"standard output a pipe without reader", SIGINT, "", ""},
      {"missing folder", SIGHUP, "missing/out.log", "No such file or directory"},
      // The device through a link of the test's own: a faulty split renames
      // the link, never the device.
      {"device that refuses every write", SIGTERM, "full", "No space left on device"},
      {"a file", SIGTERM, "out.log", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    DaemonSetup setup;
    std::vector<std::string> arguments{"monitoring_processor_mode:Fake",
                                       "collect_metrics_period:1"};
    const std::string path = setup.Dir().File(c.redirect);
    std::filesystem::create_symlink("/dev/full", setup.Dir().File("full"));
    int reader = -1;
    if (c.redirect.empty()) {
      const std::string pipe = setup.Dir().File("daemon.out");
      ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
      reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
      ASSERT_GE(reader, 0);
    } else {
      arguments.push_back("redirect_output:" + path);
      if (c.reason != nullptr) {
        arguments.insert(arguments.end(),
                         {"redirect_output_split_period:1", "redirect_output_file_size:100"});
      }
    }
    setup.StartDaemon(arguments);
    if (reader >= 0) close(reader);
    ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
    setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":2}})");
    std::this_thread::sleep_for(1100ms);  // a split period passes
    EXPECT_EQ(setup.Get("1.1.0"), "Counter32: 16");
    if (c.reason != nullptr) {
      setup.ExpectOrderlyStop(c.signal, 5s, reader < 0);
    } else {
      const auto status = setup.StopDaemon(c.signal, 5s);
      ASSERT_TRUE(status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0);
    }
    const std::string log = c.reason != nullptr ? setup.Stderr() : Arq::TestSupport::ReadFile(path);
    for (const char* line :
         {"arqSwitchOrvoViaNbEthernetInterfaces Done initializing.\n",
          "initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable Initializing Done.\n",
          "orvovia-snmpd is up and running.\n", "orvovia-snmpd is shutdowning.\n"}) {
      EXPECT_THAT(log, HasSubstr(line));
    }
    EXPECT_THAT(log, testing::Not(HasSubstr("has changed")));
    if (reader >= 0 || c.reason == nullptr) continue;
    const std::string message =
        "Cannot redirect standard output to '" + path + "': " + c.reason + "\n";
    const std::string errors = setup.Stderr();
    ASSERT_THAT(errors, HasSubstr(message));
    EXPECT_EQ(errors.find(message), errors.rfind(message));
    EXPECT_THAT(setup.Stdout(), HasSubstr("* OrvoViaSwitchMonitoring started, argc: 9"));
  }
}

}  // namespace
