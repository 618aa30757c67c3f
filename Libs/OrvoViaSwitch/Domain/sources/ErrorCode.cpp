#include "Arq/OrvoViaSwitch/Domain/Dto/ErrorCode.h"

#include <array>

namespace Arq::OrvoViaSwitch::Domain::Dto {

std::string ToString(const ErrorCode& code) {
  static constexpr std::array<const char*, 12> kNames = {
      "NoError",  "UnknownError",  "SystemError",    "InvalidArgument", "RuntimeError", "TimeOut",
      "NotFound", "NotConfigured", "NotImplemented", "OutOfRange",      "AlreadyInUse", "__LAST__"};
  const auto index = static_cast<std::int32_t>(code);
  if (index < 0 || index >= static_cast<std::int32_t>(kNames.size())) {
    return "[Unknown Error Code]";
  }
  return kNames[static_cast<std::size_t>(index)];
}

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
