#pragma once

// The switch's inventory (ENTITY-MIB), its bridge ports' VLANs (BRIDGE-MIB,
// Q-BRIDGE-MIB) and its PTP clocks (PTPBASE-MIB): projections of the switch
// model whose columns are the objects of StandardObjects.h.
#include <string>
#include <vector>

#include "Projection.h"
#include "StandardObjects.h"

namespace Arq::Snmp::Standard {

// A column whose value is a member of the row.
template <typename Row, const MibObject& object, auto member>
Column<Row> Field() {
  return {object.Arc(),
          [](const Row& row, netsnmp_variable_list* var) { return Put(var, object, row.*member); }};
}

// A column with one value for every row: a number, or a zero-length string.
template <typename Row, const MibObject& object, long value>
Column<Row> Fixed() {
  return {object.Arc(),
          [](const Row&, netsnmp_variable_list* var) { return Put(var, object, value); }};
}
template <typename Row, const MibObject& object>
Column<Row> Empty() {
  return {object.Arc(),
          [](const Row&, netsnmp_variable_list* var) { return Put(var, object, std::string()); }};
}

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
