#pragma once

#include <cstdint>
#include <string>

#include "Arq/Monitoring/Model/Numbering.h"

namespace Arq::Monitoring {

// Stable ifIndex values for the switch's interfaces, derived from their names
// so that a port keeps its index whatever else appears or disappears:
//   - a port "<slot>/<port>" (slot 1-99, port 1-999, no leading zeros):
//     slot * 1000 + port ("1/1" is 1001, "2/48" is 2048);
//   - a LAG "lag<n>" (n 1-999, any case): 100000 + n;
//   - a PRS interface "prs<n>" (n 1-999, any case): 200000 + n;
//   - any other name: a number of the "ifindex" space from 1000000 on, kept
//     in its file (see Numbering).
// Not thread-safe: one thread calls Of() for every interface of a collection,
// then EndRound() once.
class InterfaceIndex {
 public:
  static constexpr long kFirstFallback = 1000000;
  static constexpr long kLastIndex = 2147483647;  // ifIndex is an Integer32
  static constexpr Numbering::Space kSpace{"ifindex", "ifIndex", kFirstFallback, kLastIndex};

  // `path` is the fallback file; empty keeps the fallbacks in memory only.
  explicit InterfaceIndex(std::string path);

  // The index a name gets from the rule alone, or 0 when the rule cannot place it.
  static long FromRule(const std::string& name);

  // The name's index (by the rule, recorded, or newly placed); marks the name
  // as seen in the current round. Never writes the file.
  long Of(const std::string& name);

  // Ends a collection (Numbering::EndRound).
  void EndRound(std::int64_t nowUnixSeconds);

 private:
  Numbering fallbacks;
};

}  // namespace Arq::Monitoring
