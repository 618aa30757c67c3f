#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "InterfaceIndex.h"
#include "SortedTable.h"

namespace Arq::Snmp::Standard {

namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;

// IANAifType values of the rows.
enum IfType : long { kEthernetCsmacd = 6, kPropVirtual = 53, kIeee8023adLag = 161 };

// One IF-MIB row: a port, a LAG or a PRS interface, as the switch reported it.
struct InterfaceRow {
  std::vector<oid> index;   // {ifIndex}
  std::string name;         // ifName
  std::string descr;        // ifDescr
  std::string alias;        // ifAlias
  std::string physAddress;  // ifPhysAddress: 6 bytes, or empty when unknown
  long type = kEthernetCsmacd;
  long adminStatus = 2;  // up(1), down(2)
  long operStatus = 4;   // up(1), down(2), unknown(4)
  std::uint64_t speedMbps = 0;
  bool connector = true;
  std::array<std::int64_t, Metrics::kEthernetCounterCount> counters{};
  std::uint64_t lastChange = 0;            // TimeTicks
  std::uint64_t counterDiscontinuity = 0;  // TimeTicks

  long IfIndex() const { return static_cast<long>(index[0]); }
};

// The interface rows of the whole switch in ifIndex order, and the layering
// of LAGs and PRS interfaces over their ports, rebuilt from the monitoring
// values only when a holder's change time moved.
class InterfaceRows {
 public:
  using Values = OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

  InterfaceRows(Values& values, InterfaceIndex& indexes);

  void Refresh();
  const std::vector<const InterfaceRow*>& Rows() const { return sorted; }
  // (higher, lower) ifIndex pairs in order, including the (0, x) and (x, 0)
  // pairs of interfaces with nothing above or below them.
  const std::vector<std::vector<oid>>& Stack() const { return stack; }
  // Moves each time the rows are rebuilt, for views derived from them.
  std::uint64_t Generation() const { return generation; }

 private:
  using Clock = std::chrono::steady_clock;
  struct Source {
    Clock::time_point metricTime, detailsTime;
    bool fresh = false;
    std::vector<InterfaceRow> rows;
    std::vector<std::pair<long, long>> layers;
  };
  struct History {
    long operStatus = 0;
    std::uint64_t lastChange = 0;
    std::uint64_t counterDiscontinuity = 0;
    std::array<std::int64_t, Metrics::kEthernetCounterCount> counters{};
  };

  template <typename Metric>
  bool RefreshSource(
      Source& source,
      const OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<Metric>& holder,
      const OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<
          Metrics::InterfaceDetailsMetric>& details);
  void Build(Source& source, const Metrics::EthernetInterfaceMetric& metric,
             const Metrics::InterfaceDetailsMetric& details);
  void Build(Source& source, const Metrics::PRSInterfaceMetric& metric,
             const Metrics::InterfaceDetailsMetric& details);
  void Build(Source& source, const Metrics::LAGInterfaceMetric& metric,
             const Metrics::InterfaceDetailsMetric& details);
  InterfaceRow& AddPort(Source& source, const Metrics::EthernetMetric& port, long adminStatus,
                        std::string descr);
  InterfaceRow& AddAggregate(Source& source, const std::string& name, long type, long status,
                             const Metrics::InterfaceDetailsMetric& details);
  void Track(InterfaceRow& row, Clock::time_point changed);
  void Sort();

  Values& values;
  InterfaceIndex& indexes;
  std::vector<Source> sources;  // Ethernet, then PRS, then LAG slots
  std::map<long, History> history;
  std::vector<const InterfaceRow*> sorted;
  std::vector<std::vector<oid>> stack;
  std::uint64_t generation = 0;
};

// The one ifIndex map and interface row set of the process, shared by the
// IF-MIB and LLDP-MIB modules; created at first use, once the agent's
// configuration (its persistent directory) is read.
InterfaceIndex& SharedIndexes();
InterfaceRows& SharedRows();

}  // namespace Arq::Snmp::Standard
