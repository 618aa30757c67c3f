#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::TestSupport {

// A private snmpd master agent on 127.0.0.1:<free port> with its AgentX socket,
// configuration and persistent folder in `dir`. It also writes the sub-agent's
// "orvovia-snmpd.conf" there, so a sub-agent started with Environment() finds
// the socket. Nothing outside `dir` is touched.
class SnmpMaster {
 public:
  explicit SnmpMaster(const std::string& dir);
  ~SnmpMaster();

  // Starts snmpd and waits until it answers (bounded). False if it did not.
  bool Start(std::chrono::milliseconds timeout = std::chrono::seconds(15));
  void Stop();
  // Adds lines to snmpd.conf, for the next Start().
  void AppendConfig(const std::string& lines);

  std::string Address() const { return "udp:127.0.0.1:" + std::to_string(port_); }
  // Its folder; the agents' persistent folder is "persist" in it.
  const std::string& Dir() const { return dir_; }
  // SNMPCONFPATH, SNMP_PERSISTENT_DIR and MIBS for snmpd, the sub-agent and the tools.
  std::map<std::string, std::string> Environment() const;

  // snmpget/snmpgetnext/snmpwalk with -v2c -c public -On -Oe and extra options
  // before the OIDs; returns the tool's standard output.
  CommandResult Tool(const std::string& tool, const std::vector<std::string>& options,
                     const std::vector<std::string>& oids,
                     std::chrono::milliseconds timeout = std::chrono::seconds(20)) const;
  // One "OID = TYPE: value" line per variable of a numeric walk, as a map OID → "TYPE: value".
  std::map<std::string, std::string> Walk(const std::string& oid) const;
  // The "TYPE: value" answer for one OID, or the tool's error text.
  std::string Get(const std::string& oid) const;

 private:
  std::string dir_;
  int port_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace Arq::TestSupport
