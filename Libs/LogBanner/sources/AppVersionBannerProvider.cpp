#include "Arq/AppVersionBannerProvider/AppVersionBannerProvider.h"

#include <ctime>

namespace Arq::BannerProvider {

std::string UtcAscTime() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  char text[32];
  std::string time = asctime_r(&utc, text) != nullptr ? text : "";
  if (!time.empty() && time.back() == '\n') time.pop_back();
  return time;
}

}  // namespace Arq::BannerProvider

namespace Arq::AppVersionBannerProvider {

AppVersionBannerProvider::AppVersionBannerProvider(
    std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion> version)
    : version_(std::move(version)) {}

std::string AppVersionBannerProvider::GetBanner() {
  return "------ ARQ VANTELLIS --- OrvoViaSwitchWarden version " + version_->Version() + " --- " +
         BannerProvider::UtcAscTime() + " ------";
}

}  // namespace Arq::AppVersionBannerProvider
