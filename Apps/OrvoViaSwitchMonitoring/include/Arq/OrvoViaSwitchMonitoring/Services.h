#pragma once

#include <memory>

#include "Arq/Monitoring/MonitoringProcessor.h"
#include "Arq/OrvoViaSwitchMonitoring/InputParameters.h"
#include "Arq/Worker/IWorker.h"

namespace Arq::OrvoViaSwitchMonitoring {

// Starts the options-file watcher on the processor (kept in `optionsWorker`,
// which the caller destroys at shutdown) and runs the SNMP sub-agent on the
// calling thread until SIGTERM or SIGINT.
void RunServices(const std::shared_ptr<Monitoring::MonitoringProcessor>& processor,
                 const InputParameters::Parameters& parameters,
                 std::unique_ptr<Worker::IWorker>& optionsWorker);

}  // namespace Arq::OrvoViaSwitchMonitoring
