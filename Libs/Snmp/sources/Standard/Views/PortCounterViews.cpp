// The switch's per-port counters, LAG membership and management address in
// the standard MIBs (EtherLike-MIB, RMON-MIB, HC-RMON-MIB, IEEE8023-LAG-MIB,
// LLDP-MIB), projected from the switch model. Every table and column is
// declared in PortCounterObjects.def; this file builds the rows they read.
#include "Standard/Views/PortCounterViews.h"

#include <map>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Modules.h"
#include "Standard/Engine/ShownCounters.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace PortCounters;
namespace Dto = OrvoViaSwitch::Domain::Dto;
using Index = Dto::EthCounterIndex;

#define ARQ_COUNT(name) r.counters[Index::name]

// dot3StatsDuplexStatus: unknown(1) unless the link is up; the KR modes and
// 1000BASE-X run full duplex only; an SGMII port that has sent frames in half
// duplex runs, or ran, half duplex (the switch reports no duplex setting).
long Duplex(const Model::Port& port) {
  if (port.link != Model::LinkState::Up) return 1;
  switch (port.mode) {
    case Dto::EthMode::KR:
    case Dto::EthMode::KR2:
    case Dto::EthMode::KR4:
    case Dto::EthMode::_1000BASE_X:
      return 3;
    case Dto::EthMode::SGMII:
      return port.counters[Index::NbOfValidFrameSentHalfDupWithCollision] +
                         port.counters[Index::NbOfValidFrameSentHalfDupWithOutCollision] >
                     0
                 ? 2
                 : 3;
    default:
      return 1;
  }
}

constexpr long kLargestActorPort = 65535;    // PortList of dot3adAggPortListPorts
constexpr long kLargestLldpPort = 512L * 8;  // LldpPortList

PortRow MakePortRow(const ServedPort& served, const ProjectionContext& context, long lag) {
  const Model::Port& port = *served.port;
  PortRow r;
  r.index = {static_cast<oid>(served.ifIndex)};
  r.ifIndex = served.ifIndex;
  r.portNumber = served.portNumber;
  r.counters = port.counters;
  r.duplex = Duplex(port);
  r.octets = ARQ_COUNT(NbOfGoodOctetsReceived) + ARQ_COUNT(NbOfBadOctetsReceived);
  r.packets = ARQ_COUNT(NbOfGoodUnicastFrameReceived) + ARQ_COUNT(NbOfGoodPacketsBroadcast) +
              ARQ_COUNT(NbOfGoodPacketsMulticast) + ARQ_COUNT(NbOfPacketsSizeLess64BytesReceived) +
              ARQ_COUNT(NbOfFragmentedPacketsReceived) + ARQ_COUNT(NbOfOversizedPacketsReceived) +
              ARQ_COUNT(NbOfJabberPacketsReceived) + ARQ_COUNT(NbOfCrcErrorEvents);
  r.dataSource = IfEntryCell(1, served.ifIndex);
  if (context.model.lldpLocal.mainMac) r.systemId = MacOctets(*context.model.lldpLocal.mainMac);
  r.selectedAgg = lag;
  r.attachedAgg = port.link == Model::LinkState::Up ? lag : 0;
  return r;
}

// The ifIndex of the IF-MIB row whose interface has the address, or 0.
long AddressIfIndex(const ProjectionContext& context, const std::array<std::uint8_t, 4>& address) {
  for (const auto& served : context.layout.ports) {
    if (served.owner->type == Dto::IfType::Ethernet && served.owner->ipv4 == address) {
      return served.ifIndex;
    }
  }
  for (const auto& served : context.layout.aggregates) {
    if (served.interface->ipv4 == address) return served.ifIndex;
  }
  return 0;
}

}  // namespace

// Each table's columns: the value of each served column is a function of
// the row, named after the column, in a namespace of its table's, and the
// column is a Field of its object, as in every other view. ARQ_SHOWN finds
// its counter by the column's name.
#define ARQ_VALUE_Export(name, ...)                              \
  inline auto name(const Row& r [[maybe_unused]]) {              \
    [[maybe_unused]] constexpr std::string_view kColumn = #name; \
    return __VA_ARGS__;                                          \
  }
