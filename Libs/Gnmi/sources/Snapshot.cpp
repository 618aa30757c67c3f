#include "Arq/Gnmi/Snapshot.h"

#include <tuple>

namespace Arq::Gnmi {
namespace {

int Compare(const Instance& a, const Instance& b) {
  if (a.scope != b.scope) return a.scope < b.scope ? -1 : 1;
  if (a.keys != b.keys) return a.keys < b.keys ? -1 : 1;
  return 0;
}

}  // namespace

std::shared_ptr<const Snapshot> MakeSnapshot(std::shared_ptr<const Model::SwitchModel> model) {
  auto snapshot = std::make_shared<Snapshot>();
  snapshot->generation = model->generation;
  auto view = std::make_shared<const View>(std::move(model));
  snapshot->timestamp = view->timestamp();
  const auto& leaves = Leaves();
  const Tree& tree = Tree::Instance();
  // In the order of the scopes, which Diff's merge relies on.
  for (std::size_t s = 0; s < kScopes; ++s) {
    const auto scope = static_cast<Scope>(s);
    const auto& scopeLeaves = tree.LeavesOf(scope);
    for (const Instance& instance : view->Instances(scope)) {
      const auto index = static_cast<std::uint32_t>(snapshot->instances.size());
      snapshot->instances.push_back(&instance);
      for (const std::uint32_t leaf : scopeLeaves) {
        if (auto value = leaves[leaf].value(*view, instance)) {
          snapshot->entries.push_back({index, leaf, std::move(*value)});
        }
      }
    }
  }
  snapshot->view = std::move(view);
  return snapshot;
}

Changes Diff(const Snapshot& before, const Snapshot& after) {
  Changes changes;
  std::size_t b = 0;
  std::size_t a = 0;
  const auto& be = before.entries;
  const auto& ae = after.entries;
  // Both are sorted by (instance order, leaf), and the instance order is the
  // same (scope, keys) order in both: one merge.
  while (b < be.size() || a < ae.size()) {
    int order = 0;
    if (b == be.size()) {
      order = 1;
    } else if (a == ae.size()) {
      order = -1;
    } else {
      order = Compare(*before.instances[be[b].instance], *after.instances[ae[a].instance]);
      if (order == 0 && be[b].leaf != ae[a].leaf) order = be[b].leaf < ae[a].leaf ? -1 : 1;
    }
    if (order == 0) {
      if (be[b].value != ae[a].value) changes.updated.push_back(&ae[a]);
      ++a;
      ++b;
    } else if (order > 0) {
      changes.updated.push_back(&ae[a++]);
    } else {
      changes.removed.push_back(&be[b++]);
    }
  }
  // Instances that went away: their leaves are not reported one by one.
  std::size_t i = 0;
  for (const Instance* instance : before.instances) {
    while (i < after.instances.size() && Compare(*after.instances[i], *instance) < 0) ++i;
    if (i == after.instances.size() || Compare(*after.instances[i], *instance) != 0) {
      changes.gone.push_back(instance);
    }
  }
  if (!changes.gone.empty()) {
    std::vector<const Snapshot::Entry*> kept;
    for (const auto* entry : changes.removed) {
      const Instance* owner = before.instances[entry->instance];
      bool gone = false;
      for (const Instance* g : changes.gone) gone = gone || g == owner;
      if (!gone) kept.push_back(entry);
    }
    changes.removed = std::move(kept);
  }
  return changes;
}

}  // namespace Arq::Gnmi
