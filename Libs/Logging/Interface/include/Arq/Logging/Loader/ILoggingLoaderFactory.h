#pragma once

#include <json/value.h>

#include "arq/logging/ILoggerFactory.h"

namespace Arq::Logging::Loader {

// The object a logger plug-in hands out through its exported factory maker
// (an extern "C" function taking no argument and returning
// ILoggingLoaderFactory*). Part of the plug-in binary interface: the slot
// order is destructor, GetPluginName, CreateLoggerFactory. The daemon calls
// only CreateLoggerFactory and never deletes this object.
class ILoggingLoaderFactory {
 public:
  virtual ~ILoggingLoaderFactory() = default;
  // A short name of the plug-in, for diagnostics.
  virtual const char* GetPluginName() const = 0;
  // Makes a logger factory from the plug-in's entry of the logger
  // configurations file. Ownership of the result passes to the caller.
  virtual arq::logging::ILoggerFactory* CreateLoggerFactory(const Json::Value& configuration) = 0;
};

// Names of the makers that a plug-in exports unless its entry says otherwise.
inline constexpr const char* kDefaultLoggerFactoryMaker = "ILoggingLoaderFactoryMaker";
inline constexpr const char* kDefaultEventHandlerSetterMaker = "ILoggingEventHandlerSetterMaker";

using LoggingLoaderFactoryMaker = ILoggingLoaderFactory* (*)();

}  // namespace Arq::Logging::Loader
