#pragma once

#include <array>
#include <cstddef>

#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/Metrics.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/MonitoringValueThreadSafe.h"

namespace Arq::OrvoViaSwitch::Domain::Monitoring {

inline constexpr std::size_t kMaxEthernetInterfaces = 48;
inline constexpr std::size_t kMaxPRSInterfaces = 24;
inline constexpr std::size_t kMaxLAGInterfaces = 3;
inline constexpr std::size_t kMaxPTPs = 5;
inline constexpr std::size_t kMaxLLDPInfos = 60;

// The one set of published values of the process: fixed arrays of holders,
// never allocated or freed after start-up. A holder without data keeps its
// default metric.
struct OrvoViaMonitoringValues_s {
  MonitoringValueThreadSafe<long> nbEthernetInterfaces;
  MonitoringValueThreadSafe<long> nbPRSInterfaces;
  MonitoringValueThreadSafe<long> nbLAGInterfaces;
  MonitoringValueThreadSafe<long> nbPTPs;
  MonitoringValueThreadSafe<long> nbLLDPInfos;

  std::array<MonitoringValueThreadSafe<Dto::Metrics::EthernetInterfaceMetric>,
             kMaxEthernetInterfaces>
      ethernetInterfaceMetrics;
  std::array<MonitoringValueThreadSafe<Dto::Metrics::PRSInterfaceMetric>, kMaxPRSInterfaces>
      pRSInterfaceMetrics;
  std::array<MonitoringValueThreadSafe<Dto::Metrics::LAGInterfaceMetric>, kMaxLAGInterfaces>
      lAGInterfaceMetrics;
  std::array<MonitoringValueThreadSafe<Dto::Metrics::PTPMetric>, kMaxPTPs> pTPMetrics;
  std::array<MonitoringValueThreadSafe<Dto::Metrics::LLDPInfoMetric>, kMaxLLDPInfos>
      lLDPInfoMetrics;
  MonitoringValueThreadSafe<Dto::Metrics::LLDPMetric> lLDPMetric;
  MonitoringValueThreadSafe<Dto::Metrics::ConfigMetric> currentConfigMetric;

  // The collector's own health (written by the collection thread), the ten
  // switch calls (by the collector), the daemon (at start-up, and the log
  // level by the options-file updater).
  MonitoringValueThreadSafe<Dto::Metrics::CollectorHealthMetric> collectorHealth;
  std::array<MonitoringValueThreadSafe<Dto::Metrics::CollectorCallMetric>,
             Dto::Metrics::kCollectorCallCount>
      collectorCalls;
  MonitoringValueThreadSafe<Dto::Metrics::DaemonMetric> daemon;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Monitoring
