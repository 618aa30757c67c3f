#pragma once

#include <map>
#include <string>

namespace Arq::Snmp::Standard {

// Stable ifIndex values for the switch's interfaces, derived from their names
// so that a port keeps its index whatever else appears or disappears:
//   - a port "<slot>/<port>" (slot 1-99, port 1-999, no leading zeros):
//     slot * 1000 + port ("1/1" is 1001, "2/48" is 2048);
//   - a LAG "lag<n>" (n 1-999, any case): 100000 + n;
//   - a PRS interface "prs<n>" (n 1-999, any case): 200000 + n;
//   - any other name: the lowest free value from 1000000 on, written to a
//     file at its first use and read back at start-up, so that it survives
//     restarts.
class InterfaceIndex {
 public:
  static constexpr long kFirstFallback = 1000000;

  // `path` is the fallback file (one "<index> <name>" line each); empty keeps
  // the fallbacks in memory only.
  explicit InterfaceIndex(std::string path);

  long Of(const std::string& name);

  // The index a name gets from the rule alone, or 0 when the rule cannot place it.
  static long FromRule(const std::string& name);

 private:
  void Load();
  void Save() const;

  std::string path;
  bool loaded = false;
  std::map<std::string, long> fallbacks;
};

}  // namespace Arq::Snmp::Standard
