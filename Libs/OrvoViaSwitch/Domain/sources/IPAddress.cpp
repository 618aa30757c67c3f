#include "Arq/OrvoViaSwitch/Domain/Dto/IPAddress.h"

#include <cctype>

namespace Arq::OrvoViaSwitch::Domain::Dto {
namespace {

bool Blank(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text) {
  std::array<std::uint8_t, 4> address{};
  std::size_t i = 0;
  for (std::size_t part = 0; part < address.size(); ++part) {
    if (part > 0 && (i >= text.size() || text[i++] != '.')) return std::nullopt;
    while (i < text.size() && Blank(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    const std::size_t digits = i;
    unsigned value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
      value = value > 255 ? value : value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    // A negative number reads as its unsigned wrap, above 255 unless it is 0.
    if (i == digits || value > 255 || (negative && value != 0)) return std::nullopt;
    address[part] = static_cast<std::uint8_t>(value);
  }
  while (i < text.size() && Blank(text[i])) ++i;
  if (i != text.size()) return std::nullopt;
  return address;
}

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
