// The collector's health group (arc 8 of the private MIB): the state of the
// collection loop, the options in force, the daemon, and one row per switch
// call, as a one-row scalar group and a ten-row table. The health and the
// calls are those of the
// switch model the standard views were projected from, so that one request
// sees one collection; the daemon's own record is read as it is now.
#include <algorithm>

#include "../Modules.h"
#include "../ObjectIdentifiers.h"
#include "../Standard/Projection.h"
#include "../TableShapes.h"

namespace Arq::Snmp {
namespace {

using namespace Standard;
namespace Domain = OrvoViaSwitch::Domain::Dto::Metrics;

std::uint64_t Unsigned32(std::int64_t value) {
  return static_cast<std::uint64_t>(std::clamp<std::int64_t>(value, 0, 0xffffffffLL));
}

class CollectorGroup : public ISortedTable {
 public:
  void Refresh() override {
    RefreshProjections();
    Monitoring::MonitoringProcessor::monitoringValues.daemon.CopyValue(daemon);
  }
  std::size_t Rows() const override { return 1; }
  const std::vector<oid>& Index(std::size_t) const override { return instance; }
  bool Answer(std::size_t, unsigned column, netsnmp_variable_list* var) const override {
    const auto& health = ProjectedModel()->collection.health;
    switch (column) {
      case 1:
        SetInteger(var, static_cast<long>(health.state));
        break;
      case 2:
        SetUnsigned(var, ASN_UNSIGNED, Unsigned32(health.lastCollection));
        break;
      case 3:
        SetUnsigned(var, ASN_UNSIGNED, Unsigned32(health.lastSuccess));
        break;
      case 4:
        SetUnsigned(var, ASN_UNSIGNED, Unsigned32(health.lastDurationMs));
        break;
      case 5:
        SetUnsigned(var, ASN_COUNTER, static_cast<std::uint32_t>(health.collections));
        break;
      case 6:
        SetUnsigned(var, ASN_GAUGE, Unsigned32(health.consecutiveFailures));
        break;
      case 7:
        SetInteger(var, health.collectEnabled ? 1 : 2);  // TruthValue
        break;
      case 8:
        SetInteger(var, health.period);
        break;
      case 9:
        SetInteger(var, daemon.logLevel);
        break;
      case 10:
        SetOctets(var, Truncate(health.lastError));
        break;
      case 11:
        SetOctets(var, Truncate(daemon.version));
        break;
      case 12:
        SetUnsigned(var, ASN_UNSIGNED, Unsigned32(daemon.startTime));
        break;
      default:
        return false;
    }
    return true;
  }

 private:
  std::vector<oid> instance{0};
  Domain::DaemonMetric daemon;
};

class CallTable : public ISortedTable {
 public:
  CallTable() {
    for (std::size_t row = 0; row < indexes.size(); ++row) indexes[row] = {row + 1};
  }
  void Refresh() override { RefreshProjections(); }
  std::size_t Rows() const override { return indexes.size(); }
  const std::vector<oid>& Index(std::size_t row) const override { return indexes[row]; }
  bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const override {
    const auto& call = ProjectedModel()->collection.calls[row];
    switch (column) {
      case 2:
        SetOctets(var, Domain::kCollectorCallNames[row]);
        break;
      case 3:
        SetInteger(var, static_cast<long>(call.outcome));
        break;
      case 4:
        SetUnsigned(var, ASN_COUNTER, static_cast<std::uint32_t>(call.failures));
        break;
      case 5:
        SetOctets(var, Truncate(call.lastError));
        break;
      default:
        return false;
    }
    return true;
  }

 private:
  std::array<std::vector<oid>, Domain::kCollectorCallCount> indexes;
};

CollectorGroup collectorGroup;
CallTable callTable;

}  // namespace

void init_arqSwitchOrvoViaCollector() {
  // The group's scalars run from its state to the daemon's start time.
  RegisterSortedRange("arqSwitchOrvoViaCollector",
                      Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollector),
                      Oid::arqSwitchOrvoViaCollectorState.back(),
                      Oid::arqSwitchOrvoViaCollectorDaemonStartTime.back(), &collectorGroup);
  RegisterSortedTable("arqSwitchOrvoViaCollectorCallTable",
                      Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorCallTable), 2,
                      1 + Shape::arqSwitchOrvoViaCollectorCallTable.columns, &callTable);
  snmp_log(LOG_INFO, "arqSwitchOrvoViaCollector Done initializing.\n");
}

}  // namespace Arq::Snmp
