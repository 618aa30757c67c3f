#include "Arq/Gnmi/Path.h"

namespace Arq::Gnmi {
namespace {

bool Fail(std::string* error, const char* why) {
  if (error != nullptr) *error = why;
  return false;
}

void Escape(std::string& out, const std::string& text) {
  for (const char c : text) {
    if (c == '\\' || c == ']' || c == '[' || c == '/' || c == '=') out += '\\';
    out += c;
  }
}

// Reads up to one of `stops` (unescaped) from text[at]; false on a dangling
// escape.
bool ReadUntil(std::string_view text, std::size_t& at, std::string_view stops, std::string& out) {
  while (at < text.size() && stops.find(text[at]) == std::string_view::npos) {
    if (text[at] == '\\') {
      if (++at == text.size()) return false;
    }
    out += text[at++];
  }
  return true;
}

}  // namespace

std::optional<Path> ParsePath(std::string_view text, std::string* error) {
  if (text.size() > kMaxPathText) return Fail(error, "path too long"), std::nullopt;
  Path path;
  std::size_t at = 0;
  if (at < text.size() && text[at] == '/') ++at;
  while (at < text.size()) {
    PathElem elem;
    if (!ReadUntil(text, at, "/[]=", elem.name))
      return Fail(error, "dangling escape"), std::nullopt;
    if (elem.name.empty()) return Fail(error, "empty element name"), std::nullopt;
    while (at < text.size() && text[at] == '[') {
      ++at;
      std::string key;
      std::string value;
      if (!ReadUntil(text, at, "=]/[", key) || key.empty() || at == text.size() ||
          text[at] != '=') {
        return Fail(error, "malformed key"), std::nullopt;
      }
      ++at;
      if (!ReadUntil(text, at, "]", value) || at == text.size() || value.empty()) {
        return Fail(error, "malformed key value"), std::nullopt;
      }
      ++at;
      if (!elem.keys.emplace(std::move(key), std::move(value)).second) {
        return Fail(error, "duplicate key"), std::nullopt;
      }
      if (elem.keys.size() > kMaxKeysPerElem) return Fail(error, "too many keys"), std::nullopt;
    }
    if (at < text.size()) {
      if (text[at] != '/') return Fail(error, "unexpected character"), std::nullopt;
      if (++at == text.size()) return Fail(error, "trailing '/'"), std::nullopt;
    }
    path.elems.push_back(std::move(elem));
    if (path.elems.size() > kMaxPathElems) return Fail(error, "path too deep"), std::nullopt;
  }
  return path;
}

std::string ToText(const Path& path) {
  std::string out;
  for (const auto& elem : path.elems) {
    out += '/';
    Escape(out, elem.name);
    for (const auto& [key, value] : elem.keys) {
      out += '[';
      Escape(out, key);
      out += '=';
      Escape(out, value);
      out += ']';
    }
  }
  return out.empty() ? "/" : out;
}

Path Join(const Path& prefix, const Path& path) {
  Path joined;
  joined.origin = path.origin.empty() ? prefix.origin : path.origin;
  joined.elems = prefix.elems;
  joined.elems.insert(joined.elems.end(), path.elems.begin(), path.elems.end());
  return joined;
}

}  // namespace Arq::Gnmi
