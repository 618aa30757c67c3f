#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalDeviceVersion.0: OCTET STRING; the LLDP metric's deviceVersion, cut to
// 20 bytes.
struct arqSwitchOrvoViaLLDPLocalDeviceVersion_user_context_s : TextScalar<Width::LldpLocalText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalDeviceVersion_user_context_s
    arqSwitchOrvoViaLLDPLocalDeviceVersionUserContext(Blank<Width::LldpLocalText>());

static std::array<char, Width::LldpLocalText> device_version_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::LldpLocalText>(metric.deviceVersion);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalDeviceVersion_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalDeviceVersion).\n"; },
      device_version_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalDeviceVersion(netsnmp_mib_handler*,
                                                  netsnmp_handler_registration*,
                                                  netsnmp_agent_request_info* reqinfo,
                                                  netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalDeviceVersionUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalDeviceVersion", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLLDPLocalDeviceVersionUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalDeviceVersion() {
  arqSwitchOrvoViaLLDPLocalDeviceVersionUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalDeviceVersion",
                 handle_arqSwitchOrvoViaLLDPLocalDeviceVersion,
                 Oid::arqSwitchOrvoViaLLDPLocalDeviceVersion);
}

}  // namespace Arq::Snmp
