#include "InterfaceRows.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <set>

namespace Arq::Snmp::Standard {
namespace {

// The switch's speed codes (EthSpeed) in Mbit/s: 1G, 10G, 12.5G, 20G, 25G,
// 40G, 50G, 100G; 0 when unknown.
std::uint64_t SpeedMbps(std::int32_t code) {
  static constexpr std::uint64_t kSpeeds[] = {1000,  10000, 12500, 20000,
                                              25000, 40000, 50000, 100000};
  return code >= 0 && code < 8 ? kSpeeds[code] : 0;
}

long AdminStatus(long status) {
  return status == 0 ? 2 : 1;
}

// Port state -1 unknown, 1 link up, 0 anything else; a disabled interface is down.
long OperStatus(long adminStatus, std::int32_t state) {
  if (adminStatus == 2) return 2;
  return state == 1 ? 1 : state == 0 ? 2 : 4;
}

// "02:A0:C9:10:00:11" (or with '-') as six bytes; empty when it is no MAC address.
std::string MacBytes(const std::string& text) {
  unsigned int b[6];
  char separator[5];
  char rest;
  if (text.size() != 17 ||
      // NOLINTNEXTLINE(cert-err34-c): two hex digits at most per field cannot overflow
      std::sscanf(text.c_str(), "%2x%c%2x%c%2x%c%2x%c%2x%c%2x%c", &b[0], &separator[0], &b[1],
                  &separator[1], &b[2], &separator[2], &b[3], &separator[3], &b[4], &separator[4],
                  &b[5], &rest) != 11) {
    return {};
  }
  std::string bytes;
  for (const unsigned int byte : b) bytes += static_cast<char>(byte);
  return bytes;
}

std::uint64_t TicksAt(std::chrono::steady_clock::time_point when) {
  const auto age =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - when)
          .count();
  const std::uint64_t ageTicks = age > 0 ? static_cast<std::uint64_t>(age) / 10 : 0;
  const std::uint64_t now = UptimeTicks();
  return ageTicks >= now ? 0 : now - ageTicks;
}

}  // namespace

InterfaceRows::InterfaceRows(Values& values, InterfaceIndex& indexes)
    : values(values),
      indexes(indexes),
      sources(values.ethernetInterfaceMetrics.size() + values.pRSInterfaceMetrics.size() +
              values.lAGInterfaceMetrics.size()) {}

void InterfaceRows::Refresh() {
  bool changed = false;
  std::size_t s = 0;
  for (std::size_t i = 0; i < values.ethernetInterfaceMetrics.size(); ++i, ++s) {
    changed |= RefreshSource(sources[s], values.ethernetInterfaceMetrics[i],
                             values.ethernetInterfaceDetails[i]);
  }
  for (std::size_t i = 0; i < values.pRSInterfaceMetrics.size(); ++i, ++s) {
    changed |=
        RefreshSource(sources[s], values.pRSInterfaceMetrics[i], values.pRSInterfaceDetails[i]);
  }
  for (std::size_t i = 0; i < values.lAGInterfaceMetrics.size(); ++i, ++s) {
    changed |=
        RefreshSource(sources[s], values.lAGInterfaceMetrics[i], values.lAGInterfaceDetails[i]);
  }
  if (changed) Sort();
}

template <typename Metric>
bool InterfaceRows::RefreshSource(
    Source& source,
    const OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<Metric>& holder,
    const OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<
        Metrics::InterfaceDetailsMetric>& details) {
  const auto metricTime = holder.ChangeTime();
  const auto detailsTime = details.ChangeTime();
  if (source.fresh && metricTime == source.metricTime && detailsTime == source.detailsTime) {
    return false;
  }
  source.fresh = true;
  source.metricTime = metricTime;
  source.detailsTime = detailsTime;
  source.rows.clear();
  source.layers.clear();
  Build(source, holder.Value(), details.Value());
  for (auto& row : source.rows) Track(row, metricTime);
  return true;
}

InterfaceRow& InterfaceRows::AddPort(Source& source, const Metrics::EthernetMetric& port,
                                     long adminStatus, std::string descr) {
  InterfaceRow& row = source.rows.emplace_back();
  row.index = {static_cast<oid>(indexes.Of(port.ethName))};
  row.name = port.ethName;
  row.descr = std::move(descr);
  row.adminStatus = adminStatus;
  row.operStatus = OperStatus(adminStatus, port.state);
  row.speedMbps = SpeedMbps(port.speed);
  row.counters = port.counters;
  return row;
}

InterfaceRow& InterfaceRows::AddAggregate(Source& source, const std::string& name, long type,
                                          long status,
                                          const Metrics::InterfaceDetailsMetric& details) {
  InterfaceRow& row = source.rows.emplace_back();
  row.index = {static_cast<oid>(indexes.Of(name))};
  row.name = name;
  row.descr = name;
  row.alias = details.description;
  row.physAddress = MacBytes(details.macAddress);
  row.type = type;
  row.adminStatus = AdminStatus(status);
  row.connector = false;
  return row;
}

void InterfaceRows::Build(Source& source, const Metrics::EthernetInterfaceMetric& metric,
                          const Metrics::InterfaceDetailsMetric& details) {
  if (metric.name.empty() || metric.ethernet.ethName.empty()) return;
  InterfaceRow& row = AddPort(source, metric.ethernet, AdminStatus(metric.status), metric.name);
  row.alias = details.description;
  row.physAddress = MacBytes(details.macAddress);
}

