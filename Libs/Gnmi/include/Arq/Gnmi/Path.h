#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Arq::Gnmi {

// A gNMI path without its wire form: what the schema resolves. `*` as a name
// or a key value matches anything at that level; `...` matches any number of
// levels.
struct PathElem {
  std::string name;
  std::map<std::string, std::string> keys;

  bool operator==(const PathElem& other) const { return name == other.name && keys == other.keys; }
};

struct Path {
  std::string origin;
  std::vector<PathElem> elems;

  bool operator==(const Path& other) const {
    return origin == other.origin && elems == other.elems;
  }
};

// Bounds on what a request may ask: a longer path or more keys is refused as
// malformed before anything is resolved.
inline constexpr std::size_t kMaxPathElems = 32;
inline constexpr std::size_t kMaxKeysPerElem = 4;
inline constexpr std::size_t kMaxPathText = 1024;

// The path text "/a/b[k=v]/c" (the form operators type and the docs use):
// elements separated by '/', keys in brackets; '\' escapes ']', '/', '[', '='
// and '\' itself. Nothing when malformed (`error` tells why).
std::optional<Path> ParsePath(std::string_view text, std::string* error = nullptr);

// The text of a path, escaped so that ParsePath reads it back.
std::string ToText(const Path& path);

// `prefix` followed by `path` (the request's prefix and one of its paths); the
// origin is the path's, else the prefix's.
Path Join(const Path& prefix, const Path& path);

}  // namespace Arq::Gnmi
