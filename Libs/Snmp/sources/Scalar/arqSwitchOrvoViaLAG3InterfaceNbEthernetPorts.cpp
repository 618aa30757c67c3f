#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts.0: LAG 3's nbEthernetPorts.
static arqSwitchOrvoViaLAGInterfaceNbEthernetPorts_user_context_s
    arqSwitchOrvoViaLAG3InterfaceNbEthernetPortsUserContext(0);

int handle_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info* reqinfo,
                                                        netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG3InterfaceNbEthernetPortsUserContext, 2);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG3InterfaceNbEthernetPortsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts() {
  arqSwitchOrvoViaLAG3InterfaceNbEthernetPortsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts",
                 handle_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts,
                 Oid::arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts);
}

}  // namespace Arq::Snmp
