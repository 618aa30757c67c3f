#pragma once

// BRIDGE-MIB and Q-BRIDGE-MIB: the switch's bridge ports with their VLAN id,
// and its VLANs with their egress and untagged ports.
#include <optional>
#include <string>
#include <vector>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace Bridge {

struct PortRow {
  std::vector<oid> index;  // dot1dBasePort
  long port = 0;
  long ifIndex = 0;
  std::optional<long> pvid;
};

struct VlanRow {
  std::vector<oid> index;  // (dot1qVlanTimeMark 0,) dot1qVlanIndex
  std::string egress, untagged;
};

struct ScalarRow {
  std::vector<oid> index{0};
  long count = 0;
};

}  // namespace Bridge

class BridgeView {
 public:
  BridgeView();
  BridgeView(const BridgeView&) = delete;
  BridgeView& operator=(const BridgeView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  ProjectedTable<Bridge::PortRow> basePortTable;
  ProjectedTable<Bridge::PortRow> portVlanTable;
  ProjectedTable<Bridge::VlanRow> currentTable;
  ProjectedTable<Bridge::VlanRow> staticTable;
  ProjectedTable<Bridge::ScalarRow> baseGroup;
  ProjectedTable<Bridge::ScalarRow> qBaseGroup;
};

}  // namespace Arq::Snmp::Standard
