#include "Arq/OrvoViaSwitchMonitoring/MetricsEndpoint.h"

#include <malloc.h>

#include <cstdlib>

#include "Arq/Exposition/SwitchExposition.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Logging/Log.h"
#include "Arq/Monitoring/MonitoringProcessor.h"
#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"

namespace Arq::OrvoViaSwitchMonitoring {
namespace {

using arq::logging::ILogger;

constexpr int kMmapThreshold = 256 * 1024;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// What the endpoint asks of its clients, for the start line.
std::string Protection(const Exposition::ServerSettings& settings) {
  std::string text = settings.tls ? "TLS" : "plaintext on loopback";
  if (settings.tls && Listener::AsksForCertificate(settings.clientAuth)) {
    text += ", client certificates " + std::string(Listener::ClientAuthName(settings.clientAuth));
  }
  text += settings.users.Empty() ? ", no basic auth" : ", basic auth";
  return text;
}

}  // namespace

std::unique_ptr<Exposition::MetricsServer> MetricsEndpoint::StartFromEnvironment() {
  const auto logger = Logging::Loader::Loggers::GetInstance().GetLogger("MetricsEndpoint");
  const std::string address = Variable(kAddressVariable);
  if (address.empty()) {
    ARQ_LOG(logger, ILogger::Info,
            "Prometheus endpoint off: " << kAddressVariable << " is not set");
    return nullptr;
  }
  // A scrape is rendered into one buffer of most of a megabyte for a large
  // switch. glibc's sliding mmap threshold would take such a buffer from the
  // server thread's heap after the first one, and that heap keeps its top
  // resident once freed: a fixed threshold maps every large buffer and
  // unmaps it when freed, so that nothing of a scrape stays resident.
  // Set before the server thread exists; glibc takes the main arena's lock.
  mallopt(M_MMAP_THRESHOLD, kMmapThreshold);  // NOLINT(concurrency-mt-unsafe)
  std::string error;
  auto settings = Exposition::SettingsFor(address, Variable(kWebConfigVariable), error);
  std::unique_ptr<Exposition::MetricsServer> server;
  if (settings) {
    const std::string protection = Protection(*settings);
    const Exposition::BuildInfo build{AppVersion::CreateAppVersion()->Version()};
    server = Exposition::MetricsServer::Start(
        std::move(*settings),
        [build](Exposition::Format format) {
          return Exposition::Render(*Monitoring::MonitoringProcessor::switchModel.Current(), build,
                                    format);
        },
        [logger](const std::string& line) {
          ARQ_LOG(logger, ILogger::Debug, "Prometheus endpoint: " << line);
        },
        error);
    if (server) {
      ARQ_LOG(logger, ILogger::Info,
              "Prometheus endpoint serving " << server->Url() << " (" << protection << ")");
    }
  }
  if (!server) ARQ_LOG(logger, ILogger::Error, "Prometheus endpoint not started: " << error);
  return server;
}

}  // namespace Arq::OrvoViaSwitchMonitoring
