#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "Arq/Logging/Loader/CompositeLogger.h"
#include "Arq/Logging/Loader/LoggerAggregators.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "LoggingTestFiles.h"

namespace {

namespace Loader = Arq::Logging::Loader;
using arq::logging::ILogger;
using Arq::Logging::Testing::Configuration;
using Arq::Logging::Testing::ConfigurationFile;
using Arq::Logging::Testing::Lines;
using Arq::Logging::Testing::PluginEntry;
using Arq::TestSupport::CapturedOutput;

const std::string kFaulty = ARQ_FAULTY_LOGGER_PATH;

// The faulty plug-in's own view of the handlers it was given.
struct FaultyPluginProbe {
  FaultyPluginProbe() : handle(dlopen(kFaulty.c_str(), RTLD_NOW | RTLD_NOLOAD)) {}
  ~FaultyPluginProbe() {
    if (handle != nullptr) dlclose(handle);
  }
  int Calls() const {
    return reinterpret_cast<int (*)()>(dlsym(handle, "ArqFaultyPluginHandlerCalls"))();
  }
  const void* LastHandler() const {
    return reinterpret_cast<const void* (*)()>(dlsym(handle, "ArqFaultyPluginLastHandler"))();
  }
  void* handle;
};

TEST(LoaderFaultsTest, WronglyTypedConfigurationsNeverCrash) {
  // An entry whose path is not a string hands "" to dlopen, which gives the
  // program itself: the program exports no maker.
  const std::string noMaker =
      "Error Instantiate Factory From Library:  Error: Undefined Symbol: "
      "ILoggingLoaderFactoryMaker\n";
  struct Case {
    const char* name;
    std::string content;
    bool factory;         // a (possibly empty) composite factory, else null
    std::string printed;  // standard output of the aggregation
  };
  const Case cases[] = {
      {"loggers is a string", R"({"loggers": "StreamLogger"})", true, ""},
      {"loggers is an object", R"({"loggers": {"name": "x"}})", true, ""},
      {"root is an array", R"([{"name": "x"}])", true, ""},
      {"root is null", "null", true, ""},
      {"version is a number", R"({"version": 2, "loggers": []})", true, ""},
      {"entry is a number", R"({"loggers": [5]})", false, noMaker},
      {"members of the wrong types",
       R"({"loggers": [{"name": 5, "libraryPath": 7, "libraryEntryPoint": true}]})", false,
       noMaker},
      {"entry point defined only outside the plug-in",
       Configuration({PluginEntry("stream", R"(,"libraryEntryPoint":"getpid")")}), false,
       "Error Instantiate Factory From Library: " + std::string(ARQ_STREAM_LOGGER_PATH) +
           " Error: Symbol Not Defined By The Library: getpid\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ConfigurationFile file(c.content);
    auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
    CapturedOutput out;
    auto factory = aggregator->Aggregate(file.Path());
    EXPECT_EQ(out.Text(), c.printed);
    ASSERT_EQ(factory != nullptr, c.factory);
    if (factory) {
      EXPECT_EQ(factory->Create("Anyone")->GetLevel(), ILogger::NoLog);
    }
  }
}

TEST(LoaderFaultsTest, PluginFailuresCostOnlyTheirOwnMember) {
  const ConfigurationFile file(
      Configuration({PluginEntry("throwing", "", kFaulty), PluginEntry("stream"),
                     PluginEntry("none", R"(,"mode":"null")", kFaulty)}));
  CapturedOutput out;
  // The aggregator keeps the plug-ins loaded: it outlives what they made.
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto factory = aggregator->Aggregate(file.Path());
  ASSERT_NE(factory, nullptr);
  EXPECT_EQ(out.Text(), "");

  auto logger = factory->Create("Component");
  logger->SetLevel(ILogger::Info);
  EXPECT_EQ(logger->GetLevel(), ILogger::Info);
  logger->Log(ILogger::Info, "still written", "Libs/a.cpp", 3);
  const auto lines = Lines(out.Text());
  ASSERT_EQ(lines.size(), 2u) << out.Text();
  EXPECT_EQ(lines[0], "Createion Error On Logger: Component");
  std::smatch match;
  ASSERT_TRUE(
      std::regex_match(lines[1], match, std::regex(Arq::Logging::Testing::kStreamLinePattern)))
      << lines[1];
  EXPECT_EQ(match[2], "Component");
  EXPECT_EQ(match[3], "still written");
  EXPECT_EQ(&factory->CreateNDC(), &factory->CreateNDC());
  EXPECT_EQ(factory->CreateNDC().CloneStack().size(), 0u);
}

TEST(LoaderFaultsTest, RegistryPassesTheEventHandlerToEveryPluginSetter) {
  class Handler : public Loader::ILoggingEventHandler {};
  const auto handler = std::make_shared<Handler>();
  auto& registry = Loader::Loggers::GetInstance();
  {
    // Two entries, one library: its single setter is reached once per entry.
    const ConfigurationFile file(
        Configuration({PluginEntry("first", R"(,"mode":"null")", kFaulty),
                       PluginEntry("second", R"(,"mode":"null")", kFaulty)}));
    Loader::Loggers::CreateLoggers(file.Path());
  }
  FaultyPluginProbe probe;
  ASSERT_NE(probe.handle, nullptr);
  const int before = probe.Calls();
  registry.SetEventHandler(handler);
  EXPECT_EQ(probe.Calls(), before + 2);
  EXPECT_EQ(probe.LastHandler(), handler.get());

  // Without a usable file there is no setter: the handler goes nowhere.
  {
    CapturedOutput out;
    Loader::Loggers::CreateLoggers("/nonexistent/loggers.cfg");
    EXPECT_EQ(out.Text(),
              "Could not read logger configurations file /nonexistent/loggers.cfg\n"
              "Could not read logger configurations file /nonexistent/loggers.cfg\n");
  }
  registry.SetEventHandler(std::make_shared<Handler>());
  EXPECT_EQ(probe.Calls(), before + 2);
  EXPECT_EQ(probe.LastHandler(), handler.get());
  EXPECT_EQ(registry.GetLogger("AfterFailure")->GetLevel(), ILogger::NoLog);
}

TEST(LoaderFaultsTest, CompositeSetterReachesMembersInOrder) {
  class Recording : public Loader::ILoggingEventHandlerSetter {
   public:
    Recording(std::vector<std::pair<int, const void*>>& calls, int id) : calls_(calls), id_(id) {}
    void SetEventHandler(std::shared_ptr<Loader::ILoggingEventHandler> handler) override {
      calls_.emplace_back(id_, handler.get());
    }

   private:
    std::vector<std::pair<int, const void*>>& calls_;
    int id_;
  };
  std::vector<std::pair<int, const void*>> calls;
  Recording first(calls, 1);
  Recording second(calls, 2);
  Loader::CompositeEventHandlerSetter setter({&first, &second});
  auto handler = std::make_shared<Loader::ILoggingEventHandler>();
  setter.SetEventHandler(handler);
  const std::vector<std::pair<int, const void*>> expected{{1, handler.get()}, {2, handler.get()}};
  EXPECT_EQ(calls, expected);
}

TEST(StreamLoggerTest, EntryChoosesTheStreamAndAMinimumLevel) {
  struct Case {
    const char* name;
    std::string extra;  // members added to the entry
    ILogger::Level reported;
    std::vector<std::string> out;  // "<level> <message>" of each line
    std::vector<std::string> err;
  };
  const Case cases[] = {
      {"defaults", "", ILogger::Debug, {"Warning w", "Error e"}, {}},
      {"standard error", R"(,"output":"stderr")", ILogger::Debug, {}, {"Warning w", "Error e"}},
      {"unknown output is standard output",
       R"(,"output":"file")",
       ILogger::Debug,
       {"Warning w", "Error e"},
       {}},
      {"own minimum", R"(,"output":"stderr","level":"Error")", ILogger::Error, {}, {"Error e"}},
      {"own minimum NoLog", R"(,"level":"NoLog")", ILogger::NoLog, {}, {}},
      {"level of the wrong type is Trace",
       R"(,"level":30)",
       ILogger::Debug,
       {"Warning w", "Error e"},
       {}},
  };
  const std::regex format(Arq::Logging::Testing::kStreamLinePattern);
  const auto summary = [&format](const std::string& text) {
    std::vector<std::string> result;
    for (const auto& line : Lines(text)) {
      std::smatch match;
      EXPECT_TRUE(std::regex_match(line, match, format)) << line;
      EXPECT_EQ(match[2], "Chooser");
      EXPECT_EQ(match[4], "s.cpp:9");
      result.push_back(match[1].str() + " " + match[3].str());
    }
    return result;
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ConfigurationFile file(Configuration({PluginEntry("s", c.extra)}));
    // The aggregator keeps the plug-ins loaded: it outlives what they made.
    auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
    auto factory = aggregator->Aggregate(file.Path());
    ASSERT_NE(factory, nullptr);
    auto logger = factory->Create("Chooser");
    logger->SetLevel(ILogger::Debug);
    EXPECT_EQ(logger->GetLevel(), c.reported);
    CapturedOutput out(1);
    CapturedOutput err(2);
    logger->Log(ILogger::Trace, "t", "s.cpp", 9);
    logger->Log(ILogger::Warning, "w", "s.cpp", 9);
    logger->Log(ILogger::Error, "e", "s.cpp", 9);
    EXPECT_EQ(summary(out.Text()), c.out);
    EXPECT_EQ(summary(err.Text()), c.err);
  }
}

}  // namespace
