#pragma once

#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Monitoring {

// A source of monitoring data: writes whatever it gathered into the values
// set and signals failure only by throwing a standard exception.
class IMonitoringCollector {
 public:
  virtual ~IMonitoringCollector() = default;
  virtual void Collect(OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) = 0;
  // Called from another thread when the daemon stops: a collection under way
  // should end as soon as it can. Nothing to do for a collector that never
  // waits on anything.
  virtual void Interrupt() {}
};

}  // namespace Arq::Monitoring
