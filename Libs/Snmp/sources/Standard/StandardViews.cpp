#include "Standard/StandardViews.h"

namespace Arq::Snmp::Standard {

StandardViews::StandardViews(const Model::SwitchModelStore& store)
    : store(store), model(std::make_shared<const Model::SwitchModel>()) {
  const auto add = [this](Module module, std::vector<View> more) {
    for (auto& view : more) {
      if (!view.refresh) view.refresh = [this] { Refresh(); };
      views.push_back({std::move(view), module});
    }
  };
  std::vector<View> collectorViews = collector.Views();
  // The group's row is rebuilt for each request batch: the daemon's record
  // changes without a new collection.
  collectorViews.front().refresh = [this] {
    Refresh();
    collector.RefreshGroup(*model);
  };
  add(Module::Collector, std::move(collectorViews));
  add(Module::IfMib, ifMib.Views());
  add(Module::Lldp, lldp.Views());
  add(Module::PortCounters, portCounters.Views());
  add(Module::Entity, entity.Views());
  add(Module::Bridge, bridge.Views());
  add(Module::PtpBase, ptpBase.Views());
}

void StandardViews::Refresh() {
  if (store.Generation() == generation) return;
  Project(store.Current());
}

void StandardViews::Project(std::shared_ptr<const Model::SwitchModel> newModel) {
  model = std::move(newModel);
  generation = model->generation;
  layout = LayoutOf(*model);
  const ProjectionContext context{*model, layout, Model::Clock::now(), UptimeTicks()};
  collector.Project(context);
  ifMib.Project(context);
  lldp.Project(context);
  portCounters.Project(context);
  entity.Project(context);
  bridge.Project(context);
  ptpBase.Project(context);
}

const ServedView* StandardViews::Find(const std::string& name) const {
  for (const auto& view : views) {
    if (name == view.name) return &view;
  }
  return nullptr;
}

void StandardViews::Register(Module module) {
  for (const auto& view : views) {
    if (view.module != module) continue;
    if (view.group) {
      RegisterSortedRange(registrations, view.name, view.root.Parent(), view.firstColumn,
                          view.lastColumn, view.table, view.refresh);
    } else {
      RegisterSortedTable(registrations, view.name, view.root.id, view.firstColumn, view.lastColumn,
                          view.table, view.refresh);
    }
  }
}

}  // namespace Arq::Snmp::Standard
