#pragma once

#include <string>

namespace Arq::Snmp {

// Turns the process into an AgentX sub-agent ("orvovia-snmpd") serving the
// private MIB from the process-wide monitoring values. Run() owns the calling
// thread until SIGTERM or SIGINT. The master's AgentX socket comes from the
// library's configuration file "orvovia-snmpd.conf" (found through
// SNMPCONFPATH), not from the program.
class SnmpSubAgent {
 public:
  // `logFileName`: file the SNMP library appends its log to; empty for
  // standard error.
  explicit SnmpSubAgent(const std::string& logFileName);
  void Run();

 private:
  std::string logFileName;
  int agentxSubagent;
  int useSyslog;
};

}  // namespace Arq::Snmp

extern "C" void stop_server(int signal);
