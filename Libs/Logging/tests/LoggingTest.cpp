#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Arq/Logging/Loader/CompositeLogger.h"
#include "Arq/Logging/Loader/LoggerAggregators.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

namespace Loader = Arq::Logging::Loader;
using arq::logging::ILogger;
using Arq::TestSupport::CapturedOutput;

const std::string kStream = ARQ_STREAM_LOGGER_PATH;
const std::string kFaulty = ARQ_FAULTY_LOGGER_PATH;

// A logger configurations file in a private folder, removed with it.
class ConfigurationFile {
 public:
  explicit ConfigurationFile(const std::string& content) : path(dir.File("loggers.cfg")) {
    Arq::TestSupport::WriteFile(path, content);
  }
  Arq::TestSupport::TempDir dir{"arq-logging"};
  std::string path;
};

// One "loggers" entry; `extra` is appended to the members, starting with a comma.
std::string Entry(const std::string& name, const std::string& extra = "",
                  const std::string& library = kStream) {
  return R"({"name":")" + name + R"(","libraryPath":")" + library + "\"" + extra + "}";
}

std::string Configuration(const std::vector<std::string>& entries) {
  std::string text = R"({"version":"1.0.0", /* comments are allowed */ "loggers":[)";
  for (size_t i = 0; i < entries.size(); ++i) text += (i ? "," : "") + entries[i];
  return text + "]}";
}

// "<level> <logger>: <message> (<file:line>)" of each line the stream logger
// wrote ("<UTC time with milliseconds> " before it), or the line as it stands.
std::vector<std::string> Lines(const std::string& text) {
  const std::regex format(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z (\w+ \w+: .* \([^()]*\))$)");
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    std::smatch match;
    lines.push_back(std::regex_match(line, match, format) ? match[1].str() : "raw: " + line);
  }
  return lines;
}

TEST(LoggersTest, ConfigurationsPathIsCutAtTheMarkerLength) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"daemon", "logger_configurations_path:/etc/x.cfg"}, "/etc/x.cfg"},
      // The cut ignores where the marker stands: two leading characters leave "h:" behind.
      {{"daemon", "--logger_configurations_path:/x"}, "h:/x"},
      {{"daemon", "log_level:Info"}, ""},
      {{"logger_configurations_path:/a", "logger_configurations_path:/b"}, "/a"},
      {{"logger_configurations_path:"}, ""}};
  for (const auto& [arguments, path] : cases) {
    EXPECT_EQ(Loader::Loggers::FindLoggerConfigurationsPath(arguments), path);
  }
  const auto own = Loader::Loggers::GetInputParameters();
  ASSERT_FALSE(own.empty());
  EXPECT_THAT(own.front(), testing::HasSubstr("ArqLoggingTests"));
}

