#include "Arq/Exposition/MetricsServer.h"

#include <gnutls/gnutls.h>
#include <microhttpd.h>
#include <pthread.h>

#include <csignal>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <exception>
#include <mutex>
#include <string_view>

#include "Arq/Exposition/WebConfig.h"

namespace Arq::Exposition {

struct MetricsServer::Context {
  ServerSettings settings;
  Renderer render;
  LogSink log;
  MHD_Daemon* daemon = nullptr;
  // The library's last message while starting: the reason a start failed.
  std::atomic<bool> starting{true};
  std::mutex mutex;
  std::string startMessage;
};

namespace {

using Context = MetricsServer::Context;

constexpr const char* kRealm = "OrvoVia switch metrics";

void Log(void* cls, const char* format, va_list arguments) {
  auto* context = static_cast<Context*>(cls);
  char text[512];
  va_list copy;
  va_copy(copy, arguments);
  const int written = std::vsnprintf(text, sizeof text, format, copy);
  va_end(copy);
  if (written < 0) return;
  std::string line(text);
  while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
  if (context->starting.load()) {
    const std::lock_guard<std::mutex> lock(context->mutex);
    context->startMessage = line;
  } else if (context->log) {
    context->log(line);
  }
}

gnutls_session_t Session(MHD_Connection* connection) {
  const MHD_ConnectionInfo* info =
      MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION);
  return info == nullptr ? nullptr : static_cast<gnutls_session_t>(info->tls_session);
}

// A new connection, before its handshake: the client-certificate policy in
// the handshake itself, so that a certificate the policy requires and does
// not get (or that does not verify) ends the handshake, as Go's servers do.
void Notify(void* cls, MHD_Connection* connection, void**, MHD_ConnectionNotificationCode code) {
  const auto* context = static_cast<const Context*>(cls);
  const Listener::ClientAuth policy = context->settings.clientAuth;
  if (code != MHD_CONNECTION_NOTIFY_STARTED || !context->settings.tls ||
      !Listener::AsksForCertificate(policy)) {
    return;
  }
  gnutls_session_t session = Session(connection);
  if (session == nullptr) return;
  gnutls_certificate_server_set_request(
      session, Listener::RequiresCertificate(policy) ? GNUTLS_CERT_REQUIRE : GNUTLS_CERT_REQUEST);
  if (Listener::VerifiesCertificate(policy)) gnutls_session_set_verify_cert(session, nullptr, 0);
}

// The policy checked again on the finished handshake, whatever the library
// did with the request made above.
bool PeerAllowed(MHD_Connection* connection, const ServerSettings& settings) {
  const Listener::ClientAuth policy = settings.clientAuth;
  if (!settings.tls || !Listener::AsksForCertificate(policy)) return true;
  gnutls_session_t session = Session(connection);
  if (session == nullptr) return false;
  unsigned count = 0;
  const bool given = gnutls_certificate_get_peers(session, &count) != nullptr && count > 0;
  if (!given) return !Listener::RequiresCertificate(policy);
  if (!Listener::VerifiesCertificate(policy)) return true;
  unsigned status = 0;
  return gnutls_certificate_verify_peers2(session, &status) == GNUTLS_E_SUCCESS && status == 0;
}

MHD_Result Reply(MHD_Connection* connection, unsigned status, const char* body,
                 const ServerSettings& settings, const char* allow = nullptr) {
  MHD_Response* response = MHD_create_response_from_buffer(
      std::strlen(body), const_cast<char*>(body), MHD_RESPMEM_PERSISTENT);
  if (response == nullptr) return MHD_NO;
  MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, "text/plain; charset=utf-8");
  for (const auto& [name, value] : settings.headers) {
    MHD_add_response_header(response, name.c_str(), value.c_str());
  }
  if (allow != nullptr) MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, allow);
  const MHD_Result result = status == MHD_HTTP_UNAUTHORIZED
                                ? MHD_queue_basic_auth_fail_response(connection, kRealm, response)
                                : MHD_queue_response(connection, status, response);
  MHD_destroy_response(response);
  return result;
}

