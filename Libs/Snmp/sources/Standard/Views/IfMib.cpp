#include "Standard/Views/IfMib.h"

#include <set>

#include "Modules.h"
#include "Standard/Engine/ShownCounters.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace IfMib;

constexpr long kFalse = 2;    // TruthValue
constexpr long kEnabled = 1;  // ifLinkUpDownTrapEnable
constexpr long kActive = 1;   // RowStatus

IfRow PortRow(const ServedPort& served, const ProjectionContext& context) {
  const Model::Port& port = *served.port;
  IfRow row;
  row.index = {static_cast<oid>(served.ifIndex)};
  row.name = Truncate(port.name);
  row.descr = Truncate(IfDescr(served));
  row.alias = Truncate(IfAlias(served), kIfAliasSize);
  if (served.owner->type == Dto::IfType::Ethernet && served.owner->mac) {
    row.physAddress = MacOctets(*served.owner->mac);
  }
  row.adminStatus = Model::IfMibAdminStatus(*served.owner);
  row.operStatus = Model::IfMibOperStatus(port.link);
  row.speedMbps = Model::SpeedMbps(port.speed);
  row.counters = port.counters;
  row.lastChange = context.TicksAt(port.linkChanged);
  row.counterDiscontinuity = context.TicksAt(port.counterDiscontinuity);
  return row;
}

// A LAG or PRS interface over its ports: its counters the sums of its
// ports', its speed the sum (LAG) or the largest (PRS) of its up ports'.
IfRow AggregateRow(const ServedAggregate& served, const ProjectionContext& context) {
  const Model::Interface& interface = *served.interface;
  const bool lag = interface.type == Dto::IfType::BasicLag;
  IfRow row;
  row.index = {static_cast<oid>(served.ifIndex)};
  row.name = Truncate(interface.name);
  row.descr = row.name;
  row.alias = Truncate(interface.description, kIfAliasSize);
  if (interface.mac) row.physAddress = MacOctets(*interface.mac);
  row.type = lag ? kIeee8023adLag : kPropVirtual;
  row.adminStatus = Model::IfMibAdminStatus(interface);
  row.operStatus = Model::IfMibOperStatus(interface.link);
  row.connector = false;
  Model::Clock::time_point discontinuity{};
  for (const std::size_t member : interface.members) {
    const Model::Port& port = context.model.ports[member];
    for (std::size_t c = 0; c < row.counters.size(); ++c) row.counters[c] += port.counters[c];
    if (port.link == Model::LinkState::Up) {
      const std::uint64_t speed = Model::SpeedMbps(port.speed);
      row.speedMbps = lag ? row.speedMbps + speed : std::max(row.speedMbps, speed);
    }
    discontinuity = std::max(discontinuity, port.counterDiscontinuity);
  }
  row.lastChange = context.TicksAt(interface.linkChanged);
  row.counterDiscontinuity = context.TicksAt(discontinuity);
  return row;
}

}  // namespace

