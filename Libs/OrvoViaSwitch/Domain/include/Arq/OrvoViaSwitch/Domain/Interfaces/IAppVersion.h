#pragma once

#include <string>

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

// The application's identity: keep the slot order.
class IAppVersion {
 public:
  virtual ~IAppVersion() = default;
  virtual std::string Version() const = 0;
  virtual std::string ProjectName() const = 0;
  // Build date and time joined by one blank, as the compiler's __DATE__ and
  // __TIME__ write them ("Oct  3 2023 18:00:50").
  virtual std::string DateTime() const = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
