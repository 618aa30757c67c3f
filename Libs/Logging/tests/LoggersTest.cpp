#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "Arq/Logging/Loader/CompositeLogger.h"
#include "Arq/Logging/Loader/LoggerAggregators.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "LoggingTestFiles.h"

namespace Loader = Arq::Logging::Loader;
using arq::logging::ILogger;

namespace {

using Arq::Logging::Testing::Configuration;
using Arq::Logging::Testing::ConfigurationFile;
using Arq::Logging::Testing::Lines;
using Arq::Logging::Testing::PluginEntry;
using CapturedStdout = Arq::TestSupport::CapturedOutput;

TEST(LoggersTest, WithoutConfigurationHandsOutSilentSharedLoggers) {
  auto& registry = Loader::Loggers::GetInstance();
  auto first = registry.GetLogger("NoConfigComponent");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->GetLevel(), ILogger::NoLog);
  EXPECT_EQ(registry.GetLogger("NoConfigComponent"), first);
  CapturedStdout out;
  first->Log(ILogger::Fatal, "never written", __FILE__, __LINE__);
  EXPECT_EQ(out.Text(), "");
}

TEST(LoggersTest, ConfigurationsPathIsCutAtTheMarkerLength) {
  using Loader::Loggers;
  EXPECT_EQ(
      Loggers::FindLoggerConfigurationsPath({"daemon", "logger_configurations_path:/etc/x.cfg"}),
      "/etc/x.cfg");
  // The cut ignores where the marker stands: two leading characters leave "h:" behind.
  EXPECT_EQ(Loggers::FindLoggerConfigurationsPath({"daemon", "--logger_configurations_path:/x"}),
            "h:/x");
  EXPECT_EQ(Loggers::FindLoggerConfigurationsPath({"daemon", "log_level:Info"}), "");
  EXPECT_EQ(Loggers::FindLoggerConfigurationsPath(
                {"logger_configurations_path:/a", "logger_configurations_path:/b"}),
            "/a");
  EXPECT_EQ(Loggers::FindLoggerConfigurationsPath({"logger_configurations_path:"}), "");
  const auto own = Loggers::GetInputParameters();
  ASSERT_FALSE(own.empty());
  EXPECT_NE(own.front().find("ArqLoggingTests"), std::string::npos);
}

TEST(LoggersTest, PluginLoggersWriteWholeLinesAndFollowTheRegistryLevel) {
  const ConfigurationFile file(Configuration({PluginEntry("stream")}));
  auto& registry = Loader::Loggers::CreateLoggers(file.Path());
  registry.SetLoggingLevel(ILogger::Warning);
  auto logger = registry.GetLogger("PluginComponent");
  EXPECT_EQ(registry.GetLogger("PluginComponent"), logger);
  EXPECT_EQ(logger->GetLevel(), ILogger::Warning);

  CapturedStdout out;
  logger->Log(ILogger::Info, "filtered", "Libs/x.cpp", 1);
  logger->Log(ILogger::Error, "kept message", "Libs/x.cpp", 42);
  registry.SetLoggingLevel(ILogger::Debug);
  EXPECT_EQ(logger->GetLevel(), ILogger::Debug);
  auto later = registry.GetLogger("LaterComponent");
  EXPECT_EQ(later->GetLevel(), ILogger::Debug);
  later->Log(ILogger::Debug, "from later", "Apps/y.cpp", 7);
  registry.SetLoggingLevel(ILogger::NoLog);
  logger->Log(ILogger::Fatal, "silenced", "Libs/x.cpp", 3);

  const auto lines = Lines(out.Text());
  ASSERT_EQ(lines.size(), 2u) << out.Text();
  const std::regex format(Arq::Logging::Testing::kStreamLinePattern);
  std::smatch match;
  ASSERT_TRUE(std::regex_match(lines[0], match, format)) << lines[0];
  EXPECT_EQ(match[1], "Error");
  EXPECT_EQ(match[2], "PluginComponent");
  EXPECT_EQ(match[3], "kept message");
  EXPECT_EQ(match[4], "Libs/x.cpp:42");
  ASSERT_TRUE(std::regex_match(lines[1], match, format)) << lines[1];
  EXPECT_EQ(match[1], "Debug");
  EXPECT_EQ(match[2], "LaterComponent");
  EXPECT_EQ(match[4], "Apps/y.cpp:7");
  registry.SetLoggingLevel(ILogger::Warning);
}

