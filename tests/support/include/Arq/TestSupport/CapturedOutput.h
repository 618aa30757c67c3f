#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>

#include "Arq/TestSupport/TempDir.h"

namespace Arq::TestSupport {

// Sends a file descriptor (1 by default: std::cout, printf and the logger
// plug-in's writes) to a private temp file while the object lives.
class CapturedOutput {
 public:
  explicit CapturedOutput(int fd = 1) : fd_(fd) {
    Flush();
    saved_ = dup(fd_);
    WriteFile(dir_.File("captured"), "");
    const int file = open(dir_.File("captured").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    dup2(file, fd_);
    close(file);
  }
  ~CapturedOutput() {
    Flush();
    dup2(saved_, fd_);
    close(saved_);
  }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  // Everything written so far; the descriptor stays captured.
  std::string Text() {
    Flush();
    return ReadFile(dir_.File("captured"));
  }

 private:
  static void Flush() {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
  }
  TempDir dir_{"arq-captured"};
  int fd_;
  int saved_ = -1;
};

}  // namespace Arq::TestSupport
