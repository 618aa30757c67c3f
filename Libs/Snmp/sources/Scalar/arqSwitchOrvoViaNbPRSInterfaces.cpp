#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaNbPRSInterfaces.0: Counter32, nbPRSInterfaces of the monitoring values.
struct arqSwitchOrvoViaNbPRSInterfaces_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaNbPRSInterfaces_user_context_s arqSwitchOrvoViaNbPRSInterfacesUserContext(0);

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaNbPRSInterfaces_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->nbPRSInterfaces,
      [] { return "nbPRSInterfaces has changed.\n"; },
      [](long value) { return static_cast<std::int64_t>(value); });
}

int handle_arqSwitchOrvoViaNbPRSInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info* reqinfo,
                                           netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaNbPRSInterfacesUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaNbPRSInterfaces", ScalarSyntax::Counter,
                      arqSwitchOrvoViaNbPRSInterfacesUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaNbPRSInterfaces() {
  arqSwitchOrvoViaNbPRSInterfacesUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaNbPRSInterfaces", handle_arqSwitchOrvoViaNbPRSInterfaces,
                 Oid::arqSwitchOrvoViaNbPRSInterfaces);
}

}  // namespace Arq::Snmp
