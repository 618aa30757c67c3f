#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaNbEthernetInterfaces.0: Counter32, nbEthernetInterfaces of the monitoring values.
struct arqSwitchOrvoViaNbEthernetInterfaces_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaNbEthernetInterfaces_user_context_s
    arqSwitchOrvoViaNbEthernetInterfacesUserContext(0);

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaNbEthernetInterfaces_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->nbEthernetInterfaces,
      [] { return "nbEthernetInterfaces has changed.\n"; },
      [](long value) { return static_cast<std::int64_t>(value); });
}

int handle_arqSwitchOrvoViaNbEthernetInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info* reqinfo,
                                                netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaNbEthernetInterfacesUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaNbEthernetInterfaces", ScalarSyntax::Counter,
                      arqSwitchOrvoViaNbEthernetInterfacesUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaNbEthernetInterfaces() {
  arqSwitchOrvoViaNbEthernetInterfacesUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaNbEthernetInterfaces",
                 handle_arqSwitchOrvoViaNbEthernetInterfaces,
                 Oid::arqSwitchOrvoViaNbEthernetInterfaces);
}

}  // namespace Arq::Snmp
