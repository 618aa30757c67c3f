#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG3InterfaceName.0: LAG 3's name.
static arqSwitchOrvoViaLAGInterfaceName_user_context_s arqSwitchOrvoViaLAG3InterfaceNameUserContext(
    Blank<Width::Name>());

int handle_arqSwitchOrvoViaLAG3InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info* reqinfo,
                                             netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG3InterfaceNameUserContext, 2);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG3InterfaceName", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG3InterfaceNameUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG3InterfaceName() {
  arqSwitchOrvoViaLAG3InterfaceNameUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG3InterfaceName", handle_arqSwitchOrvoViaLAG3InterfaceName,
                 Oid::arqSwitchOrvoViaLAG3InterfaceName);
}

}  // namespace Arq::Snmp
