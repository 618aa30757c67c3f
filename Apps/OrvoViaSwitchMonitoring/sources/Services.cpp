#include "Arq/OrvoViaSwitchMonitoring/Services.h"

#include <syslog.h>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include "Arq/Gnmi/GnmiServer.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/OrvoViaSwitchMonitoring/DynamicParametersUpdater.h"
#include "Arq/OrvoViaSwitchMonitoring/MetricsEndpoint.h"
#include "Arq/Snmp/SnmpSubAgent.h"

namespace Arq::OrvoViaSwitchMonitoring {
namespace {

using arq::logging::ILogger;

// The least urgent syslog priority of the SNMP library's log written at the
// daemon's current log level: the level governs both logs.
int SyslogThreshold() {
  switch (Logging::Loader::Loggers::GetInstance().GetLoggingLevel()) {
    case ILogger::Trace:
    case ILogger::Debug:
      return LOG_DEBUG;
    case ILogger::Info:
      return LOG_INFO;
    case ILogger::Warning:
      return LOG_WARNING;
    case ILogger::Error:
      return LOG_ERR;
    case ILogger::Fatal:
      return LOG_CRIT;
    case ILogger::NoLog:
      break;
  }
  return -1;
}

}  // namespace

void RunServices(const std::shared_ptr<Monitoring::MonitoringProcessor>& processor,
                 const InputParameters::Parameters& parameters,
                 std::unique_ptr<Worker::IWorker>& optionsWorker) {
  auto updater = std::make_shared<DynamicParametersUpdater>(processor);
  optionsWorker = DynamicParameters::DynamicParametersWorkerFactory::CreateWorkerAndRun(
      updater, parameters.dataSetupFolder, parameters.optionsFilename);
  // When the output could not be redirected it stayed where it was, and the
  // SNMP library's log stays on standard error as without a redirection.
  const std::string& output = parameters.redirectOutput;
  auto agent = std::make_unique<Snmp::SnmpSubAgent>(
      Snmp::SnmpSubAgent::IsStandardOutputOn(output) ? output : "", SyslogThreshold);
  // The interface numbers that must survive restarts live where an agent
  // keeps such state: Net-SNMP's persistent directory (/var/lib/snmp, or
  // persistentDir / SNMP_PERSISTENT_DIR), known once the agent has read its
  // configuration.
  processor->KeepNumbersIn(get_persistent_directory());
  // The Prometheus endpoint and the gNMI listener serve on threads of their
  // own beside the SNMP loop, and stop before the collection does: a setting
  // that cannot work costs one error line and that listener, never the daemon.
  auto metrics = MetricsEndpoint::StartFromEnvironment();
  std::unique_ptr<Gnmi::GnmiServer> gnmi;
  const auto gnmiSettings = Gnmi::Settings::FromEnvironment();
  if (gnmiSettings.Enabled()) {
    std::string error;
    gnmi =
        Gnmi::GnmiServer::Create(gnmiSettings, Monitoring::MonitoringProcessor::switchModel, error);
    if (!gnmi) snmp_log(LOG_ERR, "gNMI server not started: %s\n", error.c_str());
  }
  agent->Run();
  gnmi.reset();
  metrics.reset();
  agent.reset();
  // The collection thread is done before the end line, whatever the switch
  // does: a call in flight is cut short rather than waited for.
  processor->StopAndWait();
}

}  // namespace Arq::OrvoViaSwitchMonitoring
