#pragma once

#include <string>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/Optional.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The caller's credentials for one call; no token when the caller has none.
struct Header {
  Domain::BaseTypes::Optional<std::string> token;

  auto Tie() const { return std::tie(token); }
  bool operator==(const Header& other) const { return Tie() == other.Tie(); }
  bool operator!=(const Header& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
