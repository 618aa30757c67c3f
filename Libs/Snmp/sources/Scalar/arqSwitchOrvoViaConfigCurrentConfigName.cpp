#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaConfigCurrentConfigName.0: OCTET STRING, the current configuration's name cut to
// 50 bytes.
struct arqSwitchOrvoViaConfigCurrentConfigName_user_context_s : TextScalar<Width::ConfigName> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaConfigCurrentConfigName_user_context_s
    arqSwitchOrvoViaConfigCurrentConfigNameUserContext(Blank<Width::ConfigName>());

static std::array<char, Width::ConfigName> current_config_name_data_access_to_generated(
    const Metrics::ConfigMetric& metric) {
  return ToBuffer<Width::ConfigName>(metric.name);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaConfigCurrentConfigName_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->currentConfigMetric,
      [] { return "currentConfigMetric has changed (CurrentConfigName).\n"; },
      current_config_name_data_access_to_generated);
}

int handle_arqSwitchOrvoViaConfigCurrentConfigName(netsnmp_mib_handler*,
                                                   netsnmp_handler_registration*,
                                                   netsnmp_agent_request_info* reqinfo,
                                                   netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaConfigCurrentConfigNameUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaConfigCurrentConfigName", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaConfigCurrentConfigNameUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaConfigCurrentConfigName() {
  arqSwitchOrvoViaConfigCurrentConfigNameUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaConfigCurrentConfigName",
                 handle_arqSwitchOrvoViaConfigCurrentConfigName,
                 Oid::arqSwitchOrvoViaConfigCurrentConfigName);
}

}  // namespace Arq::Snmp
