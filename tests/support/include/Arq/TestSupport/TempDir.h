#pragma once

#include <string>

namespace Arq::TestSupport {

// A private folder under $TMPDIR (or /tmp), removed with its content on destruction.
class TempDir {
 public:
  explicit TempDir(const std::string& prefix = "arq-test");
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& Path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// Whole-file helpers; ReadFile returns an empty string for a missing file.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);

// A port that nothing listened on at the time of the call (bound to 0, then released).
int FreeUdpPort();
int FreeTcpPort();
// A free TCP port below 32768, for programs that carry ports as signed 16-bit numbers.
int FreeShortTcpPort();

}  // namespace Arq::TestSupport
