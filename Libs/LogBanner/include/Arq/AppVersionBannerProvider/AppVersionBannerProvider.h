#pragma once

#include <memory>

#include "Arq/BannerProvider/IBannerProvider.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IAppVersion.h"

namespace Arq::AppVersionBannerProvider {

// "------ ARQ VANTELLIS --- OrvoViaSwitchWarden version <v> --- <UTC time> ------"
class AppVersionBannerProvider : public BannerProvider::IBannerProvider {
 public:
  explicit AppVersionBannerProvider(
      std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion> version);
  std::string GetBanner() override;

 private:
  std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion> version_;
};

}  // namespace Arq::AppVersionBannerProvider
