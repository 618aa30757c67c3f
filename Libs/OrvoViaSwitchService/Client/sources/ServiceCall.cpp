#include "Arq/OrvoViaSwitchService/Client/Thrift/ServiceCall.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

std::string FaultLogMessage(const OrvoViaSwitch::Domain::Dto::ErrorCode& code,
                            const std::string& what) {
  return "Error Code: " + OrvoViaSwitch::Domain::Dto::ToString(code) + " - Error: " + what;
}

std::string ThriftErrorLogMessage(const char* what) {
  return std::string("Error: ") + what;
}

void LogCallError(const std::shared_ptr<arq::logging::ILogger>& logger, const CallSite& site,
                  const std::string& message) {
  if (logger && logger->GetLevel() <= arq::logging::ILogger::Error) {
    logger->Log(arq::logging::ILogger::Error, message, site.file, site.line);
  }
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
