#pragma once

// The switch's per-port counters, LAG membership and management address in
// the standard MIBs (EtherLike-MIB, RMON-MIB, HC-RMON-MIB, IEEE8023-LAG-MIB,
// LLDP-MIB): the tables of PortCounterObjects.def.
#include <optional>
#include <string>
#include <vector>

#include "Standard/Engine/StandardObjects.h"
#include "Standard/Objects/PortCounterObjects.def"

namespace Arq::Snmp::Standard {

namespace PortCounters {

// A port row: every port of IF-MIB, by its ifIndex (by its port number in
// the RMON tables).
struct PortRow {
  std::vector<oid> index;
  long ifIndex = 0;
  long portNumber = 0;
  Model::PortCounters counters{};
  long duplex = 1;           // unknown(1), halfDuplex(2), fullDuplex(3)
  std::uint64_t octets = 0;  // received, good and bad
  std::uint64_t packets = 0;
  std::vector<oid> dataSource;  // ifIndex.<ifIndex>
  std::optional<std::string> systemId;
  long selectedAgg = 0;  // the ifIndex of its LAG, or 0
  long attachedAgg = 0;
};

// A LAG, by its ifIndex.
struct AggregatorRow {
  std::vector<oid> index;
  std::optional<std::string> mac;
  std::optional<std::string> systemId;
  std::string ports;  // PortList
};

// The switch's management address, by subtype and address.
struct ManAddrRow {
  std::vector<oid> index;
  long length = 0;
  long ifSubtype = 1;  // unknown(1), ifIndex(2)
  long ifId = 0;
  std::vector<oid> objectId{0, 0};
  std::string ports;  // LldpPortList
};

// Each table's columns, by its name.
#define ARQ_COLUMNS(name, mib, arcs, row, rows, columns) \
  std::vector<Column<PortCounters::row>> name##Columns();
ARQ_PORT_COUNTER_TABLES(ARQ_COLUMNS)
#undef ARQ_COLUMNS

}  // namespace PortCounters

class PortCounterView {
 public:
  PortCounterView() = default;
  PortCounterView(const PortCounterView&) = delete;
  PortCounterView& operator=(const PortCounterView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  // Each table, with the rows it serves when they are another's.
#define ARQ_PORT_COUNTER_TABLE(name, mib, arcs, row, rows, columns) \
  ProjectedTable<PortCounters::row> name =                          \
      ProjectedTable<PortCounters::row>(PortCounters::name##Columns(), rows);
  ARQ_PORT_COUNTER_TABLES(ARQ_PORT_COUNTER_TABLE)
#undef ARQ_PORT_COUNTER_TABLE
};

}  // namespace Arq::Snmp::Standard
