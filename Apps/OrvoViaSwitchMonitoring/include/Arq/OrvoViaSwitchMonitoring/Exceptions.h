#pragma once

#include <exception>
#include <string>

namespace Arq::OrvoViaSwitchMonitoring {

class OrvoViaSwitchMonitoringException : public std::exception {
 public:
  explicit OrvoViaSwitchMonitoringException(std::string message) : message_(std::move(message)) {}
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

class InvalidInputParameterException : public OrvoViaSwitchMonitoringException {
 public:
  using OrvoViaSwitchMonitoringException::OrvoViaSwitchMonitoringException;
};

}  // namespace Arq::OrvoViaSwitchMonitoring
