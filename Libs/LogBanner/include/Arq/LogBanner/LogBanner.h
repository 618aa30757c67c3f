#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Arq/BannerProvider/IBannerProvider.h"
#include "arq/logging/ILogger.h"

namespace Arq::LogBanner {

// States the logging threshold in force.
class LogBannerProvider : public BannerProvider::IBannerProvider {
 public:
  explicit LogBannerProvider(std::shared_ptr<arq::logging::ILogger> logger);
  std::string GetBanner() override;
  // Seven-character labels, so that the banner keeps its width.
  static std::string ToString(arq::logging::ILogger::Level level);

 private:
  std::shared_ptr<arq::logging::ILogger> logger_;
};

// Writes the banners through the log at Info whatever the threshold, which is
// raised for the banner and restored afterwards.
class LogLevelBannerWriter {
 public:
  LogLevelBannerWriter(std::shared_ptr<arq::logging::ILogger> logger,
                       std::vector<std::shared_ptr<BannerProvider::IBannerProvider>> providers);
  void Write();

 private:
  std::shared_ptr<arq::logging::ILogger> logger_;
  std::vector<std::shared_ptr<BannerProvider::IBannerProvider>> providers_;
};

}  // namespace Arq::LogBanner