#define ARQ_SHOWN ShownCounter<Row, CounterShownBy(kColumn)>(r)
#define ARQ_VALUE_Serve ARQ_VALUE_Export
#define ARQ_VALUE_Absent(...)
#define ARQ_VALUE(name, number, syntax, use, ...) ARQ_VALUE_##use(name, __VA_ARGS__)
#define ARQ_FIELD_Export(name) Field<Row, Mib::name, &(name)>(),
#define ARQ_FIELD_Serve ARQ_FIELD_Export
#define ARQ_FIELD_Absent(name)
#define ARQ_FIELD(name, number, syntax, use, ...) ARQ_FIELD_##use(name)
#define ARQ_COLUMNS(name, mib, arcs, row, rows, columns)                 \
  namespace {                                                            \
  namespace name##Values {                                               \
    using Row = PortCounters::row;                                       \
    columns(ARQ_VALUE)                                                   \
  }                                                                      \
  }                                                                      \
  std::vector<Column<PortCounters::row>> PortCounters::name##Columns() { \
    using namespace name##Values;                                        \
    return {columns(ARQ_FIELD)};                                         \
  }
ARQ_PORT_COUNTER_TABLES(ARQ_COLUMNS)
#undef ARQ_COLUMNS
#undef ARQ_FIELD
#undef ARQ_FIELD_Absent
#undef ARQ_FIELD_Serve
#undef ARQ_FIELD_Export
#undef ARQ_VALUE
#undef ARQ_VALUE_Absent
#undef ARQ_VALUE_Serve
#undef ARQ_VALUE_Export
#undef ARQ_SHOWN

std::vector<View> PortCounterView::Views() {
#define ARQ_VIEW(name, mib, arcs, row, rows, columns) TableView(#name, Mib::name, name),
  return {ARQ_PORT_COUNTER_TABLES(ARQ_VIEW)};
#undef ARQ_VIEW
}

void PortCounterView::Project(const ProjectionContext& context) {
  std::vector<AggregatorRow> aggregators;
  std::map<long, long> lagOf;  // port ifIndex -> LAG ifIndex
  for (const auto& served : context.layout.aggregates) {
    if (served.interface->type != Dto::IfType::BasicLag) continue;
    AggregatorRow row;
    row.index = {static_cast<oid>(served.ifIndex)};
    if (served.interface->mac) row.mac = MacOctets(*served.interface->mac);
    if (context.model.lldpLocal.mainMac) row.systemId = MacOctets(*context.model.lldpLocal.mainMac);
    std::vector<long> actorPorts;
    for (const long member : served.members) {
      lagOf.emplace(member, served.ifIndex);
      if (const ServedPort* port = context.layout.FindPort(member)) {
        actorPorts.push_back(port->portNumber);
      }
    }
    row.ports = PortList(actorPorts, kLargestActorPort);
    aggregators.push_back(std::move(row));
  }
  std::vector<PortRow> ports;
  std::vector<PortRow> rmon;
  std::vector<long> lldpPorts;
  ports.reserve(context.layout.ports.size());
  for (const auto& served : context.layout.ports) {
    const auto lag = lagOf.find(served.ifIndex);
    ports.push_back(MakePortRow(served, context, lag == lagOf.end() ? 0 : lag->second));
    if (served.portNumber != 0) {
      rmon.push_back(ports.back());
      rmon.back().index = {static_cast<oid>(served.portNumber)};
    }
    lldpPorts.push_back(served.ifIndex);
  }
  std::vector<ManAddrRow> addresses;
  if (const auto& address = context.model.lldpLocal.managementIpv4) {
    ManAddrRow row;
    row.index = {1, 4, (*address)[0], (*address)[1], (*address)[2], (*address)[3]};  // ipV4(1)
    row.length = 1 + 4;
    row.ifId = AddressIfIndex(context, *address);
    row.ifSubtype = row.ifId != 0 ? 2 : 1;
    row.ports = PortList(lldpPorts, kLargestLldpPort);
    addresses.push_back(std::move(row));
  }
  dot3StatsTable.Replace(std::move(ports));
  etherStatsTable.Replace(std::move(rmon));
  dot3adAggTable.Replace(std::move(aggregators));
  lldpLocManAddrTable.Replace(std::move(addresses));
}

}  // namespace Standard

void init_portCounterViews(Standard::StandardViews& views) {
  views.Register(Standard::Module::PortCounters);
}

}  // namespace Arq::Snmp
