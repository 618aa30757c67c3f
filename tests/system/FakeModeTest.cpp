#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <unistd.h>
#include <chrono>
#include <filesystem>
#include <regex>
#include <thread>

#include "Daemon.h"

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

const std::string kEndLine = "--- The End With Exit Code: (0) ---";

std::vector<std::string> FakeArguments(const std::string& level = "log_level:Warning") {
  return {"monitoring_processor_mode:Fake", "collect_metrics_period:1", level};
}

// Stops the daemon with `signal` and expects status 0 within `timeout`, with
// the end line as the last line of standard output.
void ExpectOrderlyStop(DaemonSetup& setup, int signal, std::chrono::milliseconds timeout) {
  const auto status = setup.StopDaemon(signal, timeout);
  ASSERT_TRUE(status);
  ASSERT_TRUE(WIFEXITED(*status));
  EXPECT_EQ(WEXITSTATUS(*status), 0);
  const auto lines = setup.StdoutLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), kEndLine);
}

TEST(FakeModeTest, DataReachesEveryTableWithinTwoPeriods) {
  DaemonSetup setup;
  setup.StartDaemon(FakeArguments());
  // One period for the first collection, one more at most for the agent.
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
  EXPECT_EQ(setup.Get("2.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("3.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("5.1.0"), "Counter32: 6");
  EXPECT_EQ(setup.Get("7.1.0"), "Counter32: 2");
  EXPECT_EQ(setup.Get("1.2.1.2.0"), "STRING: \"eth1\"");
  EXPECT_EQ(setup.Get("1.2.1.3.6"), "INTEGER: 0");  // eth7 disabled
  EXPECT_EQ(setup.Get("2.2.1.2.1"), "STRING: \"prs2\"");
  EXPECT_EQ(setup.Get("2.2.1.42.1"), "STRING: \"eth20\"");
  EXPECT_EQ(setup.Get("3.2.1.2.1"), "INTEGER: 127");
  EXPECT_EQ(setup.Get("3.2.1.5.0"), "STRING: \"eth1 eth2 eth3 eth4\"");
  EXPECT_EQ(setup.Get("4.1.0"), "STRING: \"02:a0:c9:00:00:01\"");
  EXPECT_EQ(setup.Get("4.4.0"), "IpAddress: 192.0.2.10");
  EXPECT_EQ(setup.Get("5.2.1.5.0"), "STRING: \"core-sw-01\"");
  EXPECT_EQ(setup.Get("5.2.1.7.0"), "IpAddress: 10.20.0.1");
  EXPECT_EQ(setup.Get("6.1.0"), "STRING: \"studio-b-2026-11.cfg\"");
  EXPECT_EQ(setup.Get("7.2.1.0"), "STRING: \"lag1\"");
  EXPECT_EQ(setup.Get("7.2.4.0"), "STRING: \"10 20 30 100 200\"");
  EXPECT_EQ(setup.Get("7.2.6.1.2.1"), "STRING: \"eth22\"");
  EXPECT_EQ(setup.Get("7.3.6.1.2.0"), "STRING: \"eth23\"");
}

TEST(FakeModeTest, SigtermSigintAndSighupEndWithStatusZeroAndTheEndLineLast) {
  for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
    SCOPED_TRACE(signal);
    DaemonSetup setup;
    setup.StartDaemon(FakeArguments());
    ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s));
    ExpectOrderlyStop(setup, signal, 10s);
    EXPECT_THAT(setup.Stderr(), testing::HasSubstr("orvovia-snmpd is shutdowning.\n"));
    EXPECT_THAT(setup.Stderr(), testing::HasSubstr("MonitoringProcessor Closed\n"));
  }
}

TEST(FakeModeTest, StartupLinesAreLoggedWhateverTheThreshold) {
  DaemonSetup setup;
  setup.StartDaemon(FakeArguments("log_level:NoLog"));
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s));
  setup.StopDaemon(SIGTERM, 10s);
  const std::string out = setup.Stdout();
  EXPECT_THAT(out, testing::HasSubstr(" Info OrvoViaSwitchMonitoring: * OrvoViaSwitchMonitoring "
                                      "started, argc: 7 **********"));
  EXPECT_THAT(out, testing::HasSubstr(" Info OrvoViaSwitchMonitoring: argv[6]: log_level:NoLog"));
  EXPECT_THAT(out, testing::HasSubstr("Criticity threshold:   Info "));
  EXPECT_THAT(out, testing::HasSubstr("project name: OrvoViaSwitchMonitoring version: 2.2.23"));
  // NoLog: the end line goes to standard output only, not through the log.
  EXPECT_THAT(out, testing::Not(testing::HasSubstr("OrvoViaSwitchMonitoring: --- The End")));
}

