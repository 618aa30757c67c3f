#include "Dataset/LAGInterfaceEthernetPortsTable.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// The member ports of LAG 2: 6 rows, whatever the number of ports.
static arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s
    arqSwitchOrvoViaLAG2InterfaceEthernetPortsTableUserContext;

int arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info* reqinfo,
                                                            netsnmp_request_info* requests) {
  return HandleLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG2InterfaceEthernetPortsTableUserContext, 1, reqinfo, requests);
}

void initialize_table_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable() {
  InitializeTable(arqSwitchOrvoViaLAG2InterfaceEthernetPortsTableUserContext,
                  {"arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable",
                   Oid::arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable,
                   data_access_to_generated(Metrics::EthernetMetric())},
                  arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable_handler);
  InitializeSwitchOrvoViaLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG2InterfaceEthernetPortsTableUserContext);
  snmp_log(LOG_INFO,
           "initialize_table_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable() {
  initialize_table_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
}

void shutdown_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable() {
  ShutdownTable(arqSwitchOrvoViaLAG2InterfaceEthernetPortsTableUserContext);
}

}  // namespace Arq::Snmp
