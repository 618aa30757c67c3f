#pragma once

namespace Arq::Snmp {

// Logs one error line through snmp_log when the master's AgentX socket is a
// Unix socket that exists but that this process may not connect to (its user
// lacks the socket's group). Net-SNMP's own warning for that case names no
// reason, and the sub-agent would otherwise retry silently for ever.
// Call after init_snmp, once the configured socket is known.
void ReportMasterSocketAccess();

}  // namespace Arq::Snmp
