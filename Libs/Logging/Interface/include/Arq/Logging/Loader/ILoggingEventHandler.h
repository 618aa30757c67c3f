#pragma once

namespace Arq::Logging::Loader {

// Opaque event handler that the application may hand to the plug-ins; the
// daemon passes it through and never calls it.
class ILoggingEventHandler {
 public:
  virtual ~ILoggingEventHandler() = default;
};

}  // namespace Arq::Logging::Loader
