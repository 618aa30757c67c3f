#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace Arq::Logging::Loader {

// One entry of the "loggers" array; `configuration` is the whole entry, handed
// to the plug-in, which takes its own settings from it.
struct LoggerConfiguration {
  std::string name;
  std::string libraryPath;
  std::string libraryEntryPoint;
  std::string libraryEventHandlerEntryPoint;
  Json::Value configuration;
};

struct LoggerConfigurations {
  std::string version;
  std::vector<LoggerConfiguration> loggers;
};

class ILoggerConfigurationsReader {
 public:
  virtual ~ILoggerConfigurationsReader() = default;
  // Throws LoggingLoaderException when the file cannot be read or parsed.
  virtual LoggerConfigurations Read(const std::string& path) = 0;
  virtual LoggerConfigurations Read(const Json::Value& root) = 0;
};

class LoggerConfigurationsReader : public ILoggerConfigurationsReader {
 public:
  LoggerConfigurations Read(const std::string& path) override;
  LoggerConfigurations Read(const Json::Value& root) override;

  // The member as a string when it exists and is one, else the default.
  static std::string GetValue(const Json::Value& value, const char* key, const char* fallback);
};

}  // namespace Arq::Logging::Loader
