#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG2InterfaceStatus.0: LAG 2's status.
static arqSwitchOrvoViaLAGInterfaceStatus_user_context_s
    arqSwitchOrvoViaLAG2InterfaceStatusUserContext(-1);

int handle_arqSwitchOrvoViaLAG2InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG2InterfaceStatusUserContext, 1);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG2InterfaceStatus", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG2InterfaceStatusUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG2InterfaceStatus() {
  arqSwitchOrvoViaLAG2InterfaceStatusUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG2InterfaceStatus", handle_arqSwitchOrvoViaLAG2InterfaceStatus,
                 Oid::arqSwitchOrvoViaLAG2InterfaceStatus);
}

}  // namespace Arq::Snmp
