// BRIDGE-MIB and Q-BRIDGE-MIB: the switch's bridge ports (the port of each
// Ethernet interface, each LAG and PRS interface that IF-MIB serves) with
// their VLAN id, and its VLANs with their egress and untagged ports.
#include "Standard/Views/BridgeMib.h"

#include <algorithm>
#include <map>

#include "Modules.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace Bridge;

constexpr long kMaxVlanId = 4094;
constexpr long kVersion1 = 1;
constexpr long kPermanent = 2;
constexpr long kActive = 1;

bool ValidVlan(long vlan) {
  return vlan >= 1 && vlan <= kMaxVlanId;
}

}  // namespace

BridgeView::BridgeView()
    : basePortTable({
          Field<PortRow, Mib::dot1dBasePort, &PortRow::port>(),
          Field<PortRow, Mib::dot1dBasePortIfIndex, &PortRow::ifIndex>(),
      }),
      portVlanTable({Field<PortRow, Mib::dot1qPvid, &PortRow::pvid>()}),
      currentTable({
          Field<VlanRow, Mib::dot1qVlanCurrentEgressPorts, &VlanRow::egress>(),
          Field<VlanRow, Mib::dot1qVlanCurrentUntaggedPorts, &VlanRow::untagged>(),
          Fixed<VlanRow, Mib::dot1qVlanStatus, kPermanent>(),
      }),
      staticTable({
          Field<VlanRow, Mib::dot1qVlanStaticEgressPorts, &VlanRow::egress>(),
          Field<VlanRow, Mib::dot1qVlanStaticUntaggedPorts, &VlanRow::untagged>(),
          Fixed<VlanRow, Mib::dot1qVlanStaticRowStatus, kActive>(),
      }),
      baseGroup({Field<ScalarRow, Mib::dot1dBaseNumPorts, &ScalarRow::count>()}),
      qBaseGroup({
          Fixed<ScalarRow, Mib::dot1qVlanVersionNumber, kVersion1>(),
          Fixed<ScalarRow, Mib::dot1qMaxVlanId, kMaxVlanId>(),
          Field<ScalarRow, Mib::dot1qNumVlans, &ScalarRow::count>(),
      }) {}

void BridgeView::Project(const ProjectionContext& context) {
  // The bridge interfaces by bridge port (numbered with the layout).
  std::map<long, std::pair<long, const Model::Interface*>> bridged;
  for (const auto& served : context.layout.ports) {
    if (served.bridgePort != 0) bridged[served.bridgePort] = {served.ifIndex, served.owner};
  }
  for (const auto& aggregate : context.layout.aggregates) {
    if (aggregate.bridgePort != 0) {
      bridged[aggregate.bridgePort] = {aggregate.ifIndex, aggregate.interface};
    }
  }
  std::vector<PortRow> ports;
  std::map<long, const Model::Interface*> interfaceOf;
  long highest = 0;
  for (const auto& [port, owner] : bridged) {
    PortRow row{{static_cast<oid>(port)}, port, owner.first, std::nullopt};
    if (ValidVlan(owner.second->vid)) row.pvid = owner.second->vid;
    ports.push_back(std::move(row));
    interfaceOf[port] = owner.second;
    highest = std::max(highest, port);
  }

  // Each VLAN with the ports that carry it, untagged on those whose VLAN id it is.
  std::map<long, VlanRow> vlans;
  const std::string none(static_cast<std::size_t>(highest + 7) / 8, '\0');
  for (const auto& [port, interface] : interfaceOf) {
    auto carry = [&, port = port](long vlan, bool untagged) {
      if (!ValidVlan(vlan)) return;
      auto& row = vlans.try_emplace(vlan, VlanRow{{}, none, none}).first->second;
      SetPortListBit(row.egress, port);
      if (untagged) SetPortListBit(row.untagged, port);
    };
    carry(interface->vid, true);
    for (const auto vlan : interface->vlans) carry(vlan, false);
  }
  std::vector<VlanRow> current, statics;
  for (auto& [vlan, row] : vlans) {
    row.index = {static_cast<oid>(vlan)};
    statics.push_back(row);
    row.index = {0, static_cast<oid>(vlan)};
    current.push_back(std::move(row));
  }
  baseGroup.Replace({{{0}, static_cast<long>(ports.size())}});
  qBaseGroup.Replace({{{0}, static_cast<long>(current.size())}});
  portVlanTable.Replace(ports);
  basePortTable.Replace(std::move(ports));
  currentTable.Replace(std::move(current));
  staticTable.Replace(std::move(statics));
}

std::vector<View> BridgeView::Views() {
  return {GroupView("dot1dBaseNumPorts", Mib::dot1dBaseNumPorts, Mib::dot1dBaseNumPorts, baseGroup),
          TableView("dot1dBasePortTable", Mib::dot1dBasePortTable, basePortTable),
          GroupView("dot1qBase", Mib::dot1qVlanVersionNumber, Mib::dot1qNumVlans, qBaseGroup),
          TableView("dot1qVlanCurrentTable", Mib::dot1qVlanCurrentTable, currentTable),
          TableView("dot1qVlanStaticTable", Mib::dot1qVlanStaticTable, staticTable),
          TableView("dot1qPortVlanTable", Mib::dot1qPortVlanTable, portVlanTable)};
}

}  // namespace Standard

void init_bridgeMib(Standard::StandardViews& views) {
  views.Register(Standard::Module::Bridge);
}

}  // namespace Arq::Snmp
