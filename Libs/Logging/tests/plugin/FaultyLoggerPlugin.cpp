// A logger plug-in that fails on purpose, so that the loader's failure paths
// run through a real dlopen. The entry's "mode" chooses the failure:
//   "throw": the logger factory throws from every Create;
//   "null":  no logger factory at all (CreateLoggerFactory gives nullptr).
// Its event-handler setter counts the handlers it receives; the test reads the
// count and the last handler through ArqFaultyPluginHandlerCalls and
// ArqFaultyPluginLastHandler.
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>

#include "Arq/Logging/Loader/DummyNestedDiagnosticContext.h"
#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"

namespace {

using Arq::Logging::Loader::ILoggingEventHandler;

class ThrowingFactory : public arq::logging::ILoggerFactory {
 public:
  std::shared_ptr<arq::logging::ILogger> Create(const std::string& name) override {
    throw std::runtime_error("no logger for " + name);
  }
  arq::logging::INestedDiagnosticContext& CreateNDC() override { return context_; }

 private:
  Arq::Logging::Loader::DummyNestedDiagnosticContext context_;
};

class FaultyLoaderFactory : public Arq::Logging::Loader::ILoggingLoaderFactory {
 public:
  const char* GetPluginName() const override { return "FaultyLogger"; }
  arq::logging::ILoggerFactory* CreateLoggerFactory(const Json::Value& entry) override {
    if (entry.isObject() && entry["mode"] == "null") return nullptr;
    return new ThrowingFactory();
  }
};

class CountingSetter : public Arq::Logging::Loader::ILoggingEventHandlerSetter {
 public:
  void SetEventHandler(std::shared_ptr<ILoggingEventHandler> handler) override {
    last = std::move(handler);
    calls.fetch_add(1);
  }
  std::shared_ptr<ILoggingEventHandler> last;
  std::atomic<int> calls{0};
};

CountingSetter& Setter() {
  static CountingSetter setter;
  return setter;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) Arq::Logging::Loader::ILoggingLoaderFactory*
ILoggingLoaderFactoryMaker() {
  static FaultyLoaderFactory factory;
  return &factory;
}

extern "C" __attribute__((visibility("default"))) Arq::Logging::Loader::ILoggingEventHandlerSetter*
ILoggingEventHandlerSetterMaker() {
  return &Setter();
}

extern "C" __attribute__((visibility("default"))) int ArqFaultyPluginHandlerCalls() {
  return Setter().calls.load();
}

extern "C" __attribute__((visibility("default"))) const void* ArqFaultyPluginLastHandler() {
  return Setter().last.get();
}
