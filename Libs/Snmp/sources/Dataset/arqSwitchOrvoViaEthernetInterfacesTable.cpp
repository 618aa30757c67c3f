#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

using arqSwitchOrvoViaEthernetInterfacesTable_user_context_s = TableUserContext;
static arqSwitchOrvoViaEthernetInterfacesTable_user_context_s
    arqSwitchOrvoViaEthernetInterfacesTableUserContext;

GeneratedRow data_access_to_generated(const Metrics::EthernetInterfaceMetric& metric) {
  GeneratedRow row;
  row.push_back(Cell::Text(metric.name, Width::Name));
  row.push_back(Cell::Integer(metric.status));
  row.push_back(Cell::Integer(metric.vid));
  row.push_back(Cell::Text(metric.vlanIds, Width::VlanIds));
  AppendEthernetCells(row, metric.ethernet);
  return row;
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaEthernetInterfacesTable_user_context_s& context, long row) {
  RefreshRow(
      context.rows[static_cast<std::size_t>(row)],
      context.monitoringValues->ethernetInterfaceMetrics[static_cast<std::size_t>(row)],
      [row] { return Format("ethernetInterfaceMetrics has changed on row: %ld.\n", row); },
      [](const Metrics::EthernetInterfaceMetric& metric) {
        return data_access_to_generated(metric);
      });
}

static void InitializeSwitchOrvoViaEthernetInterfacesTable() {
  CreateRows(arqSwitchOrvoViaEthernetInterfacesTableUserContext,
             data_access_to_generated(Metrics::EthernetInterfaceMetric()),
             Shape::arqSwitchOrvoViaEthernetInterfacesTable.rows);
}

int arqSwitchOrvoViaEthernetInterfacesTable_handler(netsnmp_mib_handler*,
                                                    netsnmp_handler_registration*,
                                                    netsnmp_agent_request_info* reqinfo,
                                                    netsnmp_request_info* requests) {
  return HandleTable(arqSwitchOrvoViaEthernetInterfacesTableUserContext,
                     Shape::arqSwitchOrvoViaEthernetInterfacesTable.rows, reqinfo, requests,
                     [](long row) {
                       update_user_context_from_monitoring(
                           arqSwitchOrvoViaEthernetInterfacesTableUserContext, row);
                     });
}

void initialize_table_arqSwitchOrvoViaEthernetInterfacesTable() {
  InitializeTable(
      arqSwitchOrvoViaEthernetInterfacesTableUserContext,
      {"arqSwitchOrvoViaEthernetInterfacesTable", Oid::arqSwitchOrvoViaEthernetInterfacesTable,
       data_access_to_generated(Metrics::EthernetInterfaceMetric())},
      arqSwitchOrvoViaEthernetInterfacesTable_handler);
  InitializeSwitchOrvoViaEthernetInterfacesTable();
  snmp_log(LOG_INFO,
           "initialize_table_arqSwitchOrvoViaEthernetInterfacesTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaEthernetInterfacesTable() {
  initialize_table_arqSwitchOrvoViaEthernetInterfacesTable();
}

void shutdown_arqSwitchOrvoViaEthernetInterfacesTable() {
  ShutdownTable(arqSwitchOrvoViaEthernetInterfacesTableUserContext);
}

}  // namespace Arq::Snmp
