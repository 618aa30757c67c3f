#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Monitoring {

// Decodes what a neighbour announced (whole TLVs, as the switch passes them
// on) into typed fields, once. The bytes come from the network: every field
// is checked against its TLV's real size and the standard's ranges, and a
// field whose TLV is missing or malformed stays empty without touching the
// others.
OrvoViaSwitch::Domain::Model::LldpNeighbour DecodeNeighbour(
    const OrvoViaSwitch::Domain::Dto::LldpInfo& info, std::size_t position);

// A BER-encoded object identifier (as in a Management Address TLV): its arcs,
// or nothing when it is malformed, has more than 128 arcs, or an arc does not
// fit in 32 bits.
std::optional<std::vector<std::uint32_t>> DecodeObjectId(std::string_view ber);

// "02:a0:c9:10:00:11" (or with '-') as six bytes.
std::optional<OrvoViaSwitch::Domain::Model::MacAddress> ParseMac(std::string_view text);

}  // namespace Arq::Monitoring
