// The standard port counter tables' definition against an independent one:
// the compiled EtherLike-MIB, RMON-MIB and HC-RMON-MIB of Debian's
// python3-pysnmp4-mibs, read as text (each column is a line
// `name = MibTableColumn((arcs), Type()...`).
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include "Standard/PortCounterTables.h"

namespace {

using Arq::Snmp::Standard::PortCounterTables;

// Column number -> "name Syntax" of the table at `entry` ("1, 3, ..., 1, ").
std::map<unsigned, std::string> CompiledColumns(const std::string& mib, const std::string& entry) {
  std::ifstream file(std::string(ARQ_PYSNMP_MIBS) + "/" + mib + ".py");
  EXPECT_TRUE(file.is_open()) << mib;
  static const std::regex column(R"(^(\w+) = MibTableColumn\(\(([0-9, ]+)\), (\w+)\()");
  std::map<unsigned, std::string> columns;
  std::string line;
  std::smatch match;
  while (std::getline(file, line)) {
    const std::string arcs = std::regex_search(line, match, column) ? match[2].str() : "";
    if (arcs.rfind(entry, 0) == 0 && arcs.find(',', entry.size()) == std::string::npos) {
      columns[std::stoul(arcs.substr(entry.size()))] = match[1].str() + " " + match[3].str();
    }
  }
  return columns;
}

TEST(PortCounterObjectsTest, EveryColumnOfTheRfcTablesHasTheMibsNumberNameAndSyntax) {
  int tables = 0;
  for (const auto& table : PortCounterTables()) {
    const std::string mib = table.mib;
    if (mib != "EtherLike-MIB" && mib != "RMON-MIB" && mib != "HC-RMON-MIB") continue;
    std::string entry;
    for (unsigned arc : table.arcs) entry += std::to_string(arc) + ", ";
    std::map<unsigned, std::string> defined;
    for (const auto& column : table.columns) {
      defined[column.number] = std::string(column.name) + " " + column.syntax;
    }
    EXPECT_EQ(CompiledColumns(mib, entry + "1, "), defined) << table.name;
    ++tables;
  }
  EXPECT_EQ(tables, 5);
}

}  // namespace
