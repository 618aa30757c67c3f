#pragma once

#include <memory>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IAppVersion.h"
#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchMonitoring {

// The daemon from start-up to its exit code: wires every part in order, runs
// the SNMP loop on the calling thread until SIGTERM or SIGINT, then takes
// everything down in reverse and prints the end line last.
int RunDaemon(int argc, const char** argv);

// The version and log-level banners, then the command line, at Info whatever
// the logger's threshold (which is restored afterwards).
void LogInputParameters(
    const std::shared_ptr<arq::logging::ILogger>& logger,
    const std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion>& version, int argc,
    const char** argv);

}  // namespace Arq::OrvoViaSwitchMonitoring
