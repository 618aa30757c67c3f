#include <algorithm>
#include <bitset>
#include <optional>

#include "../Modules.h"
#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "InterfaceRows.h"

namespace Arq::Snmp {
namespace {

using namespace Standard;
namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace LldpTlv = Monitoring::MetricConverter::LldpTlv;
using Clock = std::chrono::steady_clock;

// LldpChassisIdSubtype / LldpPortIdSubtype values used for our own identity.
constexpr long kChassisMacAddress = 4;
constexpr long kChassisLocal = 7;
constexpr long kPortInterfaceName = 5;
// LldpSystemCapabilitiesMap with bridge(2) set: the switch is a MAC bridge.
const std::string kBridgeCapability(1, '\x20');

// An 802.1AB capabilities field (bit 0 = other, least significant) as the
// MIB's BITS value (bit 0 = other, the first octet's most significant bit).
std::string CapabilityBits(std::uint8_t high, std::uint8_t low) {
  const unsigned field = (static_cast<unsigned>(high) << 8) | low;
  std::string bits(2, '\0');
  for (unsigned bit = 0; bit < 16; ++bit) {
    if (field & (1u << bit)) bits[bit / 8] = static_cast<char>(bits[bit / 8] | (0x80 >> (bit % 8)));
  }
  // The map names eight capabilities: one octet unless a higher bit is set.
  if (bits[1] == '\0') bits.resize(1);
  return bits;
}

const std::string* FindTlv(const Dto::LldpInfo& info, Dto::LldpTlvType type) {
  const auto found = info.Tlv.find(type);
  return found == info.Tlv.end() ? nullptr : &found->second;
}

// One neighbour as lldpRemTable shows it: each column is present only when
// the TLV that carries it was well formed.
struct RemoteRow {
  enum Column {
    kChassisSubtype = 4,
    kChassisId,
    kPortSubtype,
    kPortId,
    kPortDesc,
    kSysName,
    kSysDesc,
    kCapSupported,
    kCapEnabled,
    kColumns
  };
  std::vector<oid> index;  // lldpRemTimeMark (0), lldpRemLocalPortNum, lldpRemIndex
  std::bitset<kColumns> present;
  long chassisSubtype = 0, portSubtype = 0;
  std::string chassisId, portId, portDesc, sysName, sysDesc, capSupported, capEnabled;
  // lldpRemManAddrTable: the index arcs after the neighbour's (subtype, length, address),
  // and the interface numbering and OID of a well-formed Management Address TLV.
  std::vector<oid> managementIndex;
  long managementIfSubtype = 1;
  long managementIfId = 0;
  std::vector<oid> managementOid{0, 0};
};

void DecodeSubtyped(const std::string* tlv, int type, RemoteRow& row, RemoteRow::Column column,
                    long& subtype, std::string& id) {
  if (tlv == nullptr) return;
  const auto value = LldpTlv::Value(*tlv, type);
  if (!value || value->size() < 2 || (*value)[0] < 1 || (*value)[0] > 7) return;
  subtype = static_cast<unsigned char>((*value)[0]);
  id = std::string(value->substr(1));
  row.present.set(column);
  row.present.set(column + 1);
}

void DecodeText(const std::string* tlv, int type, RemoteRow& row, RemoteRow::Column column,
                std::string& text) {
  if (tlv == nullptr) return;
  if (const auto value = LldpTlv::Value(*tlv, type)) {
    text = std::string(*value);
    row.present.set(column);
  }
}

// Management Address: address string length, subtype, address, interface
// numbering subtype, interface number (4 bytes), OID length, OID (BER).
void DecodeManagementAddress(const std::string* tlv, RemoteRow& row) {
  if (tlv == nullptr) return;
  const auto value = LldpTlv::Value(*tlv, 8);
  if (!value || value->size() < 2) return;
  const std::size_t length = static_cast<std::uint8_t>((*value)[0]);
  if (length < 2 || length > 32 || length + 7 > value->size()) return;
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>((*value)[i]); };
  const std::size_t after = 1 + length;
  const std::size_t oidLength = byte(after + 5);
  if (after + 6 + oidLength != value->size()) return;
  std::vector<oid> identifier;
  oid arc = 0;
  for (std::size_t i = 0; i < oidLength; ++i) {
    arc = (arc << 7) | (byte(after + 6 + i) & 0x7f);
    if ((byte(after + 6 + i) & 0x80) != 0) continue;
    if (identifier.empty()) {
      identifier = {arc < 80 ? arc / 40 : 2, arc < 80 ? arc % 40 : arc - 80};
    } else {
      identifier.push_back(arc);
    }
    arc = 0;
  }
  if (oidLength != 0 && (identifier.size() < 2 || (byte(after + 5 + oidLength) & 0x80) != 0)) {
    return;
  }
  row.managementIndex = {byte(1), length - 1};
  for (std::size_t i = 2; i <= length; ++i) row.managementIndex.push_back(byte(i));
  row.managementIfSubtype = byte(after);
  row.managementIfId =
      static_cast<long>((static_cast<std::uint32_t>(byte(after + 1)) << 24) |
                        (static_cast<std::uint32_t>(byte(after + 2)) << 16) |
                        (static_cast<std::uint32_t>(byte(after + 3)) << 8) | byte(after + 4));
  if (!identifier.empty()) row.managementOid = identifier;
}

RemoteRow Decode(const Dto::LldpInfo& info, long remIndex) {
  RemoteRow row;
  row.index = {0, static_cast<oid>(SharedIndexes().Of(info.IfName)), static_cast<oid>(remIndex)};
  DecodeSubtyped(FindTlv(info, Dto::LldpTlvType::ChassisId), 1, row, RemoteRow::kChassisSubtype,
                 row.chassisSubtype, row.chassisId);
  DecodeSubtyped(FindTlv(info, Dto::LldpTlvType::PortId), 2, row, RemoteRow::kPortSubtype,
                 row.portSubtype, row.portId);
  DecodeText(FindTlv(info, Dto::LldpTlvType::PortDescription), 4, row, RemoteRow::kPortDesc,
             row.portDesc);
  DecodeText(FindTlv(info, Dto::LldpTlvType::SystemName), 5, row, RemoteRow::kSysName, row.sysName);
  DecodeText(FindTlv(info, Dto::LldpTlvType::SystemDescription), 6, row, RemoteRow::kSysDesc,
             row.sysDesc);
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::SystemCapabilities)) {
    const auto value = LldpTlv::Value(*tlv, 7);
    if (value && value->size() == 4) {
      row.capSupported = CapabilityBits((*value)[0], (*value)[1]);
      row.capEnabled = CapabilityBits((*value)[2], (*value)[3]);
      row.present.set(RemoteRow::kCapSupported);
      row.present.set(RemoteRow::kCapEnabled);
    }
  }
  DecodeManagementAddress(FindTlv(info, Dto::LldpTlvType::ManagementAddress), row);
  return row;
}

