#include "Standard/Views/LldpMib.h"

#include <algorithm>

#include "Modules.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace Lldp;

// LldpChassisIdSubtype / LldpPortIdSubtype values used for our own identity.
constexpr long kChassisMacAddress = 4;
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

// An identifier's subtype and its bytes, cut to the MIB's size.
void Identify(const std::optional<Model::LldpId>& id, std::optional<long>& subtype,
              std::optional<std::string>& bytes) {
  if (!id) return;
  subtype = id->subtype;
  bytes = Truncate(id->id);
}

std::optional<std::string> Display(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  return Truncate(*text);
}

}  // namespace

// The switch is a MAC bridge, with that capability enabled. It ages its
// neighbours out itself and does not say which of them went that way: no
// ageouts.
LldpView::LldpView()
    : statistics({
          Field<StatisticsRow, Mib::lldpStatsRemTablesLastChangeTime, &StatisticsRow::lastChange>(),
          Field<StatisticsRow, Mib::lldpStatsRemTablesInserts, &StatisticsRow::inserts>(),
          Field<StatisticsRow, Mib::lldpStatsRemTablesDeletes, &StatisticsRow::deletes>(),
          Field<StatisticsRow, Mib::lldpStatsRemTablesDrops, &StatisticsRow::drops>(),
          Fixed<StatisticsRow, Mib::lldpStatsRemTablesAgeouts, 0>(),
      }),
      localSystem({
          Field<LocalRow, Mib::lldpLocChassisIdSubtype, &LocalRow::chassisSubtype>(),
          Field<LocalRow, Mib::lldpLocChassisId, &LocalRow::chassisId>(),
          Field<LocalRow, Mib::lldpLocSysName, &LocalRow::sysName>(),
          Field<LocalRow, Mib::lldpLocSysDesc, &LocalRow::sysDesc>(),
          Fixed<LocalRow, Mib::lldpLocSysCapSupported, &kBridgeCapability>(),
          Fixed<LocalRow, Mib::lldpLocSysCapEnabled, &kBridgeCapability>(),
      }),
      localPortTable({
          Fixed<LocalPortRow, Mib::lldpLocPortIdSubtype, kPortInterfaceName>(),
          Field<LocalPortRow, Mib::lldpLocPortId, &LocalPortRow::portId>(),
          Field<LocalPortRow, Mib::lldpLocPortDesc, &LocalPortRow::portDesc>(),
      }),
      remoteTable({
          Field<RemoteRow, Mib::lldpRemChassisIdSubtype, &RemoteRow::chassisSubtype>(),
          Field<RemoteRow, Mib::lldpRemChassisId, &RemoteRow::chassisId>(),
          Field<RemoteRow, Mib::lldpRemPortIdSubtype, &RemoteRow::portSubtype>(),
          Field<RemoteRow, Mib::lldpRemPortId, &RemoteRow::portId>(),
          Field<RemoteRow, Mib::lldpRemPortDesc, &RemoteRow::portDesc>(),
          Field<RemoteRow, Mib::lldpRemSysName, &RemoteRow::sysName>(),
          Field<RemoteRow, Mib::lldpRemSysDesc, &RemoteRow::sysDesc>(),
          Field<RemoteRow, Mib::lldpRemSysCapSupported, &RemoteRow::capSupported>(),
          Field<RemoteRow, Mib::lldpRemSysCapEnabled, &RemoteRow::capEnabled>(),
      }),
      remoteManagementTable({
          Field<ManagementRow, Mib::lldpRemManAddrIfSubtype, &ManagementRow::interfaceSubtype>(),
          Field<ManagementRow, Mib::lldpRemManAddrIfId, &ManagementRow::interfaceNumber>(),
          Field<ManagementRow, Mib::lldpRemManAddrOID, &ManagementRow::objectId>(),
      }) {}

std::vector<View> LldpView::Views() {
  return {GroupView("lldpStatistics", Mib::lldpStatsRemTablesLastChangeTime,
                    Mib::lldpStatsRemTablesAgeouts, statistics),
          GroupView("lldpLocalSystemData", Mib::lldpLocChassisIdSubtype, Mib::lldpLocSysCapEnabled,
                    localSystem),
          TableView("lldpLocPortTable", Mib::lldpLocPortTable, localPortTable),
          TableView("lldpRemTable", Mib::lldpRemTable, remoteTable),
          TableView("lldpRemManAddrTable", Mib::lldpRemManAddrTable, remoteManagementTable)};
}

void LldpView::ProjectRemote(const ProjectionContext& context) {
  std::vector<RemoteRow> rows;
  std::vector<ManagementRow> managementRows;
  for (const auto& neighbour : context.model.neighbours) {
    RemoteRow& row = rows.emplace_back();
    row.index = {0, static_cast<oid>(neighbour.localIfIndex), static_cast<oid>(neighbour.position)};
    Identify(neighbour.chassisId, row.chassisSubtype, row.chassisId);
    Identify(neighbour.portId, row.portSubtype, row.portId);
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
      if (address->objectId) {
        management.objectId =
            address->objectId->empty()
                ? kZeroDotZero
                : std::vector<oid>(address->objectId->begin(), address->objectId->end());
      }
    }
  }
  remoteTable.Replace(std::move(rows));
  remoteManagementTable.Replace(std::move(managementRows));
}

void LldpView::Project(const ProjectionContext& context) {
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

}  // namespace Standard

void init_lldpMib(Standard::StandardViews& views) {
  views.Register(Standard::Module::Lldp);
}

}  // namespace Arq::Snmp
