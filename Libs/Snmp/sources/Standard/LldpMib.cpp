#include <algorithm>

#include "../Modules.h"
#include "Projection.h"

namespace Arq::Snmp {
namespace {

using namespace Standard;

// LldpChassisIdSubtype / LldpPortIdSubtype values used for our own identity.
constexpr long kChassisMacAddress = 4;
constexpr long kChassisLocal = 7;
constexpr long kPortInterfaceName = 5;
// LldpSystemCapabilitiesMap with bridge(2) set: the switch is a MAC bridge.
const std::string kBridgeCapability(1, '\x20');

// An 802.1AB capabilities field (bit 0 = other, least significant) as the
// MIB's BITS value (bit 0 = other, the first octet's most significant bit).
std::string CapabilityBits(std::uint16_t field) {
  std::string bits(2, '\0');
  for (unsigned bit = 0; bit < 16; ++bit) {
    if (field & (1u << bit)) bits[bit / 8] = static_cast<char>(bits[bit / 8] | (0x80 >> (bit % 8)));
  }
  // The map names eight capabilities: one octet unless a higher bit is set.
  if (bits[1] == '\0') bits.resize(1);
  return bits;
}

// lldpLocalSystemData: one row of scalars.
struct LocalRow {
  std::vector<oid> index{0};
  long chassisSubtype = kChassisLocal;
  std::string chassisId, sysName, sysDesc;
};

// lldpLocPortTable: every port of IF-MIB, numbered by its ifIndex.
struct LocalPortRow {
  std::vector<oid> index;  // lldpLocPortNum
  std::string portId, portDesc;
};

// lldpRemTable: one neighbour; a column is absent when its TLV was.
struct RemoteRow {
  std::vector<oid> index;  // lldpRemTimeMark (0), lldpRemLocalPortNum, lldpRemIndex
  std::optional<Model::LldpId> chassis, port;
  std::optional<std::string> portDesc, sysName, sysDesc, capSupported, capEnabled;
};

// lldpRemManAddrTable: the neighbour's index, then its address's subtype,
// length and bytes.
struct ManagementRow {
  std::vector<oid> index;
  long interfaceSubtype = 1;
  long interfaceNumber = 0;
  bool hasObjectId = false;  // false when SNMP cannot carry the one sent
  std::vector<oid> objectId;
};

template <typename Row, std::optional<std::string> Row::*member>
bool Text(const Row& row, netsnmp_variable_list* var) {
  if (!(row.*member)) return false;
  SetOctets(var, *(row.*member));
  return true;
}

ProjectedTable<LocalRow> localSystem({
    {1, [](const LocalRow& r,
           netsnmp_variable_list* v) { return SetInteger(v, r.chassisSubtype), true; }},
    {2,
     [](const LocalRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.chassisId), true; }},
    {3, [](const LocalRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.sysName), true; }},
    {4, [](const LocalRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.sysDesc), true; }},
    {5, [](const LocalRow&,
           netsnmp_variable_list* v) { return SetOctets(v, kBridgeCapability), true; }},
    {6, [](const LocalRow&,
           netsnmp_variable_list* v) { return SetOctets(v, kBridgeCapability), true; }},
});

// lldpStatistics: how the remote tables changed since the agent started.
struct StatisticsRow {
  std::vector<oid> index{0};
  std::uint64_t lastChange = 0;  // TimeStamp
  std::uint64_t inserts = 0, deletes = 0, drops = 0;
};

template <std::uint64_t StatisticsRow::*member>
bool Gauge(const StatisticsRow& row, netsnmp_variable_list* var) {
  // ZeroBasedCounter32 (a Gauge32 that wraps as a counter does).
  SetUnsigned(var, ASN_GAUGE, row.*member & 0xffffffffu);
  return true;
}

ProjectedTable<StatisticsRow> statistics({
    {1, [](const StatisticsRow& r,
           netsnmp_variable_list* v) { return SetUnsigned(v, ASN_TIMETICKS, r.lastChange), true; }},
    {2, Gauge<&StatisticsRow::inserts>},
    {3, Gauge<&StatisticsRow::deletes>},
    {4, Gauge<&StatisticsRow::drops>},
    // lldpStatsRemTablesAgeouts: the switch ages its neighbours out itself and
    // does not say which of them went that way.
    {5, [](const StatisticsRow&,
           netsnmp_variable_list* v) { return SetUnsigned(v, ASN_GAUGE, 0), true; }},
});

ProjectedTable<LocalPortRow> localPortTable({
    {2, [](const LocalPortRow&,
           netsnmp_variable_list* v) { return SetInteger(v, kPortInterfaceName), true; }},
    {3,
     [](const LocalPortRow& r, netsnmp_variable_list* v) { return SetOctets(v, r.portId), true; }},
    {4, [](const LocalPortRow& r,
           netsnmp_variable_list* v) { return SetOctets(v, r.portDesc), true; }},
});

