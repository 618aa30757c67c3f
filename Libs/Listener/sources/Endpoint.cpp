#include "Arq/Listener/Endpoint.h"

#include <arpa/inet.h>

#include <cstring>

namespace Arq::Listener {
namespace {

// A decimal port from 1 to 65535, without sign or leading zero.
std::optional<std::uint16_t> Port(std::string_view text) {
  if (text.empty() || text.size() > 5 || text[0] == '0') return std::nullopt;
  unsigned value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  if (value > 65535) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

}  // namespace

bool Endpoint::IsLoopback() const {
  if (address.ss_family == AF_INET) {
    const auto& ipv4 = reinterpret_cast<const sockaddr_in&>(address);
    return (ntohl(ipv4.sin_addr.s_addr) >> 24) == 127;
  }
  const auto& ipv6 = reinterpret_cast<const sockaddr_in6&>(address);
  if (IN6_IS_ADDR_LOOPBACK(&ipv6.sin6_addr)) return true;
  return IN6_IS_ADDR_V4MAPPED(&ipv6.sin6_addr) && ipv6.sin6_addr.s6_addr[12] == 127;
}

std::string Endpoint::ToString() const {
  char text[INET6_ADDRSTRLEN] = {};
  if (IsIpv6()) {
    const auto& ipv6 = reinterpret_cast<const sockaddr_in6&>(address);
    inet_ntop(AF_INET6, &ipv6.sin6_addr, text, sizeof text);
    return "[" + std::string(text) + "]:" + std::to_string(port);
  }
  const auto& ipv4 = reinterpret_cast<const sockaddr_in&>(address);
  inet_ntop(AF_INET, &ipv4.sin_addr, text, sizeof text);
  return std::string(text) + ":" + std::to_string(port);
}

std::optional<Endpoint> ParseEndpoint(std::string_view text, std::string& error) {
  const auto colon = text.rfind(':');
  if (colon == std::string_view::npos) {
    error = "'" + std::string(text) + "' is not host:port";
    return std::nullopt;
  }
  const auto port = Port(text.substr(colon + 1));
  if (!port) {
    error = "'" + std::string(text) + "': the port is not a number from 1 to 65535";
    return std::nullopt;
  }
  std::string host(text.substr(0, colon));
  const bool bracketed = host.size() >= 2 && host.front() == '[' && host.back() == ']';
  if (bracketed) host = host.substr(1, host.size() - 2);
  if (host == "localhost") host = "127.0.0.1";

  Endpoint endpoint;
  endpoint.port = *port;
  auto& ipv4 = reinterpret_cast<sockaddr_in&>(endpoint.address);
  auto& ipv6 = reinterpret_cast<sockaddr_in6&>(endpoint.address);
  if (!bracketed && inet_pton(AF_INET, host.c_str(), &ipv4.sin_addr) == 1) {
    ipv4.sin_family = AF_INET;
    ipv4.sin_port = htons(*port);
    endpoint.length = sizeof(sockaddr_in);
    return endpoint;
  }
  if (bracketed && inet_pton(AF_INET6, host.c_str(), &ipv6.sin6_addr) == 1) {
    ipv6.sin6_family = AF_INET6;
    ipv6.sin6_port = htons(*port);
    endpoint.length = sizeof(sockaddr_in6);
    return endpoint;
  }
  error = "'" + std::string(text) +
          "': the host is not a numeric IPv4 address, an IPv6 address in brackets or localhost";
  return std::nullopt;
}

std::string PlaintextRefusal(const Endpoint& endpoint) {
  if (endpoint.IsLoopback()) return {};
  return endpoint.ToString() +
         " is not a loopback address and no TLS is configured: plaintext is served on loopback "
         "addresses only";
}

}  // namespace Arq::Listener
