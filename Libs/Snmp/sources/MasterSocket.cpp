#include "MasterSocket.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// The agent headers need the two above first.
#include <net-snmp/agent/net-snmp-agent-includes.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace Arq::Snmp {

namespace {

// The file of an AgentX address: "/path" or "unix:/path" (the first of a
// comma-separated list); empty for a TCP address.
std::string UnixSocketPath(const std::string& address) {
  std::string first = address.substr(0, address.find(','));
  const std::string scheme = "unix:";
  if (first.compare(0, scheme.size(), scheme) == 0) first.erase(0, scheme.size());
  return !first.empty() && first[0] == '/' ? first : std::string();
}

}  // namespace

void ReportMasterSocketAccess() {
  const char* configured =
      netsnmp_ds_get_string(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_X_SOCKET);
  const std::string path =
      UnixSocketPath(configured != nullptr ? configured : NETSNMP_AGENTX_SOCKET);
  // Connecting needs write access to the socket and search access to its
  // folders: access() checks both. A missing socket (master not started yet)
  // is Net-SNMP's to retry.
  if (path.empty() || access(path.c_str(), R_OK | W_OK) == 0 || errno != EACCES) return;
  snmp_log(LOG_ERR,
           "orvovia-snmpd: permission denied on the AgentX master socket %s for uid %u gid %u: "
           "the daemon's user needs the socket's group (agentXPerms of the master)\n",
           path.c_str(), static_cast<unsigned>(getuid()), static_cast<unsigned>(getgid()));
}

}  // namespace Arq::Snmp
