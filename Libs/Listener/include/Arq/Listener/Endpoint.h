#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Arq::Listener {

// The address a listener binds: a numeric IPv4 address ("127.0.0.1:9132"), an
// IPv6 address in brackets ("[::1]:9132"), or "localhost" (127.0.0.1), and a
// port from 1 to 65535. Host names are not resolved: a listener binds what
// the operator wrote, nothing a resolver might change.
struct Endpoint {
  sockaddr_storage address{};
  socklen_t length = 0;
  std::uint16_t port = 0;

  bool IsIpv6() const { return address.ss_family == AF_INET6; }
  // 127.0.0.0/8, ::1, or an IPv4-mapped 127.0.0.0/8 address.
  bool IsLoopback() const;
  // "127.0.0.1:9132", "[::1]:9132".
  std::string ToString() const;
};

// The endpoint `text` names, or nothing with the reason in `error`.
std::optional<Endpoint> ParseEndpoint(std::string_view text, std::string& error);

// Why a listener may not serve plaintext on the endpoint ("" when it may):
// without TLS, only a loopback address, where no other host can read or
// inject anything.
std::string PlaintextRefusal(const Endpoint& endpoint);

}  // namespace Arq::Listener
