#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/reader.h>

#include <memory>
#include <regex>
#include <sstream>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/OrvoViaSwitchMonitoring/DynamicParametersUpdater.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using arq::logging::ILogger;
using Arq::Logging::Loader::Loggers;
using Arq::OrvoViaSwitchMonitoring::DynamicParametersUpdater;

// Records every setter call of the processor's configuration interface.
class RecordingConfigurator : public Arq::Monitoring::IMonitoringProcessorConfigurator {
 public:
  void SetCollectMetrics(bool value) override {
    calls.push_back(std::string("SetCollectMetrics ") + (value ? "true" : "false"));
    collect = value;
  }
  bool IsCollectMetrics() override { return collect; }
  void SetCollectMetricsPeriod(int seconds) override {
    calls.push_back("SetCollectMetricsPeriod " + std::to_string(seconds));
    period = seconds;
  }
  int GetCollectMetricsPeriod() override { return period; }

  bool collect = true;
  int period = 5;
  std::vector<std::string> calls;
};

Json::Value Parse(const std::string& text) {
  Json::Value value;
  std::istringstream in(text);
  Json::CharReaderBuilder builder;
  std::string errors;
  EXPECT_TRUE(Json::parseFromStream(builder, in, &value, &errors)) << text;
  return value;
}

// The real registry, serving the project's logger plug-in on standard output.
class DynamicParametersUpdaterTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static Arq::TestSupport::TempDir dir;
    const std::string path = dir.File("loggers.cfg");
    Arq::TestSupport::WriteFile(path, std::string(R"({"loggers":[{"name":"s","libraryPath":")") +
                                          ARQ_STREAM_LOGGER_PATH + "\"}]}");
    // The first GetInstance() reads the process arguments; this file replaces them.
    Loggers::GetInstance();
    Loggers::CreateLoggers(path);
  }
  void SetUp() override { Loggers::GetInstance().SetLoggingLevel(ILogger::Warning); }

  // The messages of the lines written while `action` ran.
  template <typename Action>
  std::vector<std::string> Lines(Action action) {
    Arq::TestSupport::CapturedOutput out;
    action();
    std::vector<std::string> messages;
    std::istringstream lines(out.Text());
    std::string line;
    const std::regex format(R"(^\S+ (\w+) DynamicParametersUpdater: (.*) \(\S+:\d+\)$)");
    while (std::getline(lines, line)) {
      std::smatch match;
      messages.push_back(std::regex_match(line, match, format)
                             ? match[1].str() + " " + match[2].str()
                             : "unexpected: " + line);
    }
    return messages;
  }
};

TEST_F(DynamicParametersUpdaterTest, EachOptionAloneIsLoggedAndApplied) {
  auto configurator = std::make_shared<RecordingConfigurator>();
  DynamicParametersUpdater updater(configurator);
  EXPECT_THAT(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"DebugLevel":"Debug"}})"));
              }),
              testing::ElementsAre("Warning Logging Level Transition from Warning to Debug"));
  EXPECT_EQ(Loggers::GetInstance().GetLoggingLevel(), ILogger::Debug);
  EXPECT_TRUE(configurator->calls.empty());

  EXPECT_THAT(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})"));
              }),
              testing::ElementsAre("Warning Collect Metrics Transition from True to False"));
  EXPECT_THAT(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":0}})"));
              }),
              testing::ElementsAre("Warning Collect Metrics Period Transition from 5 to 0"));
  EXPECT_THAT(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":-5}})"));
              }),
              testing::ElementsAre("Warning Collect Metrics Period Transition from 0 to -5"));
  EXPECT_THAT(configurator->calls,
              testing::ElementsAre("SetCollectMetrics false", "SetCollectMetricsPeriod 0",
                                   "SetCollectMetricsPeriod -5"));
}

TEST_F(DynamicParametersUpdaterTest, RepeatedWrongTypedOrMissingValuesChangeNothing) {
  auto configurator = std::make_shared<RecordingConfigurator>();
  DynamicParametersUpdater updater(configurator);
  const char* documents[] = {
      R"({"SwitchMonitoringControl":{"DebugLevel":"Warning","CollectMetrics":true,"CollectMetricsPeriod":5}})",
      R"({"SwitchMonitoringControl":{"CollectMetrics":"True","CollectMetricsPeriod":"7"}})",
      R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":9000000000,"DebugLevel":3}})",
      R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":2.5}})",
      R"({"CollectMetrics":false,"DebugLevel":"Trace"})",
      R"({"SwitchMonitoringControl":[{"CollectMetrics":false}]})",
      R"([1,2,3])",
      R"("text")",
      R"(null)",
  };
  for (const char* document : documents) {
    SCOPED_TRACE(document);
    EXPECT_TRUE(Lines([&] { updater.Update(Parse(document)); }).empty());
  }
  EXPECT_TRUE(configurator->calls.empty());
  EXPECT_EQ(Loggers::GetInstance().GetLoggingLevel(), ILogger::Warning);
}

TEST_F(DynamicParametersUpdaterTest, QuieterThresholdsStillRecordTheLevelTransition) {
  auto configurator = std::make_shared<RecordingConfigurator>();
  DynamicParametersUpdater updater(configurator);
  Loggers::GetInstance().SetLoggingLevel(ILogger::Error);
  // Collection changes pass silently above Warning; the level change is logged.
  EXPECT_TRUE(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})"));
              }).empty());
  EXPECT_THAT(configurator->calls, testing::ElementsAre("SetCollectMetrics false"));
  EXPECT_THAT(Lines([&] {
                updater.Update(Parse(R"({"SwitchMonitoringControl":{"DebugLevel":"debug"}})"));
              }),
              testing::ElementsAre("Warning Logging Level Transition from Error to NoLog"));
  EXPECT_EQ(Loggers::GetInstance().GetLoggingLevel(), ILogger::NoLog);
  EXPECT_THAT(
      Lines([&] { updater.Update(Parse(R"({"SwitchMonitoringControl":{"DebugLevel":"Info"}})")); }),
      testing::ElementsAre("Warning Logging Level Transition from NoLog to Info"));
}

TEST(DynamicParametersUpdaterTextTest, LevelNames) {
  const std::pair<int, const char*> names[] = {{10, "Trace"},   {20, "Debug"}, {30, "Info"},
                                               {40, "Warning"}, {50, "Error"}, {60, "Fatal"},
                                               {100, "NoLog"},  {7, "Unknown"}};
  for (const auto& [level, name] : names) {
    EXPECT_EQ(DynamicParametersUpdater::ToString(static_cast<ILogger::Level>(level)), name);
  }
}

}  // namespace
