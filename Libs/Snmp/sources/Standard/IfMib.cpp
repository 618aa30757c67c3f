#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"

#include <set>

#include "../Modules.h"
#include "Projection.h"

namespace Arq::Snmp {
namespace {

using namespace Standard;
namespace Dto = OrvoViaSwitch::Domain::Dto;

// Counters of the switch behind the IF-MIB counters, by their positions in
// the port's counter list.
using Index = Dto::EthCounterIndex;
enum Counter : std::size_t {
  kGoodOctetsReceived = Index::NbOfGoodOctetsReceived,
  kFrameNotTransmitted = Index::NbOfFrameNotTransmitted,
  kGoodPacketsBroadcastReceived = Index::NbOfGoodPacketsBroadcast,
  kGoodPacketsMulticastReceived = Index::NbOfGoodPacketsMulticast,
  kGoodOctetsSent = Index::NbOfGoodOctectsSent,
  kPacketsDropDueCollision = Index::NbOfPacketsDropDueCollision,
  kGoodMulticastPacketsSent = Index::NbOfGoodMulticastPacketsSent,
  kGoodBroadcastPacketsSent = Index::NbOfGoodBroadcastPacketsSent,
  kInternalDropPacketsBW = Index::NbOfInternalDropPacketsBW,
  // The receive errors follow each other: undersize, fragments, oversize,
  // jabber, MAC errors, CRC errors.
  kFirstReceiveError = Index::NbOfPacketsSizeLess64BytesReceived,
  kLastReceiveError = Index::NbOfCrcErrorEvents,
  kLateMacCollision = Index::NbOfLateMacCollision,
  kGoodUnicastFrameReceived = Index::NbOfGoodUnicastFrameReceived,
  kGoodUnicastFrameSent = Index::NbOfGoodUnicastFrameSent,
};

// One IF-MIB row: a port, a LAG or a PRS interface, in its MIB encoding.
struct IfRow {
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
  Model::PortCounters counters{};
  std::uint64_t lastChange = 0;            // TimeTicks
  std::uint64_t counterDiscontinuity = 0;  // TimeTicks

  std::uint64_t Value(Counter counter) const { return counters[counter]; }
  std::uint64_t InErrors() const {
    std::uint64_t sum = 0;
    for (std::size_t c = kFirstReceiveError; c <= kLastReceiveError; ++c) sum += counters[c];
    return sum;
  }
  std::uint64_t OutErrors() const {
    return Value(kPacketsDropDueCollision) + Value(kLateMacCollision);
  }
};

// ifStackTable: (higher, lower) ifIndex pairs.
struct StackRow {
  std::vector<oid> index;
};

template <Counter counter, u_char type = ASN_COUNTER>
bool Count(const IfRow& row, netsnmp_variable_list* var) {
  SetUnsigned(var, type, row.Value(counter));
  return true;
}
template <Counter counter>
bool Count64(const IfRow& row, netsnmp_variable_list* var) {
  SetCounter64(var, row.Value(counter));
  return true;
}

ProjectedTable<IfRow> ifTable({
    {1,
     [](const IfRow& r, netsnmp_variable_list* v) {
       return SetInteger(v, static_cast<long>(r.index[0])), true;
     }},
    {2, [](const IfRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.descr), true; }},
    {3, [](const IfRow& r, netsnmp_variable_list* v) { return SetInteger(v, r.type), true; }},
    // ifMtu: the switch does not report it.
    {4, [](const IfRow&, netsnmp_variable_list* v) { return SetInteger(v, 0), true; }},
    {5,
     [](const IfRow& r, netsnmp_variable_list* v) {
       return SetUnsigned(v, ASN_GAUGE,
                          std::min<std::uint64_t>(r.speedMbps * 1000000, 0xffffffffu)),
              true;
     }},
    {6, [](const IfRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.physAddress), true; }},
    {7,
     [](const IfRow& r, netsnmp_variable_list* v) { return SetInteger(v, r.adminStatus), true; }},
    {8, [](const IfRow& r, netsnmp_variable_list* v) { return SetInteger(v, r.operStatus), true; }},
    {9, [](const IfRow& r,
           netsnmp_variable_list* v) { return SetUnsigned(v, ASN_TIMETICKS, r.lastChange), true; }},
    {10, Count<kGoodOctetsReceived>},
    {11, Count<kGoodUnicastFrameReceived>},
    {12,
     [](const IfRow& r, netsnmp_variable_list* v) {
       return SetUnsigned(
                  v, ASN_COUNTER,
                  r.Value(kGoodPacketsMulticastReceived) + r.Value(kGoodPacketsBroadcastReceived)),
              true;
     }},
    {13, Count<kInternalDropPacketsBW>},
    {14, [](const IfRow& r,
            netsnmp_variable_list* v) { return SetUnsigned(v, ASN_COUNTER, r.InErrors()), true; }},
    // ifInUnknownProtos: no protocol demultiplexing.
    {15,
     [](const IfRow&, netsnmp_variable_list* v) { return SetUnsigned(v, ASN_COUNTER, 0), true; }},
    {16, Count<kGoodOctetsSent>},
    {17, Count<kGoodUnicastFrameSent>},
    {18,
     [](const IfRow& r, netsnmp_variable_list* v) {
       return SetUnsigned(v, ASN_COUNTER,
                          r.Value(kGoodMulticastPacketsSent) + r.Value(kGoodBroadcastPacketsSent)),
              true;
     }},
    {19, Count<kFrameNotTransmitted>},
    {20, [](const IfRow& r,
            netsnmp_variable_list* v) { return SetUnsigned(v, ASN_COUNTER, r.OutErrors()), true; }},
    // ifOutQLen and ifSpecific, deprecated: 0 and zeroDotZero.
    {21, [](const IfRow&, netsnmp_variable_list* v) { return SetUnsigned(v, ASN_GAUGE, 0), true; }},
    {22,
     [](const IfRow&, netsnmp_variable_list* v) {
       return SetObjectId(v, {0, 0}), true;
     }},
});

