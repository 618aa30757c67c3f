#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Arq/LogBanner/LogBanner.h"

namespace {

using Arq::LogBanner::LogBannerProvider;
using arq::logging::ILogger;

class RecordingLogger : public ILogger {
 public:
  void Log(Level level, const std::string& message, const char* file, unsigned long) override {
    if (level >= level_) lines.push_back(std::to_string(level) + "|" + message + "|" + file);
  }
  void SetLevel(Level level) override { level_ = level; }
  Level GetLevel() const override { return level_; }
  std::vector<std::string> lines;

 private:
  Level level_ = NoLog;
};

TEST(LogBannerTest, ThresholdLabelsKeepSevenCharacters) {
  const std::pair<int, const char*> labels[] = {{10, " Trace "},  {20, " Debug "}, {30, "  Info "},
                                                {40, "Warning"},  {50, " Error "}, {60, " Fatal "},
                                                {100, "No  Log"}, {42, "Unknown"}};
  for (const auto& [level, label] : labels) {
    EXPECT_EQ(LogBannerProvider::ToString(static_cast<ILogger::Level>(level)), label);
  }
  auto logger = std::make_shared<RecordingLogger>();
  logger->SetLevel(ILogger::Warning);
  EXPECT_EQ(LogBannerProvider(logger).GetBanner(),
            "--------------------------------- Criticity threshold: Warning "
            "---------------------------------");
}

TEST(LogBannerTest, WriterLogsAtInfoWhateverTheThresholdAndRestoresIt) {
  auto logger = std::make_shared<RecordingLogger>();
  logger->SetLevel(ILogger::NoLog);
  std::vector<std::shared_ptr<Arq::BannerProvider::IBannerProvider>> providers{
      std::make_shared<LogBannerProvider>(logger)};
  Arq::LogBanner::LogLevelBannerWriter(logger, providers).Write();
  const std::string rule(96, '-');
  const std::string file = "|Libs/LogBanner/sources/Arq/LogBanner/LogLevelBannerWriter";
  EXPECT_THAT(logger->lines,
              testing::ElementsAre("30|" + rule + file,
                                   "30|--------------------------------- Criticity threshold:   "
                                   "Info  ---------------------------------" +
                                       file,
                                   "30|" + rule + file));
  EXPECT_EQ(logger->GetLevel(), ILogger::NoLog);
}

}  // namespace
