#include "Dataset/LAGInterfaceEthernetPortsTable.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// The member ports of LAG 1: 6 rows, whatever the number of ports.
static arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s
    arqSwitchOrvoViaLAG1InterfaceEthernetPortsTableUserContext;

int arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info* reqinfo,
                                                            netsnmp_request_info* requests) {
  return HandleLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG1InterfaceEthernetPortsTableUserContext, 0, reqinfo, requests);
}

void initialize_table_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable() {
  InitializeTable(arqSwitchOrvoViaLAG1InterfaceEthernetPortsTableUserContext,
                  {"arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable",
                   Oid::arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable,
                   data_access_to_generated(Metrics::EthernetMetric())},
                  arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable_handler);
  InitializeSwitchOrvoViaLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG1InterfaceEthernetPortsTableUserContext);
  snmp_log(LOG_INFO,
           "initialize_table_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable() {
  initialize_table_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
}

void shutdown_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable() {
  ShutdownTable(arqSwitchOrvoViaLAG1InterfaceEthernetPortsTableUserContext);
}

}  // namespace Arq::Snmp