// ifMtu, ifInUnknownProtos (no protocol demultiplexing), and the deprecated
// ifOutQLen and ifSpecific are fixed; ifInDiscards counts the packets dropped
// for bandwidth and ifOutDiscards the frames not transmitted. linkUp and
// linkDown are sent for every row; no row is promiscuous.
IfMibView::IfMibView()
    : ifTable({
          Field<IfRow, Mib::ifIndex, &IfRow::IfIndex>(),
          Field<IfRow, Mib::ifDescr, &IfRow::descr>(),
          Field<IfRow, Mib::ifType, &IfRow::type>(),
          Fixed<IfRow, Mib::ifMtu, 0>(),
          Field<IfRow, Mib::ifSpeed, &IfRow::Speed>(),
          Field<IfRow, Mib::ifPhysAddress, &IfRow::physAddress>(),
          Field<IfRow, Mib::ifAdminStatus, &IfRow::adminStatus>(),
          Field<IfRow, Mib::ifOperStatus, &IfRow::operStatus>(),
          Field<IfRow, Mib::ifLastChange, &IfRow::lastChange>(),
          ARQ_SHOWN_FIELD(IfRow, ifInOctets),
          ARQ_SHOWN_FIELD(IfRow, ifInUcastPkts),
          Field<IfRow, Mib::ifInNUcastPkts, &IfRow::InNUcast>(),
          ARQ_SHOWN_FIELD(IfRow, ifInDiscards),
          Field<IfRow, Mib::ifInErrors, &IfRow::InErrors>(),
          Fixed<IfRow, Mib::ifInUnknownProtos, 0>(),
          ARQ_SHOWN_FIELD(IfRow, ifOutOctets),
          ARQ_SHOWN_FIELD(IfRow, ifOutUcastPkts),
          Field<IfRow, Mib::ifOutNUcastPkts, &IfRow::OutNUcast>(),
          ARQ_SHOWN_FIELD(IfRow, ifOutDiscards),
          Field<IfRow, Mib::ifOutErrors, &IfRow::OutErrors>(),
          Fixed<IfRow, Mib::ifOutQLen, 0>(),
          Fixed<IfRow, Mib::ifSpecific, &kZeroDotZero>(),
      }),
      ifXTable(
          {
              Field<IfRow, Mib::ifName, &IfRow::name>(),
              ARQ_SHOWN_FIELD(IfRow, ifInMulticastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifInBroadcastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifOutMulticastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifOutBroadcastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCInOctets),
              ARQ_SHOWN_FIELD(IfRow, ifHCInUcastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCInMulticastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCInBroadcastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCOutOctets),
              ARQ_SHOWN_FIELD(IfRow, ifHCOutUcastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCOutMulticastPkts),
              ARQ_SHOWN_FIELD(IfRow, ifHCOutBroadcastPkts),
              Fixed<IfRow, Mib::ifLinkUpDownTrapEnable, kEnabled>(),
              Field<IfRow, Mib::ifHighSpeed, &IfRow::HighSpeed>(),
              Fixed<IfRow, Mib::ifPromiscuousMode, kFalse>(),
              Field<IfRow, Mib::ifConnectorPresent, &IfRow::connector>(),
              Field<IfRow, Mib::ifAlias, &IfRow::alias>(),
              Field<IfRow, Mib::ifCounterDiscontinuityTime, &IfRow::counterDiscontinuity>(),
          },
          &ifTable),
      ifStackTable({Fixed<StackRow, Mib::ifStackStatus, kActive>()}) {}

std::vector<View> IfMibView::Views() {
  return {TableView("ifTable", Mib::ifTable, ifTable),
          TableView("ifXTable", Mib::ifXTable, ifXTable),
          TableView("ifStackTable", Mib::ifStackTable, ifStackTable)};
}

void IfMibView::Project(const ProjectionContext& context) {
  std::vector<IfRow> rows;
  rows.reserve(context.layout.ports.size() + context.layout.aggregates.size());
  std::vector<StackRow> stack;
  std::set<long> below;  // interfaces with something above them
  for (const auto& served : context.layout.ports) rows.push_back(PortRow(served, context));
  for (const auto& served : context.layout.aggregates) {
    rows.push_back(AggregateRow(served, context));
    for (const long member : served.members) {
      stack.push_back({{static_cast<oid>(served.ifIndex), static_cast<oid>(member)}});
      below.insert(member);
    }
    if (served.members.empty()) stack.push_back({{static_cast<oid>(served.ifIndex), 0}});
  }
  for (const auto& served : context.layout.ports) {
    stack.push_back({{static_cast<oid>(served.ifIndex), 0}});
  }
  for (const auto& row : rows) {
    if (below.count(static_cast<long>(row.index[0])) == 0) stack.push_back({{0, row.index[0]}});
  }
  ifTable.Replace(std::move(rows));
  ifStackTable.Replace(std::move(stack));
}

}  // namespace Standard

int handle_ifNumber(netsnmp_mib_handler* handler, netsnmp_handler_registration*,
                    netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  if (reqinfo->mode != MODE_GET) return SNMP_ERR_NOERROR;
  auto& views = *static_cast<Standard::StandardViews*>(handler->myvoid);
  views.Refresh();
  Standard::Put(requests->requestvb, Standard::Mib::ifNumber,
                static_cast<long>(views.ifMib.ifTable.Rows()));
  return SNMP_ERR_NOERROR;
}

void init_ifMib(Standard::StandardViews& views) {
  const auto& ifNumber = Standard::Mib::ifNumber.id;
  auto* number = netsnmp_create_handler_registration("ifNumber", handle_ifNumber, ifNumber.data(),
                                                     ifNumber.size(), HANDLER_CAN_RONLY);
  number->handler->myvoid = &views;
  number->priority = Standard::kStandardViewPriority;
  netsnmp_register_scalar(number);
  views.Register(Standard::Module::IfMib);
}

}  // namespace Arq::Snmp
