// Prints what the monitoring tools read of the standard port counter tables,
// from PortCounterObjects.def: each exported column with its object
// identifier and type.
//   StandardViewsConfig snmp-yml          the snmp_exporter module orvovia_ports
//   StandardViewsConfig collectd-data     the collectd snmp plugin's Data blocks
//   StandardViewsConfig collectd-collect  the Collect line naming them
// The build writes them into the shipped snmp.yml and collectd snippet.
#include <iostream>
#include <string>

#include "Standard/Views/PortCounterTables.h"

namespace {

using Arq::Snmp::Standard::ColumnInfo;
using Arq::Snmp::Standard::ColumnUse;
using Arq::Snmp::Standard::PortCounterTables;
using Arq::Snmp::Standard::TableInfo;

constexpr const char* kIfName = "1.3.6.1.2.1.31.1.1.1.1";
constexpr const char* kIfAlias = "1.3.6.1.2.1.31.1.1.1.18";

template <typename Visit>
void ForEachExported(Visit visit) {
  for (const auto& table : PortCounterTables()) {
    for (const auto& column : table.columns) {
      if (column.use == ColumnUse::Export) visit(table, column);
    }
  }
}

// "the switch's NbOfCrcErrorEvents" for a column fed by one counter.
std::string Source(const ColumnInfo& column) {
  const std::string value = column.value;
  const std::string prefix = "ARQ_COUNT(";
  if (value.rfind(prefix, 0) == 0 && value.back() == ')') {
    return "the switch's " + value.substr(prefix.size(), value.size() - prefix.size() - 1);
  }
  return "the port's mode and link";
}

void PrintSnmpYml() {
  std::cout << "# The switch's per-port error, pause, size and duplex counters of the\n"
               "# standard MIBs, by object identifier (no package carries these MIB texts\n"
               "# for the generator): written by the build from PortCounterObjects.def.\n"
               "orvovia_ports:\n  walk:\n";
  ForEachExported([](const TableInfo& table, const ColumnInfo& column) {
    std::cout << "  - " << table.Oid(column) << "\n";
  });
  std::cout << "  - " << kIfName << "\n  - " << kIfAlias << "\n  metrics:\n";
  ForEachExported([](const TableInfo& table, const ColumnInfo& column) {
    std::cout << "  - name: " << column.name << "\n    oid: " << table.Oid(column)
              << "\n    type: " << (column.Counter() ? "counter" : "gauge")
              << "\n    help: " << table.mib << " " << column.name << ", from " << Source(column)
              << " - " << table.Oid(column)
              << "\n    indexes:\n    - labelname: ifIndex\n      type: gauge\n"
              << "    lookups:\n";
    for (const auto& [label, oid] :
         {std::pair{"ifAlias", kIfAlias}, std::pair{"ifName", kIfName}}) {
      std::cout << "    - labels:\n      - ifIndex\n      labelname: " << label
                << "\n      oid: " << oid << "\n      type: DisplayString\n";
    }
  });
}

void PrintCollectdData() {
  std::cout << "  # The switch's per-port error, pause, size and duplex counters of the\n"
               "  # standard MIBs, every port by ifName (written by the build from\n"
               "  # PortCounterObjects.def; dot3StatsDuplexStatus 1 unknown, 2 half, 3 full).\n";
  ForEachExported([](const TableInfo& table, const ColumnInfo& column) {
    std::cout << "  <Data \"orvovia_" << column.name << "\">\n    Type \""
              << (column.Counter() ? "derive" : "gauge")
              << "\"\n    Table true\n    TypeInstanceOID \"" << kIfName
              << "\"\n    TypeInstancePrefix \"" << column.name << "-\"\n    Values \""
              << table.Oid(column) << "\"\n  </Data>\n";
  });
}

void PrintCollectdCollect() {
  std::cout << "    Collect";
  ForEachExported([](const TableInfo&, const ColumnInfo& column) {
    std::cout << " \"orvovia_" << column.name << "\"";
  });
  std::cout << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc == 2 ? argv[1] : "";
  if (what == "snmp-yml") {
    PrintSnmpYml();
  } else if (what == "collectd-data") {
    PrintCollectdData();
  } else if (what == "collectd-collect") {
    PrintCollectdCollect();
  } else {
    std::cerr << "usage: StandardViewsConfig snmp-yml|collectd-data|collectd-collect\n";
    return 2;
  }
  return 0;
}