// The neighbours in index order, decoded again only when a holder's change
// time moved; the management-address rows alongside.
class Neighbours {
 public:
  void Refresh() {
    auto& holders = Monitoring::MonitoringProcessor::monitoringValues.lLDPNeighbourTlvs;
    bool changed = false;
    for (std::size_t i = 0; i < holders.size(); ++i) {
      const auto time = holders[i].ChangeTime();
      if (fresh[i] && time == times[i]) continue;
      fresh[i] = true;
      times[i] = time;
      const auto info = holders[i].Value();
      slots[i].reset();
      if (!info.IfName.empty()) slots[i] = Decode(info, static_cast<long>(i) + 1);
      changed = true;
    }
    if (!changed) return;
    rows.clear();
    managementRows.clear();
    for (const auto& slot : slots) {
      if (slot) rows.push_back(&*slot);
    }
    const auto byIndex = [](const RemoteRow* a, const RemoteRow* b) { return a->index < b->index; };
    std::sort(rows.begin(), rows.end(), byIndex);
    for (const auto* row : rows) {
      if (row->managementIndex.empty()) continue;
      managementRows.emplace_back(row, row->index);
      auto& index = managementRows.back().second;
      index.insert(index.end(), row->managementIndex.begin(), row->managementIndex.end());
    }
  }

  std::vector<const RemoteRow*> rows;
  std::vector<std::pair<const RemoteRow*, std::vector<oid>>> managementRows;

 private:
  static constexpr std::size_t kSlots = OrvoViaSwitch::Domain::Monitoring::kMaxLLDPInfos;
  std::array<bool, kSlots> fresh{};
  std::array<Clock::time_point, kSlots> times{};
  std::array<std::optional<RemoteRow>, kSlots> slots;
};

Neighbours neighbours;

class RemoteTable : public ISortedTable {
 public:
  void Refresh() override { neighbours.Refresh(); }
  std::size_t Rows() const override { return neighbours.rows.size(); }
  const std::vector<oid>& Index(std::size_t row) const override {
    return neighbours.rows[row]->index;
  }
  bool Answer(std::size_t r, unsigned column, netsnmp_variable_list* var) const override {
    const RemoteRow& row = *neighbours.rows[r];
    if (column >= RemoteRow::kColumns || !row.present.test(column)) return false;
    switch (column) {
      case RemoteRow::kChassisSubtype:
        SetInteger(var, row.chassisSubtype);
        break;
      case RemoteRow::kChassisId:
        SetOctets(var, row.chassisId);
        break;
      case RemoteRow::kPortSubtype:
        SetInteger(var, row.portSubtype);
        break;
      case RemoteRow::kPortId:
        SetOctets(var, row.portId);
        break;
      case RemoteRow::kPortDesc:
        SetOctets(var, row.portDesc);
        break;
      case RemoteRow::kSysName:
        SetOctets(var, row.sysName);
        break;
      case RemoteRow::kSysDesc:
        SetOctets(var, row.sysDesc);
        break;
      case RemoteRow::kCapSupported:
        SetOctets(var, row.capSupported);
        break;
      default:
        SetOctets(var, row.capEnabled);
        break;
    }
    return true;
  }
};

