#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

#include <algorithm>

namespace Arq::OrvoViaSwitch::Domain::Model {

const Port* SwitchModel::FindPort(const std::string& name) const {
  const auto found =
      std::find_if(ports.begin(), ports.end(), [&name](const Port& p) { return p.name == name; });
  return found == ports.end() ? nullptr : &*found;
}

const Interface* SwitchModel::FindInterface(const std::string& name) const {
  const auto found = std::find_if(interfaces.begin(), interfaces.end(),
                                  [&name](const Interface& i) { return i.name == name; });
  return found == interfaces.end() ? nullptr : &*found;
}

std::uint64_t SpeedMbps(Dto::EthSpeed speed) {
  static constexpr std::uint64_t kSpeeds[] = {1000,  10000, 12500, 20000,
                                              25000, 40000, 50000, 100000};
  const auto code = static_cast<std::int32_t>(speed);
  return code >= 0 && code < static_cast<std::int32_t>(std::size(kSpeeds)) ? kSpeeds[code] : 0;
}

}  // namespace Arq::OrvoViaSwitch::Domain::Model
