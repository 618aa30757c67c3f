#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfIpConfig.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// One interface of the switch; IfList names its member ports.
struct IfInfo {
  IfType Type = IfType::Unknown;
  IfStatus Status = IfStatus::Unknown;
  std::int16_t Vid = 0;
  std::string Description;
  std::string MacAddr;
  std::vector<std::int16_t> Vlan;
  std::vector<std::string> IfList;
  IfIpConfig IpConfig;

  auto Tie() const {
    return std::tie(Type, Status, Vid, Description, MacAddr, Vlan, IfList, IpConfig);
  }
  bool operator==(const IfInfo& other) const { return Tie() == other.Tie(); }
  bool operator!=(const IfInfo& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
