#include "Arq/Monitoring/Model/Numbering.h"

#include <fcntl.h>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/FileDescriptor.h"

namespace Arq::Monitoring {
namespace {

constexpr std::size_t kLoggedBadLines = 10;

std::string Reason(int error) {
  char text[128];
  return strerror_r(error, text, sizeof text);
}

// A file's decimal field (no sign, no leading zero) from `low` to `high`.
bool Field(std::string_view text, std::int64_t low, std::int64_t high, std::int64_t& value) {
  if (text.empty() || text.size() > 18 || (text[0] == '0' && text.size() > 1)) return false;
  value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  return value >= low && value <= high;
}

bool Plain(unsigned char c) {
  return c > ' ' && c != 0x7f && c != '\\';
}

std::size_t EscapedSize(const std::string& name) {
  std::size_t size = 0;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    size += Plain(byte) ? 1 : c == '\\' || c == '\n' || c == '\r' || c == '\t' ? 2 : 4;
  }
  return size;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool Unescape(std::string_view text, std::string& name) {
  name.clear();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c != '\\') {
      if (!Plain(static_cast<unsigned char>(c))) return false;
      name += c;
      continue;
    }
    const char kind = ++i < text.size() ? text[i] : '\0';
    if (kind == '\\' || kind == 'n' || kind == 'r' || kind == 't') {
      name += kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind == 't' ? '\t' : '\\';
    } else if (kind == 'x' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 &&
               HexDigit(text[i + 2]) >= 0) {
      name += static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
      i += 2;
    } else {
      return false;
    }
  }
  return true;
}

struct Line {
  long number = 0;
  std::string name;
  std::int64_t lastSeen = 0;
};

// "<number> <escaped name> <last seen>", or the older "<number> <name>".
bool Parse(std::string_view text, bool stamped, long low, long high, Line& line) {
  const auto first = text.find(' ');
  const auto last = stamped ? text.rfind(' ') : text.size();
  std::int64_t number = 0;
  if (first == std::string_view::npos || last == first ||
      !Field(text.substr(0, first), low, high, number)) {
    return false;
  }
  line.number = static_cast<long>(number);
  const auto name = text.substr(first + 1, last - first - 1);
  if (!stamped) {
    line.name = name;
    line.lastSeen = -1;
    return !name.empty();
  }
  return Unescape(name, line.name) && Field(text.substr(last + 1), 0, 999999999999, line.lastSeen);
}

using Descriptor = OrvoViaSwitch::Domain::FileDescriptor;

// One log line per dropped line, the first kLoggedBadLines of them, then a count.
class BadLines {
 public:
  BadLines(std::string_view label, const char* path) : label(label), path(path) {}
  ~BadLines() {
    if (count > kLoggedBadLines) {
      snmp_log(LOG_WARNING, "%s file %s: %zu more lines dropped\n", label.c_str(), path,
               count - kLoggedBadLines);
    }
  }
  BadLines(const BadLines&) = delete;
  BadLines& operator=(const BadLines&) = delete;
  void Drop(std::size_t number, const std::string& why) {
    if (++count <= kLoggedBadLines) {
      snmp_log(LOG_WARNING, "%s file %s: line %zu dropped: %s\n", label.c_str(), path, number,
               why.c_str());
    }
  }
  std::size_t Count() const { return count; }

 private:
  std::string label;
  const char* path;
  std::size_t count = 0;
};

bool StartsWithLine(std::string_view text, std::string_view line) {
  return !line.empty() && text.size() > line.size() && text.substr(0, line.size()) == line &&
         text[line.size()] == '\n';
}

}  // namespace

Numbering::Numbering(const Space& space, std::string path,
                     std::function<bool(const std::string&)> reserved)
    : space(space),
      header(Header(space.tag)),
      path(std::move(path)),
      reserved(std::move(reserved)) {}

std::string Numbering::Header(std::string_view tag) {
  return "# orvovia-" + std::string(tag) +
         R"( 2: <index> <name: \\ \n \r \t \xHH escaped> <last seen, unix seconds>)";
}

