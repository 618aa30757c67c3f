#include "Arq/Gnmi/Settings.h"

#include <arpa/inet.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace Arq::Gnmi {
namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

Settings Settings::FromEnvironment() {
  Settings settings;
  settings.address = Env("ORVOVIA_GNMI_ADDRESS");
  settings.certFile = Env("ORVOVIA_GNMI_TLS_CERT");
  settings.keyFile = Env("ORVOVIA_GNMI_TLS_KEY");
  settings.clientCaFile = Env("ORVOVIA_GNMI_TLS_CLIENT_CA");
  settings.usersFile = Env("ORVOVIA_GNMI_USERS");
  return settings;
}

bool SplitAddress(const std::string& address, std::string& host, std::uint16_t& port) {
  std::string portText;
  if (!address.empty() && address.front() == '[') {
    const auto close = address.find("]:");
    if (close == std::string::npos) return false;
    host = address.substr(1, close - 1);
    portText = address.substr(close + 2);
  } else {
    const auto colon = address.rfind(':');
    if (colon == std::string::npos || address.find(':') != colon) return false;
    host = address.substr(0, colon);
    portText = address.substr(colon + 1);
  }
  if (host.empty() || portText.empty() || portText.size() > 5) return false;
  unsigned long value = 0;
  for (const char c : portText) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + static_cast<unsigned long>(c - '0');
  }
  if (value > 65535) return false;
  port = static_cast<std::uint16_t>(value);
  return true;
}

bool IsLoopback(const std::string& host) {
  if (host == "localhost") return true;
  in_addr v4{};
  if (inet_pton(AF_INET, host.c_str(), &v4) == 1) return (ntohl(v4.s_addr) >> 24) == 127;
  in6_addr v6{};
  return inet_pton(AF_INET6, host.c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6);
}

bool ReadBoundedFile(const std::string& path, std::size_t limit, std::string& contents,
                     std::string& error) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    char reason[128];
    error = path + ": " + strerror_r(errno, reason, sizeof reason);
    return false;
  }
  contents.assign(limit + 1, '\0');
  file.read(contents.data(), static_cast<std::streamsize>(limit + 1));
  const auto got = static_cast<std::size_t>(file.gcount());
  if (got > limit) {
    error = path + ": larger than " + std::to_string(limit) + " bytes";
    return false;
  }
  contents.resize(got);
  return true;
}

}  // namespace Arq::Gnmi
