#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalDeviceName.0: OCTET STRING; the LLDP metric's deviceName, cut to 20
// bytes.
struct arqSwitchOrvoViaLLDPLocalDeviceName_user_context_s : TextScalar<Width::LldpLocalText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalDeviceName_user_context_s
    arqSwitchOrvoViaLLDPLocalDeviceNameUserContext(Blank<Width::LldpLocalText>());

static std::array<char, Width::LldpLocalText> device_name_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::LldpLocalText>(metric.deviceName);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalDeviceName_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalDeviceName).\n"; },
      device_name_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalDeviceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info* reqinfo,
                                               netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalDeviceNameUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalDeviceName", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLLDPLocalDeviceNameUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalDeviceName() {
  arqSwitchOrvoViaLLDPLocalDeviceNameUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalDeviceName", handle_arqSwitchOrvoViaLLDPLocalDeviceName,
                 Oid::arqSwitchOrvoViaLLDPLocalDeviceName);
}

}  // namespace Arq::Snmp
