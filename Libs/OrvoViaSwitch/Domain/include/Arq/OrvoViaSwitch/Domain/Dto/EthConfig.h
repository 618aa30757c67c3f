#pragma once

#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct EthConfig {
  EthMode Mode = EthMode::Unknown;
  EthSpeed Speed = EthSpeed::Unknown;
  EthFecType FecType = EthFecType::Unknown;

  auto Tie() const { return std::tie(Mode, Speed, FecType); }
  bool operator==(const EthConfig& other) const { return Tie() == other.Tie(); }
  bool operator!=(const EthConfig& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
