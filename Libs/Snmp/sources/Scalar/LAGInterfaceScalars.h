#pragma once

// What the three LAGs share for each of their five scalars: one record type
// and one refresh function per kind, given the LAG index (0, 1 or 2).
#include "Mechanism.h"

namespace Arq::Snmp {

struct arqSwitchOrvoViaLAGInterfaceName_user_context_s : Mechanism::TextScalar<Width::Name> {
  using ScalarUserContext::ScalarUserContext;
};
inline std::array<char, Width::Name> interface_name_data_access_to_generated(
    const Mechanism::Metrics::LAGInterfaceMetric& metric) {
  return ToBuffer<Width::Name>(metric.name);
}
inline void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceName_user_context_s& context, std::uint64_t lagIndex) {
  Mechanism::RefreshScalar(
      context, context.monitoringValues->lAGInterfaceMetrics[lagIndex],
      [lagIndex] {
        return Mechanism::Format("lAGInterfaceMetrics[%ld] has changed (InterfaceName).\n",
                                 static_cast<long>(lagIndex));
      },
      interface_name_data_access_to_generated);
}

struct arqSwitchOrvoViaLAGInterfaceStatus_user_context_s : Mechanism::IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
inline void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceStatus_user_context_s& context, std::uint64_t lagIndex) {
  Mechanism::RefreshScalar(
      context, context.monitoringValues->lAGInterfaceMetrics[lagIndex],
      [lagIndex] {
        return Mechanism::Format("lAGInterfaceMetrics[%ld] has changed (InterfaceStatus).\n",
                                 static_cast<long>(lagIndex));
      },
      [](const Mechanism::Metrics::LAGInterfaceMetric& metric) {
        return std::int64_t{metric.status};
      });
}

struct arqSwitchOrvoViaLAGInterfaceVlanId_user_context_s : Mechanism::IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
inline void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceVlanId_user_context_s& context, std::uint64_t lagIndex) {
  Mechanism::RefreshScalar(
      context, context.monitoringValues->lAGInterfaceMetrics[lagIndex],
      [lagIndex] {
        return Mechanism::Format("lAGInterfaceMetrics[%ld] has changed (InterfaceVlanId).\n",
                                 static_cast<long>(lagIndex));
      },
      [](const Mechanism::Metrics::LAGInterfaceMetric& metric) {
        return std::int64_t{metric.vlanId};
      });
}

struct arqSwitchOrvoViaLAGInterfaceVlanIds_user_context_s : Mechanism::TextScalar<Width::VlanIds> {
  using ScalarUserContext::ScalarUserContext;
};
inline std::array<char, Width::VlanIds> interface_vlan_ids_data_access_to_generated(
    const Mechanism::Metrics::LAGInterfaceMetric& metric) {
  return ToBuffer<Width::VlanIds>(metric.vlanIds);
}
inline void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceVlanIds_user_context_s& context, std::uint64_t lagIndex) {
  Mechanism::RefreshScalar(
      context, context.monitoringValues->lAGInterfaceMetrics[lagIndex],
      [lagIndex] {
        return Mechanism::Format("lAGInterfaceMetrics[%ld] has changed (LAG1InterfaceVlanIds).\n",
                                 static_cast<long>(lagIndex));
      },
      interface_vlan_ids_data_access_to_generated);
}

struct arqSwitchOrvoViaLAGInterfaceNbEthernetPorts_user_context_s : Mechanism::IntegerScalar {
  using ScalarUserContext::ScalarUserContext;
};
inline void update_user_context_from_monitoring(
    arqSwitchOrvoViaLAGInterfaceNbEthernetPorts_user_context_s& context, std::uint64_t lagIndex) {
  Mechanism::RefreshScalar(
      context, context.monitoringValues->lAGInterfaceMetrics[lagIndex],
      [lagIndex] {
        return Mechanism::Format(
            "lAGInterfaceMetrics[%ld] has changed (InterfaceNbEthernetPorts).\n",
            static_cast<long>(lagIndex));
      },
      [](const Mechanism::Metrics::LAGInterfaceMetric& metric) {
        return std::int64_t{metric.nbEthernetPorts};
      });
}

}  // namespace Arq::Snmp
