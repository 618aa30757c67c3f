#pragma once

#include <memory>

#include "Arq/Exposition/MetricsServer.h"

namespace Arq::OrvoViaSwitchMonitoring {

// The Prometheus endpoint of the daemon, configured by its environment (the
// service's environment file) rather than its command line:
// ORVOVIA_METRICS_ADDRESS ("host:port"; unset or empty: no endpoint) and
// ORVOVIA_METRICS_WEB_CONFIG (an exporter-toolkit web configuration file).
// Every scrape renders the switch model published last.
struct MetricsEndpoint {
  static constexpr const char* kAddressVariable = "ORVOVIA_METRICS_ADDRESS";
  static constexpr const char* kWebConfigVariable = "ORVOVIA_METRICS_WEB_CONFIG";

  // The endpoint serving, or nullptr when it is off or cannot start; one log
  // line says which. Its failure never ends the daemon.
  static std::unique_ptr<Exposition::MetricsServer> StartFromEnvironment();
};

}  // namespace Arq::OrvoViaSwitchMonitoring
