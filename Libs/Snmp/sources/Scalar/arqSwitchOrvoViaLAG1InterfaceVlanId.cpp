#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG1InterfaceVlanId.0: LAG 1's vlanId.
static arqSwitchOrvoViaLAGInterfaceVlanId_user_context_s
    arqSwitchOrvoViaLAG1InterfaceVlanIdUserContext(0);

int handle_arqSwitchOrvoViaLAG1InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG1InterfaceVlanIdUserContext, 0);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG1InterfaceVlanId", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG1InterfaceVlanIdUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG1InterfaceVlanId() {
  arqSwitchOrvoViaLAG1InterfaceVlanIdUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG1InterfaceVlanId", handle_arqSwitchOrvoViaLAG1InterfaceVlanId,
                 Oid::arqSwitchOrvoViaLAG1InterfaceVlanId);
}

}  // namespace Arq::Snmp
