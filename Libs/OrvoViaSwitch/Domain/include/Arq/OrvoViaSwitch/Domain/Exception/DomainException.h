#pragma once

#include <exception>
#include <string>

#include "Arq/OrvoViaSwitch/Domain/Dto/ErrorCode.h"

namespace Arq::OrvoViaSwitch::Domain::Exception {

// The one failure type of the switch service client.
class DomainException : public std::exception {
 public:
  // The code is SystemError. A null message throws std::logic_error.
  explicit DomainException(const char* message);
  DomainException(const char* message, const Dto::ErrorCode& code);

  const char* what() const noexcept override { return message.c_str(); }
  Dto::ErrorCode GetErrorCode() const noexcept { return errorCode; }

 private:
  std::string message;
  Dto::ErrorCode errorCode;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Exception