// An aggregate (PRS or LAG) over its ports: up when one port is up, its
// counters the sums of its ports' counters.
template <typename Ports>
static void Aggregate(InterfaceRow& aggregate, const Ports& ports, std::size_t count,
                      bool sumSpeeds) {
  bool anyDown = false;
  for (std::size_t i = 0; i < count; ++i) {
    const auto& port = ports[i];
    for (std::size_t c = 0; c < aggregate.counters.size(); ++c)
      aggregate.counters[c] += port.counters[c];
    if (port.state == 1) {
      aggregate.speedMbps = sumSpeeds ? aggregate.speedMbps + SpeedMbps(port.speed)
                                      : std::max(aggregate.speedMbps, SpeedMbps(port.speed));
    }
    anyDown |= port.state == 0;
  }
  if (aggregate.adminStatus == 2) {
    aggregate.operStatus = 2;
  } else {
    aggregate.operStatus = aggregate.speedMbps > 0 ? 1 : anyDown || count == 0 ? 2 : 4;
  }
}

void InterfaceRows::Build(Source& source, const Metrics::PRSInterfaceMetric& metric,
                          const Metrics::InterfaceDetailsMetric& details) {
  if (metric.name.empty()) return;
  const long prs =
      AddAggregate(source, metric.name, kPropVirtual, metric.status, details).IfIndex();
  Aggregate(source.rows.back(), metric.ethernets, metric.ethernets.size(), false);
  for (const auto& port : metric.ethernets) {
    if (port.ethName.empty()) continue;
    const long lower =
        AddPort(source, port, AdminStatus(metric.status), metric.name + " port " + port.ethName)
            .IfIndex();
    source.layers.emplace_back(prs, lower);
  }
}

void InterfaceRows::Build(Source& source, const Metrics::LAGInterfaceMetric& metric,
                          const Metrics::InterfaceDetailsMetric& details) {
  if (metric.name.empty()) return;
  const std::size_t count = std::min<std::size_t>(
      static_cast<std::size_t>(std::max<std::int64_t>(metric.nbEthernetPorts, 0)),
      metric.ethernets.size());
  const long lag =
      AddAggregate(source, metric.name, kIeee8023adLag, metric.status, details).IfIndex();
  Aggregate(source.rows.back(), metric.ethernets, count, true);
  for (std::size_t i = 0; i < count; ++i) {
    const auto& port = metric.ethernets[i];
    if (port.ethName.empty()) continue;
    const long lower =
        AddPort(source, port, AdminStatus(metric.status), metric.name + " port " + port.ethName)
            .IfIndex();
    source.layers.emplace_back(lag, lower);
  }
}

// ifLastChange when the operational state moved, ifCounterDiscontinuityTime
// when a counter went backwards (the switch restarted or cleared it), both at
// the time the holder changed; a row's first state is older than the agent: 0.
void InterfaceRows::Track(InterfaceRow& row, Clock::time_point changed) {
  auto [entry, added] = history.try_emplace(row.IfIndex());
  History& h = entry->second;
  if (!added) {
    if (h.operStatus != row.operStatus) h.lastChange = TicksAt(changed);
    for (std::size_t c = 0; c < row.counters.size(); ++c) {
      if (row.counters[c] < h.counters[c]) {
        h.counterDiscontinuity = TicksAt(changed);
        break;
      }
    }
  }
  h.operStatus = row.operStatus;
  h.counters = row.counters;
  row.lastChange = h.lastChange;
  row.counterDiscontinuity = h.counterDiscontinuity;
}

void InterfaceRows::Sort() {
  ++generation;
  sorted.clear();
  std::vector<std::pair<long, long>> layers;
  for (const auto& source : sources) {
    for (const auto& row : source.rows) sorted.push_back(&row);
    layers.insert(layers.end(), source.layers.begin(), source.layers.end());
  }
  // A port listed twice (as an Ethernet interface and in a LAG) keeps its first row.
  std::stable_sort(sorted.begin(), sorted.end(), [](const InterfaceRow* a, const InterfaceRow* b) {
    return a->IfIndex() < b->IfIndex();
  });
  sorted.erase(std::unique(sorted.begin(), sorted.end(),
                           [](const InterfaceRow* a, const InterfaceRow* b) {
                             return a->IfIndex() == b->IfIndex();
                           }),
               sorted.end());
  std::set<long> higher, lower;
  for (const auto& [h, l] : layers) {
    higher.insert(h);
    lower.insert(l);
  }
  for (const auto* row : sorted) {
    if (lower.count(row->IfIndex()) == 0) layers.emplace_back(0, row->IfIndex());
    if (higher.count(row->IfIndex()) == 0) layers.emplace_back(row->IfIndex(), 0);
  }
  std::sort(layers.begin(), layers.end());
  layers.erase(std::unique(layers.begin(), layers.end()), layers.end());
  stack.clear();
  for (const auto& [h, l] : layers) stack.push_back({static_cast<oid>(h), static_cast<oid>(l)});
  // Every served name is seen, also those of sources unchanged this time.
  for (const auto* row : sorted) indexes.Of(row->name);
  indexes.EndRound(std::time(nullptr));
}

}  // namespace Arq::Snmp::Standard
