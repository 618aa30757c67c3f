// ENTITY-MIB: the chassis, the hardware ports that have sub-ports and the
// ports, as a containment tree mapped to IF-MIB, and entConfigChange when
// that inventory changes between two models.
#include "Standard/Views/EntityMib.h"

#include <algorithm>
#include <set>

#include "Modules.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace Entity;

constexpr long kChassisIndex = 1;
// A hardware port's index: this plus its first sub-port's ifIndex.
constexpr long kHardwarePortBase = 1000000000;
constexpr long kFalse = 2;
// At most one entConfigChange in this time (RFC 4133's suggested default).
constexpr auto kThrottle = std::chrono::seconds(5);
// DateAndTime of an unknown date, as the RFC asks.
const std::string kUnknownDate(8, '\0');

PhysicalRow Chassis(const Model::LldpLocal& local) {
  PhysicalRow row;
  row.index = {kChassisIndex};
  row.descr = Truncate(local.systemDescription);
  row.physicalClass = kChassis;
  row.name = Truncate(local.systemName);
  row.softwareRev = Truncate(local.version);
  row.serialNum = Truncate(local.serialNumber, kEntPhysicalSerialNumSize);
  row.mfgName = Truncate(local.deviceType);
  row.modelName = row.mfgName;
  return row;
}

template <typename Row>
bool SameRows(std::vector<Row> rows, const std::vector<Row>& served) {
  std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.index < b.index; });
  return std::equal(rows.begin(), rows.end(), served.begin(), served.end(),
                    [](const Row& a, const Row& b) { return a.Key() == b.Key(); });
}

}  // namespace

EntityView::EntityView()
    : physicalTable({
          Field<PhysicalRow, Mib::entPhysicalDescr, &PhysicalRow::descr>(),
          Fixed<PhysicalRow, Mib::entPhysicalVendorType, &kZeroDotZero>(),
          Field<PhysicalRow, Mib::entPhysicalContainedIn, &PhysicalRow::containedIn>(),
          Field<PhysicalRow, Mib::entPhysicalClass, &PhysicalRow::physicalClass>(),
          Field<PhysicalRow, Mib::entPhysicalParentRelPos, &PhysicalRow::relPos>(),
          Field<PhysicalRow, Mib::entPhysicalName, &PhysicalRow::name>(),
          Empty<PhysicalRow, Mib::entPhysicalHardwareRev>(),
          Empty<PhysicalRow, Mib::entPhysicalFirmwareRev>(),
          Field<PhysicalRow, Mib::entPhysicalSoftwareRev, &PhysicalRow::softwareRev>(),
          Field<PhysicalRow, Mib::entPhysicalSerialNum, &PhysicalRow::serialNum>(),
          Field<PhysicalRow, Mib::entPhysicalMfgName, &PhysicalRow::mfgName>(),
          Field<PhysicalRow, Mib::entPhysicalModelName, &PhysicalRow::modelName>(),
          Empty<PhysicalRow, Mib::entPhysicalAlias>(),
          Empty<PhysicalRow, Mib::entPhysicalAssetID>(),
          Fixed<PhysicalRow, Mib::entPhysicalIsFRU, kFalse>(),
          Fixed<PhysicalRow, Mib::entPhysicalMfgDate, &kUnknownDate>(),
          Empty<PhysicalRow, Mib::entPhysicalUris>(),
      }),
      aliasTable({Field<AliasRow, Mib::entAliasMappingIdentifier, &AliasRow::target>()}),
      containsTable({Field<ContainsRow, Mib::entPhysicalChildIndex, &ContainsRow::child>()}),
      lastChangeGroup({Field<ScalarRow, Mib::entLastChangeTime, &ScalarRow::lastChange>()}) {}

EntityView::~EntityView() {
  if (pending != 0) snmp_alarm_unregister(pending);
}

void EntityView::SendConfigChange() {
  netsnmp_variable_list* list = nullptr;
  const auto& value = Mib::entConfigChange.id;
  snmp_varlist_add_variable(&list, kSnmpTrapOid.data(), kSnmpTrapOid.size(), ASN_OBJECT_ID,
                            reinterpret_cast<const u_char*>(value.data()),
                            value.size() * sizeof(oid));
  send_v2trap(list);
  snmp_free_varbind(list);
  sent = true;
  last = Model::Clock::now();
}

