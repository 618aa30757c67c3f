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
// A free TCP port above the kernel's ephemeral range (61000..65535): above
// 32767, and not taken by an outgoing connection while a test restarts a
// server on it.
int FreeHighTcpPort();

}  // namespace Arq::TestSupport