bool Authorised(MHD_Connection* connection, ServerSettings& settings) {
  if (settings.users.Empty()) return true;
  char* password = nullptr;
  char* user = MHD_basic_auth_get_username_password(connection, &password);
  const bool allowed =
      user != nullptr && password != nullptr && settings.users.Check(user, password);
  if (password != nullptr) {
    // Not left in freed memory.
    volatile char* wipe = password;
    for (std::size_t i = 0; wipe[i] != '\0'; ++i) wipe[i] = '\0';
  }
  MHD_free(user);
  MHD_free(password);
  return allowed;
}

void FreeText(void* cls) {
  delete static_cast<std::string*>(cls);
}

MHD_Result Handle(void* cls, MHD_Connection* connection, const char* url, const char* method,
                  const char*, const char*, std::size_t*, void**) {
  auto* context = static_cast<Context*>(cls);
  ServerSettings& settings = context->settings;
  // Every answer is given at the first call, before any request body: a GET
  // has none, and nothing else is served.
  const std::string_view verb(method);
  if (verb != MHD_HTTP_METHOD_GET && verb != MHD_HTTP_METHOD_HEAD) {
    return Reply(connection, MHD_HTTP_METHOD_NOT_ALLOWED, "method not allowed\n", settings,
                 "GET, HEAD");
  }
  if (std::string_view(url) != "/metrics") {
    return Reply(connection, MHD_HTTP_NOT_FOUND, "not found: the metrics are at /metrics\n",
                 settings);
  }
  if (!PeerAllowed(connection, settings)) {
    return Reply(connection, MHD_HTTP_FORBIDDEN, "a valid client certificate is required\n",
                 settings);
  }
  if (!Authorised(connection, settings)) {
    return Reply(connection, MHD_HTTP_UNAUTHORIZED, "unauthorised\n", settings);
  }
  const char* accept = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, "Accept");
  const Format format = NegotiateFormat(accept == nullptr ? "" : accept);
  std::string* text = nullptr;
  try {
    text = new std::string(context->render(format));
  } catch (const std::exception&) {
    // Nothing may leave through the library's C frames.
    return Reply(connection, MHD_HTTP_INTERNAL_SERVER_ERROR, "the exposition failed\n", settings);
  }
  MHD_Response* response = MHD_create_response_from_buffer_with_free_callback_cls(
      text->size(), text->data(), &FreeText, text);
  if (response == nullptr) {
    delete text;
    return MHD_NO;
  }
  MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE,
                          std::string(ContentType(format)).c_str());
  for (const auto& [name, value] : settings.headers) {
    MHD_add_response_header(response, name.c_str(), value.c_str());
  }
  const MHD_Result result = MHD_queue_response(connection, MHD_HTTP_OK, response);
  MHD_destroy_response(response);
  return result;
}

}  // namespace

std::optional<ServerSettings> SettingsFor(const std::string& address,
                                          const std::string& webConfigPath, std::string& error) {
  auto endpoint = Listener::ParseEndpoint(address, error);
  if (!endpoint) {
    error = "ORVOVIA_METRICS_ADDRESS " + error;
    return std::nullopt;
  }
  ServerSettings settings;
  settings.endpoint = *endpoint;
  if (!webConfigPath.empty()) {
    const auto config = LoadWebConfig(webConfigPath, settings.material, error);
    if (!config) return std::nullopt;
    settings.tls = config->tls;
    settings.clientAuth = config->clientAuth;
    settings.priorities = config->priorities;
    settings.headers = config->headers;
    settings.users = Listener::BasicAuthUsers(config->users);
  }
  if (!settings.tls) {
    error = Listener::PlaintextRefusal(settings.endpoint);
    if (!error.empty()) return std::nullopt;
  }
  return settings;
}

