#include "Standard/Views/InventoryViews.h"

#include "Modules.h"

namespace Arq::Snmp {
namespace Standard {

const std::vector<View>& InventoryViews() {
  static const std::vector<View> views = [] {
    AddProjector(ProjectEntity);
    AddProjector(ProjectBridge);
    AddProjector(ProjectPtpBase);
    std::vector<View> all = EntityViews();
    for (auto&& more : {BridgeViews(), PtpBaseViews()})
      all.insert(all.end(), more.begin(), more.end());
    return all;
  }();
  return views;
}

}  // namespace Standard

namespace {

// Registers the views whose root is under `subtree`.
void RegisterUnder(const std::vector<oid>& subtree) {
  for (const auto& view : Standard::InventoryViews()) {
    if (!std::equal(subtree.begin(), subtree.end(), view.root->id.begin())) continue;
    if (view.group) {
      Standard::RegisterSortedRange(view.name, view.root->Parent(), view.firstColumn,
                                    view.lastColumn, view.table);
    } else {
      Standard::RegisterSortedTable(view.name, view.root->id, view.firstColumn, view.lastColumn,
                                    view.table);
    }
  }
}

}  // namespace

void init_entityMib() {
  RegisterUnder(Standard::Mib::entityMIB.id);
}
void init_bridgeMib() {
  RegisterUnder(Standard::Mib::dot1dBridge.id);
}
void init_ptpBaseMib() {
  RegisterUnder(Standard::Mib::ptpbaseMIB.id);
}

}  // namespace Arq::Snmp
