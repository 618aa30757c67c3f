#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG3InterfaceVlanIds.0: LAG 3's vlanIds.
static arqSwitchOrvoViaLAGInterfaceVlanIds_user_context_s
    arqSwitchOrvoViaLAG3InterfaceVlanIdsUserContext(Blank<Width::VlanIds>());

int handle_arqSwitchOrvoViaLAG3InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info* reqinfo,
                                                netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG3InterfaceVlanIdsUserContext, 2);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG3InterfaceVlanIds", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG3InterfaceVlanIdsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG3InterfaceVlanIds() {
  arqSwitchOrvoViaLAG3InterfaceVlanIdsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG3InterfaceVlanIds",
                 handle_arqSwitchOrvoViaLAG3InterfaceVlanIds,
                 Oid::arqSwitchOrvoViaLAG3InterfaceVlanIds);
}

}  // namespace Arq::Snmp
