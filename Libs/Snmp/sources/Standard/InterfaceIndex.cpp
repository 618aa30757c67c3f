#include "InterfaceIndex.h"

#include <fcntl.h>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace Arq::Snmp::Standard {
namespace {

// The first line of the file since names are escaped and stamped; a file
// without it holds the older "<index> <name>" lines, the name taken verbatim.
constexpr std::string_view kHeader =
    R"(# orvovia-ifindex 2: <index> <name: \\ \n \r \t \xHH escaped> <last seen, unix seconds>)";
constexpr std::size_t kLoggedBadLines = 10;

std::string Reason(int error) {
  char text[128];
  return strerror_r(error, text, sizeof text);
}

// A decimal number from `low` to `high` without leading zeros, or 0.
long Number(const std::string& text, long low, long high) {
  if (text.empty() || text.size() > 6 || text[0] == '0') return 0;
  long value = 0;
  for (const char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return 0;
    value = value * 10 + (c - '0');
  }
  return value >= low && value <= high ? value : 0;
}

long Prefixed(const std::string& name, const char* prefix, long base) {
  const std::string head = name.substr(0, 3);
  std::string lower;
  for (const char c : head) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lower != prefix) return 0;
  const long n = Number(name.substr(3), 1, 999);
  return n == 0 ? 0 : base + n;
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
  long index = 0;
  std::string name;
  std::int64_t lastSeen = 0;
};

// "<index> <escaped name> <last seen>", or the older "<index> <name>".
bool Parse(std::string_view text, bool stamped, Line& line) {
  const auto first = text.find(' ');
  const auto last = stamped ? text.rfind(' ') : text.size();
  std::int64_t index = 0;
  if (first == std::string_view::npos || last == first ||
      !Field(text.substr(0, first), InterfaceIndex::kFirstFallback, InterfaceIndex::kLastIndex,
             index)) {
    return false;
  }
  line.index = static_cast<long>(index);
  const auto name = text.substr(first + 1, last - first - 1);
  if (!stamped) {
    line.name = name;
    line.lastSeen = -1;
    return !name.empty();
  }
  return Unescape(name, line.name) && Field(text.substr(last + 1), 0, 999999999999, line.lastSeen);
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd(fd) {}
  ~Descriptor() {
    if (fd >= 0) close(fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return fd; }
  // Closes now, so that a failure to flush is seen.
  bool Close() { return close(std::exchange(fd, -1)) == 0; }

 private:
  int fd;
};

// One log line per dropped line, the first kLoggedBadLines of them, then a count.
class BadLines {
 public:
  explicit BadLines(const char* path) : path(path) {}
  ~BadLines() {
    if (count > kLoggedBadLines) {
      snmp_log(LOG_WARNING, "ifIndex file %s: %zu more lines dropped\n", path,
               count - kLoggedBadLines);
    }
  }
  BadLines(const BadLines&) = delete;
  BadLines& operator=(const BadLines&) = delete;
  void Drop(std::size_t number, const char* why) {
    if (++count <= kLoggedBadLines) {
      snmp_log(LOG_WARNING, "ifIndex file %s: line %zu dropped: %s\n", path, number, why);
    }
  }
  std::size_t Count() const { return count; }

 private:
  const char* path;
  std::size_t count = 0;
};

}  // namespace

InterfaceIndex::InterfaceIndex(std::string path) : path(std::move(path)) {}

long InterfaceIndex::FromRule(const std::string& name) {
  const auto slash = name.find('/');
  if (slash != std::string::npos) {
    const long slot = Number(name.substr(0, slash), 1, 99);
    const long port = Number(name.substr(slash + 1), 1, 999);
    return slot != 0 && port != 0 ? slot * 1000 + port : 0;
  }
  if (const long lag = Prefixed(name, "lag", 100000)) return lag;
  return Prefixed(name, "prs", 200000);
}

std::string InterfaceIndex::Escape(const std::string& name) {
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

long InterfaceIndex::Of(const std::string& name) {
  if (const long index = FromRule(name)) return index;
  if (!loaded) Load();
  const auto found = fallbacks.find(name);
  if (found != fallbacks.end()) {
    found->second.seen = true;
    return found->second.index;
  }
  const long index = FreeIndex();
  fallbacks.emplace(name, Entry{index, kUnstamped, true});
  used.insert(index);
  dirty = true;
  return index;
}

long InterfaceIndex::FreeIndex() const {
  long index = kFirstFallback;
  for (auto it = used.begin(); it != used.end() && *it == index; ++it) ++index;
  return index;
}

void InterfaceIndex::EndRound(std::int64_t nowUnixSeconds) {
  if (!loaded) Load();
  // Stamped when first recorded, when seen a day or more after the last
  // stamp, and when the stamp lies a day or more ahead (the clock went back).
  for (auto& [name, entry] : fallbacks) {
    if (entry.lastSeen == kUnstamped || entry.lastSeen - nowUnixSeconds >= kDay ||
        (entry.seen && nowUnixSeconds - entry.lastSeen >= kDay)) {
      entry.lastSeen = nowUnixSeconds;
      dirty = true;
    }
  }
  Prune(nowUnixSeconds);
  for (auto& entry : fallbacks) entry.second.seen = false;
  if (dirty && Save()) dirty = false;
}

// Names seen this round always stay; of the others, those unseen for
// kPruneAfter go, then the oldest (lowest index first among equals) while the
// file would hold more than kMaxEntries names or kMaxFileBytes.
void InterfaceIndex::Prune(std::int64_t now) {
  std::vector<std::map<std::string, Entry>::iterator> unseen;
  std::size_t bytes = kHeader.size() + 1;
  for (auto it = fallbacks.begin(); it != fallbacks.end();) {
    const Entry& entry = it->second;
    if (!entry.seen && now - entry.lastSeen > kPruneAfter) {
      used.erase(entry.index);
      it = fallbacks.erase(it);
      dirty = true;
      continue;
    }
    bytes += EscapedSize(it->first) + 32;  // upper bound of the two numbers and separators
    if (!entry.seen) unseen.push_back(it);
    ++it;
  }
  if (fallbacks.size() <= kMaxEntries && bytes <= kMaxFileBytes) return;
  std::sort(unseen.begin(), unseen.end(), [](const auto& a, const auto& b) {
    return std::make_pair(a->second.lastSeen, a->second.index) <
           std::make_pair(b->second.lastSeen, b->second.index);
  });
  for (const auto& it : unseen) {
    if (fallbacks.size() <= kMaxEntries && bytes <= kMaxFileBytes) break;
    bytes -= EscapedSize(it->first) + 32;
    used.erase(it->second.index);
    fallbacks.erase(it);
    dirty = true;
  }
}

void InterfaceIndex::Load() {
  loaded = true;
  if (path.empty()) return;
  // Non-blocking, so that a FIFO put in its place cannot hang the agent.
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.Get() < 0) {
    if (errno != ENOENT) {
      snmp_log(LOG_WARNING, "ifIndex file %s not read: %s\n", path.c_str(), Reason(errno).c_str());
    }
    return;
  }
  if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    snmp_log(LOG_WARNING, "ifIndex file %s not read: not a regular file\n", path.c_str());
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
    // The whole lines of the first part: the lowest indexes, as the file is written.
    const auto lastLine = text.rfind('\n', kMaxFileBytes - 1);
    text.resize(lastLine == std::string::npos ? 0 : lastLine + 1);
    snmp_log(LOG_WARNING, "ifIndex file %s: larger than %zu bytes, the rest dropped\n",
             path.c_str(), kMaxFileBytes);
    dirty = true;
  }
  const bool stamped =
      std::string_view(text).substr(0, kHeader.size() + 1) == std::string(kHeader) + '\n';
  BadLines bad(path.c_str());
  std::vector<Line> moved;  // lines whose index an earlier line holds
  Line line;
  std::size_t number = 0;
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    std::string_view view = std::string_view(text).substr(start, end - start);
    start = end + 1;
    if (++number == 1 && stamped) continue;
    if (stamped && !view.empty() && view.back() == '\r') view.remove_suffix(1);
    if (view.empty() || (stamped && view[0] == '#')) continue;
    if (!Parse(view, stamped, line)) {
      bad.Drop(number, stamped ? "not \"<index> <name> <last seen>\" with an index from 1000000 "
                                 "to 2147483647"
                               : "not \"<index> <name>\" with an index from 1000000 to 2147483647");
    } else if (FromRule(line.name) != 0) {
      bad.Drop(number, "the name has an index by rule");
    } else if (fallbacks.count(line.name) != 0) {
      bad.Drop(number, "the name is on an earlier line, which keeps its index");
    } else if (fallbacks.size() + moved.size() >= kMaxEntries) {
      bad.Drop(number, "more than 4096 names");
    } else if (used.count(line.index) != 0) {
      bad.Drop(number, "the index is on an earlier line, the name gets a new one");
      moved.push_back(std::move(line));
    } else {
      used.insert(line.index);
      fallbacks.emplace(std::move(line.name), Entry{line.index, line.lastSeen, false});
    }
  }
  // Placed once every valid line holds its index, so that no later line loses its own.
  for (auto& entry : moved) {
    if (fallbacks.count(entry.name) != 0) continue;
    const long index = FreeIndex();
    used.insert(index);
    fallbacks.emplace(std::move(entry.name), Entry{index, entry.lastSeen, false});
  }
  if (bad.Count() != 0) dirty = true;
}

bool InterfaceIndex::Save() {
  if (path.empty()) return true;
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "."
                             : slash == 0               ? "/"
                                                        : path.substr(0, slash);
  const std::string name = path.substr(slash == std::string::npos ? 0 : slash + 1);
  const std::string temporary = name + ".new";
  std::vector<std::pair<long, const std::string*>> order;
  for (const auto& [entryName, entry] : fallbacks) order.emplace_back(entry.index, &entryName);
  std::sort(order.begin(), order.end());
  std::string text(kHeader);
  text += '\n';
  for (const auto& [index, entryName] : order) {
    text += std::to_string(index) + ' ' + Escape(*entryName) + ' ' +
            std::to_string(fallbacks.at(*entryName).lastSeen) + '\n';
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
    snmp_log(LOG_WARNING, "cannot write the ifIndex file %s (%s): %s\n", path.c_str(), step,
             error != 0 ? Reason(error).c_str() : "short write");
  }
  saveFailed = true;
  return false;
}

}  // namespace Arq::Snmp::Standard
