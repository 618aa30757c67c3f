#include "Arq/LibraryLoader/LibraryLoaderException.h"

namespace Arq::LibraryLoader {

LibraryLoaderException::LibraryLoaderException(const std::string& message)
    : std::runtime_error(message) {}

}  // namespace Arq::LibraryLoader
