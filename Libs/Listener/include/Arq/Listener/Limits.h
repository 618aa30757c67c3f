#pragma once

#include <cstddef>

namespace Arq::Listener {

// What one listener lets its clients hold, so that a stuck or hostile client
// costs one connection and never the daemon: connections at once (in all and
// from one address), how long a connection may stay silent (a TLS handshake
// or a request not finished in time is cut), and the memory a request may
// take (its request line and headers; nothing larger is read).
struct ConnectionLimits {
  unsigned connections = 16;
  unsigned connectionsPerAddress = 8;
  unsigned idleSeconds = 10;
  std::size_t requestBytes = std::size_t{16} * 1024;
};

}  // namespace Arq::Listener
