#pragma once

#include <string>

#include "Arq/Exposition/ExpositionWriter.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Exposition {

// What the exposition says of the daemon itself.
struct BuildInfo {
  std::string version;
};

// The whole exposition of one switch model: every family of Families.h with
// its samples, in `format`. A port is exposed as IF-MIB serves it: a port of
// a consistent Ethernet, PRS or LAG interface (by the first of those
// interfaces that lists it, in that order of kinds), so that a port the
// switch never gave data for has no sample at all; through an outage the
// model keeps the last data, and so do the samples (oper status unknown).
std::string Render(const OrvoViaSwitch::Domain::Model::SwitchModel& model, const BuildInfo& build,
                   Format format);

}  // namespace Arq::Exposition
