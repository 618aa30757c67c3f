#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

using arqSwitchOrvoViaHardwareInfosTable_user_context_s = TableUserContext;
static arqSwitchOrvoViaHardwareInfosTable_user_context_s
    arqSwitchOrvoViaHardwareInfosTableUserContext;

GeneratedRow data_access_to_generated(const Metrics::LLDPInfoMetric& metric) {
  GeneratedRow row;
  row.push_back(Cell::Text(metric.localInterface, Width::HardwareText));
  row.push_back(Cell::Text(metric.version, Width::HardwareVersion));
  row.push_back(Cell::Text(metric.deviceType, Width::HardwareText));
  row.push_back(Cell::Text(metric.deviceName, Width::HardwareDeviceName));
  row.push_back(Cell::Text(metric.chassisId, Width::HardwareText));
  row.push_back(Cell::Text(metric.ipAddress, Width::AddressText, ColumnSyntax::IpAddress));
  row.push_back(Cell::Text(metric.macAddress, Width::HardwareText));
  row.push_back(Cell::Text(metric.interfaceName, Width::HardwareText));
  row.push_back(Cell::Integer(metric.timeToLive));
  row.push_back(Cell::Text(metric.serialNumber, Width::HardwareText));
  return row;
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaHardwareInfosTable_user_context_s& context, long row) {
  RefreshRow(
      context.rows[static_cast<std::size_t>(row)],
      context.monitoringValues->lLDPInfoMetrics[static_cast<std::size_t>(row)],
      [row] { return Format("lLDPInfoMetrics has changed on row: %ld.\n", row); },
      [](const Metrics::LLDPInfoMetric& metric) { return data_access_to_generated(metric); });
}

static void InitializeSwitchOrvoViaHardwareInfosTable() {
  CreateRows(arqSwitchOrvoViaHardwareInfosTableUserContext,
             data_access_to_generated(Metrics::LLDPInfoMetric()),
             Shape::arqSwitchOrvoViaHardwareInfosTable.rows);
}

int arqSwitchOrvoViaHardwareInfosTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  return HandleTable(
      arqSwitchOrvoViaHardwareInfosTableUserContext, Shape::arqSwitchOrvoViaHardwareInfosTable.rows,
      reqinfo, requests, [](long row) {
        update_user_context_from_monitoring(arqSwitchOrvoViaHardwareInfosTableUserContext, row);
      });
}

void initialize_table_arqSwitchOrvoViaHardwareInfosTable() {
  InitializeTable(arqSwitchOrvoViaHardwareInfosTableUserContext,
                  {"arqSwitchOrvoViaHardwareInfosTable", Oid::arqSwitchOrvoViaHardwareInfosTable,
                   data_access_to_generated(Metrics::LLDPInfoMetric())},
                  arqSwitchOrvoViaHardwareInfosTable_handler);
  InitializeSwitchOrvoViaHardwareInfosTable();
  snmp_log(LOG_INFO, "initialize_table_arqSwitchOrvoViaHardwareInfosTable Initializing Done.\n");
}

void init_arqSwitchOrvoViaHardwareInfosTable() {
  initialize_table_arqSwitchOrvoViaHardwareInfosTable();
}

void shutdown_arqSwitchOrvoViaHardwareInfosTable() {
  ShutdownTable(arqSwitchOrvoViaHardwareInfosTableUserContext);
}

}  // namespace Arq::Snmp
