#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// State of one Ethernet port.
struct EthInfo {
  std::string EthName;
  EthMode Mode = EthMode::Unknown;
  EthSpeed Speed = EthSpeed::Unknown;
  bool IsMainPhys = false;
  std::int8_t NbPhys = 0;
  EthState State = EthState::Unknown;
  EthFailureSts FailureSts = EthFailureSts::Unknown;
  EthFecType FecType = EthFecType::Unknown;
  EthFecType FecTypeState = EthFecType::Unknown;

  auto Tie() const {
    return std::tie(EthName, Mode, Speed, IsMainPhys, NbPhys, State, FailureSts, FecType,
                    FecTypeState);
  }
  bool operator==(const EthInfo& other) const { return Tie() == other.Tie(); }
  bool operator!=(const EthInfo& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
