#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/LoggerAggregators.h"
#include "arq/logging/ILogger.h"
#include "arq/logging/ILoggerFactory.h"

namespace Arq::Logging::Loader {

// The process-wide registry of named loggers. It loads the logger plug-ins
// named by the file given as "logger_configurations_path:<file>" among the
// process's own arguments, hands out one shared logger per component name and
// broadcasts the global threshold to every logger it ever handed out. Without
// a usable configuration it hands out empty composite loggers: silent.
class Loggers {
 public:
  static Loggers& GetInstance();
  static Loggers& CreateLoggers(const std::string& path);

  void SetLoggerFactory(const std::string& path);
  void SetLoggerEventHandlerSetter(const std::string& path);

  std::shared_ptr<arq::logging::ILogger> GetLogger(const std::string& name);
  void SetLoggingLevel(arq::logging::ILogger::Level level);
  arq::logging::ILogger::Level GetLoggingLevel() const { return level_; }
  void UpdateLoggersLevel();
  void SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler);

  static std::vector<std::string> GetInputParameters();
  static std::string GetLoggerConfigurationsPath();
  // The first argument containing "logger_configurations_path:", cut at the
  // marker's length; empty when none does.
  static std::string FindLoggerConfigurationsPath(const std::vector<std::string>& arguments);

  Loggers(const Loggers&) = delete;
  Loggers& operator=(const Loggers&) = delete;

 private:
  Loggers();
  static Loggers& Instance();

  // Declaration order matters for destruction: loggers and factories made by
  // a plug-in go before the aggregators that keep its library loaded.
  std::unique_ptr<ILoggerFactoryAggregator> factoryAggregator_;
  std::unique_ptr<ILoggerEventHandlerAggregator> eventHandlerAggregator_;
  std::unique_ptr<arq::logging::ILoggerFactory> loggerFactory_;
  std::map<std::string, std::shared_ptr<arq::logging::ILogger>> loggers_;
  std::mutex mutex_;
  std::atomic<arq::logging::ILogger::Level> level_{arq::logging::ILogger::Warning};
  std::unique_ptr<ILoggingEventHandlerSetter> eventHandlerSetter_;
};

}  // namespace Arq::Logging::Loader