ProjectedTable<IfRow> ifXTable(
    {
        {1, [](const IfRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.name), true; }},
        {2, Count<kGoodPacketsMulticastReceived>},
        {3, Count<kGoodPacketsBroadcastReceived>},
        {4, Count<kGoodMulticastPacketsSent>},
        {5, Count<kGoodBroadcastPacketsSent>},
        {6, Count64<kGoodOctetsReceived>},
        {7, Count64<kGoodUnicastFrameReceived>},
        {8, Count64<kGoodPacketsMulticastReceived>},
        {9, Count64<kGoodPacketsBroadcastReceived>},
        {10, Count64<kGoodOctetsSent>},
        {11, Count64<kGoodUnicastFrameSent>},
        {12, Count64<kGoodMulticastPacketsSent>},
        {13, Count64<kGoodBroadcastPacketsSent>},
        // ifLinkUpDownTrapEnable: linkUp/linkDown are sent for every row.
        {14, [](const IfRow&, netsnmp_variable_list* v) { return SetInteger(v, 1), true; }},
        {15,
         [](const IfRow& r, netsnmp_variable_list* v) {
           return SetUnsigned(v, ASN_GAUGE, std::min<std::uint64_t>(r.speedMbps, 0xffffffffu)),
                  true;
         }},
        // ifPromiscuousMode: false.
        {16, [](const IfRow&, netsnmp_variable_list* v) { return SetInteger(v, 2), true; }},
        {17, [](const IfRow& r,
                netsnmp_variable_list* v) { return SetInteger(v, r.connector ? 1 : 2), true; }},
        {18, [](const IfRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.alias), true; }},
        {19,
         [](const IfRow& r, netsnmp_variable_list* v) {
           return SetUnsigned(v, ASN_TIMETICKS, r.counterDiscontinuity), true;
         }},
    },
    &ifTable);

// ifStackStatus: active.
ProjectedTable<StackRow> ifStackTable({
    {3, [](const StackRow&, netsnmp_variable_list* v) { return SetInteger(v, 1), true; }},
});

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

void Project(const ProjectionContext& context) {
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

}  // namespace

int handle_ifNumber(netsnmp_mib_handler*, netsnmp_handler_registration*,
                    netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  if (reqinfo->mode != MODE_GET) return SNMP_ERR_NOERROR;
  RefreshProjections();
  SetInteger(requests->requestvb, static_cast<long>(ifTable.Rows()));
  return SNMP_ERR_NOERROR;
}

void init_ifMib() {
  static const oid ifNumber[] = {1, 3, 6, 1, 2, 1, 2, 1};
  auto* number = netsnmp_create_handler_registration("ifNumber", handle_ifNumber, ifNumber,
                                                     OID_LENGTH(ifNumber), HANDLER_CAN_RONLY);
  number->priority = kStandardViewPriority;
  netsnmp_register_scalar(number);
  AddProjector(Project);
  Register("ifTable", {1, 3, 6, 1, 2, 1, 2, 2}, ifTable);
  Register("ifXTable", {1, 3, 6, 1, 2, 1, 31, 1, 1}, ifXTable);
  Register("ifStackTable", {1, 3, 6, 1, 2, 1, 31, 1, 2}, ifStackTable);
}

}  // namespace Arq::Snmp
