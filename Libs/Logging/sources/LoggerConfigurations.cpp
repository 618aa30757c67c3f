#include "Arq/Logging/Loader/LoggerConfigurations.h"

#include <json/reader.h>

#include <fstream>
#include <sstream>

#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"
#include "Arq/Logging/Loader/LoggingLoaderException.h"

namespace Arq::Logging::Loader {

LoggerConfigurations LoggerConfigurationsReader::Read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw LoggingLoaderException("Could not read logger configurations file " + path);
  std::ostringstream text;
  text << in.rdbuf();
  const std::string content = text.str();

  Json::CharReaderBuilder builder;
  builder["collectComments"] = true;
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  std::string errors;
  if (!reader->parse(content.data(), content.data() + content.size(), &root, &errors)) {
    throw LoggingLoaderException("Could not read json resource " + path);
  }
  return Read(root);
}

LoggerConfigurations LoggerConfigurationsReader::Read(const Json::Value& root) {
  LoggerConfigurations configurations;
  configurations.version = GetValue(root, "version", "1.0.0");
  if (!root.isObject()) return configurations;
  const Json::Value& loggers = root["loggers"];
  if (!loggers.isArray()) return configurations;
  for (const auto& entry : loggers) {
    LoggerConfiguration configuration;
    configuration.name = GetValue(entry, "name", "");
    configuration.libraryPath = GetValue(entry, "libraryPath", "");
    configuration.libraryEntryPoint =
        GetValue(entry, "libraryEntryPoint", kDefaultLoggerFactoryMaker);
    configuration.libraryEventHandlerEntryPoint =
        GetValue(entry, "libraryEventHandlerEntryPoint", kDefaultEventHandlerSetterMaker);
    configuration.configuration = entry;
    configurations.loggers.push_back(std::move(configuration));
  }
  return configurations;
}

std::string LoggerConfigurationsReader::GetValue(const Json::Value& value, const char* key,
                                                 const char* fallback) {
  if (!value.isObject()) return fallback;
  const Json::Value* member = value.find(key, key + std::char_traits<char>::length(key));
  return member != nullptr && member->isString() ? member->asString() : fallback;
}

}  // namespace Arq::Logging::Loader
