#pragma once

#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/IPAddress.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct IfIpConfig {
  IPAddress Ip;
  IPAddress Mask;
  IPAddress Gateway;
  bool Dhcp = false;

  auto Tie() const { return std::tie(Ip, Mask, Gateway, Dhcp); }
  bool operator==(const IfIpConfig& other) const { return Tie() == other.Tie(); }
  bool operator!=(const IfIpConfig& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
