#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaNbHardwareInfos.0: Counter32, nbLLDPInfos of the monitoring values.
struct arqSwitchOrvoViaNbHardwareInfos_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaNbHardwareInfos_user_context_s arqSwitchOrvoViaNbHardwareInfosUserContext(0);

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaNbHardwareInfos_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->nbLLDPInfos, [] { return "nbLLDPInfos has changed.\n"; },
      [](long value) { return static_cast<std::int64_t>(value); });
}

int handle_arqSwitchOrvoViaNbHardwareInfos(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info* reqinfo,
                                           netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaNbHardwareInfosUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaNbHardwareInfos", ScalarSyntax::Counter,
                      arqSwitchOrvoViaNbHardwareInfosUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaNbHardwareInfos() {
  arqSwitchOrvoViaNbHardwareInfosUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaNbHardwareInfos", handle_arqSwitchOrvoViaNbHardwareInfos,
                 Oid::arqSwitchOrvoViaNbHardwareInfos);
}

}  // namespace Arq::Snmp
