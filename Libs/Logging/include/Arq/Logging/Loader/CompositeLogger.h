#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Arq/Logging/Loader/DummyNestedDiagnosticContext.h"
#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "arq/logging/ILogger.h"
#include "arq/logging/ILoggerFactory.h"
#include "arq/logging/INestedDiagnosticContext.h"

namespace Arq::Logging::Loader {

// Fans every call out to the loggers of all configured plug-ins, in file
// order. It filters nothing itself: each member applies its own threshold.
class CompositeLogger : public arq::logging::ILogger {
 public:
  explicit CompositeLogger(std::vector<std::shared_ptr<arq::logging::ILogger>> loggers);

  void Log(Level level, const std::string& message, const char* file, unsigned long line) override;
  void SetLevel(Level level) override;
  // The first member's level; NoLog without members, so call sites never
  // format a message nobody will write.
  Level GetLevel() const override;

 private:
  const std::vector<std::shared_ptr<arq::logging::ILogger>> loggers_;
};

class CompositeLoggerFactory : public arq::logging::ILoggerFactory {
 public:
  explicit CompositeLoggerFactory(
      std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> factories);

  // A member factory that throws is reported on standard output and skipped.
  std::shared_ptr<arq::logging::ILogger> Create(const std::string& name) override;
  arq::logging::INestedDiagnosticContext& CreateNDC() override { return context_; }

 private:
  std::vector<std::unique_ptr<arq::logging::ILoggerFactory>> factories_;
  DummyNestedDiagnosticContext context_;
};

// Passes the application's event handler to every plug-in's setter (not owned).
class CompositeEventHandlerSetter : public ILoggingEventHandlerSetter {
 public:
  explicit CompositeEventHandlerSetter(std::vector<ILoggingEventHandlerSetter*> setters);
  void SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler) override;

 private:
  const std::vector<ILoggingEventHandlerSetter*> setters_;
};

}  // namespace Arq::Logging::Loader
