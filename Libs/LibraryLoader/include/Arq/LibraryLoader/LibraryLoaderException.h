#pragma once

#include <stdexcept>
#include <string>

namespace Arq::LibraryLoader {

// A shared library could not be opened, or lacks the symbol asked for.
class LibraryLoaderException : public std::runtime_error {
 public:
  explicit LibraryLoaderException(const std::string& message);
};

}  // namespace Arq::LibraryLoader
