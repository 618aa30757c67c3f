// The collector's health group (arc 8 of the private MIB): the state of the
// collection loop, the options in force, the daemon, and one row per switch
// call, as a one-row scalar group and a ten-row table. The health and the
// calls are those of the
// switch model the standard views were projected from, so that one request
// sees one collection; the daemon's own record is read as it is now.
#include "Collector/CollectorMib.h"

#include <algorithm>

#include "Arq/Monitoring/MonitoringProcessor.h"
#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace Collector;
namespace Domain = OrvoViaSwitch::Domain::Dto::Metrics;

// The group's objects: their identifiers those of ObjectIdentifiers.def (the
// call table's columns numbered below its entry), their syntaxes those of the
// MIB module.
#define ARQ_COLLECTOR_OBJECT(name, syntax) \
  const MibObject name{Syntax::syntax, Mechanism::ObjectId(Oid::name)};
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorState, Integer)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorLastCollection, Unsigned32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorLastSuccess, Unsigned32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorLastDuration, Unsigned32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorCollections, Counter32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorConsecutiveFailures, Gauge32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorEnabled, TruthValue)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorPeriod, Integer32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorLogLevel, Integer)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorLastError, DisplayString)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorDaemonVersion, DisplayString)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorDaemonStartTime, Unsigned32)
ARQ_COLLECTOR_OBJECT(arqSwitchOrvoViaCollectorCallTable, Table)
#undef ARQ_COLLECTOR_OBJECT

MibObject CallColumn(u_char syntax, oid column) {
  MibObject object{syntax, Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorCallEntry)};
  object.id.push_back(column);
  return object;
}
const MibObject arqSwitchOrvoViaCollectorCallName = CallColumn(Syntax::DisplayString, 2);
const MibObject arqSwitchOrvoViaCollectorCallOutcome = CallColumn(Syntax::Integer, 3);
const MibObject arqSwitchOrvoViaCollectorCallFailures = CallColumn(Syntax::Counter32, 4);
const MibObject arqSwitchOrvoViaCollectorCallLastError = CallColumn(Syntax::DisplayString, 5);

std::uint64_t Unsigned32(std::int64_t value) {
  return static_cast<std::uint64_t>(std::clamp<std::int64_t>(value, 0, 0xffffffffLL));
}

GroupRow Group(const Domain::CollectorHealthMetric& health, const Domain::DaemonMetric& daemon) {
  GroupRow row;
  row.state = static_cast<long>(health.state);
  row.lastCollection = Unsigned32(health.lastCollection);
  row.lastSuccess = Unsigned32(health.lastSuccess);
  row.lastDuration = Unsigned32(health.lastDurationMs);
  row.collections = static_cast<std::uint32_t>(health.collections);  // Counter32 wraps
  row.consecutiveFailures = Unsigned32(health.consecutiveFailures);
  row.enabled = health.collectEnabled;
  row.period = health.period;
  row.logLevel = daemon.logLevel;
  row.lastError = Truncate(health.lastError);
  row.version = Truncate(daemon.version);
  row.startTime = Unsigned32(daemon.startTime);
  return row;
}

}  // namespace

CollectorView::CollectorView()
    : group({
          Field<GroupRow, arqSwitchOrvoViaCollectorState, &GroupRow::state>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorLastCollection, &GroupRow::lastCollection>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorLastSuccess, &GroupRow::lastSuccess>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorLastDuration, &GroupRow::lastDuration>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorCollections, &GroupRow::collections>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorConsecutiveFailures,
                &GroupRow::consecutiveFailures>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorEnabled, &GroupRow::enabled>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorPeriod, &GroupRow::period>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorLogLevel, &GroupRow::logLevel>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorLastError, &GroupRow::lastError>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorDaemonVersion, &GroupRow::version>(),
          Field<GroupRow, arqSwitchOrvoViaCollectorDaemonStartTime, &GroupRow::startTime>(),
      }),
      callTable({
          Field<CallRow, arqSwitchOrvoViaCollectorCallName, &CallRow::name>(),
          Field<CallRow, arqSwitchOrvoViaCollectorCallOutcome, &CallRow::outcome>(),
          Field<CallRow, arqSwitchOrvoViaCollectorCallFailures, &CallRow::failures>(),
          Field<CallRow, arqSwitchOrvoViaCollectorCallLastError, &CallRow::lastError>(),
      }) {}

void CollectorView::RefreshGroup(const Model::SwitchModel& model) {
  Monitoring::MonitoringProcessor::monitoringValues.daemon.CopyValue(daemon);
  group.Replace({Group(model.collection.health, daemon)});
}

std::vector<View> CollectorView::Views() {
  return {GroupView("arqSwitchOrvoViaCollector", arqSwitchOrvoViaCollectorState,
                    arqSwitchOrvoViaCollectorDaemonStartTime, group),
          TableView("arqSwitchOrvoViaCollectorCallTable", arqSwitchOrvoViaCollectorCallTable,
                    callTable)};
}

void CollectorView::Project(const ProjectionContext& context) {
  const auto& calls = context.model.collection.calls;
  std::vector<CallRow> rows;
  rows.reserve(calls.size());
  for (std::size_t call = 0; call < calls.size(); ++call) {
    rows.push_back({{call + 1},
                    Domain::kCollectorCallNames[call],
                    static_cast<long>(calls[call].outcome),
                    static_cast<std::uint32_t>(calls[call].failures),  // Counter32 wraps
                    Truncate(calls[call].lastError)});
  }
  callTable.Replace(std::move(rows));
}

}  // namespace Standard

void init_arqSwitchOrvoViaCollector(Standard::StandardViews& views) {
  views.Register(Standard::Module::Collector);
  snmp_log(LOG_INFO, "arqSwitchOrvoViaCollector Done initializing.\n");
}

}  // namespace Arq::Snmp
