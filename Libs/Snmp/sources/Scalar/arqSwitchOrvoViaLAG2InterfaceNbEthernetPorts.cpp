#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts.0: LAG 2's nbEthernetPorts.
static arqSwitchOrvoViaLAGInterfaceNbEthernetPorts_user_context_s
    arqSwitchOrvoViaLAG2InterfaceNbEthernetPortsUserContext(0);

int handle_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info* reqinfo,
                                                        netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG2InterfaceNbEthernetPortsUserContext, 1);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG2InterfaceNbEthernetPortsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts() {
  arqSwitchOrvoViaLAG2InterfaceNbEthernetPortsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts",
                 handle_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts,
                 Oid::arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts);
}

}  // namespace Arq::Snmp
