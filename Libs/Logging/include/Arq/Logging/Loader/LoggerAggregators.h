#pragma once

#include <json/value.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/LibraryLoader/LibraryLoader.h"
#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"
#include "Arq/Logging/Loader/LoggerConfigurations.h"
#include "arq/logging/ILoggerFactory.h"

namespace Arq::Logging::Loader {

class ILoggerFactoryAggregator {
 public:
  virtual ~ILoggerFactoryAggregator() = default;
  // Each returns a CompositeLoggerFactory, or null when any entry failed.
  virtual std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(const std::string& path) = 0;
  virtual std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(const Json::Value& root) = 0;
  virtual std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(
      const LoggerConfigurations& configurations) = 0;
};

class ILoggerEventHandlerAggregator {
 public:
  virtual ~ILoggerEventHandlerAggregator() = default;
  virtual std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(const std::string& path) = 0;
  virtual std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(const Json::Value& root) = 0;
  virtual std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(
      const LoggerConfigurations& configurations) = 0;
};

// Loads each configured plug-in once per logger name and keeps it loaded as
// long as the aggregator lives. `Maker` is the type the entry point returns.
template <typename Maker>
class PluginLibraries {
 public:
  using Loader = Arq::LibraryLoader::LibraryLoader<Maker>;

  std::shared_ptr<Loader> LoadLibrary(const LoggerConfiguration& configuration) {
    auto found = loaders_.find(configuration.name);
    if (found != loaders_.end()) return found->second;
    auto loader = std::make_shared<Loader>(configuration.libraryPath);
    loader->EnsureLoaded();
    return loader;
  }
  void Keep(const LoggerConfiguration& configuration, std::shared_ptr<Loader> loader) {
    loaders_.emplace(configuration.name, std::move(loader));
  }

 private:
  std::map<std::string, std::shared_ptr<Loader>> loaders_;
};

class LoggerFactoryAggregator : public ILoggerFactoryAggregator {
 public:
  explicit LoggerFactoryAggregator(std::unique_ptr<ILoggerConfigurationsReader> reader);
  ~LoggerFactoryAggregator() override;

  std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(const std::string& path) override;
  std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(const Json::Value& root) override;
  std::unique_ptr<arq::logging::ILoggerFactory> Aggregate(
      const LoggerConfigurations& configurations) override;

 private:
  std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> LoadLoggerFactories(
      const LoggerConfigurations& configurations);

  std::unique_ptr<ILoggerConfigurationsReader> reader_;
  PluginLibraries<ILoggingLoaderFactory> libraries_;
};

class LoggerEventHandlerAggregator : public ILoggerEventHandlerAggregator {
 public:
  explicit LoggerEventHandlerAggregator(std::unique_ptr<ILoggerConfigurationsReader> reader);
  ~LoggerEventHandlerAggregator() override;

  std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(const std::string& path) override;
  std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(const Json::Value& root) override;
  std::unique_ptr<ILoggingEventHandlerSetter> Aggregate(
      const LoggerConfigurations& configurations) override;

 private:
  std::vector<ILoggingEventHandlerSetter*> LoadLoggerEventHandlerSetters(
      const LoggerConfigurations& configurations);

  std::unique_ptr<ILoggerConfigurationsReader> reader_;
  PluginLibraries<ILoggingEventHandlerSetter> libraries_;
};

struct LoggerFactoryAggregatorFactory {
  static std::unique_ptr<ILoggerFactoryAggregator> Create();
};

struct LoggerEventHandlerAggregatorFactory {
  static std::unique_ptr<ILoggerEventHandlerAggregator> Create();
};

}  // namespace Arq::Logging::Loader