TEST(LoggerAggregatorTest, BadConfigurationsPrintTheirReasonAndGiveNoFactory) {
  const std::string badSymbol =
      Configuration({PluginEntry("a"), PluginEntry("b", R"(,"libraryEntryPoint":"Nope")")});
  const std::string missingLibrary =
      Configuration({R"({"name":"m","libraryPath":"/nonexistent/libnothing.so"})"});
  const std::string malformed = R"({"loggers": [ {"name": )";
  const ConfigurationFile notElfFile(std::string(200, 'x'));
  const std::string& notElf = notElfFile.Path();
  struct Case {
    const char* name;
    std::string content;
    std::string expected;  // %s stands for the configuration path
  };
  const Case cases[] = {
      {"missing symbol", badSymbol,
       std::string("Error Instantiate Factory From Library: ") + ARQ_STREAM_LOGGER_PATH +
           " Error: Undefined Symbol: Nope\n"},
      {"missing library", missingLibrary,
       "Error Loading Library: /nonexistent/libnothing.so Error: /nonexistent/libnothing.so: "
       "cannot open shared object file: No such file or directory\n"},
      {"malformed", malformed, "Could not read json resource %s\n"},
      {"10 MB of garbage", std::string(10 * 1024 * 1024, '\x7f'),
       "Could not read json resource %s\n"},
      {"a directory as library", Configuration({R"({"name":"d","libraryPath":"/tmp"})"}),
       "Error Loading Library: /tmp Error: /tmp: cannot read file data: Is a directory\n"},
      {"a file that is not ELF",
       Configuration({R"({"name":"t","libraryPath":")" + notElf + R"("})"}),
       "Error Loading Library: " + notElf + " Error: " + notElf + ": invalid ELF header\n"},
      {"empty file", "", "Could not read json resource %s\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ConfigurationFile file(c.content);
    const std::string& path = file.Path();
    auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
    CapturedStdout out;
    EXPECT_EQ(aggregator->Aggregate(path), nullptr);
    std::string expected = c.expected;
    const auto mark = expected.find("%s");
    if (mark != std::string::npos) expected.replace(mark, 2, path);
    EXPECT_EQ(out.Text(), expected);
  }
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  CapturedStdout out;
  EXPECT_EQ(aggregator->Aggregate(std::string("/nonexistent/loggers.cfg")), nullptr);
  EXPECT_EQ(out.Text(), "Could not read logger configurations file /nonexistent/loggers.cfg\n");
}

TEST(LoggerAggregatorTest, EntriesFallBackToDefaultsAndShareLibrariesByName) {
  Json::Value root;
  root["loggers"] = Json::arrayValue;
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto empty = aggregator->Aggregate(root);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->Create("x")->GetLevel(), ILogger::NoLog);

  const ConfigurationFile file(Configuration(
      {PluginEntry("same", R"(,"libraryEntryPoint":17,"output":"stdout")"),
       R"({"name":"same","libraryPath":"/nonexistent/ignored.so","level":"Error"})"}));
  Loader::LoggerConfigurationsReader reader;
  const auto configurations = reader.Read(file.Path());
  EXPECT_EQ(configurations.version, "1.0.0");
  ASSERT_EQ(configurations.loggers.size(), 2u);
  EXPECT_EQ(configurations.loggers[0].libraryEntryPoint, "ILoggingLoaderFactoryMaker");
  EXPECT_EQ(configurations.loggers[1].libraryEventHandlerEntryPoint,
            "ILoggingEventHandlerSetterMaker");
  EXPECT_EQ(configurations.loggers[1].configuration["level"].asString(), "Error");

  auto factory = aggregator->Aggregate(file.Path());
  ASSERT_NE(factory, nullptr);
  auto logger = factory->Create("Twice");
  logger->SetLevel(ILogger::Trace);
  CapturedStdout out;
  logger->Log(ILogger::Warning, "to both", "f.cpp", 1);
  logger->Log(ILogger::Error, "error line", "f.cpp", 2);
  const auto lines = Lines(out.Text());
  ASSERT_EQ(lines.size(), 3u) << out.Text();
  EXPECT_THAT(lines[0], testing::HasSubstr(" Warning Twice: to both (f.cpp:1)"));
  EXPECT_THAT(lines[1], testing::HasSubstr(" Error Twice: error line (f.cpp:2)"));
  EXPECT_THAT(lines[2], testing::HasSubstr(" Error Twice: error line (f.cpp:2)"));
}

