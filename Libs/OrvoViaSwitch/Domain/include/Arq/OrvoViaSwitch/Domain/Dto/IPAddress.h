#pragma once

#include <string>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct IPAddress {
  bool bIpv6 = false;
  std::string Address;

  auto Tie() const { return std::tie(bIpv6, Address); }
  bool operator==(const IPAddress& other) const { return Tie() == other.Tie(); }
  bool operator!=(const IPAddress& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
