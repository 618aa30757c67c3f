#pragma once

#include <cstdint>
#include <string>

namespace Arq::OrvoViaSwitch::Domain::Dto {

// Mirrors the switch service's ErrorCode_t value for value, so that a fault
// reported by the switch keeps its meaning in the domain.
enum ErrorCode : std::int32_t {
  NoError = 0,
  UnknownError = 1,
  SystemError = 2,
  InvalidArgument = 3,
  RuntimeError = 4,
  TimeOut = 5,
  NotFound = 6,
  NotConfigured = 7,
  NotImplemented = 8,
  OutOfRange = 9,
  AlreadyInUse = 10,
  __LAST__ = 11,
};

// The enumerator's name; "[Unknown Error Code]" outside 0..11.
std::string ToString(const ErrorCode& code);

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
