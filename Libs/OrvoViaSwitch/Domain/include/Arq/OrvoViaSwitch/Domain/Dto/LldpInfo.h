#pragma once

#include <map>
#include <string>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

// What one neighbour announced on a local port: whole TLVs keyed by type.
struct LldpInfo {
  std::string IfName;
  std::map<LldpTlvType, std::string> Tlv;

  auto Tie() const { return std::tie(IfName, Tlv); }
  bool operator==(const LldpInfo& other) const { return Tie() == other.Tie(); }
  bool operator!=(const LldpInfo& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
