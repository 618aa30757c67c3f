#pragma once

#include <cstdint>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct HwDesc {
  std::int8_t Port = 0;
  std::int8_t NbSubPort = 0;

  auto Tie() const { return std::tie(Port, NbSubPort); }
  bool operator==(const HwDesc& other) const { return Tie() == other.Tie(); }
  bool operator!=(const HwDesc& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
