#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The switch's own LLDP identity.
struct LldpConfig {
  std::string SystemName;
  std::string SystemDescr;
  std::string ManagementIP;
  std::string ChassisId;
  std::int32_t TTL = 0;

  auto Tie() const { return std::tie(SystemName, SystemDescr, ManagementIP, ChassisId, TTL); }
  bool operator==(const LldpConfig& other) const { return Tie() == other.Tie(); }
  bool operator!=(const LldpConfig& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
