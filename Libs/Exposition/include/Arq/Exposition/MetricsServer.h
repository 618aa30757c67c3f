#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Arq/Exposition/ExpositionWriter.h"
#include "Arq/Listener/BasicAuth.h"
#include "Arq/Listener/Endpoint.h"
#include "Arq/Listener/Limits.h"
#include "Arq/Listener/Tls.h"

struct MHD_Daemon;
struct MHD_Connection;

namespace Arq::Exposition {

// How the endpoint is served: where, with what TLS and which users.
struct ServerSettings {
  Listener::Endpoint endpoint;
  bool tls = false;
  Listener::TlsMaterial material;
  Listener::ClientAuth clientAuth = Listener::ClientAuth::NoClientCert;
  std::string priorities = "NORMAL";
  std::vector<std::pair<std::string, std::string>> headers;
  Listener::BasicAuthUsers users;
  Listener::ConnectionLimits limits;
};

// The settings of the endpoint that ORVOVIA_METRICS_ADDRESS (`address`) and
// ORVOVIA_METRICS_WEB_CONFIG (`webConfigPath`, "" for none) describe, or
// nothing with the reason: an address that does not parse, a web
// configuration that does not load, plaintext on a non-loopback address.
std::optional<ServerSettings> SettingsFor(const std::string& address,
                                          const std::string& webConfigPath, std::string& error);

// GET /metrics over HTTP/1.1 (libmicrohttpd, one internal thread polling with
// epoll): the exposition that `render` makes at each request, in the format
// the request's Accept header asks for; HEAD too. Every other path is 404,
// every other method 405, a missing or wrong basic-auth pair 401 with
// WWW-Authenticate: Basic, a client certificate the policy wants and does
// not get 403 (when the handshake did not already refuse it). The limits
// bound connections, silence and request size; a request that is not HTTP
// gets 400 from the library and costs its connection only.
class MetricsServer {
 public:
  using Renderer = std::function<std::string(Format)>;
  // A line for the log: what the library reports once serving (a failed
  // handshake, a refused connection), at the log's debug level.
  using LogSink = std::function<void(const std::string&)>;

  // Serving from return; nullptr with the reason in `error`.
  static std::unique_ptr<MetricsServer> Start(ServerSettings settings, Renderer render, LogSink log,
                                              std::string& error);
  ~MetricsServer();
  MetricsServer(const MetricsServer&) = delete;
  MetricsServer& operator=(const MetricsServer&) = delete;

  std::uint16_t Port() const;
  std::string Url() const;

  // What the library's callbacks reach (opaque).
  struct Context;

 private:
  explicit MetricsServer(std::unique_ptr<Context> context);

  std::unique_ptr<Context> context;
};

}  // namespace Arq::Exposition
