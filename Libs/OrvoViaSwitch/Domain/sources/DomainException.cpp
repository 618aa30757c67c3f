#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"

namespace Arq::OrvoViaSwitch::Domain::Exception {

DomainException::DomainException(const char* message)
    : DomainException(message, Dto::ErrorCode::SystemError) {}

DomainException::DomainException(const char* message, const Dto::ErrorCode& code)
    : message(message), errorCode(code) {}

}  // namespace Arq::OrvoViaSwitch::Domain::Exception
