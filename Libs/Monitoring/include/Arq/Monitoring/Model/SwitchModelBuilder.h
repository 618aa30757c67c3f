#pragma once

#include <memory>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Monitoring {

struct SwitchSnapshot;

// Turns one collection's records into a typed switch model, carrying from
// the previous model what spans collections: when a link state changed, when
// a counter went backwards, and, for the data of a call that failed, the
// last data the switch gave (its ports keep their rows and frozen counters,
// their link state unknown) rather than nothing.
class SwitchModelBuilder {
 public:
  std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> Build(
      const SwitchSnapshot& snapshot, OrvoViaSwitch::Domain::Model::Clock::time_point now);

  // A model of nothing new: the last one's switch data, marked as not
  // current (a collection that reached no switch, or was cut short).
  std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> Carry(
      OrvoViaSwitch::Domain::Model::Clock::time_point now);

 private:
  std::shared_ptr<const OrvoViaSwitch::Domain::Model::SwitchModel> previous =
      std::make_shared<const OrvoViaSwitch::Domain::Model::SwitchModel>();
};

}  // namespace Arq::Monitoring
