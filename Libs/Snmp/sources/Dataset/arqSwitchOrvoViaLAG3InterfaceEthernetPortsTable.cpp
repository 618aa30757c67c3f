#include "Dataset/LAGInterfaceEthernetPortsTable.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// The member ports of LAG 3: 6 rows, whatever the number of ports.
static arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s
    arqSwitchOrvoViaLAG3InterfaceEthernetPortsTableUserContext;

int arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info* reqinfo,
                                                            netsnmp_request_info* requests) {
  return HandleLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG3InterfaceEthernetPortsTableUserContext, 2, reqinfo, requests);
}

void initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable() {
  InitializeTable(arqSwitchOrvoViaLAG3InterfaceEthernetPortsTableUserContext,
                  {"arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable",
                   Oid::arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable,
                   data_access_to_generated(Metrics::EthernetMetric())},
                  arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable_handler);
  InitializeSwitchOrvoViaLAGInterfaceEthernetPortsTable(
      arqSwitchOrvoViaLAG3InterfaceEthernetPortsTableUserContext);
  snmp_log(LOG_INFO,
           "initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable() {
  initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
}

void shutdown_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable() {
  ShutdownTable(arqSwitchOrvoViaLAG3InterfaceEthernetPortsTableUserContext);
}

}  // namespace Arq::Snmp
