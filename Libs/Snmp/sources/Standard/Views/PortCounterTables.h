#pragma once

// The tables of PortCounterObjects.def as data, for what reads them without
// serving them: the generators of the exporter and collectd configurations
// and the tests that check the file against the MIB texts.
#include <string>
#include <vector>

#include "Standard/Objects/PortCounterObjects.def"

namespace Arq::Snmp::Standard {

enum class ColumnUse { Export, Serve, Absent };

struct ColumnInfo {
  const char* name;
  unsigned number;
  const char* syntax;  // the MIB's SYNTAX or textual convention
  ColumnUse use;
  const char* value;  // the expression that serves it, as written

  bool Counter() const {
    return std::string(syntax) == "Counter32" || std::string(syntax) == "Counter64";
  }
};

struct TableInfo {
  const char* name;
  const char* mib;
  std::vector<unsigned> arcs;
  std::vector<ColumnInfo> columns;

  // The column's object identifier in dotted form (below the table's entry).
  std::string Oid(const ColumnInfo& column) const {
    std::string text;
    for (unsigned arc : arcs) text += std::to_string(arc) + ".";
    return text + "1." + std::to_string(column.number);
  }
};

#define ARQ_INFO_ARCS(...) \
  { __VA_ARGS__ }
#define ARQ_INFO_COLUMN(name, number, syntax, use, ...) \
  ColumnInfo{#name, number, #syntax, ColumnUse::use, #__VA_ARGS__},
#define ARQ_INFO_TABLE(name, mib, arcs, row, rows, columns) \
  TableInfo{#name, mib, ARQ_INFO_ARCS arcs, {columns(ARQ_INFO_COLUMN)}},

inline const std::vector<TableInfo>& PortCounterTables() {
  static const std::vector<TableInfo> tables{ARQ_PORT_COUNTER_TABLES(ARQ_INFO_TABLE)};
  return tables;
}

#undef ARQ_INFO_TABLE
#undef ARQ_INFO_COLUMN
#undef ARQ_INFO_ARCS

}  // namespace Arq::Snmp::Standard
