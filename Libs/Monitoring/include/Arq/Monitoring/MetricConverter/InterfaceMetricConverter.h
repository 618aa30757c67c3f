#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/Metrics.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/MonitoringValueThreadSafe.h"

namespace Arq::Monitoring::MetricConverter {

// Joins the interface, port, counter and rate answers of one collection into
// the Ethernet, PRS and LAG interface metrics and stores them in their fixed
// holder arrays. Inconsistent switch data is logged (snmp_log, warning) and
// the interface is published as the default metric; nothing throws.
class InterfaceMetricConverter {
 public:
  using IfInfos = std::map<std::string, OrvoViaSwitch::Domain::Dto::IfInfo>;
  using EthInfos = std::vector<OrvoViaSwitch::Domain::Dto::EthInfo>;
  using EthCounters = std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthCnt>>;
  using EthStats = std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthStat>>;
  template <typename T>
  using Holder = OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<T>;
  using EthernetMetric = OrvoViaSwitch::Domain::Dto::Metrics::EthernetMetric;
  using EthernetInterfaceMetric = OrvoViaSwitch::Domain::Dto::Metrics::EthernetInterfaceMetric;
  using PRSInterfaceMetric = OrvoViaSwitch::Domain::Dto::Metrics::PRSInterfaceMetric;
  using LAGInterfaceMetric = OrvoViaSwitch::Domain::Dto::Metrics::LAGInterfaceMetric;

  // Where the next search of each port list starts: just after the previous
  // hit. The switch answers the ports in the order the interfaces list them,
  // so a whole cycle costs about one comparison per port instead of a scan of
  // every port per port. The collector keeps them from one cycle to the next.
  struct SearchCursors {
    std::size_t ethInfos = 0;
    std::size_t ethCounters = 0;
    std::size_t ethStats = 0;
  };

  // Each writes every holder of its array (48, 24 or 3) and returns the
  // number of interfaces of its type, unpublished ones included.
  static std::uint32_t ToMetric(const std::vector<std::string>& names, const IfInfos& ifInfos,
                                const EthInfos& ethInfos, const EthCounters& ethCounters,
                                const EthStats& ethStats, Holder<EthernetInterfaceMetric>* holders,
                                SearchCursors& cursors);
  static std::uint32_t ToMetric(const std::vector<std::string>& names, const IfInfos& ifInfos,
                                const EthInfos& ethInfos, const EthCounters& ethCounters,
                                const EthStats& ethStats, Holder<PRSInterfaceMetric>* holders,
                                SearchCursors& cursors);
  static std::uint32_t ToMetric(const std::vector<std::string>& names, const IfInfos& ifInfos,
                                const EthInfos& ethInfos, const EthCounters& ethCounters,
                                const EthStats& ethStats, Holder<LAGInterfaceMetric>* holders,
                                SearchCursors& cursors);

  static std::vector<std::string> GetInterfaceNamesOf(OrvoViaSwitch::Domain::Dto::IfType type,
                                                      const std::vector<std::string>& names,
                                                      const IfInfos& ifInfos);

  static bool FillInterfaceInfo(EthernetInterfaceMetric& metric, const IfInfos& ifInfos,
                                const std::string& name);
  static bool FillInterfaceInfo(PRSInterfaceMetric& metric, const IfInfos& ifInfos,
                                const std::string& name);
  static bool FillInterfaceInfo(LAGInterfaceMetric& metric, const IfInfos& ifInfos,
                                const std::string& name);
  static bool FillEthernetInfo(EthernetMetric& metric, const EthInfos& ethInfos,
                               const std::string& ethName, const std::string& interfaceName,
                               std::size_t& cursor);
  static bool FillEthernetCounters(EthernetMetric& metric, const EthCounters& ethCounters,
                                   const std::string& ethName, const std::string& interfaceName,
                                   std::size_t& cursor);
  static bool FillEthernetStats(EthernetMetric& metric, const EthStats& ethStats,
                                const std::string& ethName, const std::string& interfaceName,
                                std::size_t& cursor);

  static const OrvoViaSwitch::Domain::Dto::EthCnt* Find(
      const std::vector<OrvoViaSwitch::Domain::Dto::EthCnt>& counters, const std::string& ethName,
      std::size_t& cursor);
  static const OrvoViaSwitch::Domain::Dto::EthStat* Find(
      const std::vector<OrvoViaSwitch::Domain::Dto::EthStat>& stats, const std::string& ethName,
      std::size_t& cursor);
  // -1 stays -1 (unknown), LinkUp gives 1, every other state 0.
  static std::int32_t ToEthStateMetric(OrvoViaSwitch::Domain::Dto::EthState state);

  static EthernetInterfaceMetric ToEthernetInterfaceMetric(
      const std::string& name, const IfInfos& ifInfos, const EthInfos& ethInfos,
      const EthCounters& ethCounters, const EthStats& ethStats, SearchCursors& cursors);
  static PRSInterfaceMetric ToPRSInterfaceMetric(const std::string& name, const IfInfos& ifInfos,
                                                 const EthInfos& ethInfos,
                                                 const EthCounters& ethCounters,
                                                 const EthStats& ethStats, SearchCursors& cursors);
  static LAGInterfaceMetric ToLAGInterfaceMetric(const std::string& name, const IfInfos& ifInfos,
                                                 const EthInfos& ethInfos,
                                                 const EthCounters& ethCounters,
                                                 const EthStats& ethStats, SearchCursors& cursors);
};

}  // namespace Arq::Monitoring::MetricConverter
