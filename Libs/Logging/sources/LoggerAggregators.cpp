#include "Arq/Logging/Loader/LoggerAggregators.h"

#include <exception>
#include <iostream>

#include "Arq/Logging/Loader/CompositeLogger.h"

namespace Arq::Logging::Loader {
namespace {

// Runs one aggregation; any failure is printed on standard output (the log
// does not exist yet) and gives a null result.
template <typename Result, typename Build>
std::unique_ptr<Result> Guarded(Build build) {
  try {
    return build();
  } catch (const std::exception& error) {
    std::cout << error.what() << std::endl;
  } catch (...) {
    std::cout << "Something Caught !" << std::endl;
  }
  return nullptr;
}

}  // namespace

LoggerFactoryAggregator::LoggerFactoryAggregator(
    std::unique_ptr<ILoggerConfigurationsReader> reader)
    : reader_(std::move(reader)) {}

LoggerFactoryAggregator::~LoggerFactoryAggregator() = default;

std::unique_ptr<arq::logging::ILoggerFactory> LoggerFactoryAggregator::Aggregate(
    const std::string& path) {
  return Guarded<arq::logging::ILoggerFactory>([&] { return Aggregate(reader_->Read(path)); });
}

std::unique_ptr<arq::logging::ILoggerFactory> LoggerFactoryAggregator::Aggregate(
    const Json::Value& root) {
  return Guarded<arq::logging::ILoggerFactory>([&] { return Aggregate(reader_->Read(root)); });
}

std::unique_ptr<arq::logging::ILoggerFactory> LoggerFactoryAggregator::Aggregate(
    const LoggerConfigurations& configurations) {
  return Guarded<arq::logging::ILoggerFactory>(
      [&]() -> std::unique_ptr<arq::logging::ILoggerFactory> {
        return std::make_unique<CompositeLoggerFactory>(LoadLoggerFactories(configurations));
      });
}

std::vector<std::unique_ptr<arq::logging::ILoggerFactory>>
LoggerFactoryAggregator::LoadLoggerFactories(const LoggerConfigurations& configurations) {
  std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> factories;
  for (const auto& configuration : configurations.loggers) {
    auto loader = libraries_.LoadLibrary(configuration);
    ILoggingLoaderFactory* maker = loader->Instantiate(configuration.libraryEntryPoint);
    // A plug-in that declines the entry (no maker, no factory) adds no member;
    // a null member would crash every later Create.
    arq::logging::ILoggerFactory* factory =
        maker != nullptr ? maker->CreateLoggerFactory(configuration.configuration) : nullptr;
    if (factory != nullptr) factories.emplace_back(factory);
    libraries_.Keep(configuration, std::move(loader));
  }
  return factories;
}

LoggerEventHandlerAggregator::LoggerEventHandlerAggregator(
    std::unique_ptr<ILoggerConfigurationsReader> reader)
    : reader_(std::move(reader)) {}

LoggerEventHandlerAggregator::~LoggerEventHandlerAggregator() = default;

std::unique_ptr<ILoggingEventHandlerSetter> LoggerEventHandlerAggregator::Aggregate(
    const std::string& path) {
  return Guarded<ILoggingEventHandlerSetter>([&] { return Aggregate(reader_->Read(path)); });
}

std::unique_ptr<ILoggingEventHandlerSetter> LoggerEventHandlerAggregator::Aggregate(
    const Json::Value& root) {
  return Guarded<ILoggingEventHandlerSetter>([&] { return Aggregate(reader_->Read(root)); });
}

std::unique_ptr<ILoggingEventHandlerSetter> LoggerEventHandlerAggregator::Aggregate(
    const LoggerConfigurations& configurations) {
  return Guarded<ILoggingEventHandlerSetter>([&]() -> std::unique_ptr<ILoggingEventHandlerSetter> {
    return std::make_unique<CompositeEventHandlerSetter>(
        LoadLoggerEventHandlerSetters(configurations));
  });
}

std::vector<ILoggingEventHandlerSetter*>
LoggerEventHandlerAggregator::LoadLoggerEventHandlerSetters(
    const LoggerConfigurations& configurations) {
  std::vector<ILoggingEventHandlerSetter*> setters;
  for (const auto& configuration : configurations.loggers) {
    auto loader = libraries_.LoadLibrary(configuration);
    ILoggingEventHandlerSetter* setter =
        loader->Instantiate(configuration.libraryEventHandlerEntryPoint);
    if (setter != nullptr) setters.push_back(setter);
    libraries_.Keep(configuration, std::move(loader));
  }
  return setters;
}

std::unique_ptr<ILoggerFactoryAggregator> LoggerFactoryAggregatorFactory::Create() {
  return std::make_unique<LoggerFactoryAggregator>(std::make_unique<LoggerConfigurationsReader>());
}

std::unique_ptr<ILoggerEventHandlerAggregator> LoggerEventHandlerAggregatorFactory::Create() {
  return std::make_unique<LoggerEventHandlerAggregator>(
      std::make_unique<LoggerConfigurationsReader>());
}

}  // namespace Arq::Logging::Loader
