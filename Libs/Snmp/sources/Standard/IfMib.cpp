#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"

#include "../Modules.h"
#include "InterfaceRows.h"

namespace Arq::Snmp::Standard {

// Where the fallback ifIndex values live: Net-SNMP's persistent directory
// (/var/lib/snmp, or persistentDir / SNMP_PERSISTENT_DIR), the place an agent
// keeps what must survive restarts.
InterfaceIndex& SharedIndexes() {
  static InterfaceIndex indexes(std::string(get_persistent_directory()) + "/orvovia-ifindex.conf");
  return indexes;
}

InterfaceRows& SharedRows() {
  static InterfaceRows rows(Monitoring::MonitoringProcessor::monitoringValues, SharedIndexes());
  return rows;
}

}  // namespace Arq::Snmp::Standard

namespace Arq::Snmp {
namespace {

using namespace Standard;

// Counters of the switch behind the IF-MIB counters, by their positions in
// the port's counter list.
using Index = OrvoViaSwitch::Domain::Dto::EthCounterIndex;
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

std::uint64_t Value(const InterfaceRow& row, Counter counter) {
  return static_cast<std::uint64_t>(row.counters[counter]);
}
std::uint64_t InErrors(const InterfaceRow& row) {
  std::uint64_t sum = 0;
  for (std::size_t c = kFirstReceiveError; c <= kLastReceiveError; ++c) {
    sum += static_cast<std::uint64_t>(row.counters[c]);
  }
  return sum;
}
std::uint64_t OutErrors(const InterfaceRow& row) {
  return Value(row, kPacketsDropDueCollision) + Value(row, kLateMacCollision);
}

// The IF-MIB tables over the shared rows: they differ in their cells only.
template <typename Cells>
class InterfaceTable : public ISortedTable {
 public:
  void Refresh() override { SharedRows().Refresh(); }
  std::size_t Rows() const override { return SharedRows().Rows().size(); }
  const std::vector<oid>& Index(std::size_t row) const override {
    return SharedRows().Rows()[row]->index;
  }
  bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const override {
    return Cells::Answer(*SharedRows().Rows()[row], column, var);
  }
};

struct IfTableCells {
  static bool Answer(const InterfaceRow& row, unsigned column, netsnmp_variable_list* var) {
    switch (column) {
      case 1:
        SetInteger(var, row.IfIndex());
        break;
      case 2:
        SetOctets(var, row.descr);
        break;
      case 3:
        SetInteger(var, row.type);
        break;
      case 4:
        SetInteger(var, 0);
        break;  // ifMtu: the switch does not report it
      case 5:
        SetUnsigned(var, ASN_GAUGE, std::min<std::uint64_t>(row.speedMbps * 1000000, 0xffffffffu));
        break;
      case 6:
        SetOctets(var, row.physAddress);
        break;
      case 7:
        SetInteger(var, row.adminStatus);
        break;
      case 8:
        SetInteger(var, row.operStatus);
        break;
      case 9:
        SetUnsigned(var, ASN_TIMETICKS, row.lastChange);
        break;
      case 10:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodOctetsReceived));
        break;
      case 11:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodUnicastFrameReceived));
        break;
      case 12:
        SetUnsigned(
            var, ASN_COUNTER,
            Value(row, kGoodPacketsMulticastReceived) + Value(row, kGoodPacketsBroadcastReceived));
        break;
      case 13:
        SetUnsigned(var, ASN_COUNTER, Value(row, kInternalDropPacketsBW));
        break;
      case 14:
        SetUnsigned(var, ASN_COUNTER, InErrors(row));
        break;
      case 15:
        SetUnsigned(var, ASN_COUNTER, 0);
        break;  // no protocol demultiplexing
      case 16:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodOctetsSent));
        break;
      case 17:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodUnicastFrameSent));
        break;
      case 18:
        SetUnsigned(var, ASN_COUNTER,
                    Value(row, kGoodMulticastPacketsSent) + Value(row, kGoodBroadcastPacketsSent));
        break;
      case 19:
        SetUnsigned(var, ASN_COUNTER, Value(row, kFrameNotTransmitted));
        break;
      case 20:
        SetUnsigned(var, ASN_COUNTER, OutErrors(row));
        break;
      case 21:
        SetUnsigned(var, ASN_GAUGE, 0);
        break;  // ifOutQLen, deprecated
      case 22:
        SetObjectId(var, {0, 0});
        break;  // ifSpecific, deprecated: zeroDotZero
      default:
        return false;
    }
    return true;
  }
};

