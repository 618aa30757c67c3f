#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG1InterfaceVlanIds.0: LAG 1's vlanIds.
static arqSwitchOrvoViaLAGInterfaceVlanIds_user_context_s
    arqSwitchOrvoViaLAG1InterfaceVlanIdsUserContext(Blank<Width::VlanIds>());

int handle_arqSwitchOrvoViaLAG1InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info* reqinfo,
                                                netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG1InterfaceVlanIdsUserContext, 0);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG1InterfaceVlanIds", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG1InterfaceVlanIdsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG1InterfaceVlanIds() {
  arqSwitchOrvoViaLAG1InterfaceVlanIdsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG1InterfaceVlanIds",
                 handle_arqSwitchOrvoViaLAG1InterfaceVlanIds,
                 Oid::arqSwitchOrvoViaLAG1InterfaceVlanIds);
}

}  // namespace Arq::Snmp
