#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalChassisId.0: OCTET STRING; the LLDP metric's chassisId, cut to 20 bytes.
struct arqSwitchOrvoViaLLDPLocalChassisId_user_context_s : TextScalar<Width::LldpLocalText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalChassisId_user_context_s
    arqSwitchOrvoViaLLDPLocalChassisIdUserContext(Blank<Width::LldpLocalText>());

static std::array<char, Width::LldpLocalText> chassis_id_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::LldpLocalText>(metric.chassisId);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalChassisId_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalChassisId).\n"; },
      chassis_id_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalChassisId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                              netsnmp_agent_request_info* reqinfo,
                                              netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalChassisIdUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalChassisId", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLLDPLocalChassisIdUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalChassisId() {
  arqSwitchOrvoViaLLDPLocalChassisIdUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalChassisId", handle_arqSwitchOrvoViaLLDPLocalChassisId,
                 Oid::arqSwitchOrvoViaLLDPLocalChassisId);
}

}  // namespace Arq::Snmp
