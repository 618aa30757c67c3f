#pragma once

#include <string>

namespace Arq::TestSupport {

// Sends a file descriptor (1 by default: std::cout, printf and the logger
// plug-in's writes) to a private temp file while the object lives.
class CapturedOutput {
 public:
  explicit CapturedOutput(int fd = 1);
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  // Everything written so far; the descriptor stays captured.
  std::string Text();

 private:
  void Flush();
  int fd_;
  int saved_ = -1;
  int file_ = -1;
  std::string path_;
};

}  // namespace Arq::TestSupport
