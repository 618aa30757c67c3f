#pragma once

#include <stdexcept>
#include <string>

namespace Arq::Logging::Loader {

// The logger configurations file could not be read or parsed.
class LoggingLoaderException : public std::runtime_error {
 public:
  explicit LoggingLoaderException(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace Arq::Logging::Loader
