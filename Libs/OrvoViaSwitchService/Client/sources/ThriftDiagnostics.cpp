#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftDiagnostics.h"

#include <string>

#include <thrift/TOutput.h>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Logging/Log.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

void LogThriftDiagnostic(const char* message) {
  static const auto logger = Logging::Loader::Loggers::GetInstance().GetLogger("ThriftDiagnostics");
  std::string text(message == nullptr ? "" : message);
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
    text.pop_back();
  }
  ARQ_LOG(logger, arq::logging::ILogger::Warning, text);
}

void RouteThriftDiagnosticsToLoggers() {
  apache::thrift::GlobalOutput.setOutputFunction(&LogThriftDiagnostic);
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
