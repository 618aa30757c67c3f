#pragma once

#include <memory>
#include <string>

#include "arq/logging/ILogger.h"
#include "arq/logging/INestedDiagnosticContext.h"

namespace arq::logging {

// Part of the plug-in binary interface: keep the slot order.
class ILoggerFactory {
 public:
  virtual ~ILoggerFactory() = default;
  virtual std::shared_ptr<ILogger> Create(const std::string& name) = 0;
  virtual INestedDiagnosticContext& CreateNDC() = 0;
};

}  // namespace arq::logging
