#pragma once

// The private MIB's table shapes and text widths (TableShapes.def) as
// constants: Shape::arqSwitchOrvoViaPTPsTable.rows, Width::VlanIds.
#include <algorithm>
#include <cstddef>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/Metrics.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Snmp {

namespace Width {
#define ARQ_MIB_TABLE(name, rows, own, ports)
#define ARQ_MIB_WIDTH(name, characters) inline constexpr std::size_t name = characters;
#include "TableShapes.def"
#undef ARQ_MIB_WIDTH

// The widest text of all: the room of a table cell.
#define ARQ_MIB_WIDTH(name, characters) characters,
inline constexpr std::size_t kWidest = std::max({
#include "TableShapes.def"
});
#undef ARQ_MIB_WIDTH
#undef ARQ_MIB_TABLE
}  // namespace Width

namespace Shape {

using OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallCount;
using OrvoViaSwitch::Domain::Dto::Metrics::kLAGMaxEthernetPorts;
using OrvoViaSwitch::Domain::Monitoring::kMaxEthernetInterfaces;
using OrvoViaSwitch::Domain::Monitoring::kMaxLLDPInfos;
using OrvoViaSwitch::Domain::Monitoring::kMaxPRSInterfaces;
using OrvoViaSwitch::Domain::Monitoring::kMaxPTPs;

// The columns of one Ethernet port: name, mode, speed, state, the counters, the two rates.
inline constexpr std::size_t kEthernetPortColumns =
    6 + OrvoViaSwitch::Domain::Dto::kEthCounterCount;

struct Table {
  long rows;
  std::size_t columns;  // served, from column 2 on
};

#define ARQ_MIB_TABLE(name, rowCount, own, ports) \
  inline constexpr Table name{static_cast<long>(rowCount), (own) + (ports)*kEthernetPortColumns};
#define ARQ_MIB_WIDTH(name, characters)
#include "TableShapes.def"
#undef ARQ_MIB_WIDTH
#undef ARQ_MIB_TABLE

}  // namespace Shape
}  // namespace Arq::Snmp
