#pragma once

// ENTITY-MIB: the chassis, the hardware ports that have sub-ports and the
// ports, as a containment tree mapped to IF-MIB; entConfigChange when that
// inventory changes between two models.
#include <string>
#include <tuple>
#include <vector>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace Entity {

enum PhysicalClass : long { kChassis = 3, kContainer = 5, kPort = 10 };

struct PhysicalRow {
  std::vector<oid> index;
  std::string descr;
  long containedIn = 0;
  long physicalClass = kPort;
  long relPos = -1;
  std::string name, softwareRev, serialNum, mfgName, modelName;

  auto Key() const {
    return std::tie(index, descr, containedIn, physicalClass, relPos, name, softwareRev, serialNum,
                    mfgName, modelName);
  }
};

struct AliasRow {
  std::vector<oid> index;  // entPhysicalIndex, entAliasLogicalIndexOrZero 0
  std::vector<oid> target;

  auto Key() const { return std::tie(index, target); }
};

struct ContainsRow {
  std::vector<oid> index;  // entPhysicalIndex, entPhysicalChildIndex
  long child = 0;
};

struct ScalarRow {
  std::vector<oid> index{0};
  long lastChange = 0;
};

}  // namespace Entity

class EntityView {
 public:
  EntityView();
  ~EntityView();  // drops a pending entConfigChange
  EntityView(const EntityView&) = delete;
  EntityView& operator=(const EntityView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  ProjectedTable<Entity::PhysicalRow> physicalTable;
  ProjectedTable<Entity::AliasRow> aliasTable;
  ProjectedTable<Entity::ContainsRow> containsTable;
  ProjectedTable<Entity::ScalarRow> lastChangeGroup;

 private:
  void SendConfigChange();
  void NoteChange(Model::Clock::time_point now);
  static void SendPending(unsigned int alarm, void* view);

  // entConfigChange, at most one per throttle time: a change inside it is
  // sent once at its end, by the alarm `pending`.
  bool sent = false;
  unsigned int pending = 0;
  Model::Clock::time_point last{};
};

}  // namespace Arq::Snmp::Standard
