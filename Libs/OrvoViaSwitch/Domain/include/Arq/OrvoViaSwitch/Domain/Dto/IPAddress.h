#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct IPAddress {
  bool bIpv6 = false;
  std::string Address;

  auto Tie() const { return std::tie(bIpv6, Address); }
  bool operator==(const IPAddress& other) const { return Tie() == other.Tie(); }
  bool operator!=(const IPAddress& other) const { return !(*this == other); }
};

// Dotted IPv4 text as the switch writes it, read as scanf reads
// "%u.%u.%u.%u%1s": four unsigned numbers (each may follow blanks and carry
// a sign) separated by dots, nothing but blanks after the fourth, each at
// most 255. The one reading of such text, for every view of the switch.
std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text);

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
