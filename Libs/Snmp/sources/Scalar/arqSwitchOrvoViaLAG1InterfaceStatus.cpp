#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG1InterfaceStatus.0: LAG 1's status.
static arqSwitchOrvoViaLAGInterfaceStatus_user_context_s
    arqSwitchOrvoViaLAG1InterfaceStatusUserContext(-1);

int handle_arqSwitchOrvoViaLAG1InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG1InterfaceStatusUserContext, 0);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG1InterfaceStatus", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG1InterfaceStatusUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG1InterfaceStatus() {
  arqSwitchOrvoViaLAG1InterfaceStatusUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG1InterfaceStatus", handle_arqSwitchOrvoViaLAG1InterfaceStatus,
                 Oid::arqSwitchOrvoViaLAG1InterfaceStatus);
}

}  // namespace Arq::Snmp
