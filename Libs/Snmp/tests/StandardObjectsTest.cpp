// The standard views' objects (Standard/*Objects.def) against an independent
// definition: Debian's compilation of IF-MIB, EtherLike-MIB, RMON-MIB,
// HC-RMON-MIB, ENTITY-MIB, BRIDGE-MIB and Q-BRIDGE-MIB (python3-pysnmp4-mibs, read as
// text). PTPBASE-MIB and the IEEE MIBs, which no package carries, are written
// once from their standards in their definition files.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Model/PortCounterFacts.def"
#include "Standard/Views/PortCounterTables.h"

namespace {

struct Object {
  std::string name, syntax, id;
};

#define ARQ_STD_OBJECT(name, syntax, ...) {#name, #syntax, #__VA_ARGS__},
const std::vector<Object> kPackaged = {
#include "../sources/Standard/Objects/BridgeObjects.def"
#include "../sources/Standard/Objects/EntityObjects.def"
#include "../sources/Standard/Objects/IfMibObjects.def"
};
#undef ARQ_STD_OBJECT

// name -> {syntax, "1, 3, 6, ..."} from the compiled modules' definitions.
std::map<std::string, Object> Compiled(const std::vector<std::string>& modules) {
  static const std::regex line(
      R"(^(\w+) = (MibTableColumn|MibScalar|MibTableRow|MibTable|NotificationType)\(\(([0-9, ]+)\)(?:, (\w+)\()?)");
  const std::map<std::string, std::string> kinds = {
      {"MibTable", "Table"}, {"MibTableRow", "Entry"}, {"NotificationType", "Notification"}};
  std::map<std::string, Object> objects;
  for (const auto& module : modules) {
    std::ifstream file(std::string(ARQ_PYSNMP_MIBS) + "/" + module + ".py");
    EXPECT_TRUE(file.is_open()) << module;
    std::smatch m;
    for (std::string text; std::getline(file, text);) {
      if (!std::regex_search(text, m, line)) continue;
      const auto kind = kinds.find(m[2]);
      objects[m[1]] = {m[1], kind != kinds.end() ? kind->second : m[4].str(), m[3]};
    }
  }
  return objects;
}

void ExpectCompiled(const std::map<std::string, Object>& compiled, const Object& object) {
  const auto found = compiled.find(object.name);
  ASSERT_NE(found, compiled.end()) << object.name;
  EXPECT_EQ(object.id, found->second.id) << object.name;
  EXPECT_EQ(object.syntax, found->second.syntax) << object.name;
}

TEST(StandardObjectsTest, EveryDefinedObjectMatchesTheCompiledModules) {
  const auto compiled = Compiled({"IF-MIB", "ENTITY-MIB", "BRIDGE-MIB", "Q-BRIDGE-MIB",
                                  "EtherLike-MIB", "RMON-MIB", "HC-RMON-MIB"});
  ASSERT_GT(compiled.size(), 200u);
  for (const auto& object : kPackaged) ExpectCompiled(compiled, object);
  for (const auto& table : Arq::Snmp::Standard::PortCounterTables()) {
    const std::string mib = table.mib;
    if (mib != "EtherLike-MIB" && mib != "RMON-MIB" && mib != "HC-RMON-MIB") continue;
    std::string entry;
    for (unsigned arc : table.arcs) entry += std::to_string(arc) + ", ";
    for (const auto& column : table.columns) {
      ExpectCompiled(compiled,
                     {column.name, column.syntax, entry + "1, " + std::to_string(column.number)});
    }
    // And no column of the table is missing from the definition.
    const auto inTable = std::count_if(compiled.begin(), compiled.end(), [&](const auto& object) {
      const std::string& id = object.second.id;
      return id.rfind(entry + "1, ", 0) == 0 && id.find(',', entry.size() + 3) == std::string::npos;
    });
    EXPECT_EQ(static_cast<std::size_t>(inTable), table.columns.size()) << table.name;
  }
}

// The other way round from the build's check (a column served through
// ARQ_SHOWN must be named by a counter): every column the counter
// declaration names is served through ARQ_SHOWN, or is an IF-MIB column, and
// is named under one counter only.
TEST(StandardObjectsTest, EveryColumnNamedByACounterShowsIt) {
#define ARQ_NAMES(...) ARQ_NAMES_COLUMNS(__VA_ARGS__, ~)
#define ARQ_NAMES_COLUMNS(counter, family, value, interfaceLeaf, ethernetLeaf, columns, ...) \
  {#counter, columns},
  const std::vector<std::pair<std::string, std::string>> facts{ARQ_PORT_COUNTER_FACTS(ARQ_NAMES)};
#undef ARQ_NAMES_COLUMNS
#undef ARQ_NAMES
  std::map<std::string, std::string> counterOf;
  for (const auto& [counter, columns] : facts) {
    std::istringstream words(columns);
    for (std::string column; words >> column;) {
      EXPECT_TRUE(counterOf.emplace(column, counter).second) << column << " named twice";
    }
  }
  std::set<std::string> unserved;
  for (const auto& [column, counter] : counterOf) unserved.insert(column);
  for (const auto& table : Arq::Snmp::Standard::PortCounterTables()) {
    for (const auto& column : table.columns) {
      const bool shown = std::string(column.value).rfind("ARQ_SHOWN", 0) == 0;
      EXPECT_EQ(shown, unserved.erase(column.name) == 1) << column.name;
    }
  }
  for (const auto& column : unserved) {
    EXPECT_TRUE(column.rfind("if", 0) == 0 &&
                std::any_of(kPackaged.begin(), kPackaged.end(),
                            [&](const Object& object) { return object.name == column; }))
        << column << " is no column of a view";
  }
  EXPECT_EQ(counterOf["ifHCInOctets"], "NbOfGoodOctetsReceived");
  EXPECT_EQ(counterOf["etherStatsHighCapacityOverflowPkts64Octets"], "NbOfGoodPackets64Bytes");
}

}  // namespace
