#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <set>

#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Monitoring::MetricConverter {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;
namespace Values = OrvoViaSwitch::Domain::Monitoring;
using Converter = InterfaceMetricConverter;

// What differs between the three interface kinds: the type selected, the
// number of holders, the member-count rule and where the ports go.
template <typename Metric>
struct Kind;

template <>
struct Kind<Metrics::EthernetInterfaceMetric> {
  static constexpr Dto::IfType kType = Dto::IfType::Ethernet;
  static constexpr std::size_t kHolders = Values::kMaxEthernetInterfaces;
  static bool CheckMembers(const std::vector<std::string>& members, const std::string& name) {
    if (members.size() != 1) {
      snmp_log(LOG_WARNING, "Inconsistent Number of Ethernet (1/%ld) for Interface Name: %s\n",
               static_cast<long>(members.size()), name.c_str());
      return false;
    }
    return true;
  }
  static Metrics::EthernetMetric& Port(Metrics::EthernetInterfaceMetric& metric, std::size_t) {
    return metric.ethernet;
  }
};

bool HasNoDuplicate(const std::vector<std::string>& members, const std::string& name) {
  std::set<std::string> seen;
  for (const auto& member : members) {
    if (!seen.insert(member).second) {
      snmp_log(LOG_WARNING, "Duplicate Ethernet Name: %s for Interface Name: %s\n", member.c_str(),
               name.c_str());
      return false;
    }
  }
  return true;
}

void LogInconsistentNumber(int expected, std::size_t actual, const std::string& name) {
  snmp_log(LOG_WARNING, "Inconsistent Number of Ethernet (%d/%ld) for Interface Name: %s\n",
           expected, static_cast<long>(actual), name.c_str());
}

template <>
struct Kind<Metrics::PRSInterfaceMetric> {
  static constexpr Dto::IfType kType = Dto::IfType::BasicPrs;
  static constexpr std::size_t kHolders = Values::kMaxPRSInterfaces;
  static bool CheckMembers(const std::vector<std::string>& members, const std::string& name) {
    if (members.size() != Metrics::kPRSEthernetPorts) {
      LogInconsistentNumber(static_cast<int>(Metrics::kPRSEthernetPorts), members.size(), name);
      return false;
    }
    return HasNoDuplicate(members, name);
  }
  static Metrics::EthernetMetric& Port(Metrics::PRSInterfaceMetric& metric, std::size_t i) {
    return metric.ethernets[i];
  }
};

template <>
struct Kind<Metrics::LAGInterfaceMetric> {
  static constexpr Dto::IfType kType = Dto::IfType::BasicLag;
  static constexpr std::size_t kHolders = Values::kMaxLAGInterfaces;
  static bool CheckMembers(const std::vector<std::string>& members, const std::string& name) {
    if (members.size() > Metrics::kLAGMaxEthernetPorts) {
      LogInconsistentNumber(static_cast<int>(Metrics::kLAGMaxEthernetPorts), members.size(), name);
      return false;
    }
    return HasNoDuplicate(members, name);
  }
  static Metrics::EthernetMetric& Port(Metrics::LAGInterfaceMetric& metric, std::size_t i) {
    return metric.ethernets[i];
  }
};

const Dto::IfInfo* FindInfo(const Converter::IfInfos& ifInfos, const std::string& name) {
  const auto found = ifInfos.find(name);
  if (found == ifInfos.end()) {
    snmp_log(LOG_WARNING, "Missing Interface Info for Interface Name: %s\n", name.c_str());
    return nullptr;
  }
  return &found->second;
}

template <typename Metric>
void FillCommon(Metric& metric, const Dto::IfInfo& info, const std::string& name) {
  metric.name = name;
  metric.status = static_cast<std::int32_t>(info.Status);
  metric.vlanIds = Dto::ToString(info.Vlan);
}

// Builds one interface's metric; any failed step gives the default metric.
template <typename Metric>
Metric ToInterfaceMetric(const std::string& name, const Converter::IfInfos& ifInfos,
                         const Converter::EthInfos& ethInfos,
                         const Converter::EthCounters& ethCounters,
                         const Converter::EthStats& ethStats, Converter::SearchCursors& cursors) {
  Metric metric;
  bool ok = Converter::FillInterfaceInfo(metric, ifInfos, name);
  if (ok) {
    const auto& members = ifInfos.at(name).IfList;
    ok = Kind<Metric>::CheckMembers(members, name);
    for (std::size_t i = 0; ok && i < members.size(); ++i) {
      auto& port = Kind<Metric>::Port(metric, i);
      ok = Converter::FillEthernetInfo(port, ethInfos, members[i], name, cursors.ethInfos) &&
           Converter::FillEthernetCounters(port, ethCounters, members[i], name,
                                           cursors.ethCounters) &&
           Converter::FillEthernetStats(port, ethStats, members[i], name, cursors.ethStats);
    }
  }
  return ok ? metric : Metric();
}

