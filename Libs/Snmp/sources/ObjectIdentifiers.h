#pragma once

// The private MIB's object identifiers as arcs below the enterprise arc, one
// constant per node, named after it (Oid::arqSwitchOrvoViaNbPTPs). The same
// table generates the MIB module's identifiers.
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <vector>

namespace Arq::Snmp::Oid {

#define ARQ_MIB_NODE(name, ...) inline const std::vector<oid> name{__VA_ARGS__};
#include "ObjectIdentifiers.def"
#undef ARQ_MIB_NODE

}  // namespace Arq::Snmp::Oid