class RemoteManagementTable : public ISortedTable {
 public:
  void Refresh() override { neighbours.Refresh(); }
  std::size_t Rows() const override { return neighbours.managementRows.size(); }
  const std::vector<oid>& Index(std::size_t row) const override {
    return neighbours.managementRows[row].second;
  }
  bool Answer(std::size_t r, unsigned column, netsnmp_variable_list* var) const override {
    const RemoteRow& row = *neighbours.managementRows[r].first;
    if (column == 3) SetInteger(var, row.managementIfSubtype);
    if (column == 4) SetInteger(var, row.managementIfId);
    if (column == 5) SetObjectId(var, row.managementOid);
    return column >= 3 && column <= 5;
  }
};

// lldpLocPortTable: every port of the IF-MIB rows, numbered by its ifIndex.
class LocalPortTable : public ISortedTable {
 public:
  void Refresh() override {
    SharedRows().Refresh();
    if (SharedRows().Generation() == generation) return;
    generation = SharedRows().Generation();
    ports.clear();
    for (const auto* row : SharedRows().Rows()) {
      if (row->type == kEthernetCsmacd) ports.push_back(row);
    }
  }
  std::size_t Rows() const override { return ports.size(); }
  const std::vector<oid>& Index(std::size_t row) const override { return ports[row]->index; }
  bool Answer(std::size_t r, unsigned column, netsnmp_variable_list* var) const override {
    const InterfaceRow& row = *ports[r];
    if (column == 2) SetInteger(var, kPortInterfaceName);
    if (column == 3) SetOctets(var, row.name);
    if (column == 4) SetOctets(var, row.alias.empty() ? row.descr : row.alias);
    return column >= 2 && column <= 4;
  }

 private:
  std::uint64_t generation = 0;
  std::vector<const InterfaceRow*> ports;
};

// lldpLocalSystemData's scalars (arcs 1 to 6): the switch's own identity as
// configured, its chassis id as the private MIB shows it.
class LocalSystem : public ISortedTable {
 public:
  void Refresh() override {
    auto& values = Monitoring::MonitoringProcessor::monitoringValues;
    const auto configTime = values.lLDPLocalConfig.ChangeTime();
    const auto metricTime = values.lLDPMetric.ChangeTime();
    if (fresh && configTime == this->configTime && metricTime == this->metricTime) return;
    fresh = true;
    this->configTime = configTime;
    this->metricTime = metricTime;
    const auto config = values.lLDPLocalConfig.Value();
    const std::string chassis = values.lLDPMetric.Value().chassisId;
    unsigned int b[6];
    char end;
    // NOLINTNEXTLINE(cert-err34-c): two hex digits at most per field cannot overflow
    if (std::sscanf(chassis.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x%c", &b[0], &b[1], &b[2], &b[3], &b[4],
                    &b[5], &end) == 6 &&
        chassis.size() == 17) {
      chassisSubtype = kChassisMacAddress;
      chassisId.clear();
      for (const unsigned int byte : b) chassisId += static_cast<char>(byte);
    } else {
      chassisSubtype = kChassisLocal;
      chassisId = chassis;
    }
    sysName = config.SystemName;
    sysDesc = config.SystemDescr;
  }
  std::size_t Rows() const override { return 1; }
  const std::vector<oid>& Index(std::size_t) const override { return instance; }
  bool Answer(std::size_t, unsigned column, netsnmp_variable_list* var) const override {
    switch (column) {
      case 1:
        SetInteger(var, chassisSubtype);
        break;
      case 2:
        SetOctets(var, chassisId);
        break;
      case 3:
        SetOctets(var, sysName);
        break;
      case 4:
        SetOctets(var, sysDesc);
        break;
      default:
        SetOctets(var, kBridgeCapability);
        break;
    }
    return true;
  }

 private:
  bool fresh = false;
  Clock::time_point configTime, metricTime;
  const std::vector<oid> instance{0};
  long chassisSubtype = kChassisLocal;
  std::string chassisId, sysName, sysDesc;
};

RemoteTable remoteTable;
RemoteManagementTable remoteManagementTable;
LocalPortTable localPortTable;
LocalSystem localSystem;

}  // namespace

void init_lldpMib() {
  // lldpObjects: 1.0.8802.1.1.2.1; lldpLocalSystemData .3, lldpRemoteSystemsData .4.
  RegisterSortedRange("lldpLocalSystemData", {1, 0, 8802, 1, 1, 2, 1, 3}, 1, 6, &localSystem);
  RegisterSortedTable("lldpLocPortTable", {1, 0, 8802, 1, 1, 2, 1, 3, 7}, 2, 4, &localPortTable);
  RegisterSortedTable("lldpRemTable", {1, 0, 8802, 1, 1, 2, 1, 4, 1}, 4, 12, &remoteTable);
  RegisterSortedTable("lldpRemManAddrTable", {1, 0, 8802, 1, 1, 2, 1, 4, 2}, 3, 5,
                      &remoteManagementTable);
}

}  // namespace Arq::Snmp
