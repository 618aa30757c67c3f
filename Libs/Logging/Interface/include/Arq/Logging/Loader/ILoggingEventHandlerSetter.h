#pragma once

#include <memory>

#include "Arq/Logging/Loader/ILoggingEventHandler.h"

namespace Arq::Logging::Loader {

// Part of the plug-in binary interface: keep the slot order.
class ILoggingEventHandlerSetter {
 public:
  virtual ~ILoggingEventHandlerSetter() = default;
  virtual void SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler) = 0;
};

}  // namespace Arq::Logging::Loader
