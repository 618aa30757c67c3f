#pragma once

#include <unistd.h>

#include <utility>

namespace Arq::OrvoViaSwitch::Domain {

// An open file descriptor, closed when it goes (-1: none).
class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (fd_ >= 0) close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int Get() const { return fd_; }
  // Closes now, so that a failure to flush is seen.
  bool Close() { return close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_;
};

}  // namespace Arq::OrvoViaSwitch::Domain
