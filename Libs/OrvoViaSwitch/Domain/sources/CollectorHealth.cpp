#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"

#include <cstring>

#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"

namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics {

CallOutcome ClassifyCallFailure(const std::exception& failure) {
  const auto* domain = dynamic_cast<const Exception::DomainException*>(&failure);
  if (domain != nullptr && domain->GetErrorCode() != ErrorCode::SystemError) {
    return CallOutcome::Fault;
  }
  const char* text = failure.what();
  const auto has = [text](const char* part) { return std::strstr(text, part) != nullptr; };
  if (has("Fault_t")) return CallOutcome::Fault;
  // Connect time-out ("open() timed out") and receive time-out
  // ("THRIFT_EAGAIN (timed out)").
  if (has("timed out")) return CallOutcome::Timeout;
  if (has("Connection refused")) return CallOutcome::ConnectionRefused;
  // Protocol-level refusals: bad version word, sizes beyond the bounds,
  // unknown method or service, a reply to another call.
  if (has("Bad version") || has("Missing version") || has("reply larger than") ||
      has("MaxMessageSize") || has("Negative size") || has("size limit") ||
      has("Invalid method name") || has("Unknown") || has("out of sequence") ||
      has("wrong method name") || has("Invalid data") || has("unknown result")) {
    return CallOutcome::BadReply;
  }
  return CallOutcome::TransportError;
}

}  // namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics
