#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Arq::Monitoring {

// Numbers given to names in one name space (fallback ifIndex values, bridge
// ports, RMON rows and LAG actor ports), kept in a file of the space's own so
// that a name keeps its number across restarts and whatever else comes and
// goes: the lowest free number of the space at a name's first sight, with the
// time the name was last seen so that names gone for long are forgotten.
// The file is bounded (kMaxEntries names, kMaxFileBytes), read with every line
// checked (a bad line costs itself and a log line) and written whole to a new
// file that is then renamed over it.
// Not thread-safe: one thread calls Of() for every name of a collection, then
// EndRound() once.
class Numbering {
 public:
  static constexpr std::size_t kMaxFileBytes = 1 << 20;
  static constexpr std::size_t kMaxEntries = 4096;
  static constexpr std::int64_t kDay = 86400;
  static constexpr std::int64_t kPruneAfter = 30 * kDay;

  // A file written before this space had a file of its own: its header, the
  // prefix its names carry, and the number its first entry held.
  struct Legacy {
    std::string_view header;
    std::string_view prefix;
    long first = 0;
  };
  struct Space {
    std::string_view tag;    // the file's header names it: "# orvovia-<tag> 2: ..."
    std::string_view label;  // its log lines say "<label> file <path>: ..."
    long first = 1;
    long last = 1;
    Legacy legacy = {};
    // Numbers of the space that a rule outside it may give a name: never
    // handed out (nullptr: none).
    bool (*ruled)(long number) = nullptr;
  };

  // `path` is the space's file; empty keeps the numbers in memory only.
  // `reserved` tells names that never take a number of this space (the
  // names an ifIndex rule places): a file line with one is dropped.
  Numbering(const Space& space, std::string path,
            std::function<bool(const std::string&)> reserved = {});

  // The name's number (recorded, or the lowest free one), or 0 when every
  // number of the space is taken; marks the name as seen in the current
  // round. Never writes the file.
  long Of(const std::string& name);

  // Ends a collection: stamps the names seen since the last call (only when
  // their recorded time is a day old or more), forgets names unseen for
  // kPruneAfter and the oldest beyond kMaxEntries or kMaxFileBytes, and writes
  // the file once when anything changed.
  void EndRound(std::int64_t nowUnixSeconds);

  // The header line of a space's file.
  static std::string Header(std::string_view tag);

  // A name as written in the file: every byte kept, none of them a space or a
  // control character (\\ \n \r \t, \xHH for the others).
  static std::string Escape(const std::string& name);

 private:
  static constexpr std::int64_t kUnstamped = -1;
  struct Entry {
    long number;
    std::int64_t lastSeen;
    bool seen;
  };

  void Load();
  bool Save();
  long FreeNumber() const;
  void Prune(std::int64_t now);

  Space space;
  std::string header;
  std::string path;
  std::function<bool(const std::string&)> reserved;
  bool loaded = false;
  bool dirty = false;
  bool saveFailed = false;
  std::map<std::string, Entry> entries;
  std::set<long> used;
};

}  // namespace Arq::Monitoring
