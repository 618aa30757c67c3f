#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The elements separated by one blank, without a leading or trailing blank:
// the form in which VLAN lists and port lists are published.
std::string ToString(const std::vector<std::int16_t>& values);
std::string ToString(const std::vector<std::string>& values);

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