TEST(CompositeLoggerTest, CreationFailuresAreReportedAndSkipped) {
  class Throwing : public arq::logging::ILoggerFactory {
   public:
    std::shared_ptr<ILogger> Create(const std::string&) override { throw std::runtime_error("no"); }
    arq::logging::INestedDiagnosticContext& CreateNDC() override { return context; }
    Loader::DummyNestedDiagnosticContext context;
  };
  std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> members;
  members.push_back(std::make_unique<Throwing>());
  Loader::CompositeLoggerFactory factory(std::move(members));
  CapturedStdout out;
  auto logger = factory.Create("Broken");
  EXPECT_EQ(out.Text(), "Createion Error On Logger: Broken\n");
  EXPECT_EQ(logger->GetLevel(), ILogger::NoLog);
  EXPECT_EQ(factory.CreateNDC().Print(), "");
}

TEST(StreamLoggerTest, ConcurrentWritersNeverSplitALine) {
  const ConfigurationFile file(Configuration({PluginEntry("c")}));
  // The aggregator keeps the plug-ins loaded: it outlives what they made.
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto factory = aggregator->Aggregate(file.Path());
  ASSERT_NE(factory, nullptr);
  CapturedStdout out;
  {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&factory, t] {
        auto logger = factory->Create("Thread" + std::to_string(t));
        logger->SetLevel(ILogger::Trace);
        const std::string payload(300, static_cast<char>('a' + t));
        for (int i = 0; i < 250; ++i) logger->Log(ILogger::Info, payload, "t.cpp", i);
      });
    }
    for (auto& thread : threads) thread.join();
  }
  const auto lines = Lines(out.Text());
  ASSERT_EQ(lines.size(), 1000u);
  const std::regex whole(R"(^\S+ Info Thread(\d): ([a-d])\2{299} \(t\.cpp:\d+\)$)");
  for (const auto& line : lines) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, whole)) << line;
    EXPECT_EQ(match[2].str()[0], 'a' + std::stoi(match[1]));
  }
}

}  // namespace

namespace {

TEST(LoggerConfigurationsTest, SampleFileNamesTheProjectPlugin) {
  Loader::LoggerConfigurationsReader reader;
  const auto sample = reader.Read(std::string(ARQ_SAMPLE_LOGGER_CONFIGURATIONS));
  EXPECT_EQ(sample.version, "1.0.0");
  ASSERT_EQ(sample.loggers.size(), 1u);
  const auto& entry = sample.loggers[0];
  EXPECT_EQ(entry.name, "StreamLogger");
  EXPECT_EQ(entry.libraryPath, ARQ_STREAM_LOGGER_INSTALL_PATH);
  EXPECT_EQ(entry.libraryEntryPoint, "ILoggingLoaderFactoryMaker");
  EXPECT_EQ(entry.libraryEventHandlerEntryPoint, "ILoggingEventHandlerSetterMaker");

  // The same entry, pointed at the plug-in of this build, logs to standard output.
  Json::Value root;
  root["loggers"].append(entry.configuration);
  root["loggers"][0]["libraryPath"] = ARQ_STREAM_LOGGER_PATH;
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto factory = aggregator->Aggregate(root);
  ASSERT_NE(factory, nullptr);
  auto logger = factory->Create("Sample");
  logger->SetLevel(ILogger::Trace);
  CapturedStdout out;
  logger->Log(ILogger::Trace, "sample", "etc.cpp", 1);
  EXPECT_THAT(out.Text(), testing::EndsWith(" Trace Sample: sample (etc.cpp:1)\n"));
}

}  // namespace
