#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaConfigCurrentConfigState.0: INTEGER, -1 unknown, 0 clean, 1 altered.
struct arqSwitchOrvoViaConfigCurrentConfigState_user_context_s : IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaConfigCurrentConfigState_user_context_s
    arqSwitchOrvoViaConfigCurrentConfigStateUserContext(-1);

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaConfigCurrentConfigState_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->currentConfigMetric,
      [] { return "currentConfigMetric has changed (CurrentConfigState).\n"; },
      [](const Metrics::ConfigMetric& metric) { return std::int64_t{metric.state}; });
}

int handle_arqSwitchOrvoViaConfigCurrentConfigState(netsnmp_mib_handler*,
                                                    netsnmp_handler_registration*,
                                                    netsnmp_agent_request_info* reqinfo,
                                                    netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaConfigCurrentConfigStateUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaConfigCurrentConfigState", ScalarSyntax::Integer,
                      arqSwitchOrvoViaConfigCurrentConfigStateUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaConfigCurrentConfigState() {
  arqSwitchOrvoViaConfigCurrentConfigStateUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaConfigCurrentConfigState",
                 handle_arqSwitchOrvoViaConfigCurrentConfigState,
                 Oid::arqSwitchOrvoViaConfigCurrentConfigState);
}

}  // namespace Arq::Snmp
