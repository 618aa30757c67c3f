#pragma once

#include <functional>
#include <memory>
#include <string>

namespace Arq::Snmp {

namespace Standard {
class StandardViews;
}

// Turns the process into an AgentX sub-agent ("orvovia-snmpd") serving the
// private MIB from the process-wide monitoring values. Run() owns the calling
// thread until SIGTERM, SIGINT or SIGHUP. The master's AgentX socket comes from the
// library's configuration file "orvovia-snmpd.conf" (found through
// SNMPCONFPATH), not from the program.
class SnmpSubAgent {
 public:
  // `logFileName`: file the SNMP library appends its log to; empty for
  // standard error. When standard output already is that file (the daemon's
  // redirected output), the log is written through standard output instead,
  // so that it follows every split of the file. `logThreshold`: the least
  // urgent syslog priority of the library's log that is written, read at each
  // line (null: every line); the log goes through a LogFilter either way.
  explicit SnmpSubAgent(std::string logFileName, std::function<int()> logThreshold = nullptr);
  ~SnmpSubAgent();
  SnmpSubAgent(const SnmpSubAgent&) = delete;
  SnmpSubAgent& operator=(const SnmpSubAgent&) = delete;
  void Run();

  // True when standard output's descriptor is the file at `path`.
  static bool IsStandardOutputOn(const std::string& path);

 private:
  std::string logFileName;
  std::function<int()> logThreshold;
  int agentxSubagent = 1;
  int useSyslog = 0;
  // The standard views Run registers; see Run.
  std::unique_ptr<Standard::StandardViews> views;
};

}  // namespace Arq::Snmp

extern "C" void stop_server(int signal);
