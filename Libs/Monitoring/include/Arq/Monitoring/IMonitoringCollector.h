#pragma once

#include <memory>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"
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
  // The typed model of the last collection, once: nothing when that
  // collection gave none (it was cut short, or the collector keeps no model).
  virtual std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> TakeModel() { return nullptr; }
};

}  // namespace Arq::Monitoring
