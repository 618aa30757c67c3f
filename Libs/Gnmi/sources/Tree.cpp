#include "Arq/Gnmi/Tree.h"

#include <algorithm>
#include <stdexcept>

namespace Arq::Gnmi {

struct Tree::Node {
  std::string name;
  std::string key;  // the key of a list, else empty
  std::vector<std::unique_ptr<Node>> children;
  std::int64_t leaf = -1;

  Node* Child(const std::string& childName, const std::string& childKey) {
    for (auto& child : children) {
      if (child->name == childName) return child.get();
    }
    children.push_back(std::make_unique<Node>());
    children.back()->name = childName;
    children.back()->key = childKey;
    return children.back().get();
  }
};

namespace {

constexpr const char* kWildcard = "*";

struct Walker {
  const Path& path;
  Selection& selection;
  bool malformed = false;
  std::string why;

  // The tree is a few levels deep and a path at most kMaxPathElems long: the
  // recursion is bounded by both.
  // NOLINTNEXTLINE(misc-no-recursion)
  void AddAll(const Tree::Node& node, std::vector<std::string>& keys) {
    if (node.leaf >= 0) selection.Add(static_cast<std::uint32_t>(node.leaf), keys);
    for (const auto& child : node.children) {
      if (!child->key.empty()) keys.emplace_back(kWildcard);
      AddAll(*child, keys);
      if (!child->key.empty()) keys.pop_back();
    }
  }

