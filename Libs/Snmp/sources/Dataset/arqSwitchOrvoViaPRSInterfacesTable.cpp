#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

using arqSwitchOrvoViaPRSInterfacesTable_user_context_s = TableUserContext;
static arqSwitchOrvoViaPRSInterfacesTable_user_context_s
    arqSwitchOrvoViaPRSInterfacesTableUserContext;

GeneratedRow data_access_to_generated(const Metrics::PRSInterfaceMetric& metric) {
  GeneratedRow row;
  row.push_back(Cell::Text(metric.name, Width::Name));
  row.push_back(Cell::Integer(metric.status));
  row.push_back(Cell::Integer(metric.vid));
  row.push_back(Cell::Text(metric.vlanIds, Width::VlanIds));
  AppendEthernetCells(row, metric.ethernets[0]);
  AppendEthernetCells(row, metric.ethernets[1]);
  return row;
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaPRSInterfacesTable_user_context_s& context, long row) {
  RefreshRow(
      context.rows[static_cast<std::size_t>(row)],
      context.monitoringValues->pRSInterfaceMetrics[static_cast<std::size_t>(row)],
      [row] { return Format("pRSInterfaceMetrics has changed on row: %ld.\n", row); },
      [](const Metrics::PRSInterfaceMetric& metric) { return data_access_to_generated(metric); });
}

static void InitializeSwitchOrvoViaPRSInterfacesTable() {
  CreateRows(arqSwitchOrvoViaPRSInterfacesTableUserContext,
             data_access_to_generated(Metrics::PRSInterfaceMetric()),
             Shape::arqSwitchOrvoViaPRSInterfacesTable.rows);
}

int arqSwitchOrvoViaPRSInterfacesTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  return HandleTable(
      arqSwitchOrvoViaPRSInterfacesTableUserContext, Shape::arqSwitchOrvoViaPRSInterfacesTable.rows,
      reqinfo, requests, [](long row) {
        update_user_context_from_monitoring(arqSwitchOrvoViaPRSInterfacesTableUserContext, row);
      });
}

void initialize_table_arqSwitchOrvoViaPRSInterfacesTable() {
  InitializeTable(arqSwitchOrvoViaPRSInterfacesTableUserContext,
                  {"arqSwitchOrvoViaPRSInterfacesTable", Oid::arqSwitchOrvoViaPRSInterfacesTable,
                   data_access_to_generated(Metrics::PRSInterfaceMetric())},
                  arqSwitchOrvoViaPRSInterfacesTable_handler);
  InitializeSwitchOrvoViaPRSInterfacesTable();
  snmp_log(LOG_INFO, "initialize_table_arqSwitchOrvoViaPRSInterfacesTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaPRSInterfacesTable() {
  initialize_table_arqSwitchOrvoViaPRSInterfacesTable();
}

void shutdown_arqSwitchOrvoViaPRSInterfacesTable() {
  ShutdownTable(arqSwitchOrvoViaPRSInterfacesTableUserContext);
}

}  // namespace Arq::Snmp
