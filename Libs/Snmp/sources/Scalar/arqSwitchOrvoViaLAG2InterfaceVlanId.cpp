#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG2InterfaceVlanId.0: LAG 2's vlanId.
static arqSwitchOrvoViaLAGInterfaceVlanId_user_context_s
    arqSwitchOrvoViaLAG2InterfaceVlanIdUserContext(0);

int handle_arqSwitchOrvoViaLAG2InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG2InterfaceVlanIdUserContext, 1);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG2InterfaceVlanId", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG2InterfaceVlanIdUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG2InterfaceVlanId() {
  arqSwitchOrvoViaLAG2InterfaceVlanIdUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG2InterfaceVlanId", handle_arqSwitchOrvoViaLAG2InterfaceVlanId,
                 Oid::arqSwitchOrvoViaLAG2InterfaceVlanId);
}

}  // namespace Arq::Snmp