MetricsServer::MetricsServer(std::unique_ptr<Context> context) : context(std::move(context)) {}

MetricsServer::~MetricsServer() {
  // Joins the library's thread: no callback runs after this.
  MHD_stop_daemon(context->daemon);
}

std::unique_ptr<MetricsServer> MetricsServer::Start(ServerSettings settings, Renderer render,
                                                    LogSink log, std::string& error) {
  auto context = std::make_unique<Context>();
  context->settings = std::move(settings);
  context->render = std::move(render);
  context->log = std::move(log);
  const ServerSettings& s = context->settings;
  const Listener::ConnectionLimits& limits = s.limits;

  unsigned flags = MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_EPOLL | MHD_USE_ERROR_LOG;
  if (s.endpoint.IsIpv6()) flags |= MHD_USE_IPv6;
  if (s.tls) flags |= MHD_USE_TLS;
  std::vector<MHD_OptionItem> options{
      {MHD_OPTION_SOCK_ADDR, 0,
       const_cast<sockaddr*>(reinterpret_cast<const sockaddr*>(&s.endpoint.address))},
      {MHD_OPTION_CONNECTION_LIMIT, limits.connections, nullptr},
      {MHD_OPTION_PER_IP_CONNECTION_LIMIT, limits.connectionsPerAddress, nullptr},
      {MHD_OPTION_CONNECTION_TIMEOUT, limits.idleSeconds, nullptr},
      {MHD_OPTION_CONNECTION_MEMORY_LIMIT, static_cast<intptr_t>(limits.requestBytes), nullptr},
      {MHD_OPTION_EXTERNAL_LOGGER, reinterpret_cast<intptr_t>(&Log), context.get()},
      {MHD_OPTION_NOTIFY_CONNECTION, reinterpret_cast<intptr_t>(&Notify), context.get()},
  };
  if (s.tls) {
    options.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(s.material.key.c_str())});
    options.push_back(
        {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(s.material.certificate.c_str())});
    options.push_back({MHD_OPTION_HTTPS_PRIORITIES, 0, const_cast<char*>(s.priorities.c_str())});
    if (!s.material.clientAuthorities.empty()) {
      options.push_back(
          {MHD_OPTION_HTTPS_MEM_TRUST, 0, const_cast<char*>(s.material.clientAuthorities.c_str())});
    }
  }
  options.push_back({MHD_OPTION_END, 0, nullptr});

  // The library's thread inherits this mask: the process's stop signals
  // (and SIGPIPE) are never taken by it, so that they reach the thread that
  // waits for them.
  sigset_t blocked, previous;
  sigemptyset(&blocked);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGPIPE}) sigaddset(&blocked, signal);
  pthread_sigmask(SIG_BLOCK, &blocked, &previous);
  context->daemon =
      MHD_start_daemon(flags, s.endpoint.port, nullptr, nullptr, &Handle, context.get(),
                       MHD_OPTION_ARRAY, options.data(), MHD_OPTION_END);
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  if (context->daemon == nullptr) {
    const std::lock_guard<std::mutex> lock(context->mutex);
    error = "cannot serve on " + s.endpoint.ToString() +
            (context->startMessage.empty() ? std::string() : ": " + context->startMessage);
    return nullptr;
  }
  context->starting.store(false);
  return std::unique_ptr<MetricsServer>(new MetricsServer(std::move(context)));
}

std::uint16_t MetricsServer::Port() const {
  const MHD_DaemonInfo* info = MHD_get_daemon_info(context->daemon, MHD_DAEMON_INFO_BIND_PORT);
  return info == nullptr ? 0 : info->port;
}

std::string MetricsServer::Url() const {
  Listener::Endpoint endpoint = context->settings.endpoint;
  return std::string(context->settings.tls ? "https://" : "http://") + endpoint.ToString() +
         "/metrics";
}

}  // namespace Arq::Exposition