// Paused with a period of 0, the collector idles instead of spinning.
TEST(FakeModeTest, RewritingTheOptionsFilePausesResumesAndChangesTheThreshold) {
  DaemonSetup setup;
  setup.StartDaemon(FakeArguments());
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s));
  const std::string counter = "1.2.1.10.0";  // eth1 octets received, grows every second
  setup.WriteOptions(
      R"({"SwitchMonitoringControl":{"CollectMetrics":false,"CollectMetricsPeriod":0,"DebugLevel":"Info"}})");
  ASSERT_TRUE(WaitUntil(
      [&] {
        return setup.Stdout().find("Collect Metrics Transition from True to False") !=
               std::string::npos;
      },
      10s));
  std::this_thread::sleep_for(1500ms);  // a collection under way completes
  const std::string paused = setup.Get(counter);
  const double cpuBefore = Arq::TestSupport::CpuSeconds(setup.Daemon().Pid());
  std::this_thread::sleep_for(2500ms);
  // A spinning thread would take a quarter of a core or more (0.6 s here).
  EXPECT_LT(Arq::TestSupport::CpuSeconds(setup.Daemon().Pid()) - cpuBefore, 0.2);
  EXPECT_EQ(setup.Get(counter), paused);
  setup.WriteOptions(
      R"({"SwitchMonitoringControl":{"CollectMetrics":true,"CollectMetricsPeriod":1,"DebugLevel":"Warning"}})");
  EXPECT_TRUE(WaitUntil([&] { return setup.Get(counter) != paused; }, 10s));
  const std::string out = setup.Stdout();
  EXPECT_THAT(
      out, testing::HasSubstr(
               " Warning DynamicParametersUpdater: Logging Level Transition from Warning to Info"));
  EXPECT_THAT(out,
              testing::HasSubstr(" Info DynamicParameters: DynamicParameters::Update() is called"));
  EXPECT_THAT(
      out, testing::HasSubstr(
               " Warning DynamicParametersUpdater: Logging Level Transition from Info to Warning"));
  EXPECT_THAT(out, testing::HasSubstr("Collect Metrics Transition from False to True"));
}

TEST(FakeModeTest, RedirectedOutputIsSplitIntoABackupAndRestartsWithBanners) {
  DaemonSetup setup;
  const std::string file = setup.Dir().File("daemon.log");
  setup.StartDaemon({"monitoring_processor_mode:Fake", "collect_metrics_period:1", "log_level:Info",
                     "redirect_output:" + file, "redirect_output_split_period:1",
                     "redirect_output_file_size:2000"});
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s));
  ASSERT_TRUE(WaitUntil([&] { return std::filesystem::exists(file + ".bak"); }, 15s));
  const std::string backup = ReadFile(file + ".bak");
  EXPECT_GT(backup.size(), 2000u);
  EXPECT_THAT(backup, testing::HasSubstr("orvovia-snmpd is up and running."));
  // Each new file starts with a rule, the two banners and a rule.
  const std::regex head(
      "^-{96}\n-{33} Criticity threshold: [ A-Za-z]{7} -{33}\n------ ARQ VANTELLIS --- "
      "OrvoViaSwitchWarden version 2\\.2\\.23 --- [^\n]+ ------\n-{96}\n");
  EXPECT_TRUE(WaitUntil([&] { return std::regex_search(ReadFile(file), head); }, 5s))
      << ReadFile(file).substr(0, 400);
  setup.StopDaemon(SIGTERM, 10s);
}

TEST(FakeModeTest, AnswersResumeAfterTheMasterRestarts) {
  DaemonSetup setup;
  setup.StartDaemon(FakeArguments());
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s));
  setup.Master().Stop();
  ASSERT_TRUE(setup.Master().Start());
  // agentxPingInterval 2: the sub-agent registers again within a few seconds.
  EXPECT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 10s));
  EXPECT_TRUE(setup.Daemon().IsRunning());
}

// Standard output a pipe whose reader went away: every write fails with
// EPIPE, the daemon keeps serving and still ends in order.
TEST(FakeModeTest, StandardOutputPipeWithoutReaderDoesNotEndTheDaemon) {
  DaemonSetup setup;
  const std::string pipe = setup.Dir().File("daemon.out");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  setup.StartDaemon(FakeArguments("log_level:Info"));
  close(reader);
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
  // An options change logs (to the broken pipe) on the watcher's thread.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":2}})");
  std::this_thread::sleep_for(500ms);
  EXPECT_EQ(setup.Get("1.1.0"), "Counter32: 16");
  const auto status = setup.StopDaemon(SIGTERM, 5s);
  ASSERT_TRUE(status);
  ASSERT_TRUE(WIFEXITED(*status)) << "signal " << WTERMSIG(*status);
  EXPECT_EQ(WEXITSTATUS(*status), 0);
  EXPECT_THAT(setup.Stderr(), testing::HasSubstr("orvovia-snmpd is shutdowning.\n"));
}

