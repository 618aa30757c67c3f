#pragma once

#include <cstddef>
#include <string>

namespace Arq::Gnmi {

// How the gNMI server listens, from the environment (the daemon's command line
// is not extended):
//   ORVOVIA_GNMI_ADDRESS       address:port as Listener::ParseEndpoint reads it (numeric
//                              IPv4, [IPv6] or localhost); unset or empty: no server
//   ORVOVIA_GNMI_TLS_CERT      PEM certificate chain of the server
//   ORVOVIA_GNMI_TLS_KEY       PEM private key of the server
//   ORVOVIA_GNMI_TLS_CLIENT_CA PEM CA bundle: clients must present a certificate it signed
//   ORVOVIA_GNMI_USERS         file of "user:crypt(3) hash" lines: requests must carry
//                              "username" and "password" metadata that match
// Without a certificate and key the server speaks plaintext, and only on a
// loopback address.
struct Settings {
  std::string address;
  std::string certFile;
  std::string keyFile;
  std::string clientCaFile;
  std::string usersFile;

  // Bounds: HTTP/2 streams per connection, Subscribe RPCs at once, request
  // size, bytes waiting in one stream's queue.
  int maxConcurrentStreams = 32;
  std::size_t maxSubscriptions = 16;
  int maxReceiveBytes = 256 * 1024;
  std::size_t maxQueuedBytes = std::size_t{4} * 1024 * 1024;
  // How long a stream whose queue overflowed may take to read what is in
  // flight before it is cancelled.
  int overflowGraceMs = 10000;

  static Settings FromEnvironment();
  bool Enabled() const { return !address.empty(); }
};

}  // namespace Arq::Gnmi