// The registry hands out one shared plug-in logger per name at its level, and
// passes an event handler to every plug-in setter; once a configuration
// cannot be read, loggers are silent and handlers go nowhere. The test sets
// every state it needs itself: the registry is one for the whole process.
TEST(LoggersTest, RegistryServesPluginLoggersAndEventHandlersFromItsFile) {
  auto& registry = Loader::Loggers::GetInstance();
  {
    const ConfigurationFile file(Configuration({Entry("stream")}));
    Loader::Loggers::CreateLoggers(file.path);
  }
  registry.SetLoggingLevel(ILogger::Warning);
  auto logger = registry.GetLogger("PluginComponent");
  EXPECT_EQ(registry.GetLogger("PluginComponent"), logger);
  EXPECT_EQ(logger->GetLevel(), ILogger::Warning);
  {
    CapturedOutput out;
    logger->Log(ILogger::Info, "filtered", "Libs/x.cpp", 1);
    logger->Log(ILogger::Error, "kept message", "Libs/x.cpp", 42);
    registry.SetLoggingLevel(ILogger::Debug);
    EXPECT_EQ(logger->GetLevel(), ILogger::Debug);
    auto later = registry.GetLogger("LaterComponent");
    later->Log(ILogger::Debug, "from later", "Apps/y.cpp", 7);
    registry.SetLoggingLevel(ILogger::NoLog);
    logger->Log(ILogger::Fatal, "silenced", "Libs/x.cpp", 3);
    EXPECT_THAT(Lines(out.Text()),
                testing::ElementsAre("Error PluginComponent: kept message (Libs/x.cpp:42)",
                                     "Debug LaterComponent: from later (Apps/y.cpp:7)"));
  }

  // Two entries, one library: its single setter is reached once per entry.
  class Handler : public Loader::ILoggingEventHandler {};
  const auto handler = std::make_shared<Handler>();
  {
    const ConfigurationFile file(Configuration({Entry("first", R"(,"mode":"null")", kFaulty),
                                                Entry("second", R"(,"mode":"null")", kFaulty)}));
    Loader::Loggers::CreateLoggers(file.path);
  }
  void* plugin = dlopen(kFaulty.c_str(), RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(plugin, nullptr);
  const auto calls = reinterpret_cast<int (*)()>(dlsym(plugin, "ArqFaultyPluginHandlerCalls"));
  const auto last =
      reinterpret_cast<const void* (*)()>(dlsym(plugin, "ArqFaultyPluginLastHandler"));
  const int before = calls();
  registry.SetEventHandler(handler);
  EXPECT_EQ(calls(), before + 2);
  EXPECT_EQ(last(), handler.get());
  {
    CapturedOutput out;
    Loader::Loggers::CreateLoggers("/nonexistent/loggers.cfg");
    EXPECT_EQ(out.Text(),
              "Could not read logger configurations file /nonexistent/loggers.cfg\n"
              "Could not read logger configurations file /nonexistent/loggers.cfg\n");
  }
  registry.SetEventHandler(std::make_shared<Handler>());
  EXPECT_EQ(calls(), before + 2);
  EXPECT_EQ(last(), handler.get());
  dlclose(plugin);
  auto silent = registry.GetLogger("WithoutConfiguration");
  EXPECT_EQ(registry.GetLogger("WithoutConfiguration"), silent);
  EXPECT_EQ(silent->GetLevel(), ILogger::NoLog);
  CapturedOutput out;
  silent->Log(ILogger::Fatal, "never written", __FILE__, __LINE__);
  EXPECT_EQ(out.Text(), "");
  registry.SetLoggingLevel(ILogger::Warning);
}

// Whatever is wrong with a configuration, the aggregation prints why on
// standard output and gives no factory (or an empty one, when there is
// simply nothing to load); it never crashes. (A missing file: the registry test.)
TEST(LoggerAggregatorTest, BadConfigurationsPrintTheirReason) {
  // An entry whose path is not a string hands "" to dlopen, which gives the
  // program itself: the program exports no maker.
  const std::string noMaker =
      "Error Instantiate Factory From Library:  Error: Undefined Symbol: "
      "ILoggingLoaderFactoryMaker\n";
  const std::string missing = "/nonexistent/libnothing.so";
  const ConfigurationFile notElf(std::string(200, 'x'));
  const struct {
    const char* name;
    std::string content;
    bool factory;         // an empty composite factory, else null
    std::string printed;  // %s stands for the configuration path
  } cases[] = {
      {"missing symbol", Configuration({Entry("a"), Entry("b", R"(,"libraryEntryPoint":"Nope")")}),
       false,
       "Error Instantiate Factory From Library: " + kStream + " Error: Undefined Symbol: Nope\n"},
      {"entry point defined only outside the plug-in",
       Configuration({Entry("stream", R"(,"libraryEntryPoint":"getpid")")}), false,
       "Error Instantiate Factory From Library: " + kStream +
           " Error: Symbol Not Defined By The Library: getpid\n"},
      {"missing library", Configuration({R"({"name":"m","libraryPath":")" + missing + "\"}"}),
       false,
       "Error Loading Library: " + missing + " Error: " + missing +
           ": cannot open shared object file: No such file or directory\n"},
      {"a directory as library", Configuration({R"({"name":"d","libraryPath":"/tmp"})"}), false,
       "Error Loading Library: /tmp Error: /tmp: cannot read file data: Is a directory\n"},
      {"a file that is not ELF",
       Configuration({R"({"name":"t","libraryPath":")" + notElf.path + R"("})"}), false,
       "Error Loading Library: " + notElf.path + " Error: " + notElf.path +
           ": invalid ELF header\n"},
      {"malformed", R"({"loggers": [ {"name": )", false, "Could not read json resource %s\n"},
      {"10 MB of garbage", std::string(10 * 1024 * 1024, '\x7f'), false,
       "Could not read json resource %s\n"},
      {"empty file", "", false, "Could not read json resource %s\n"},
      {"entry is a number", R"({"loggers": [5]})", false, noMaker},
      {"members of the wrong types",
       R"({"loggers": [{"name": 5, "libraryPath": 7, "libraryEntryPoint": true}]})", false,
       noMaker},
      {"loggers is a string", R"({"loggers": "StreamLogger"})", true, ""},
      {"loggers is an object", R"({"loggers": {"name": "x"}})", true, ""},
      {"root is an array", R"([{"name": "x"}])", true, ""},
      {"version is a number", R"({"version": 2, "loggers": []})", true, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ConfigurationFile file(c.content);
    auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
    CapturedOutput out;
    auto factory = aggregator->Aggregate(file.path);
    std::string expected = c.printed;
    const auto mark = expected.find("%s");
    if (mark != std::string::npos) expected.replace(mark, 2, file.path);
    EXPECT_EQ(out.Text(), expected);
    ASSERT_EQ(factory != nullptr, c.factory);
    if (factory) {
      EXPECT_EQ(factory->Create("Anyone")->GetLevel(), ILogger::NoLog);
    }
  }
}

// Entries fall back to the default entry points and share one library by
// name (the first entry's path wins); the sample file names the project's
// plug-in; a plug-in that fails costs only its own member.
TEST(LoggerAggregatorTest, EntriesFallBackShareLibrariesAndFailAlone) {
  Loader::LoggerConfigurationsReader reader;
  const auto sample = reader.Read(std::string(ARQ_SAMPLE_LOGGER_CONFIGURATIONS));
  EXPECT_EQ(sample.version, "1.0.0");
  ASSERT_EQ(sample.loggers.size(), 1u);
  EXPECT_EQ(sample.loggers[0].name, "StreamLogger");
  EXPECT_EQ(sample.loggers[0].libraryPath, ARQ_STREAM_LOGGER_INSTALL_PATH);
  EXPECT_EQ(sample.loggers[0].libraryEntryPoint, "ILoggingLoaderFactoryMaker");
  EXPECT_EQ(sample.loggers[0].libraryEventHandlerEntryPoint, "ILoggingEventHandlerSetterMaker");

  const ConfigurationFile file(
      Configuration({Entry("throwing", "", kFaulty), Entry("same", R"(,"libraryEntryPoint":17)"),
                     R"({"name":"same","libraryPath":"/nonexistent/ignored.so","level":"Error"})",
                     Entry("none", R"(,"mode":"null")", kFaulty)}));
  const auto configurations = reader.Read(file.path);
  ASSERT_EQ(configurations.loggers.size(), 4u);
  EXPECT_EQ(configurations.loggers[1].libraryEntryPoint, "ILoggingLoaderFactoryMaker");
  EXPECT_EQ(configurations.loggers[2].configuration["level"].asString(), "Error");
  CapturedOutput out;
  // The aggregator keeps the plug-ins loaded: it outlives what they made.
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto factory = aggregator->Aggregate(file.path);
  ASSERT_NE(factory, nullptr);
  auto logger = factory->Create("Twice");
  logger->SetLevel(ILogger::Info);
  EXPECT_EQ(logger->GetLevel(), ILogger::Info);
  logger->Log(ILogger::Debug, "filtered", "f.cpp", 1);
  logger->Log(ILogger::Error, "to both", "f.cpp", 2);
  // The level in the second entry belongs to the first entry's plug-in: unused.
  EXPECT_THAT(Lines(out.Text()), testing::ElementsAre("raw: Createion Error On Logger: Twice",
                                                      "Error Twice: to both (f.cpp:2)",
                                                      "Error Twice: to both (f.cpp:2)"));
  EXPECT_EQ(&factory->CreateNDC(), &factory->CreateNDC());
  EXPECT_EQ(factory->CreateNDC().CloneStack().size(), 0u);
  EXPECT_EQ(factory->CreateNDC().Print(), "");
}

// The entry chooses the stream logger's output and an own minimum level.
TEST(StreamLoggerTest, EntryChoosesTheStreamAndAMinimumLevel) {
  const struct {
    std::string extra;  // members added to the entry
    ILogger::Level reported;
    std::vector<std::string> out, err;
  } cases[] = {
      {"", ILogger::Debug, {"Warning w", "Error e"}, {}},
      {R"(,"output":"stderr")", ILogger::Debug, {}, {"Warning w", "Error e"}},
      {R"(,"output":"file")", ILogger::Debug, {"Warning w", "Error e"}, {}},
      {R"(,"output":"stderr","level":"Error")", ILogger::Error, {}, {"Error e"}},
      {R"(,"level":"NoLog")", ILogger::NoLog, {}, {}},
      {R"(,"level":30)", ILogger::Debug, {"Warning w", "Error e"}, {}},  // wrong type: Trace
  };
  const auto summary = [](const std::string& text) {
    std::vector<std::string> result;
    for (auto line : Lines(text)) {
      EXPECT_THAT(line, testing::MatchesRegex(R"(\w+ Chooser: \w \(s\.cpp:9\))"));
      result.push_back(line.substr(0, line.find(' ')) + " " + line.substr(line.find(": ") + 2, 1));
    }
    return result;
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.extra);
    const ConfigurationFile file(Configuration({Entry("s", c.extra)}));
    auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
    auto factory = aggregator->Aggregate(file.path);
    ASSERT_NE(factory, nullptr);
    auto logger = factory->Create("Chooser");
    logger->SetLevel(ILogger::Debug);
    EXPECT_EQ(logger->GetLevel(), c.reported);
    CapturedOutput out(1);
    CapturedOutput err(2);
    for (const auto level : {ILogger::Trace, ILogger::Warning, ILogger::Error}) {
      logger->Log(level,
                  level == ILogger::Trace     ? "t"
                  : level == ILogger::Warning ? "w"
                                              : "e",
                  "s.cpp", 9);
    }
    EXPECT_EQ(summary(out.Text()), c.out);
    EXPECT_EQ(summary(err.Text()), c.err);
  }
}

TEST(StreamLoggerTest, ConcurrentWritersNeverSplitALine) {
  const ConfigurationFile file(Configuration({Entry("c")}));
  auto aggregator = Loader::LoggerFactoryAggregatorFactory::Create();
  auto factory = aggregator->Aggregate(file.path);
  ASSERT_NE(factory, nullptr);
  CapturedOutput out;
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
  const std::regex whole(R"(^Info Thread(\d): ([a-d])\2{299} \(t\.cpp:\d+\)$)");
  for (const auto& line : lines) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, whole)) << line;
    EXPECT_EQ(match[2].str()[0], 'a' + std::stoi(match[1]));
  }
}

}  // namespace
