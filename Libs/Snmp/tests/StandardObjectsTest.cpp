// The standard views' objects (Standard/*Objects.def) against an independent
// definition: Debian's compilation of ENTITY-MIB, BRIDGE-MIB and Q-BRIDGE-MIB
// (python3-pysnmp4-mibs, read as text). PTPBASE-MIB, which no package
// carries, is written once from RFC 8173 in PtpBaseObjects.def.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Object {
  std::string name, syntax, id;
};

#define ARQ_STD_OBJECT(name, syntax, ...) {#name, #syntax, #__VA_ARGS__},
const std::vector<Object> kEntityAndBridge = {
#include "../sources/Standard/BridgeObjects.def"
#include "../sources/Standard/EntityObjects.def"
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

TEST(StandardObjectsTest, EntityAndBridgeObjectsMatchTheCompiledModules) {
  const auto compiled = Compiled({"ENTITY-MIB", "BRIDGE-MIB", "Q-BRIDGE-MIB"});
  ASSERT_GT(compiled.size(), 100u);
  for (const auto& object : kEntityAndBridge) {
    const auto found = compiled.find(object.name);
    ASSERT_NE(found, compiled.end()) << object.name;
    EXPECT_EQ(object.id, found->second.id) << object.name;
    EXPECT_EQ(object.syntax, found->second.syntax) << object.name;
  }
}

}  // namespace
