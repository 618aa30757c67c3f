#include "Arq/Monitoring/SwitchSnapshot.h"

#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"

namespace Arq::Monitoring {

void PublishSnapshot(const SwitchSnapshot& s,
                     OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) {
  using MetricConverter::InterfaceMetricConverter;
  values->nbEthernetInterfaces.Value(
      InterfaceMetricConverter::ToMetric(s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters,
                                         s.ethStats, values->ethernetInterfaceMetrics.data()));
  values->nbPRSInterfaces.Value(
      InterfaceMetricConverter::ToMetric(s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters,
                                         s.ethStats, values->pRSInterfaceMetrics.data()));
  values->nbLAGInterfaces.Value(
      InterfaceMetricConverter::ToMetric(s.interfaceNames, s.interfaces, s.ethInfos, s.ethCounters,
                                         s.ethStats, values->lAGInterfaceMetrics.data()));
  MetricConverter::LLDPMetricConverter::ToMetric(s.lldpConfig, s.mainMacAddress,
                                                 &values->lLDPMetric);
  values->nbLLDPInfos.Value(MetricConverter::LLDPMetricConverter::ToMetric(
      s.lldpNeighbours, values->lLDPInfoMetrics.data()));
  values->nbPTPs.Value(
      MetricConverter::PTPMetricConverter::ToMetric(s.ptpConfigs, values->pTPMetrics.data()));
  MetricConverter::ConfigMetricConverter::ToMetric(s.currentConfig, &values->currentConfigMetric);
}

}  // namespace Arq::Monitoring
