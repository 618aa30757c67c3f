#pragma once

#include <cstdint>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct PTPTimeStamp {
  std::int32_t NanoSec = 0;
  std::int64_t Sec = 0;
  std::int32_t FracNs = 0;

  auto Tie() const { return std::tie(NanoSec, Sec, FracNs); }
  bool operator==(const PTPTimeStamp& other) const { return Tie() == other.Tie(); }
  bool operator!=(const PTPTimeStamp& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