std::string Numbering::Escape(const std::string& name) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(EscapedSize(name));
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (Plain(byte)) {
      text += c;
    } else if (c == '\\' || c == '\n' || c == '\r' || c == '\t') {
      text += '\\';
      text += c == '\n' ? 'n' : c == '\r' ? 'r' : c == '\t' ? 't' : '\\';
    } else {
      text += {'\\', 'x', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return text;
}

long Numbering::Of(const std::string& name) {
  if (!loaded) Load();
  const auto found = entries.find(name);
  if (found != entries.end()) {
    found->second.seen = true;
    return found->second.number;
  }
  const long number = FreeNumber();
  if (number == 0) return 0;
  entries.emplace(name, Entry{number, kUnstamped, true});
  used.insert(number);
  dirty = true;
  return number;
}

long Numbering::FreeNumber() const {
  for (long number = space.first; number <= space.last; ++number) {
    if (used.count(number) == 0 && (space.ruled == nullptr || !space.ruled(number))) {
      return number;
    }
  }
  return 0;
}

void Numbering::EndRound(std::int64_t nowUnixSeconds) {
  if (!loaded) Load();
  // Stamped when first recorded, when seen a day or more after the last
  // stamp, and when the stamp lies a day or more ahead (the clock went back).
  for (auto& [name, entry] : entries) {
    if (entry.lastSeen == kUnstamped || entry.lastSeen - nowUnixSeconds >= kDay ||
        (entry.seen && nowUnixSeconds - entry.lastSeen >= kDay)) {
      entry.lastSeen = nowUnixSeconds;
      dirty = true;
    }
  }
  Prune(nowUnixSeconds);
  for (auto& entry : entries) entry.second.seen = false;
  if (dirty && Save()) dirty = false;
}

// Names seen this round always stay; of the others, those unseen for
// kPruneAfter go, then the oldest (lowest number first among equals) while
// the file would hold more than kMaxEntries names or kMaxFileBytes.
void Numbering::Prune(std::int64_t now) {
  std::vector<std::map<std::string, Entry>::iterator> unseen;
  std::size_t bytes = header.size() + 1;
  for (auto it = entries.begin(); it != entries.end();) {
    const Entry& entry = it->second;
    if (!entry.seen && now - entry.lastSeen > kPruneAfter) {
      used.erase(entry.number);
      it = entries.erase(it);
      dirty = true;
      continue;
    }
    bytes += EscapedSize(it->first) + 32;  // upper bound of the two numbers and separators
    if (!entry.seen) unseen.push_back(it);
    ++it;
  }
  if (entries.size() <= kMaxEntries && bytes <= kMaxFileBytes) return;
  std::sort(unseen.begin(), unseen.end(), [](const auto& a, const auto& b) {
    return std::make_pair(a->second.lastSeen, a->second.number) <
           std::make_pair(b->second.lastSeen, b->second.number);
  });
  for (const auto& it : unseen) {
    if (entries.size() <= kMaxEntries && bytes <= kMaxFileBytes) break;
    bytes -= EscapedSize(it->first) + 32;
    used.erase(it->second.number);
    entries.erase(it);
    dirty = true;
  }
}

void Numbering::Load() {
  loaded = true;
  if (path.empty()) return;
  const std::string label(space.label);
  // Non-blocking, so that a FIFO put in its place cannot hang the agent.
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.Get() < 0) {
    if (errno != ENOENT) {
      snmp_log(LOG_WARNING, "%s file %s not read: %s\n", label.c_str(), path.c_str(),
               Reason(errno).c_str());
    }
    return;
  }
  if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    snmp_log(LOG_WARNING, "%s file %s not read: not a regular file\n", label.c_str(), path.c_str());
    return;
  }
  // One byte more than the bound (or the file) tells a larger file.
  std::string text(std::min(static_cast<std::size_t>(status.st_size), kMaxFileBytes) + 1, '\0');
  std::size_t size = 0;
  while (size < text.size()) {
    const ssize_t got = read(file.Get(), &text[size], text.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    size += static_cast<std::size_t>(got);
  }
  text.resize(size);
  if (size > kMaxFileBytes) {
    // The whole lines of the first part: the lowest numbers, as the file is written.
    const auto lastLine = text.rfind('\n', kMaxFileBytes - 1);
    text.resize(lastLine == std::string::npos ? 0 : lastLine + 1);
    snmp_log(LOG_WARNING, "%s file %s: larger than %zu bytes, the rest dropped\n", label.c_str(),
             path.c_str(), kMaxFileBytes);
    dirty = true;
  }
  // The space's own file, a legacy file of stamped lines whose names carry a
  // prefix and whose numbers start elsewhere, or the oldest "<number> <name>".
  const bool legacy = StartsWithLine(text, space.legacy.header);
  const bool stamped = legacy || StartsWithLine(text, header);
  const long low = legacy ? space.legacy.first : space.first;
  const long high = low + (space.last - space.first);
  const std::string form =
      std::string(stamped ? "not \"<index> <name> <last seen>\"" : "not \"<index> <name>\"") +
      " with an index from " + std::to_string(low) + " to " + std::to_string(high);
  BadLines bad(label, path.c_str());
  std::vector<Line> moved;  // lines whose number an earlier line holds
  Line line;
  std::size_t number = 0;
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    std::string_view view = std::string_view(text).substr(start, end - start);
    start = end + 1;
    if (++number == 1 && stamped) continue;
    if (stamped && !view.empty() && view.back() == '\r') view.remove_suffix(1);
    if (view.empty() || (stamped && view[0] == '#')) continue;
    if (!Parse(view, stamped, low, high, line)) {
      bad.Drop(number, form);
      continue;
    }
    if (legacy) {
      if (line.name.compare(0, space.legacy.prefix.size(), space.legacy.prefix) != 0) {
        bad.Drop(number, "not a name of this file");
        continue;
      }
      line.name.erase(0, space.legacy.prefix.size());
      line.number += space.first - space.legacy.first;
    }
    if (reserved && reserved(line.name)) {
      bad.Drop(number, "the name has an index by rule");
    } else if (space.ruled != nullptr && space.ruled(line.number)) {
      bad.Drop(number, "the index is one a rule gives");
    } else if (entries.count(line.name) != 0) {
      bad.Drop(number, "the name is on an earlier line, which keeps its index");
    } else if (entries.size() + moved.size() >= kMaxEntries) {
      bad.Drop(number, "more than " + std::to_string(kMaxEntries) + " names");
    } else if (used.count(line.number) != 0) {
      bad.Drop(number, "the index is on an earlier line, the name gets a new one");
      moved.push_back(std::move(line));
    } else {
      used.insert(line.number);
      entries.emplace(std::move(line.name), Entry{line.number, line.lastSeen, false});
    }
  }
  // Placed once every valid line holds its number, so that no later line loses its own.
  for (auto& entry : moved) {
    const long free = FreeNumber();
    if (entries.count(entry.name) != 0 || free == 0) continue;
    used.insert(free);
    entries.emplace(std::move(entry.name), Entry{free, entry.lastSeen, false});
  }
  if (bad.Count() != 0 || legacy) dirty = true;
}

