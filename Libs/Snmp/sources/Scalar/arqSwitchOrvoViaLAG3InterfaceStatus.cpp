#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG3InterfaceStatus.0: LAG 3's status.
static arqSwitchOrvoViaLAGInterfaceStatus_user_context_s
    arqSwitchOrvoViaLAG3InterfaceStatusUserContext(-1);

int handle_arqSwitchOrvoViaLAG3InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG3InterfaceStatusUserContext, 2);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG3InterfaceStatus", ScalarSyntax::Integer,
                      arqSwitchOrvoViaLAG3InterfaceStatusUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG3InterfaceStatus() {
  arqSwitchOrvoViaLAG3InterfaceStatusUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG3InterfaceStatus", handle_arqSwitchOrvoViaLAG3InterfaceStatus,
                 Oid::arqSwitchOrvoViaLAG3InterfaceStatus);
}

}  // namespace Arq::Snmp
