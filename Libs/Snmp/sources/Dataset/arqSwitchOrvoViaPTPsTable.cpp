#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

using arqSwitchOrvoViaPTPsTable_user_context_s = TableUserContext;
static arqSwitchOrvoViaPTPsTable_user_context_s arqSwitchOrvoViaPTPsTableUserContext;

GeneratedRow data_access_to_generated(const Metrics::PTPMetric& metric) {
  GeneratedRow row;
  row.push_back(Cell::Integer(metric.domain));
  row.push_back(Cell::Integer(metric.packetType));
  row.push_back(Cell::Integer(metric.clockMode));
  row.push_back(Cell::Text(metric.interfaces, Width::PtpInterfaces));
  return row;
}

static void update_user_context_from_monitoring(arqSwitchOrvoViaPTPsTable_user_context_s& context,
                                                long row) {
  RefreshRow(
      context.rows[static_cast<std::size_t>(row)],
      context.monitoringValues->pTPMetrics[static_cast<std::size_t>(row)],
      [row] { return Format("pTPMetrics has changed on row: %ld.\n", row); },
      [](const Metrics::PTPMetric& metric) { return data_access_to_generated(metric); });
}

static void InitializeSwitchOrvoViaPTPsTable() {
  CreateRows(arqSwitchOrvoViaPTPsTableUserContext, data_access_to_generated(Metrics::PTPMetric()),
             Shape::arqSwitchOrvoViaPTPsTable.rows);
}

int arqSwitchOrvoViaPTPsTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                      netsnmp_agent_request_info* reqinfo,
                                      netsnmp_request_info* requests) {
  return HandleTable(arqSwitchOrvoViaPTPsTableUserContext, Shape::arqSwitchOrvoViaPTPsTable.rows,
                     reqinfo, requests, [](long row) {
                       update_user_context_from_monitoring(arqSwitchOrvoViaPTPsTableUserContext,
                                                           row);
                     });
}

void initialize_table_arqSwitchOrvoViaPTPsTable() {
  InitializeTable(arqSwitchOrvoViaPTPsTableUserContext,
                  {"arqSwitchOrvoViaPTPsTable", Oid::arqSwitchOrvoViaPTPsTable,
                   data_access_to_generated(Metrics::PTPMetric())},
                  arqSwitchOrvoViaPTPsTable_handler);
  InitializeSwitchOrvoViaPTPsTable();
  snmp_log(LOG_INFO, "initialize_table_arqSwitchOrvoViaPTPsTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaPTPsTable() {
  initialize_table_arqSwitchOrvoViaPTPsTable();
}

void shutdown_arqSwitchOrvoViaPTPsTable() {
  ShutdownTable(arqSwitchOrvoViaPTPsTableUserContext);
}

}  // namespace Arq::Snmp
