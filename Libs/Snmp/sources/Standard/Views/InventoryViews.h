#pragma once

// The switch's inventory (ENTITY-MIB), its bridge ports' VLANs (BRIDGE-MIB,
// Q-BRIDGE-MIB) and its PTP clocks (PTPBASE-MIB): projections of the switch
// model whose columns are the objects of StandardObjects.h.
#include <string>
#include <vector>

#include "Standard/Engine/Projection.h"
#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

// A table or a group of scalars of these views, for registration and for
// the in-process tests, which walk them.
struct View {
  const char* name;
  const MibObject* root;  // the table, or the group's first scalar
  ISortedTable* table;
  unsigned firstColumn, lastColumn;
  bool group;  // scalars: registered as arcs of root's parent
};

template <typename Row>
View TableView(const char* name, const MibObject& table, ProjectedTable<Row>& rows) {
  return {name, &table, &rows, rows.FirstColumn(), rows.LastColumn(), false};
}
// Scalars `first` to `last` of one group, as a table of one row indexed {0}.
inline View GroupView(const char* name, const MibObject& first, const MibObject& last,
                      ISortedTable& rows) {
  return {name, &first, &rows, first.Arc(), last.Arc(), true};
}

// Adds the three views' projectors (once) and returns their tables.
const std::vector<View>& InventoryViews();

// The projectors, in the order they are added.
void ProjectEntity(const ProjectionContext& context);
void ProjectBridge(const ProjectionContext& context);
void ProjectPtpBase(const ProjectionContext& context);
std::vector<View> EntityViews();
std::vector<View> BridgeViews();
std::vector<View> PtpBaseViews();

}  // namespace Arq::Snmp::Standard
