#include "Dataset/LAGInterfaceEthernetPortsTable.h"

namespace Arq::Snmp {

using namespace Mechanism;

// The three LAG tables share this code, so they share one shape.
static_assert(Shape::arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable.rows ==
                  Shape::arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable.rows &&
              Shape::arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable.rows ==
                  Shape::arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable.rows);

GeneratedRow data_access_to_generated(const Metrics::EthernetMetric& metric) {
  GeneratedRow row;
  AppendEthernetCells(row, metric);
  return row;
}

void InitializeSwitchOrvoViaLAGInterfaceEthernetPortsTable(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context) {
  CreateRows(context, data_access_to_generated(Metrics::EthernetMetric()),
             Shape::arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable.rows);
}

void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context, unsigned long lagIndex,
    long row) {
  auto& cached = context.rows[static_cast<std::size_t>(row)];
  const auto& holder = context.monitoringValues->lAGInterfaceMetrics[lagIndex];
  const TimePoint changed = holder.ChangeTime();
  if (changed == cached.changeTime) return;
  snmp_log(LOG_INFO,
           "lAGInterfaceMetrics[%ld] has changed (InterfaceEthernetMetrics) on row: %ld.\n",
           static_cast<long>(lagIndex), row);
  const Metrics::LAGInterfaceMetric metric = holder.Value();
  if (row < metric.nbEthernetPorts) {
    cached.row = data_access_to_generated(metric.ethernets[static_cast<std::size_t>(row)]);
    cached.row.ShrinkToFit();
  }
  cached.changeTime = changed;
}

int HandleLAGInterfaceEthernetPortsTable(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context, unsigned long lagIndex,
    netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  return HandleTable(context, Shape::arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable.rows, reqinfo,
                     requests, [&context, lagIndex](long row) {
                       update_user_context_from_monitoring(context, lagIndex, row);
                     });
}

}  // namespace Arq::Snmp