template <typename Metric>
std::uint32_t Publish(const std::vector<std::string>& names, const Converter::IfInfos& ifInfos,
                      const Converter::EthInfos& ethInfos,
                      const Converter::EthCounters& ethCounters,
                      const Converter::EthStats& ethStats, Converter::Holder<Metric>* holders,
                      Converter::SearchCursors& cursors) {
  const auto selected = Converter::GetInterfaceNamesOf(Kind<Metric>::kType, names, ifInfos);
  for (std::size_t i = 0; i < Kind<Metric>::kHolders; ++i) {
    holders[i].Value(i < selected.size() ? ToInterfaceMetric<Metric>(selected[i], ifInfos, ethInfos,
                                                                     ethCounters, ethStats, cursors)
                                         : Metric());
  }
  return static_cast<std::uint32_t>(selected.size());
}

// Looks a port up by name, from `next` on and wrapping around; `next` moves
// just after the hit (see SearchCursors).
template <typename Item>
const Item* FindByName(const std::vector<Item>& items, const std::string& ethName,
                       std::size_t& next) {
  const std::size_t count = items.size();
  if (next >= count) next = 0;
  for (std::size_t k = 0, i = next; k < count; ++k, i = (i + 1 == count ? 0 : i + 1)) {
    if (items[i].EthName == ethName) {
      next = i + 1;
      return &items[i];
    }
  }
  return nullptr;
}

}  // namespace

std::uint32_t InterfaceMetricConverter::ToMetric(const std::vector<std::string>& names,
                                                 const IfInfos& ifInfos, const EthInfos& ethInfos,
                                                 const EthCounters& ethCounters,
                                                 const EthStats& ethStats,
                                                 Holder<EthernetInterfaceMetric>* holders,
                                                 SearchCursors& cursors) {
  return Publish(names, ifInfos, ethInfos, ethCounters, ethStats, holders, cursors);
}

std::uint32_t InterfaceMetricConverter::ToMetric(const std::vector<std::string>& names,
                                                 const IfInfos& ifInfos, const EthInfos& ethInfos,
                                                 const EthCounters& ethCounters,
                                                 const EthStats& ethStats,
                                                 Holder<PRSInterfaceMetric>* holders,
                                                 SearchCursors& cursors) {
  return Publish(names, ifInfos, ethInfos, ethCounters, ethStats, holders, cursors);
}

std::uint32_t InterfaceMetricConverter::ToMetric(const std::vector<std::string>& names,
                                                 const IfInfos& ifInfos, const EthInfos& ethInfos,
                                                 const EthCounters& ethCounters,
                                                 const EthStats& ethStats,
                                                 Holder<LAGInterfaceMetric>* holders,
                                                 SearchCursors& cursors) {
  return Publish(names, ifInfos, ethInfos, ethCounters, ethStats, holders, cursors);
}

std::vector<std::string> InterfaceMetricConverter::GetInterfaceNamesOf(
    Dto::IfType type, const std::vector<std::string>& names, const IfInfos& ifInfos) {
  std::vector<std::string> selected;
  for (const auto& name : names) {
    const auto found = ifInfos.find(name);
    if (found != ifInfos.end() && found->second.Type == type) selected.push_back(name);
  }
  return selected;
}

bool InterfaceMetricConverter::FillInterfaceInfo(EthernetInterfaceMetric& metric,
                                                 const IfInfos& ifInfos, const std::string& name) {
  const auto* info = FindInfo(ifInfos, name);
  if (info == nullptr) return false;
  FillCommon(metric, *info, name);
  metric.vid = info->Vid;
  return true;
}

bool InterfaceMetricConverter::FillInterfaceInfo(PRSInterfaceMetric& metric, const IfInfos& ifInfos,
                                                 const std::string& name) {
  const auto* info = FindInfo(ifInfos, name);
  if (info == nullptr) return false;
  FillCommon(metric, *info, name);
  metric.vid = info->Vid;
  return true;
}

bool InterfaceMetricConverter::FillInterfaceInfo(LAGInterfaceMetric& metric, const IfInfos& ifInfos,
                                                 const std::string& name) {
  const auto* info = FindInfo(ifInfos, name);
  if (info == nullptr) return false;
  FillCommon(metric, *info, name);
  metric.vlanId = info->Vid;
  metric.nbEthernetPorts = static_cast<std::int64_t>(info->IfList.size());
  return true;
}

