// The standard views' objects (Standard/*Objects.def) against independent
// definitions: Debian's compilation of ENTITY-MIB, BRIDGE-MIB and
// Q-BRIDGE-MIB (python3-pysnmp4-mibs, read as text), and for PTPBASE-MIB,
// which no package carries, the shape of the module its RFC defines.
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
const std::vector<Object> kPtpBase = {
#include "../sources/Standard/PtpBaseObjects.def"
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

std::string Parent(const std::string& id) {
  return id.substr(0, id.rfind(", "));
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

// Every object under ptpbaseMIB (mib-2 241), entries arc 1 of their table,
// columns under an entry, as RFC 8173 lays the module out; the RFC's own
// numbers for the columns the alert and the exporter read.
TEST(StandardObjectsTest, PtpBaseObjectsFollowTheModulesLayout) {
  std::map<std::string, const Object*> byId;
  for (const auto& object : kPtpBase) {
    EXPECT_EQ(object.id.rfind("1, 3, 6, 1, 2, 1, 241, 1, ", 0), 0u) << object.name;
    EXPECT_TRUE(byId.emplace(object.id, &object).second) << object.name;
  }
  for (const auto& object : kPtpBase) {
    const auto parent = byId.find(Parent(object.id));
    const std::string expected = object.syntax == "Entry" ? "Table" : "Entry";
    if (object.syntax == "Entry" || parent != byId.end()) {
      ASSERT_NE(parent, byId.end()) << object.name;
      EXPECT_EQ(parent->second->syntax, expected) << object.name;
    }
  }
  const std::map<std::string, std::string> rfc = {
      {"1, 3, 6, 1, 2, 1, 241, 1, 2, 9, 1, 5", "ptpbaseClockPortRunningName"},
      {"1, 3, 6, 1, 2, 1, 241, 1, 2, 9, 1, 7", "ptpbaseClockPortRunningRole"},
      {"1, 3, 6, 1, 2, 1, 241, 1, 2, 9, 1, 8", "ptpbaseClockPortRunningInterfaceIndex"}};
  for (const auto& [id, name] : rfc) EXPECT_EQ(byId.at(id)->name, name);
}

}  // namespace
