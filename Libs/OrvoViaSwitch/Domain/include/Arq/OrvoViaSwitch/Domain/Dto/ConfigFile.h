#pragma once

#include <string>
#include <tuple>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {

struct ConfigFile {
  std::string Name;
  ConfigType Type = ConfigType::Unknown;
  std::string Comment;
  ConfigState State = ConfigState::Unknown;
  std::string BaseName;
  ConfigType BaseType = ConfigType::Unknown;

  auto Tie() const { return std::tie(Name, Type, Comment, State, BaseName, BaseType); }
  bool operator==(const ConfigFile& other) const { return Tie() == other.Tie(); }
  bool operator!=(const ConfigFile& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
