#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Arq/Gnmi/Schema.h"
#include "Arq/Gnmi/Tree.h"

namespace Arq::Gnmi {

// Every leaf value of one switch model, computed once per published model and
// shared by every request and stream: instances sorted by scope and keys,
// values sorted by instance and leaf.
struct Snapshot {
  struct Entry {
    std::uint32_t instance;
    std::uint32_t leaf;
    Value value;
  };
  std::shared_ptr<const View> view;
  std::vector<const Instance*> instances;
  std::vector<Entry> entries;
  std::int64_t timestamp = 0;
  std::uint64_t generation = 0;
};

std::shared_ptr<const Snapshot> MakeSnapshot(std::shared_ptr<const Model::SwitchModel> model);

// What changed from one snapshot to the next: new or changed values, values
// that became unknown, and instances that went away (an interface, a
// neighbour). The pointers point into the two snapshots.
struct Changes {
  std::vector<const Snapshot::Entry*> updated;  // into `after`
  std::vector<const Snapshot::Entry*> removed;  // leaves into `before`, instance still there
  std::vector<const Instance*> gone;            // instances of `before`
};
Changes Diff(const Snapshot& before, const Snapshot& after);

}  // namespace Arq::Gnmi
