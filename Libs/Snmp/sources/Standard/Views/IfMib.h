#pragma once

// IF-MIB: every port and LAG or PRS interface of the InterfaceLayout
// (ifTable, ifXTable sharing its rows, ifStackTable), and ifNumber.
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace IfMib {

namespace Dto = OrvoViaSwitch::Domain::Dto;

// The counters of the switch that IF-MIB's sums add up, by their positions
// in the port's counter list (the columns that show one counter as it stands
// find it in PortCounterFacts.def).
using Index = Dto::EthCounterIndex;
enum Counter : std::size_t {
  kGoodPacketsBroadcastReceived = Index::NbOfGoodPacketsBroadcast,
  kGoodPacketsMulticastReceived = Index::NbOfGoodPacketsMulticast,
  kPacketsDropDueCollision = Index::NbOfPacketsDropDueCollision,
  kGoodMulticastPacketsSent = Index::NbOfGoodMulticastPacketsSent,
  kGoodBroadcastPacketsSent = Index::NbOfGoodBroadcastPacketsSent,
  // The receive errors follow each other: undersize, fragments, oversize,
  // jabber, MAC errors, CRC errors.
  kFirstReceiveError = Index::NbOfPacketsSizeLess64BytesReceived,
  kLastReceiveError = Index::NbOfCrcErrorEvents,
  kLateMacCollision = Index::NbOfLateMacCollision,
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

  long IfIndex() const { return static_cast<long>(index[0]); }
  template <Counter counter>
  std::uint64_t Count() const {
    return counters[counter];
  }
  std::uint64_t InNUcast() const {
    return Count<kGoodPacketsMulticastReceived>() + Count<kGoodPacketsBroadcastReceived>();
  }
  std::uint64_t InErrors() const {
    std::uint64_t sum = 0;
    for (std::size_t c = kFirstReceiveError; c <= kLastReceiveError; ++c) sum += counters[c];
    return sum;
  }
  std::uint64_t OutNUcast() const {
    return Count<kGoodMulticastPacketsSent>() + Count<kGoodBroadcastPacketsSent>();
  }
  std::uint64_t OutErrors() const {
    return Count<kPacketsDropDueCollision>() + Count<kLateMacCollision>();
  }
  // Gauge32 holds up to 4.29 Gb/s; ifHighSpeed gives the speed of a faster
  // interface.
  std::uint64_t Speed() const { return std::min<std::uint64_t>(speedMbps * 1000000, kGaugeMax); }
  std::uint64_t HighSpeed() const { return std::min<std::uint64_t>(speedMbps, kGaugeMax); }

  static constexpr std::uint64_t kGaugeMax = 0xffffffffu;
};

// ifStackTable: (higher, lower) ifIndex pairs.
struct StackRow {
  std::vector<oid> index;
};

}  // namespace IfMib

class IfMibView {
 public:
  IfMibView();
  IfMibView(const IfMibView&) = delete;
  IfMibView& operator=(const IfMibView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  ProjectedTable<IfMib::IfRow> ifTable;
  ProjectedTable<IfMib::IfRow> ifXTable;  // the rows of ifTable
  ProjectedTable<IfMib::StackRow> ifStackTable;
};

}  // namespace Arq::Snmp::Standard