bool InterfaceMetricConverter::FillEthernetInfo(EthernetMetric& metric, const EthInfos& ethInfos,
                                                const std::string& ethName,
                                                const std::string& interfaceName,
                                                std::size_t& cursor) {
  const auto* info = FindByName(ethInfos, ethName, cursor);
  if (info == nullptr) {
    snmp_log(LOG_WARNING, "Missing Ethernet Info with Name: %s for Interface Name: %s\n",
             ethName.c_str(), interfaceName.c_str());
    return false;
  }
  metric.ethName = ethName;
  metric.mode = static_cast<std::int32_t>(info->Mode);
  metric.speed = static_cast<std::int32_t>(info->Speed);
  metric.state = ToEthStateMetric(info->State);
  return true;
}

bool InterfaceMetricConverter::FillEthernetCounters(EthernetMetric& metric,
                                                    const EthCounters& ethCounters,
                                                    const std::string& ethName,
                                                    const std::string& interfaceName,
                                                    std::size_t& cursor) {
  const auto list = ethCounters.find(interfaceName);
  const Dto::EthCnt* counters =
      list == ethCounters.end() ? nullptr : Find(list->second, ethName, cursor);
  if (counters == nullptr) {
    snmp_log(LOG_WARNING, "Missing Ethernet Counters with Name: %s for Interface Name: %s\n",
             ethName.c_str(), interfaceName.c_str());
    return false;
  }
  // Tie() lists the name first, then the 30 counters in the switch's order.
  std::size_t i = 0;
  std::apply(
      [&](const std::string&, const auto&... value) { ((metric.counters[i++] = value), ...); },
      counters->Tie());
  return true;
}

bool InterfaceMetricConverter::FillEthernetStats(EthernetMetric& metric, const EthStats& ethStats,
                                                 const std::string& ethName,
                                                 const std::string& interfaceName,
                                                 std::size_t& cursor) {
  const auto list = ethStats.find(interfaceName);
  const Dto::EthStat* stats =
      list == ethStats.end() ? nullptr : Find(list->second, ethName, cursor);
  if (stats == nullptr) {
    snmp_log(LOG_WARNING, "Missing Ethernet Stats with Name: %s for Interface Name: %s\n",
             ethName.c_str(), interfaceName.c_str());
    return false;
  }
  metric.txSpeed = stats->TxSpeed;
  metric.rxSpeed = stats->RxSpeed;
  return true;
}

const Dto::EthCnt* InterfaceMetricConverter::Find(const std::vector<Dto::EthCnt>& counters,
                                                  const std::string& ethName, std::size_t& cursor) {
  return FindByName(counters, ethName, cursor);
}

const Dto::EthStat* InterfaceMetricConverter::Find(const std::vector<Dto::EthStat>& stats,
                                                   const std::string& ethName,
                                                   std::size_t& cursor) {
  return FindByName(stats, ethName, cursor);
}

std::int32_t InterfaceMetricConverter::ToEthStateMetric(Dto::EthState state) {
  if (state == Dto::EthState::Unknown) return -1;
  return state == Dto::EthState::LinkUp ? 1 : 0;
}

Metrics::EthernetInterfaceMetric InterfaceMetricConverter::ToEthernetInterfaceMetric(
    const std::string& name, const IfInfos& ifInfos, const EthInfos& ethInfos,
    const EthCounters& ethCounters, const EthStats& ethStats, SearchCursors& cursors) {
  return ToInterfaceMetric<EthernetInterfaceMetric>(name, ifInfos, ethInfos, ethCounters, ethStats,
                                                    cursors);
}

Metrics::PRSInterfaceMetric InterfaceMetricConverter::ToPRSInterfaceMetric(
    const std::string& name, const IfInfos& ifInfos, const EthInfos& ethInfos,
    const EthCounters& ethCounters, const EthStats& ethStats, SearchCursors& cursors) {
  return ToInterfaceMetric<PRSInterfaceMetric>(name, ifInfos, ethInfos, ethCounters, ethStats,
                                               cursors);
}

Metrics::LAGInterfaceMetric InterfaceMetricConverter::ToLAGInterfaceMetric(
    const std::string& name, const IfInfos& ifInfos, const EthInfos& ethInfos,
    const EthCounters& ethCounters, const EthStats& ethStats, SearchCursors& cursors) {
  return ToInterfaceMetric<LAGInterfaceMetric>(name, ifInfos, ethInfos, ethCounters, ethStats,
                                               cursors);
}

}  // namespace Arq::Monitoring::MetricConverter