void EntityView::SendPending(unsigned int, void* view) {
  auto& entity = *static_cast<EntityView*>(view);
  entity.pending = 0;
  entity.SendConfigChange();
}

void EntityView::NoteChange(Model::Clock::time_point now) {
  if (!sent || now - last >= kThrottle) {
    SendConfigChange();
  } else if (pending == 0) {
    const auto wait = std::chrono::duration_cast<std::chrono::microseconds>(last + kThrottle - now);
    timeval when{static_cast<time_t>(wait.count() / 1000000),
                 static_cast<suseconds_t>(wait.count() % 1000000)};
    pending = snmp_alarm_register_hr(when, 0, SendPending, this);
  }
}

void EntityView::Project(const ProjectionContext& context) {
  const auto& model = context.model;
  std::vector<PhysicalRow> physical;
  std::vector<AliasRow> aliases;
  std::vector<ContainsRow> contains;
  const auto add = [&](PhysicalRow row) {
    if (row.containedIn != 0) {
      contains.push_back(
          {{static_cast<oid>(row.containedIn), row.index[0]}, static_cast<long>(row.index[0])});
    }
    physical.push_back(std::move(row));
  };
  // Every port the switch reports, grouped into its hardware ports.
  std::set<long> seen;
  long hardwarePort = 0;
  int subPortsLeft = 0;
  long position = 0;
  for (const auto& port : model.ports) {
    const long ifIndex = port.ifIndex;
    if (ifIndex == 0 || !seen.insert(ifIndex).second) continue;
    PhysicalRow row;
    row.index = {static_cast<oid>(ifIndex)};
    row.descr = Truncate("Ethernet port " + port.name);
    row.containedIn = kChassisIndex;
    row.relPos = ifIndex;
    row.name = Truncate(port.name);
    // Only the port information call says which ports are sub-ports.
    if (port.hasInfo && port.isMainPhys && port.nbPhys > 1) {
      hardwarePort = kHardwarePortBase + ifIndex;
      subPortsLeft = port.nbPhys - 1;
      position = 1;
      PhysicalRow container;
      container.index = {static_cast<oid>(hardwarePort)};
      container.descr = "Hardware port of " + std::to_string(port.nbPhys) + " sub-ports";
      container.containedIn = kChassisIndex;
      container.physicalClass = kContainer;
      container.relPos = ifIndex;
      container.name = Truncate(port.name + " hardware port");
      add(std::move(container));
      row.containedIn = hardwarePort;
      row.relPos = position;
    } else if (port.hasInfo && !port.isMainPhys && subPortsLeft > 0) {
      --subPortsLeft;
      row.containedIn = hardwarePort;
      row.relPos = ++position;
    } else {
      subPortsLeft = 0;
    }
    if (context.layout.FindPort(ifIndex) != nullptr) {
      aliases.push_back({{static_cast<oid>(ifIndex), 0}, IfEntryCell(1, ifIndex)});
    }
    add(std::move(row));
  }
  const auto& local = model.lldpLocal;
  if (!physical.empty() || !local.systemName.empty() || !local.systemDescription.empty()) {
    physical.push_back(Chassis(local));
  }

  // A change of any cell after the first inventory is a configuration change.
  const bool hadRows = !physicalTable.rows.empty();
  if (!SameRows(physical, physicalTable.rows) || !SameRows(aliases, aliasTable.rows)) {
    if (hadRows) {
      lastChangeGroup.Replace({{{0}, static_cast<long>(context.uptimeNow)}});
      NoteChange(context.now);
    }
  }
  if (lastChangeGroup.rows.empty()) lastChangeGroup.Replace({ScalarRow{}});
  physicalTable.Replace(std::move(physical));
  aliasTable.Replace(std::move(aliases));
  containsTable.Replace(std::move(contains));
}

std::vector<View> EntityView::Views() {
  return {TableView("entPhysicalTable", Mib::entPhysicalTable, physicalTable),
          TableView("entAliasMappingTable", Mib::entAliasMappingTable, aliasTable),
          TableView("entPhysicalContainsTable", Mib::entPhysicalContainsTable, containsTable),
          GroupView("entLastChangeTime", Mib::entLastChangeTime, Mib::entLastChangeTime,
                    lastChangeGroup)};
}

}  // namespace Standard

void init_entityMib(Standard::StandardViews& views) {
  views.Register(Standard::Module::Entity);
}

}  // namespace Arq::Snmp
