#include "Daemon.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <fstream>
#include <stdexcept>

namespace Arq::SystemTests {

std::string Base() {
  return "1.3.6.1.4.1." + std::to_string(ARQ_ENTERPRISE_NUMBER) + ".3.5.1";
}

DaemonSetup::DaemonSetup() : dir_("arq-system") {
  master_ = std::make_unique<TestSupport::SnmpMaster>(dir_.Path());
  if (!master_->Start()) throw std::runtime_error("snmpd did not start");
  TestSupport::WriteFile(dir_.File("loggers.cfg"),
                         std::string(R"({"version":"1.0.0","loggers":[{"name":"stream",)") +
                             R"("libraryPath":")" + ARQ_STREAM_LOGGER_PATH + R"("}]})");
  WriteOptions(
      R"({"SwitchMonitoringControl":{"CollectMetrics":true,"CollectMetricsPeriod":1,"DebugLevel":"Warning"}})");
}

DaemonSetup::~DaemonSetup() {
  if (daemon_) StopDaemon(SIGTERM, std::chrono::seconds(10));
}

void DaemonSetup::WriteOptions(const std::string& json) {
  std::ofstream out(dir_.File("SwitchMonitoringOptions.json"), std::ios::trunc);
  out << json;
}

void DaemonSetup::StartDaemon(std::vector<std::string> arguments) {
  arguments.insert(
      arguments.begin(),
      {ARQ_DAEMON_PATH, "logger_configurations_path:" + dir_.File("loggers.cfg"),
       "data_setup_folder:" + dir_.Path(), "options_filename:SwitchMonitoringOptions.json"});
  daemon_ = std::make_unique<TestSupport::ChildProcess>(
      arguments, master_->Environment(), dir_.File("daemon.out"), dir_.File("daemon.err"));
}

std::string DaemonSetup::Stdout() const {
  return TestSupport::ReadFile(dir_.File("daemon.out"));
}
std::string DaemonSetup::Stderr() const {
  return TestSupport::ReadFile(dir_.File("daemon.err"));
}

std::string DaemonSetup::Get(const std::string& arcs) const {
  return master_->Get(Base() + "." + arcs);
}

bool DaemonSetup::WaitForGet(const std::string& arcs, const std::string& expected,
                             std::chrono::milliseconds timeout) const {
  return TestSupport::WaitUntil([&] { return Get(arcs) == expected; }, timeout,
                                std::chrono::milliseconds(200));
}

std::optional<int> DaemonSetup::StopDaemon(int signal, std::chrono::milliseconds timeout) {
  daemon_->Signal(signal);
  auto status = daemon_->WaitExit(timeout);
  if (!status) daemon_->Signal(SIGKILL);
  return status;
}

void DaemonSetup::ExpectOrderlyStop(int signal, std::chrono::milliseconds timeout,
                                    bool endLineLast) {
  const auto status = StopDaemon(signal, timeout);
  ASSERT_TRUE(status) << "still running after " << timeout.count() << " ms";
  ASSERT_TRUE(WIFEXITED(*status)) << "ended by signal " << WTERMSIG(*status);
  EXPECT_EQ(WEXITSTATUS(*status), 0);
  EXPECT_THAT(Stderr(), testing::HasSubstr("orvovia-snmpd is shutdowning.\n"));
  EXPECT_THAT(Stderr(), testing::HasSubstr("MonitoringProcessor Closed\n"));
  if (!endLineLast) return;
  EXPECT_THAT(Stdout(), testing::EndsWith("\n--- The End With Exit Code: (0) ---\n"));
}

}  // namespace Arq::SystemTests
