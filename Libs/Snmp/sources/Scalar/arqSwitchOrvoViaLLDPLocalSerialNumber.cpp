#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalSerialNumber.0: OCTET STRING; the LLDP metric's serialNumber, cut to 20
// bytes.
struct arqSwitchOrvoViaLLDPLocalSerialNumber_user_context_s : TextScalar<Width::LldpLocalText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalSerialNumber_user_context_s
    arqSwitchOrvoViaLLDPLocalSerialNumberUserContext(Blank<Width::LldpLocalText>());

static std::array<char, Width::LldpLocalText> serial_number_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::LldpLocalText>(metric.serialNumber);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalSerialNumber_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalSerialNumber).\n"; },
      serial_number_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalSerialNumber(netsnmp_mib_handler*,
                                                 netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info* reqinfo,
                                                 netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalSerialNumberUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalSerialNumber", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLLDPLocalSerialNumberUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalSerialNumber() {
  arqSwitchOrvoViaLLDPLocalSerialNumberUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalSerialNumber",
                 handle_arqSwitchOrvoViaLLDPLocalSerialNumber,
                 Oid::arqSwitchOrvoViaLLDPLocalSerialNumber);
}

}  // namespace Arq::Snmp
