#include "Mechanism.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"

namespace Arq::Snmp {

using namespace Mechanism;

// arqSwitchOrvoViaLLDPLocalIPManagementAddress.0: IpAddress, four bytes computed from the dotted
// text on every request; the LLDP metric's ipManagementAddress, cut to 20 bytes.
struct arqSwitchOrvoViaLLDPLocalIPManagementAddress_user_context_s
    : TextScalar<Width::AddressText> {
  using ScalarUserContext::ScalarUserContext;
};
static arqSwitchOrvoViaLLDPLocalIPManagementAddress_user_context_s
    arqSwitchOrvoViaLLDPLocalIPManagementAddressUserContext(Blank<Width::AddressText>());

static std::array<char, Width::AddressText> ip_management_address_data_access_to_generated(
    const Metrics::LLDPMetric& metric) {
  return ToBuffer<Width::AddressText>(metric.ipManagementAddress);
}

static void update_user_context_from_monitoring(
    arqSwitchOrvoViaLLDPLocalIPManagementAddress_user_context_s& context) {
  RefreshScalar(
      context, context.monitoringValues->lLDPMetric,
      [] { return "lLDPMetric has changed (LocalIPManagementAddress).\n"; },
      ip_management_address_data_access_to_generated);
}

int handle_arqSwitchOrvoViaLLDPLocalIPManagementAddress(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info* reqinfo,
                                                        netsnmp_request_info* requests) {
  update_user_context_from_monitoring(arqSwitchOrvoViaLLDPLocalIPManagementAddressUserContext);
  return AnswerScalar("handle_arqSwitchOrvoViaLLDPLocalIPManagementAddress",
                      ScalarSyntax::IpAddress,
                      arqSwitchOrvoViaLLDPLocalIPManagementAddressUserContext, reqinfo, requests);
}

void init_arqSwitchOrvoViaLLDPLocalIPManagementAddress() {
  arqSwitchOrvoViaLLDPLocalIPManagementAddressUserContext.monitoringValues =
      &Monitoring::MonitoringProcessor::monitoringValues;
  RegisterScalar("arqSwitchOrvoViaLLDPLocalIPManagementAddress",
                 handle_arqSwitchOrvoViaLLDPLocalIPManagementAddress,
                 Oid::arqSwitchOrvoViaLLDPLocalIPManagementAddress);
}

}  // namespace Arq::Snmp