ProjectedTable<RemoteRow> remoteTable({
    {4,
     [](const RemoteRow& r, netsnmp_variable_list* v) {
       return r.chassis && (SetInteger(v, r.chassis->subtype), true);
     }},
    {5, [](const RemoteRow& r,
           netsnmp_variable_list* v) { return r.chassis && (SetOctets(v, r.chassis->id), true); }},
    {6, [](const RemoteRow& r,
           netsnmp_variable_list* v) { return r.port && (SetInteger(v, r.port->subtype), true); }},
    {7, [](const RemoteRow& r,
           netsnmp_variable_list* v) { return r.port && (SetOctets(v, r.port->id), true); }},
    {8, Text<RemoteRow, &RemoteRow::portDesc>},
    {9, Text<RemoteRow, &RemoteRow::sysName>},
    {10, Text<RemoteRow, &RemoteRow::sysDesc>},
    {11, Text<RemoteRow, &RemoteRow::capSupported>},
    {12, Text<RemoteRow, &RemoteRow::capEnabled>},
});

ProjectedTable<ManagementRow> remoteManagementTable({
    {3, [](const ManagementRow& r,
           netsnmp_variable_list* v) { return SetInteger(v, r.interfaceSubtype), true; }},
    {4, [](const ManagementRow& r,
           netsnmp_variable_list* v) { return SetInteger(v, r.interfaceNumber), true; }},
    {5,
     [](const ManagementRow& r, netsnmp_variable_list* v) {
       return r.hasObjectId && (SetObjectId(v, r.objectId), true);
     }},
});

std::optional<Model::LldpId> Identifier(const std::optional<Model::LldpId>& id) {
  if (!id) return std::nullopt;
  return Model::LldpId{id->subtype, Truncate(id->id)};
}

std::optional<std::string> Display(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  return Truncate(*text);
}

void ProjectRemote(const ProjectionContext& context) {
  std::vector<RemoteRow> rows;
  std::vector<ManagementRow> managementRows;
  for (const auto& neighbour : context.model.neighbours) {
    RemoteRow& row = rows.emplace_back();
    row.index = {0, static_cast<oid>(neighbour.localIfIndex), static_cast<oid>(neighbour.position)};
    row.chassis = Identifier(neighbour.chassisId);
    row.port = Identifier(neighbour.portId);
    row.portDesc = Display(neighbour.portDescription);
    row.sysName = Display(neighbour.systemName);
    row.sysDesc = Display(neighbour.systemDescription);
    if (neighbour.capabilitiesSupported && neighbour.capabilitiesEnabled) {
      row.capSupported = CapabilityBits(*neighbour.capabilitiesSupported);
      row.capEnabled = CapabilityBits(*neighbour.capabilitiesEnabled);
    }
    if (const auto& address = neighbour.managementAddress) {
      ManagementRow& management = managementRows.emplace_back();
      management.index = row.index;
      management.index.push_back(address->subtype);
      management.index.push_back(address->address.size());
      for (const char byte : address->address) {
        management.index.push_back(static_cast<std::uint8_t>(byte));
      }
      management.interfaceSubtype = address->interfaceSubtype;
      management.interfaceNumber = static_cast<long>(address->interfaceNumber);
      management.hasObjectId = address->objectId.has_value();
      if (management.hasObjectId) {
        management.objectId =
            address->objectId->empty()
                ? std::vector<oid>{0, 0}
                : std::vector<oid>(address->objectId->begin(), address->objectId->end());
      }
    }
  }
  remoteTable.Replace(std::move(rows));
  remoteManagementTable.Replace(std::move(managementRows));
}

void Project(const ProjectionContext& context) {
  const Model::LldpLocal& identity = context.model.lldpLocal;
  LocalRow local;
  if (identity.chassisMac) {
    local.chassisSubtype = kChassisMacAddress;
    local.chassisId = MacOctets(*identity.chassisMac);
  } else {
    local.chassisId = Truncate(identity.chassisIdText);
  }
  local.sysName = Truncate(identity.systemName);
  local.sysDesc = Truncate(identity.systemDescription);
  localSystem.Replace({std::move(local)});
  const Model::LldpStatistics& changes = context.model.lldpStatistics;
  statistics.Replace({{{0},
                       context.TicksAt(changes.lastChange),
                       changes.inserts,
                       changes.deletes,
                       changes.drops}});

  std::vector<LocalPortRow> ports;
  ports.reserve(context.layout.ports.size());
  for (const auto& served : context.layout.ports) {
    const std::string alias = IfAlias(served);
    ports.push_back({{static_cast<oid>(served.ifIndex)},
                     Truncate(served.port->name),
                     Truncate(alias.empty() ? IfDescr(served) : alias)});
  }
  localPortTable.Replace(std::move(ports));
  ProjectRemote(context);
}

}  // namespace

void init_lldpMib() {
  AddProjector(Project);
  // lldpObjects: 1.0.8802.1.1.2.1; lldpStatistics .2, lldpLocalSystemData .3,
  // lldpRemoteSystemsData .4.
  RegisterSortedRange("lldpStatistics", {1, 0, 8802, 1, 1, 2, 1, 2}, 1, 5, &statistics);
  RegisterSortedRange("lldpLocalSystemData", {1, 0, 8802, 1, 1, 2, 1, 3}, 1, 6, &localSystem);
  Register("lldpLocPortTable", {1, 0, 8802, 1, 1, 2, 1, 3, 7}, localPortTable);
  Register("lldpRemTable", {1, 0, 8802, 1, 1, 2, 1, 4, 1}, remoteTable);
  Register("lldpRemManAddrTable", {1, 0, 8802, 1, 1, 2, 1, 4, 2}, remoteManagementTable);
}

}  // namespace Arq::Snmp
