#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

// Transmit and receive rates of one Ethernet port, in bits per second.
struct EthStat {
  std::string EthName;
  std::int64_t TxSpeed = 0;
  std::int64_t RxSpeed = 0;

  auto Tie() const { return std::tie(EthName, TxSpeed, RxSpeed); }
  bool operator==(const EthStat& other) const { return Tie() == other.Tie(); }
  bool operator!=(const EthStat& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
