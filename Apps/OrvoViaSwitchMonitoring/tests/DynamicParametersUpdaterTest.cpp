#include <gtest/gtest.h>
#include <json/reader.h>

#include <memory>
#include <regex>
#include <sstream>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Monitoring/MonitoringProcessor.h"
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
    calls.push_back(std::string("Collect ") + (value ? "true" : "false"));
    collect = value;
  }
  bool IsCollectMetrics() override { return collect; }
  void SetCollectMetricsPeriod(int seconds) override {
    calls.push_back("Period " + std::to_string(seconds));
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
// One updater meets the documents in turn; each step gives the updater's log
// lines, the setter calls and the registry's level after it.
TEST(DynamicParametersUpdaterTest, ChangesAreLoggedAndAppliedAndNothingElseIs) {
  Arq::TestSupport::TempDir dir;
  Arq::TestSupport::WriteFile(dir.File("loggers.cfg"),
                              std::string(R"({"loggers":[{"name":"s","libraryPath":")") +
                                  ARQ_STREAM_LOGGER_PATH + "\"}]})");
  // The first GetInstance() reads the process arguments; this file replaces them.
  Loggers::GetInstance();
  Loggers::CreateLoggers(dir.File("loggers.cfg"));
  Loggers::GetInstance().SetLoggingLevel(ILogger::Warning);
  auto configurator = std::make_shared<RecordingConfigurator>();
  DynamicParametersUpdater updater(configurator);
  const std::string level = "Warning Logging Level Transition from ";
  const std::string collect = "Warning Collect Metrics Transition from ";
  const std::string period = "Warning Collect Metrics Period Transition from ";
  const std::string unchanged[] = {
      R"({"SwitchMonitoringControl":{"DebugLevel":"Debug","CollectMetrics":false,"CollectMetricsPeriod":-5}})",
      R"({"SwitchMonitoringControl":{"CollectMetrics":"True","CollectMetricsPeriod":"7"}})",
      R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":9000000000,"DebugLevel":3}})",
      R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":2.5}})",
      R"({"CollectMetrics":true,"DebugLevel":"Trace"})",
      R"({"SwitchMonitoringControl":[{"CollectMetrics":true}]})",
      R"([1,2,3])",
      R"(null)"};
  struct Step {
    std::string document;  // the members of "SwitchMonitoringControl", or a whole document
    std::vector<std::string> lines, calls;
    ILogger::Level level;
  };
  std::vector<Step> steps{
      {R"("DebugLevel":"Debug")", {level + "Warning to Debug"}, {}, ILogger::Debug},
      {R"("CollectMetrics":false)", {collect + "True to False"}, {"Collect false"}, ILogger::Debug},
      {R"("CollectMetricsPeriod":0)", {period + "5 to 0"}, {"Period 0"}, ILogger::Debug},
      {R"("CollectMetricsPeriod":-5)", {period + "0 to -5"}, {"Period -5"}, ILogger::Debug}};
  for (const auto& document : unchanged) steps.push_back({document, {}, {}, ILogger::Debug});
  // Above Warning, collection changes pass silently; level changes never do.
  steps.push_back({R"("DebugLevel":"Error")", {level + "Debug to Error"}, {}, ILogger::Error});
  steps.push_back({R"("CollectMetrics":true)", {}, {"Collect true"}, ILogger::Error});
  steps.push_back({R"("DebugLevel":"debug")", {level + "Error to NoLog"}, {}, ILogger::NoLog});
  steps.push_back({R"("DebugLevel":"Fatal")", {level + "NoLog to Fatal"}, {}, ILogger::Fatal});
  steps.push_back({R"("DebugLevel":"Trace")", {level + "Fatal to Trace"}, {}, ILogger::Trace});
  steps.push_back({R"("DebugLevel":"Info")", {level + "Trace to Info"}, {}, ILogger::Info});
  const std::regex format(R"(^\S+ (\w+) DynamicParametersUpdater: (.*) \(\S+:\d+\)$)");
  for (const auto& step : steps) {
    SCOPED_TRACE(step.document);
    const bool whole =
        step.document[0] == '{' || step.document[0] == '[' || step.document[0] == 'n';
    Arq::TestSupport::CapturedOutput out;
    configurator->calls.clear();
    updater.Update(
        Parse(whole ? step.document : R"({"SwitchMonitoringControl":{)" + step.document + "}}"));
    std::vector<std::string> messages;
    std::istringstream lines(out.Text());
    for (std::string line; std::getline(lines, line);) {
      std::smatch match;
      messages.push_back(std::regex_match(line, match, format)
                             ? match[1].str() + " " + match[2].str()
                             : "unexpected: " + line);
    }
    EXPECT_EQ(messages, step.lines);
    EXPECT_EQ(configurator->calls, step.calls);
    EXPECT_EQ(Loggers::GetInstance().GetLoggingLevel(), step.level);
    // The level in force is published with the collector's health.
    EXPECT_EQ(Arq::Monitoring::MonitoringProcessor::monitoringValues.daemon.Value().logLevel,
              static_cast<int>(step.level));
  }
  EXPECT_EQ(DynamicParametersUpdater::ToString(static_cast<ILogger::Level>(7)), "Unknown");
}

}  // namespace
