#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// One PTP domain of the switch.
struct PTPConfig {
  std::int8_t Domain = 0;
  PTPPacketType PacketType = PTPPacketType::Unknown;
  PTPClockMode ClockMode = PTPClockMode::Unknown;
  std::vector<std::string> IfList;
  std::vector<std::string> SlaveIfList;
  PTPProfile Profile = PTPProfile::Unknown;
  // False when the switch sent a clock mode the interface does not define:
  // ClockMode then holds 0 (Transparent), as every unknown enumerator
  // converts, and only this flag tells such a domain from a transparent one.
  bool ClockModeDefined = true;

  auto Tie() const {
    return std::tie(Domain, PacketType, ClockMode, IfList, SlaveIfList, Profile, ClockModeDefined);
  }
  bool operator==(const PTPConfig& other) const { return Tie() == other.Tie(); }
  bool operator!=(const PTPConfig& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
