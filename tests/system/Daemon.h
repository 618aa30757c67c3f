#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/SnmpMaster.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::SystemTests {

// The base identifier of the private MIB.
std::string Base();

// A private folder with its own snmpd master, a logger configuration naming
// the project's plug-in, and an options file; the daemon is started in it with
// the arguments given and stopped (SIGTERM, then SIGKILL) at the end.
class DaemonSetup {
 public:
  DaemonSetup();
  ~DaemonSetup();

  TestSupport::TempDir& Dir() { return dir_; }
  TestSupport::SnmpMaster& Master() { return *master_; }

  // Options file content, written in place (as an operator's editor does).
  void WriteOptions(const std::string& json);
  void StartDaemon(std::vector<std::string> arguments);
  TestSupport::ChildProcess& Daemon() { return *daemon_; }
  std::string Stdout() const;
  std::string Stderr() const;
  // The answer for B.<arcs>, e.g. "Counter32: 16".
  std::string Get(const std::string& arcs) const;
  bool WaitForGet(const std::string& arcs, const std::string& expected,
                  std::chrono::milliseconds timeout) const;
  // SIGTERM (or another signal) and the exit status, if it ended in time.
  std::optional<int> StopDaemon(int signal, std::chrono::milliseconds timeout);
  // Stops the daemon with `signal` and expects an orderly end within
  // `timeout`: status 0, the agent and the processor closed, and (unless
  // told otherwise) the end line last on standard output.
  void ExpectOrderlyStop(int signal, std::chrono::milliseconds timeout, bool endLineLast = true);

 private:
  TestSupport::TempDir dir_;
  std::unique_ptr<TestSupport::SnmpMaster> master_;
  std::unique_ptr<TestSupport::ChildProcess> daemon_;
};

}  // namespace Arq::SystemTests
