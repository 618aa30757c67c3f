#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG1InterfaceName.0: LAG 1's name.
static arqSwitchOrvoViaLAGInterfaceName_user_context_s arqSwitchOrvoViaLAG1InterfaceNameUserContext(
    Blank<Width::Name>());

int handle_arqSwitchOrvoViaLAG1InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info* reqinfo,
                                             netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG1InterfaceNameUserContext, 0);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG1InterfaceName", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG1InterfaceNameUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG1InterfaceName() {
  arqSwitchOrvoViaLAG1InterfaceNameUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG1InterfaceName", handle_arqSwitchOrvoViaLAG1InterfaceName,
                 Oid::arqSwitchOrvoViaLAG1InterfaceName);
}

}  // namespace Arq::Snmp