// An output file that cannot be used leaves standard output where it was,
// with one message on standard error; nothing written to it is lost.
TEST(FakeModeTest, UnusableRedirectPathKeepsStandardOutput) {
  struct Case {
    const char* name;
    std::string path;  // below the setup's folder unless absolute
    const char* reason;
  };
  const Case cases[] = {
      {"missing folder", "missing/out.log", "No such file or directory"},
      {"folder is a regular file", "plain/out.log", "Not a directory"},
      {"device that refuses every write", "/dev/full", "No space left on device"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    DaemonSetup setup;
    Arq::TestSupport::WriteFile(setup.Dir().File("plain"), "");
    const std::string path = c.path[0] == '/' ? c.path : setup.Dir().File(c.path);
    setup.StartDaemon({"monitoring_processor_mode:Fake", "collect_metrics_period:1",
                       "log_level:Warning", "redirect_output:" + path,
                       "redirect_output_split_period:1", "redirect_output_file_size:100"});
    ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
    std::this_thread::sleep_for(1100ms);  // a split period passes
    ExpectOrderlyStop(setup, SIGTERM, 5s);
    const std::string message =
        "Cannot redirect standard output to '" + path + "': " + c.reason + "\n";
    const std::string errors = setup.Stderr();
    ASSERT_THAT(errors, testing::HasSubstr(message));
    EXPECT_EQ(errors.find(message), errors.rfind(message));
    // The SNMP library's log stays on standard error, as without a redirection.
    EXPECT_THAT(errors, testing::HasSubstr("orvovia-snmpd is shutdowning.\n"));
    EXPECT_THAT(setup.Stdout(), testing::HasSubstr("* OrvoViaSwitchMonitoring started, argc: 10"));
  }
}

// The options folder deleted and recreated, a FIFO and an oversized file at
// the options path: the watcher notices, refuses, keeps applying valid files,
// and the daemon still stops within 2 s, even with the folder gone.
TEST(FakeModeTest, OptionsWatcherSurvivesFolderLossFifoAndOversizedFile) {
  DaemonSetup setup;
  const std::string folder = setup.Dir().File("options");
  const std::string path = folder + "/SwitchMonitoringOptions.json";
  const std::string vanished =
      "Folder '" + folder + "' vanished: watching it again when it reappears";
  const auto logged = [&](const std::string& text) {
    return WaitUntil([&] { return setup.Stdout().find(text) != std::string::npos; }, 5s);
  };
  std::filesystem::create_directory(folder);
  auto arguments = FakeArguments();
  arguments.push_back("data_setup_folder:" + folder);  // after the setup's own: it wins
  setup.StartDaemon(arguments);
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 4s)) << setup.Stderr();
  std::filesystem::remove_all(folder);
  ASSERT_TRUE(logged(vanished)) << setup.Stdout();

  std::filesystem::create_directory(folder);
  Arq::TestSupport::WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
  EXPECT_TRUE(logged("Collect Metrics Transition from True to False")) << setup.Stdout();
  {
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int fd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);  // closed after writing
    ASSERT_GE(fd, 0);
    close(fd);
    EXPECT_TRUE(logged("Refused file:  " + path + " (not a regular file)")) << setup.Stdout();
  }
  {
    std::filesystem::remove(path);
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(ftruncate(fd, 50L * 1024 * 1024), 0);  // 50 MB, sparse
    close(fd);
    EXPECT_TRUE(logged("Refused file:  " + path + " (larger than 65536 bytes)")) << setup.Stdout();
  }
  std::filesystem::remove(path);
  Arq::TestSupport::WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  EXPECT_TRUE(logged("Collect Metrics Transition from False to True")) << setup.Stdout();
  const std::string out = setup.Stdout();
  EXPECT_EQ(out.find(vanished), out.rfind(vanished));

  std::filesystem::remove_all(folder);
  EXPECT_TRUE(WaitUntil(
      [&] {
        const std::string text = setup.Stdout();
        return text.find(vanished) != text.rfind(vanished);
      },
      5s));
  ExpectOrderlyStop(setup, SIGTERM, 2s);
}

}  // namespace
