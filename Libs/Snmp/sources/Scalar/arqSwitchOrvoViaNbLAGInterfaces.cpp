#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaNbLAGInterfaces.0: Counter32, nbLAGInterfaces of the monitoring values.
struct arqSwitchOrvoViaNbLAGInterfaces_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaNbLAGInterfaces_user_context_s arqSwitchOrvoViaNbLAGInterfacesUserContext(0);

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaNbLAGInterfaces_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->nbLAGInterfaces,
      [] { return "nbLAGInterfaces has changed.\n"; },
      [](long value) { return static_cast<std::int64_t>(value); });
}

int handle_arqSwitchOrvoViaNbLAGInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info* reqinfo,
                                           netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaNbLAGInterfacesUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaNbLAGInterfaces", ScalarSyntax::Counter,
                      arqSwitchOrvoViaNbLAGInterfacesUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaNbLAGInterfaces() {
  arqSwitchOrvoViaNbLAGInterfacesUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaNbLAGInterfaces", handle_arqSwitchOrvoViaNbLAGInterfaces,
                 Oid::arqSwitchOrvoViaNbLAGInterfaces);
}

}  // namespace Arq::Snmp
