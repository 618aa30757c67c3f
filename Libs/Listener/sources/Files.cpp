#include "Arq/Listener/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/FileDescriptor.h"

namespace Arq::Listener {
namespace {

using Descriptor = OrvoViaSwitch::Domain::FileDescriptor;

std::string Reason(int error) {
  char text[128];
  return strerror_r(error, text, sizeof text);
}

}  // namespace

std::string ReadBoundedFile(const std::string& path, std::size_t maxBytes, std::string& content) {
  content.clear();
  // Non-blocking, so that a FIFO in the file's place cannot hang the start.
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.Get() < 0) return "cannot open: " + Reason(errno);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return "not a regular file";
  if (static_cast<std::size_t>(status.st_size) > maxBytes) {
    return "larger than " + std::to_string(maxBytes) + " bytes";
  }
  // One byte more than the bound tells a file that grew since fstat.
  std::string text(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t size = 0;
  while (size < text.size()) {
    const ssize_t got = read(file.Get(), &text[size], text.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return "cannot read: " + Reason(errno);
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > maxBytes) return "larger than " + std::to_string(maxBytes) + " bytes";
  }
  text.resize(size);
  content = std::move(text);
  return {};
}

}  // namespace Arq::Listener
