#include "Arq/Monitoring/SwitchSnapshot.h"

namespace Arq::Monitoring {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using DetailsHolder = OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<
    Dto::Metrics::InterfaceDetailsMetric>;

// The details of the interfaces of one type, in the slots the interface
// converter gives their metrics.
void PublishDetails(const SwitchSnapshot& s, Dto::IfType type, DetailsHolder* holders,
                    std::size_t capacity) {
  const auto names = MetricConverter::InterfaceMetricConverter::GetInterfaceNamesOf(
      type, s.interfaceNames, s.interfaces);
  for (std::size_t i = 0; i < capacity; ++i) {
    Dto::Metrics::InterfaceDetailsMetric details;
    if (i < names.size()) {
      const auto& info = s.interfaces.at(names[i]);
      details.description = info.Description;
      details.macAddress = info.MacAddr;
    }
    holders[i].Value(details);
  }
}

}  // namespace

void PublishSnapshot(const SwitchSnapshot& s,
                     OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values,
                     ConversionState& state) {
  using MetricConverter::InterfaceMetricConverter;
  values->nbEthernetInterfaces.Value(InterfaceMetricConverter::ToMetric(
      s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters, s.ethStats,
      values->ethernetInterfaceMetrics.data(), state.cursors));
  values->nbPRSInterfaces.Value(InterfaceMetricConverter::ToMetric(
      s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters, s.ethStats,
      values->pRSInterfaceMetrics.data(), state.cursors));
  values->nbLAGInterfaces.Value(InterfaceMetricConverter::ToMetric(
      s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters, s.ethStats,
      values->lAGInterfaceMetrics.data(), state.cursors));
  MetricConverter::LLDPMetricConverter::ToMetric(s.lldpConfig, s.mainMacAddress,
                                                 &values->lLDPMetric);
  values->nbLLDPInfos.Value(MetricConverter::LLDPMetricConverter::ToMetric(
      s.lldpNeighbours, values->lLDPInfoMetrics.data(), state.lldpMemo));
  values->nbPTPs.Value(
      MetricConverter::PTPMetricConverter::ToMetric(s.ptpConfigs, values->pTPMetrics.data()));
  MetricConverter::ConfigMetricConverter::ToMetric(s.currentConfig, &values->currentConfigMetric);

  PublishDetails(s, Dto::IfType::Ethernet, values->ethernetInterfaceDetails.data(),
                 values->ethernetInterfaceDetails.size());
  PublishDetails(s, Dto::IfType::BasicPrs, values->pRSInterfaceDetails.data(),
                 values->pRSInterfaceDetails.size());
  PublishDetails(s, Dto::IfType::BasicLag, values->lAGInterfaceDetails.data(),
                 values->lAGInterfaceDetails.size());
  for (std::size_t i = 0; i < values->lLDPNeighbourTlvs.size(); ++i) {
    values->lLDPNeighbourTlvs[i].Value(i < s.lldpNeighbours.size() ? s.lldpNeighbours[i]
                                                                   : Dto::LldpInfo());
  }
  values->lLDPLocalConfig.Value(s.lldpConfig);
}

}  // namespace Arq::Monitoring
