#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Arq::Snmp::Standard {

// Stable ifIndex values for the switch's interfaces, derived from their names
// so that a port keeps its index whatever else appears or disappears:
//   - a port "<slot>/<port>" (slot 1-99, port 1-999, no leading zeros):
//     slot * 1000 + port ("1/1" is 1001, "2/48" is 2048);
//   - a LAG "lag<n>" (n 1-999, any case): 100000 + n;
//   - a PRS interface "prs<n>" (n 1-999, any case): 200000 + n;
//   - any other name: the lowest free value from 1000000 on, kept in a file so
//     that it survives restarts, with the time the name was last seen so that
//     names gone for long are forgotten.
// Not thread-safe: one thread calls Of() for every interface of a collection,
// then EndRound() once.
class InterfaceIndex {
 public:
  static constexpr long kFirstFallback = 1000000;
  static constexpr long kLastIndex = 2147483647;  // ifIndex is an Integer32
  static constexpr std::size_t kMaxFileBytes = 1 << 20;
  static constexpr std::size_t kMaxEntries = 4096;
  static constexpr std::int64_t kDay = 86400;
  static constexpr std::int64_t kPruneAfter = 30 * kDay;

  // `path` is the fallback file; empty keeps the fallbacks in memory only.
  explicit InterfaceIndex(std::string path);

  // The index a name gets from the rule alone, or 0 when the rule cannot place it.
  static long FromRule(const std::string& name);

  // The name's index (by the rule, recorded, or newly placed); marks the name
  // as seen in the current round. Never writes the file.
  long Of(const std::string& name);

  // Ends a collection: stamps the names seen since the last call (only when
  // their recorded time is a day old or more), forgets names unseen for
  // kPruneAfter and the oldest beyond kMaxEntries or kMaxFileBytes, and writes
  // the file once when anything changed.
  void EndRound(std::int64_t nowUnixSeconds);

  // A name as written in the file: every byte kept, none of them a space or a
  // control character (\\ \n \r \t, \xHH for the others).
  static std::string Escape(const std::string& name);

 private:
  static constexpr std::int64_t kUnstamped = -1;
  struct Entry {
    long index;
    std::int64_t lastSeen;
    bool seen;
  };

  void Load();
  bool Save();
  long FreeIndex() const;
  void Prune(std::int64_t now);

  std::string path;
  bool loaded = false;
  bool dirty = false;
  bool saveFailed = false;
  std::map<std::string, Entry> fallbacks;
  std::set<long> used;
};

}  // namespace Arq::Snmp::Standard
