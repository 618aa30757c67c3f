#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts.0: LAG 1's nbEthernetPorts.
static arqSwitchOrvoViaLAGInterfaceNbEthernetPorts_user_context_s
    arqSwitchOrvoViaLAG1InterfaceNbEthernetPortsUserContext(0);

int handle_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info* reqinfo,
                                                        netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG1InterfaceNbEthernetPortsUserContext, 0);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG1InterfaceNbEthernetPortsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts() {
  arqSwitchOrvoViaLAG1InterfaceNbEthernetPortsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts",
                 handle_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts,
                 Oid::arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts);
}

}  // namespace Arq::Snmp
