#include "Arq/LogBanner/LogBanner.h"

namespace Arq::LogBanner {

using arq::logging::ILogger;

LogBannerProvider::LogBannerProvider(std::shared_ptr<ILogger> logger)
    : logger_(std::move(logger)) {}

std::string LogBannerProvider::GetBanner() {
  return "--------------------------------- Criticity threshold: " +
         ToString(logger_ ? logger_->GetLevel() : ILogger::NoLog) +
         " ---------------------------------";
}

std::string LogBannerProvider::ToString(ILogger::Level level) {
  switch (level) {
    case ILogger::Trace:
      return " Trace ";
    case ILogger::Debug:
      return " Debug ";
    case ILogger::Info:
      return "  Info ";
    case ILogger::Warning:
      return "Warning";
    case ILogger::Error:
      return " Error ";
    case ILogger::Fatal:
      return " Fatal ";
    case ILogger::NoLog:
      return "No  Log";
  }
  return "Unknown";
}

LogLevelBannerWriter::LogLevelBannerWriter(
    std::shared_ptr<ILogger> logger,
    std::vector<std::shared_ptr<BannerProvider::IBannerProvider>> providers)
    : logger_(std::move(logger)), providers_(std::move(providers)) {}

void LogLevelBannerWriter::Write() {
  if (!logger_) return;
  static const char* const kFile = "Libs/LogBanner/sources/Arq/LogBanner/LogLevelBannerWriter";
  const auto level = logger_->GetLevel();
  logger_->SetLevel(ILogger::Info);
  const std::string rule(96, '-');
  logger_->Log(ILogger::Info, rule, kFile, __LINE__);
  for (const auto& provider : providers_) {
    logger_->Log(ILogger::Info, provider->GetBanner(), kFile, __LINE__);
  }
  logger_->Log(ILogger::Info, rule, kFile, __LINE__);
  logger_->SetLevel(level);
}

}  // namespace Arq::LogBanner