bool Numbering::Save() {
  if (path.empty()) return true;
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "."
                             : slash == 0               ? "/"
                                                        : path.substr(0, slash);
  const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
  const std::string temporary = name + ".new";
  std::vector<std::pair<long, const std::string*>> order;
  for (const auto& [entryName, entry] : entries) order.emplace_back(entry.number, &entryName);
  std::sort(order.begin(), order.end());
  std::string text(header);
  text += '\n';
  for (const auto& [number, entryName] : order) {
    text += std::to_string(number) + ' ' + Escape(*entryName) + ' ' +
            std::to_string(entries.at(*entryName).lastSeen) + '\n';
  }

  // Written to a new file that only this call creates in the folder (whatever
  // sits at its name, a link for one, is removed, never followed), flushed to
  // disk, then renamed over the file, so that a crash leaves the old file or
  // the new one whole.
  const char* step = "open its folder";
  int error = 0;
  Descriptor dir(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (dir.Get() >= 0) {
    unlinkat(dir.Get(), temporary.c_str(), 0);
    step = "create";
    Descriptor file(openat(dir.Get(), temporary.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    const bool created = file.Get() >= 0;
    std::size_t done = 0;
    while (created && done < text.size()) {
      const ssize_t put = write(file.Get(), text.data() + done, text.size() - done);
      if (put < 0 && errno == EINTR) continue;
      if (put <= 0) break;
      done += static_cast<std::size_t>(put);
    }
    if (created) step = "write";
    if (created && done == text.size() && fsync(file.Get()) == 0 && file.Close()) {
      step = "rename";
      if (renameat(dir.Get(), temporary.c_str(), dir.Get(), name.c_str()) == 0) {
        fsync(dir.Get());
        saveFailed = false;
        return true;
      }
    }
    error = errno;
    if (created) unlinkat(dir.Get(), temporary.c_str(), 0);
  } else {
    error = errno;
  }
  if (!saveFailed) {
    snmp_log(LOG_WARNING, "cannot write the %s file %s (%s): %s\n",
             std::string(space.label).c_str(), path.c_str(), step,
             error != 0 ? Reason(error).c_str() : "short write");
  }
  saveFailed = true;
  return false;
}

}  // namespace Arq::Monitoring
