#pragma once

#include <memory>
#include <string>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IAppVersion.h"

namespace Arq::OrvoViaSwitchMonitoring {

class AppVersion : public OrvoViaSwitch::Domain::Interfaces::IAppVersion {
 public:
  static std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion> CreateAppVersion();

  std::string Version() const override;
  std::string ProjectName() const override;
  // The build date and time as the compiler writes them ("Oct  3 2023 18:00:50").
  std::string DateTime() const override;
};

struct PrintUsage {
  static void Print();
};

struct PrintVersion {
  static void Print(const std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion>& version);
};

}  // namespace Arq::OrvoViaSwitchMonitoring
