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
  // Room for every leaf of every instance, made once: grown by doubling, the
  // entries took up to twice their size, and each step left a freed block of
  // the heap behind.
  std::size_t instances = 0;
  std::size_t entries = 0;
  for (std::size_t s = 0; s < kScopes; ++s) {
    const auto count = view->Instances(static_cast<Scope>(s)).size();
    instances += count;
    entries += count * tree.LeavesOf(static_cast<Scope>(s)).size();
  }
  snapshot->instances.reserve(instances);
  snapshot->entries.reserve(entries);
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
  const auto& be = before.entries;
  const auto& ae = after.entries;
  // Instances are in the same (scope, keys) order in both, and entries are
  // grouped by instance, leaves in order: one merge of the instances, and for
  // each instance in both one merge of its leaves, comparing keys once per
  // instance rather than once per leaf.
  std::size_t b = 0;
  std::size_t a = 0;
  std::size_t bi = 0;
  std::size_t ai = 0;
  const auto inB = [&] { return b < be.size() && be[b].instance == bi; };
  const auto inA = [&] { return a < ae.size() && ae[a].instance == ai; };
  while (bi < before.instances.size() || ai < after.instances.size()) {
    int order = 0;
    if (bi == before.instances.size()) {
      order = 1;
    } else if (ai == after.instances.size()) {
      order = -1;
    } else {
      order = Compare(*before.instances[bi], *after.instances[ai]);
    }
    if (order < 0) {
      // Went away: its leaves are not reported one by one.
      changes.gone.push_back(before.instances[bi]);
      while (inB()) ++b;
      ++bi;
      continue;
    }
    if (order > 0) {
      while (inA()) changes.updated.push_back(&ae[a++]);
      ++ai;
      continue;
    }
    while (inB() || inA()) {
      if (inB() && inA() && be[b].leaf == ae[a].leaf) {
        if (be[b].value != ae[a].value) changes.updated.push_back(&ae[a]);
        ++a;
        ++b;
      } else if (inA() && (!inB() || ae[a].leaf < be[b].leaf)) {
        changes.updated.push_back(&ae[a++]);
      } else {
        changes.removed.push_back(&be[b++]);
      }
    }
    ++bi;
    ++ai;
  }
  return changes;
}

}  // namespace Arq::Gnmi
