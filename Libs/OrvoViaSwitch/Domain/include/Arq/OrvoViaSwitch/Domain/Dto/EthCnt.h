#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The traffic counters of one Ethernet port (EthCounters.h).
struct EthCnt {
  std::string EthName;
#define ARQ_ETH_COUNTER_FIELD(name) std::int64_t name = 0;
  ARQ_ETH_COUNTERS(ARQ_ETH_COUNTER_FIELD)
#undef ARQ_ETH_COUNTER_FIELD

  // The name, then the counters in the list's order.
  auto Tie() const {
#define ARQ_ETH_COUNTER_TIED(name) , name
    return std::tie(EthName ARQ_ETH_COUNTERS(ARQ_ETH_COUNTER_TIED));
#undef ARQ_ETH_COUNTER_TIED
  }
  bool operator==(const EthCnt& other) const {
    return Tie() == other.Tie();
  }
  bool operator!=(const EthCnt& other) const {
    return !(*this == other);
  }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