struct IfXTableCells {
  static bool Answer(const InterfaceRow& row, unsigned column, netsnmp_variable_list* var) {
    static constexpr Counter kHc[] = {
        kGoodOctetsReceived,           kGoodUnicastFrameReceived, kGoodPacketsMulticastReceived,
        kGoodPacketsBroadcastReceived, kGoodOctetsSent,           kGoodUnicastFrameSent,
        kGoodMulticastPacketsSent,     kGoodBroadcastPacketsSent};
    switch (column) {
      case 1:
        SetOctets(var, row.name);
        break;
      case 2:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodPacketsMulticastReceived));
        break;
      case 3:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodPacketsBroadcastReceived));
        break;
      case 4:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodMulticastPacketsSent));
        break;
      case 5:
        SetUnsigned(var, ASN_COUNTER, Value(row, kGoodBroadcastPacketsSent));
        break;
      case 6:
      case 7:
      case 8:
      case 9:
      case 10:
      case 11:
      case 12:
      case 13:
        SetCounter64(var, Value(row, kHc[column - 6]));
        break;
      case 14:
        SetInteger(var, 1);
        break;  // ifLinkUpDownTrapEnable: linkUp/linkDown are sent for every row
      case 15:
        SetUnsigned(var, ASN_GAUGE, row.speedMbps);
        break;
      case 16:
        SetInteger(var, 2);
        break;  // ifPromiscuousMode: false
      case 17:
        SetInteger(var, row.connector ? 1 : 2);
        break;
      case 18:
        SetOctets(var, row.alias);
        break;
      case 19:
        SetUnsigned(var, ASN_TIMETICKS, row.counterDiscontinuity);
        break;
      default:
        return false;
    }
    return true;
  }
};

class IfStackTable : public ISortedTable {
 public:
  void Refresh() override { SharedRows().Refresh(); }
  std::size_t Rows() const override { return SharedRows().Stack().size(); }
  const std::vector<oid>& Index(std::size_t row) const override {
    return SharedRows().Stack()[row];
  }
  bool Answer(std::size_t, unsigned column, netsnmp_variable_list* var) const override {
    if (column != 3) return false;
    SetInteger(var, 1);  // ifStackStatus: active
    return true;
  }
};

InterfaceTable<IfTableCells> ifTable;
InterfaceTable<IfXTableCells> ifXTable;
IfStackTable ifStackTable;

}  // namespace

int handle_ifNumber(netsnmp_mib_handler*, netsnmp_handler_registration*,
                    netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  if (reqinfo->mode != MODE_GET) return SNMP_ERR_NOERROR;
  SharedRows().Refresh();
  SetInteger(requests->requestvb, static_cast<long>(SharedRows().Rows().size()));
  return SNMP_ERR_NOERROR;
}

void init_ifMib() {
  static const oid ifNumber[] = {1, 3, 6, 1, 2, 1, 2, 1};
  auto* number = netsnmp_create_handler_registration("ifNumber", handle_ifNumber, ifNumber,
                                                     OID_LENGTH(ifNumber), HANDLER_CAN_RONLY);
  number->priority = kStandardViewPriority;
  netsnmp_register_scalar(number);
  RegisterSortedTable("ifTable", {1, 3, 6, 1, 2, 1, 2, 2}, 1, 22, &ifTable);
  RegisterSortedTable("ifXTable", {1, 3, 6, 1, 2, 1, 31, 1, 1}, 1, 19, &ifXTable);
  RegisterSortedTable("ifStackTable", {1, 3, 6, 1, 2, 1, 31, 1, 2}, 3, 3, &ifStackTable);
}

}  // namespace Arq::Snmp