  // NOLINTNEXTLINE(misc-no-recursion)
  void Walk(const Tree::Node& node, std::size_t at, std::vector<std::string>& keys) {
    if (malformed) return;
    if (at == path.elems.size()) {
      AddAll(node, keys);
      return;
    }
    const PathElem& elem = path.elems[at];
    if (elem.name == "...") {
      if (!elem.keys.empty()) {
        malformed = true;
        why = "keys on '...'";
        return;
      }
      Walk(node, at + 1, keys);
      for (const auto& child : node.children) {
        if (!child->key.empty()) keys.emplace_back(kWildcard);
        Walk(*child, at, keys);
        if (!child->key.empty()) keys.pop_back();
      }
      return;
    }
    for (const auto& child : node.children) {
      if (elem.name != kWildcard && elem.name != child->name) continue;
      if (!elem.keys.empty()) {
        if (child->key.empty()) {
          if (elem.name == kWildcard) continue;
          malformed = true;
          why = "'" + elem.name + "' is not a list";
          return;
        }
        if (elem.keys.size() != 1 || elem.keys.begin()->first != child->key) {
          if (elem.name == kWildcard) continue;
          malformed = true;
          why = "'" + elem.name + "' is keyed by '" + child->key + "' only";
          return;
        }
      }
      if (!child->key.empty()) {
        keys.push_back(elem.keys.empty() ? kWildcard : elem.keys.begin()->second);
      }
      Walk(*child, at + 1, keys);
      if (!child->key.empty()) keys.pop_back();
    }
  }
};

}  // namespace

void Selection::Add(std::uint32_t leaf, std::vector<std::string> keys) {
  if (byLeaf_.size() <= leaf) byLeaf_.resize(leaf + 1);
  auto& list = byLeaf_[leaf];
  if (std::find(list.begin(), list.end(), keys) != list.end()) return;
  list.push_back(std::move(keys));
  ++count_;
}

bool Selection::Matches(std::uint32_t leaf, const std::vector<std::string>& keys) const {
  if (leaf >= byLeaf_.size()) return false;
  for (const auto& wanted : byLeaf_[leaf]) {
    bool all = true;
    for (std::size_t k = 0; k < wanted.size() && all; ++k) {
      all = wanted[k] == kWildcard || (k < keys.size() && wanted[k] == keys[k]);
    }
    if (all) return true;
  }
  return false;
}

bool Selection::MatchesInstance(Scope scope, const std::vector<std::string>& keys) const {
  const auto& leaves = Tree::Instance().LeavesOf(scope);
  return std::any_of(leaves.begin(), leaves.end(),
                     [&](std::uint32_t leaf) { return Matches(leaf, keys); });
}

void Selection::Merge(const Selection& other) {
  for (std::size_t leaf = 0; leaf < other.byLeaf_.size(); ++leaf) {
    for (const auto& keys : other.byLeaf_[leaf]) Add(static_cast<std::uint32_t>(leaf), keys);
  }
}

void Selection::MergeLeaf(const Selection& other, std::uint32_t leaf) {
  if (leaf >= other.byLeaf_.size()) return;
  for (const auto& keys : other.byLeaf_[leaf]) Add(leaf, keys);
}

const Tree& Tree::Instance() {
  static const Tree tree;
  return tree;
}

Tree::Tree() : root_(std::make_unique<Node>()) {
  const auto& leaves = Leaves();
  leaves_.resize(leaves.size());
  for (std::uint32_t i = 0; i < leaves.size(); ++i) {
    const auto parsed = ParsePath(leaves[i].path);
    if (!parsed) throw std::logic_error(std::string("malformed leaf path ") + leaves[i].path);
    LeafPaths& paths = leaves_[i];
    paths.full = *parsed;
    Node* node = root_.get();
    for (std::size_t e = 0; e < parsed->elems.size(); ++e) {
      const PathElem& elem = parsed->elems[e];
      const std::string key = elem.keys.empty() ? std::string() : elem.keys.begin()->first;
      node = node->Child(elem.name, key);
      if (!key.empty()) {
        paths.listAt.push_back(e);
        paths.prefixLength = e + 1;
      }
    }
    if (node->leaf >= 0 || !node->children.empty()) {
      throw std::logic_error(std::string("leaf declared twice ") + leaves[i].path);
    }
    node->leaf = i;
    paths.relative.elems.assign(parsed->elems.begin() + static_cast<long>(paths.prefixLength),
                                parsed->elems.end());
    byScope_[static_cast<std::size_t>(leaves[i].scope)].push_back(i);
  }
}

Tree::Outcome Tree::Resolve(const Path& path, Selection& selection, std::string* error) const {
  if (!path.origin.empty() && path.origin != "openconfig") {
    if (error != nullptr) *error = "unknown origin '" + path.origin + "'";
    return Outcome::NotFound;
  }
  // Each '...' multiplies the walk by the tree's depth: two are plenty.
  const auto anyDepth = std::count_if(path.elems.begin(), path.elems.end(),
                                      [](const PathElem& e) { return e.name == "..."; });
  if (anyDepth > 2 || path.elems.size() > kMaxPathElems) {
    if (error != nullptr) *error = "path too complex";
    return Outcome::Malformed;
  }
  for (const auto& elem : path.elems) {
    if (elem.name.empty() || elem.keys.size() > kMaxKeysPerElem) {
      if (error != nullptr) *error = "empty element name";
      return Outcome::Malformed;
    }
    for (const auto& [key, value] : elem.keys) {
      if (key.empty() || value.empty()) {
        if (error != nullptr) *error = "empty key or key value in '" + elem.name + "'";
        return Outcome::Malformed;
      }
    }
  }
  Walker walker{path, selection, false, {}};
  std::vector<std::string> keys;
  walker.Walk(*root_, 0, keys);
  if (walker.malformed) {
    if (error != nullptr) *error = walker.why;
    return Outcome::Malformed;
  }
  if (selection.Empty()) {
    if (error != nullptr) *error = "no such path " + ToText(path);
    return Outcome::NotFound;
  }
  return Outcome::Found;
}

Path Tree::Prefix(std::uint32_t leaf, const std::vector<std::string>& keys) const {
  const LeafPaths& paths = leaves_[leaf];
  Path prefix;
  prefix.elems.assign(paths.full.elems.begin(),
                      paths.full.elems.begin() + static_cast<long>(paths.prefixLength));
  for (std::size_t k = 0; k < paths.listAt.size() && k < keys.size(); ++k) {
    auto& elemKeys = prefix.elems[paths.listAt[k]].keys;
    elemKeys.begin()->second = keys[k];
  }
  return prefix;
}

Path Tree::Full(std::uint32_t leaf, const std::vector<std::string>& keys) const {
  Path full = Prefix(leaf, keys);
  const auto& rest = leaves_[leaf].relative.elems;
  full.elems.insert(full.elems.end(), rest.begin(), rest.end());
  return full;
}

Path Tree::InstancePath(Scope scope, const std::vector<std::string>& keys) const {
  const auto& leaves = LeavesOf(scope);
  return leaves.empty() ? Path{} : Prefix(leaves.front(), keys);
}

}  // namespace Arq::Gnmi
