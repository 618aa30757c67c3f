#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalManufacturer.0: OCTET STRING; the LLDP metric's manufacturer, cut to 20
// bytes.
struct arqSwitchOrvoViaLLDPLocalManufacturer_user_context_s : TextScalar<Width::LldpLocalText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalManufacturer_user_context_s
    arqSwitchOrvoViaLLDPLocalManufacturerUserContext(Blank<Width::LldpLocalText>());

static std::array<char, Width::LldpLocalText> manufacturer_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::LldpLocalText>(metric.manufacturer);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalManufacturer_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalManufacturer).\n"; },
      manufacturer_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalManufacturer(netsnmp_mib_handler*,
                                                 netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info* reqinfo,
                                                 netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalManufacturerUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalManufacturer", ScalarSyntax::OctetString,
                      arqSwitchOrvoViaLLDPLocalManufacturerUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalManufacturer() {
  arqSwitchOrvoViaLLDPLocalManufacturerUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalManufacturer",
                 handle_arqSwitchOrvoViaLLDPLocalManufacturer,
                 Oid::arqSwitchOrvoViaLLDPLocalManufacturer);
}

}  // namespace Arq::Snmp
