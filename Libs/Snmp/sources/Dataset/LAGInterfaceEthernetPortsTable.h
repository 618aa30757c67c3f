#pragma once

// What the three LAG ethernet-ports tables share: the record type, the row
// creation and the refresh. A row shows the LAG's port at that position.
#include "Mechanism.h"

namespace Arq::Snmp {

using arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s = Mechanism::TableUserContext;

Mechanism::GeneratedRow data_access_to_generated(const Mechanism::Metrics::EthernetMetric& metric);

void InitializeSwitchOrvoViaLAGInterfaceEthernetPortsTable(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context);

// A change of the LAG holder is seen by each row on its next read; a row past
// the LAG's ports keeps its previous content.
void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context, unsigned long lagIndex,
    long row);

int HandleLAGInterfaceEthernetPortsTable(
    arqSwitchOrvoViaLAGInterfaceEthernetPortsTable_user_context_s& context, unsigned long lagIndex,
    netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests);

}  // namespace Arq::Snmp
