#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaNbPTPs.0: Counter32, nbPTPs of the monitoring values.
struct arqSwitchOrvoViaNbPTPs_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaNbPTPs_user_context_s arqSwitchOrvoViaNbPTPsUserContext(0);

static void update_user_context_from_monitoring(arqSwitchOrvoViaNbPTPs_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->nbPTPs, [] { return "nbPTPs has changed.\n"; },
      [](long value) { return static_cast<std::int64_t>(value); });
}

int handle_arqSwitchOrvoViaNbPTPs(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                  netsnmp_agent_request_info* reqinfo,
                                  netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaNbPTPsUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaNbPTPs", ScalarSyntax::Counter,
                      arqSwitchOrvoViaNbPTPsUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaNbPTPs() {
  arqSwitchOrvoViaNbPTPsUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaNbPTPs", handle_arqSwitchOrvoViaNbPTPs,
                 Oid::arqSwitchOrvoViaNbPTPs);
}

}  // namespace Arq::Snmp
