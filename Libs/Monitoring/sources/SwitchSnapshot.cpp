#include "Arq/Monitoring/SwitchSnapshot.h"

namespace Arq::Monitoring {

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

  state.model = state.modelBuilder.Build(s, OrvoViaSwitch::Domain::Model::Clock::now());
}

}  // namespace Arq::Monitoring
