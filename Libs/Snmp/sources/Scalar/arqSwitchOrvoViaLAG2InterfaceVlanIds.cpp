#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Scalar/LAGInterfaceScalars.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLAG2InterfaceVlanIds.0: LAG 2's vlanIds.
static arqSwitchOrvoViaLAGInterfaceVlanIds_user_context_s
    arqSwitchOrvoViaLAG2InterfaceVlanIdsUserContext(Blank<Width::VlanIds>());

int handle_arqSwitchOrvoViaLAG2InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info* reqinfo,
                                                netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLAG2InterfaceVlanIdsUserContext, 1);
  return AnswerScalar("handle_arqSwitchOrvoViaLAG2InterfaceVlanIds", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLAG2InterfaceVlanIdsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLAG2InterfaceVlanIds() {
  arqSwitchOrvoViaLAG2InterfaceVlanIdsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLAG2InterfaceVlanIds",
                 handle_arqSwitchOrvoViaLAG2InterfaceVlanIds,
                 Oid::arqSwitchOrvoViaLAG2InterfaceVlanIds);
}

}  // namespace Arq::Snmp
