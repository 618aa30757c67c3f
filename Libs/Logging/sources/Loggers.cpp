#include "Arq/Logging/Loader/Loggers.h"

#include <unistd.h>

#include <fstream>
#include <iterator>

#include "Arq/Logging/Loader/CompositeLogger.h"

namespace Arq::Logging::Loader {
namespace {

constexpr const char* kLoggerConfigurationsPathArg = "logger_configurations_path:";
constexpr std::size_t kLoggerConfigurationsPathArgLength = 27;

}  // namespace

Loggers::Loggers()
    : factoryAggregator_(LoggerFactoryAggregatorFactory::Create()),
      eventHandlerAggregator_(LoggerEventHandlerAggregatorFactory::Create()) {}

Loggers& Loggers::Instance() {
  static Loggers instance;
  return instance;
}

Loggers& Loggers::GetInstance() {
  static Loggers& instance = CreateLoggers(GetLoggerConfigurationsPath());
  return instance;
}

Loggers& Loggers::CreateLoggers(const std::string& path) {
  Loggers& instance = Instance();
  instance.SetLoggerFactory(path);
  instance.SetLoggerEventHandlerSetter(path);
  return instance;
}

void Loggers::SetLoggerFactory(const std::string& path) {
  auto factory = factoryAggregator_->Aggregate(path);
  std::lock_guard<std::mutex> lock(mutex_);
  loggerFactory_ = std::move(factory);
}

void Loggers::SetLoggerEventHandlerSetter(const std::string& path) {
  auto setter = eventHandlerAggregator_->Aggregate(path);
  std::lock_guard<std::mutex> lock(mutex_);
  eventHandlerSetter_ = std::move(setter);
}

std::shared_ptr<arq::logging::ILogger> Loggers::GetLogger(const std::string& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = loggers_.find(name);
  if (found != loggers_.end()) return found->second;
  std::shared_ptr<arq::logging::ILogger> logger;
  if (loggerFactory_) logger = loggerFactory_->Create(name);
  if (!logger) {
    logger =
        std::make_shared<CompositeLogger>(std::vector<std::shared_ptr<arq::logging::ILogger>>{});
  }
  loggers_.emplace(name, logger);
  logger->SetLevel(level_);
  return logger;
}

void Loggers::SetLoggingLevel(arq::logging::ILogger::Level level) {
  level_ = level;
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto& [name, logger] : loggers_) logger->SetLevel(level);
}

void Loggers::UpdateLoggersLevel() {
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto& [name, logger] : loggers_) logger->SetLevel(level_);
}

void Loggers::SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (eventHandlerSetter_) eventHandlerSetter_->SetEventHandler(std::move(handler));
}

std::vector<std::string> Loggers::GetInputParameters() {
  std::ifstream in("/proc/" + std::to_string(getpid()) + "/cmdline", std::ios::binary);
  const std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<std::string> arguments;
  std::size_t start = 0;
  while (start < content.size()) {
    std::size_t end = content.find('\0', start);
    if (end == std::string::npos) end = content.size();
    arguments.push_back(content.substr(start, end - start));
    start = end + 1;
  }
  return arguments;
}

std::string Loggers::GetLoggerConfigurationsPath() {
  return FindLoggerConfigurationsPath(GetInputParameters());
}

std::string Loggers::FindLoggerConfigurationsPath(const std::vector<std::string>& arguments) {
  for (const auto& argument : arguments) {
    if (argument.find(kLoggerConfigurationsPathArg) != std::string::npos) {
      // Cut at the marker's length wherever the marker stands: the marker is
      // expected to open the argument.
      return argument.size() > kLoggerConfigurationsPathArgLength
                 ? argument.substr(kLoggerConfigurationsPathArgLength)
                 : std::string();
    }
  }
  return {};
}

}  // namespace Arq::Logging::Loader
