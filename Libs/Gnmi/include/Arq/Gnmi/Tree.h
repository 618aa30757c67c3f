#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Arq/Gnmi/Path.h"
#include "Arq/Gnmi/Schema.h"

namespace Arq::Gnmi {

// What a path selects: for each leaf, the key values its lists must have
// ("*": any), outermost list first. Made once per request path or
// subscription, then checked against each value.
class Selection {
 public:
  void Add(std::uint32_t leaf, std::vector<std::string> keys);
  bool Empty() const { return count_ == 0; }
  bool Matches(std::uint32_t leaf, const std::vector<std::string>& keys) const;
  // Whether anything below an instance of `scope` with `keys` is selected.
  bool MatchesInstance(Scope scope, const std::vector<std::string>& keys) const;
  void Merge(const Selection& other);
  // Takes what `other` selects of one leaf.
  void MergeLeaf(const Selection& other, std::uint32_t leaf);

 private:
  std::vector<std::vector<std::vector<std::string>>> byLeaf_;
  std::size_t count_ = 0;
};

// The served tree, built once from the leaf table: a node per path element,
// with the key name of each list and the leaf at each end.
class Tree {
 public:
  enum class Outcome { Found, Malformed, NotFound };

  static const Tree& Instance();

  // The leaves a path selects (`*` and `...` wildcards, keys or `*` key
  // values on lists); Malformed for a key on what is no list or a key name
  // the list does not have, NotFound when nothing is selected. The origin
  // must be empty or "openconfig".
  Outcome Resolve(const Path& path, Selection& selection, std::string* error = nullptr) const;

  // The path of a leaf in an instance: the prefix (the instance's list
  // entry; empty for the root) and the rest.
  Path Prefix(std::uint32_t leaf, const std::vector<std::string>& keys) const;
  const Path& Relative(std::uint32_t leaf) const { return leaves_[leaf].relative; }
  Path Full(std::uint32_t leaf, const std::vector<std::string>& keys) const;
  // The list entry path of an instance (what a delete names).
  Path InstancePath(Scope scope, const std::vector<std::string>& keys) const;
  // The leaves of a scope, in table order.
  const std::vector<std::uint32_t>& LeavesOf(Scope scope) const {
    return byScope_[static_cast<std::size_t>(scope)];
  }

  struct Node;

 private:
  Tree();
  struct LeafPaths {
    Path full;                        // key values "*"
    std::size_t prefixLength = 0;     // elements up to its innermost list
    std::vector<std::size_t> listAt;  // the element index of each list
    Path relative;
  };
  std::unique_ptr<Node> root_;
  std::vector<LeafPaths> leaves_;
  std::vector<std::uint32_t> byScope_[kScopes];
};

}  // namespace Arq::Gnmi
