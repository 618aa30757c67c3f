#include "Arq/TestSupport/CapturedOutput.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "Arq/TestSupport/TempDir.h"

namespace Arq::TestSupport {

CapturedOutput::CapturedOutput(int fd) : fd_(fd) {
  char name[] = "/tmp/arq-captured-XXXXXX";
  file_ = mkstemp(name);
  if (file_ < 0) throw std::runtime_error("mkstemp failed");
  path_ = name;
  Flush();
  saved_ = dup(fd_);
  dup2(file_, fd_);
}

CapturedOutput::~CapturedOutput() {
  Flush();
  dup2(saved_, fd_);
  close(saved_);
  close(file_);
  unlink(path_.c_str());
}

void CapturedOutput::Flush() {
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
}

std::string CapturedOutput::Text() {
  Flush();
  return ReadFile(path_);
}

}  // namespace Arq::TestSupport
