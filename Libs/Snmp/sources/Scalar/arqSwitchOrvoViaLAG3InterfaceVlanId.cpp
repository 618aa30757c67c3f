#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG3InterfaceVlanId.0: LAG 3's vlanId.
static arqSwitchOrvoViaLAGInterfaceVlanId_user_context_s
    arqSwitchOrvoViaLAG3InterfaceVlanIdUserContext(0);

int handle_arqSwitchOrvoViaLAG3InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG3InterfaceVlanIdUserContext, 2);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG3InterfaceVlanId", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG3InterfaceVlanIdUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG3InterfaceVlanId() {
  arqSwitchOrvoViaLAG3InterfaceVlanIdUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG3InterfaceVlanId", handle_arqSwitchOrvoViaLAG3InterfaceVlanId,
                 Oid::arqSwitchOrvoViaLAG3InterfaceVlanId);
}

}  // namespace Arq::Snmp
