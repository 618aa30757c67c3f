#include "Arq/Logging/Loader/CompositeLogger.h"

#include <iostream>

namespace Arq::Logging::Loader {

CompositeLogger::CompositeLogger(std::vector<std::shared_ptr<arq::logging::ILogger>> loggers)
    : loggers_(std::move(loggers)) {}

void CompositeLogger::Log(Level level, const std::string& message, const char* file,
                          unsigned long line) {
  for (const auto& logger : loggers_) logger->Log(level, message, file, line);
}

void CompositeLogger::SetLevel(Level level) {
  for (const auto& logger : loggers_) logger->SetLevel(level);
}

arq::logging::ILogger::Level CompositeLogger::GetLevel() const {
  return loggers_.empty() ? NoLog : loggers_.front()->GetLevel();
}

CompositeLoggerFactory::CompositeLoggerFactory(
    std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> factories)
    : factories_(std::move(factories)) {}

std::shared_ptr<arq::logging::ILogger> CompositeLoggerFactory::Create(const std::string& name) {
  std::vector<std::shared_ptr<arq::logging::ILogger>> loggers;
  for (const auto& factory : factories_) {
    try {
      auto logger = factory->Create(name);
      if (logger) loggers.push_back(std::move(logger));
    } catch (...) {
      std::cout << "Createion Error On Logger: " << name << std::endl;
    }
  }
  return std::make_shared<CompositeLogger>(std::move(loggers));
}

CompositeEventHandlerSetter::CompositeEventHandlerSetter(
    std::vector<ILoggingEventHandlerSetter*> setters)
    : setters_(std::move(setters)) {}

void CompositeEventHandlerSetter::SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler) {
  for (auto* setter : setters_) setter->SetEventHandler(handler);
}

}  // namespace Arq::Logging::Loader
