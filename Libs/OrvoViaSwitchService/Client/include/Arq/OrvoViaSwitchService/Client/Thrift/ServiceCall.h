#pragma once

#include <memory>
#include <string>

#include <ArqSwitchApi/ArqSwitchApi_types.h>
#include <thrift/Thrift.h>

#include "Arq/OrvoViaSwitch/Domain/Dto/ErrorCode.h"
#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"
#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// The source position of a proxy operation, named in its failure log lines.
struct CallSite {
  const char* file;
  unsigned long line;
};

#define ARQ_CALL_SITE                                     \
  ::Arq::OrvoViaSwitchService::Client::Thrift::CallSite { \
    __FILE__, __LINE__                                    \
  }

// The log texts of the two failure paths of a service call.
std::string FaultLogMessage(const OrvoViaSwitch::Domain::Dto::ErrorCode& code,
                            const std::string& what);
std::string ThriftErrorLogMessage(const char* what);

void LogCallError(const std::shared_ptr<arq::logging::ILogger>& logger, const CallSite& site,
                  const std::string& message);

// Runs one service call and turns its failures into DomainException: a
// Fault_t from the switch keeps its code and text; any other Thrift failure
// (transport, time-out, protocol, application) becomes SystemError. Each
// failure is logged at Error first. No retry.
template <typename Call>
auto InvokeServiceCall(const std::shared_ptr<arq::logging::ILogger>& logger, const CallSite& site,
                       Call&& call) -> decltype(call()) {
  try {
    return call();
  } catch (const ArqSwitchApi::Fault_t& fault) {
    const auto code =
        Service::Serialization::Thrift::EnumConverter::FromGeneratedEnum(fault.ErrCode);
    LogCallError(logger, site, FaultLogMessage(code, fault.What));
    throw OrvoViaSwitch::Domain::Exception::DomainException(fault.What.c_str(), code);
  } catch (const apache::thrift::TException& exception) {
    LogCallError(logger, site, ThriftErrorLogMessage(exception.what()));
    throw OrvoViaSwitch::Domain::Exception::DomainException(exception.what());
  }
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
