#include "Arq/TestSupport/TempDir.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace Arq::TestSupport {

TempDir::TempDir(const std::string& prefix) {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base && *base ? base : "/tmp") + "/" + prefix + "-XXXXXX";
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  if (!mkdtemp(buffer.data())) throw std::runtime_error("mkdtemp failed for " + pattern);
  path_ = buffer.data();
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
}

namespace {

int FreePort(int type, int port = 0) {
  const int fd = socket(AF_INET, type | SOCK_CLOEXEC, 0);
  if (fd < 0) throw std::runtime_error("socket failed");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<uint16_t>(port));
  socklen_t length = sizeof address;
  if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    close(fd);
    throw std::runtime_error("cannot bind a free port");
  }
  close(fd);
  return ntohs(address.sin_port);
}

}  // namespace

int FreeUdpPort() {
  return FreePort(SOCK_DGRAM);
}
int FreeTcpPort() {
  return FreePort(SOCK_STREAM);
}

int FreeHighTcpPort() {
  // A pseudo-random start in 61000..65535, then the next ports until one binds.
  constexpr int kFirst = 61000;
  constexpr int kCount = 65536 - kFirst;
  static int calls = 0;
  const int start = static_cast<int>((getpid() * 7919 + 97 * calls++) % kCount);
  for (int i = 0; i < kCount; ++i) {
    try {
      return FreePort(SOCK_STREAM, kFirst + (start + i) % kCount);
    } catch (const std::runtime_error&) {
    }
  }
  throw std::runtime_error("no free port above 60999");
}

}  // namespace Arq::TestSupport
