#pragma once

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/SnmpMaster.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::SystemTests {

// The base identifier of the private MIB.
inline std::string Base() {
  return "1.3.6.1.4.1." + std::to_string(ARQ_ENTERPRISE_NUMBER) + ".3.5.1";
}

// The instance of an IF-MIB scalar (IfMibObjects.def), in dotted form.
inline std::string IfMibScalar(const std::string& name) {
  struct Object {
    const char* name;
    const char* arcs;
  };
#define ARQ_STD_OBJECT(object, syntax, ...) {#object, #__VA_ARGS__},
  static const Object kObjects[] = {
#include "../../Libs/Snmp/sources/Standard/Objects/IfMibObjects.def"
  };
#undef ARQ_STD_OBJECT
  for (const auto& object : kObjects) {
    if (name != object.name) continue;
    std::string dotted;
    for (const char* c = object.arcs; *c != '\0'; ++c) {
      if (*c != ' ') dotted += *c == ',' ? '.' : *c;
    }
    return dotted + ".0";
  }
  throw std::invalid_argument(name + " is no IF-MIB object served");
}

// A private folder with its own snmpd master, a logger configuration naming
// the project's plug-in, and an options file; the daemon is started in it with
// the arguments given and stopped (SIGTERM, then SIGKILL) at the end.
class DaemonSetup {
 public:
  DaemonSetup() : dir_("arq-system"), master_(dir_.Path()) {
    if (!master_.Start()) throw std::runtime_error("snmpd did not start");
    TestSupport::WriteFile(dir_.File("loggers.cfg"),
                           std::string(R"({"version":"1.0.0","loggers":[{"name":"stream",)") +
                               R"("libraryPath":")" + ARQ_STREAM_LOGGER_PATH + R"("}]})");
    WriteOptions(
        R"({"SwitchMonitoringControl":{"CollectMetrics":true,"CollectMetricsPeriod":1,"DebugLevel":"Warning"}})");
  }
  ~DaemonSetup() {
    if (daemon_) StopDaemon(SIGTERM, std::chrono::seconds(10));
  }

  TestSupport::TempDir& Dir() { return dir_; }
  TestSupport::SnmpMaster& Master() { return master_; }
  TestSupport::ChildProcess& Daemon() { return *daemon_; }

  // Options file content, written in place (as an operator's editor does).
  void WriteOptions(const std::string& json) {
    std::ofstream(dir_.File("SwitchMonitoringOptions.json"), std::ios::trunc) << json;
  }
  // `environment` adds to the master's variables (ORVOVIA_METRICS_ADDRESS, ...).
  void StartDaemon(std::vector<std::string> arguments,
                   const std::map<std::string, std::string>& environment = {}) {
    arguments.insert(
        arguments.begin(),
        {ARQ_DAEMON_PATH, "logger_configurations_path:" + dir_.File("loggers.cfg"),
         "data_setup_folder:" + dir_.Path(), "options_filename:SwitchMonitoringOptions.json"});
    auto variables = master_.Environment();
    variables.insert(environment.begin(), environment.end());
    daemon_ = std::make_unique<TestSupport::ChildProcess>(
        arguments, variables, dir_.File("daemon.out"), dir_.File("daemon.err"));
  }
  std::string Stdout() const { return TestSupport::ReadFile(dir_.File("daemon.out")); }
  std::string Stderr() const { return TestSupport::ReadFile(dir_.File("daemon.err")); }
  // The answer for B.<arcs>, e.g. "Counter32: 16".
  std::string Get(const std::string& arcs) const { return master_.Get(Base() + "." + arcs); }
  bool WaitForGet(const std::string& arcs, const std::string& expected,
                  std::chrono::milliseconds timeout) const {
    return TestSupport::WaitUntil([&] { return Get(arcs) == expected; }, timeout,
                                  std::chrono::milliseconds(200));
  }
  // SIGTERM (or another signal) and the exit status, if it ended in time.
  std::optional<int> StopDaemon(int signal, std::chrono::milliseconds timeout) {
    daemon_->Signal(signal);
    auto status = daemon_->WaitExit(timeout);
    if (!status) daemon_->Signal(SIGKILL);
    return status;
  }
  // Stops the daemon with `signal` and expects an orderly end within
  // `timeout`: status 0, the agent and the processor closed, and (unless
  // told otherwise) the end line last on standard output.
  void ExpectOrderlyStop(int signal, std::chrono::milliseconds timeout, bool endLineLast = true) {
    const auto status = StopDaemon(signal, timeout);
    ASSERT_TRUE(status) << "still running after " << timeout.count() << " ms";
    ASSERT_TRUE(WIFEXITED(*status)) << "ended by signal " << WTERMSIG(*status);
    EXPECT_EQ(WEXITSTATUS(*status), 0);
    EXPECT_THAT(Stderr(), testing::HasSubstr("orvovia-snmpd is shutdowning.\n"));
    EXPECT_THAT(Stderr(), testing::HasSubstr("MonitoringProcessor Closed\n"));
    if (endLineLast) {
      EXPECT_THAT(Stdout(), testing::EndsWith("\n--- The End With Exit Code: (0) ---\n"));
    }
  }

 private:
  TestSupport::TempDir dir_;
  TestSupport::SnmpMaster master_;
  std::unique_ptr<TestSupport::ChildProcess> daemon_;
};

}  // namespace Arq::SystemTests
