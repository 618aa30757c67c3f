#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG2InterfaceName.0: LAG 2's name.
static arqSwitchOrvoViaLAGInterfaceName_user_context_s arqSwitchOrvoViaLAG2InterfaceNameUserContext(
    Blank<Width::Name>());

int handle_arqSwitchOrvoViaLAG2InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info* reqinfo,
                                             netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG2InterfaceNameUserContext, 1);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG2InterfaceName", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG2InterfaceNameUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG2InterfaceName() {
  arqSwitchOrvoViaLAG2InterfaceNameUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG2InterfaceName", handle_arqSwitchOrvoViaLAG2InterfaceName,
                 Oid::arqSwitchOrvoViaLAG2InterfaceName);
}

}  // namespace Arq::Snmp
