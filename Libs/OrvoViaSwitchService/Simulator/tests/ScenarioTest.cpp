#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitchService/Simulator/Scenario.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::OrvoViaSwitchService::Simulator {
namespace {

namespace api = ArqSwitchApi;
using std::chrono::milliseconds;

const std::string kSmall = ARQ_SCENARIO_DIR "/small.json";

std::vector<std::string> Names(const std::vector<api::EthCnt_t>& records) {
  std::vector<std::string> names;
  for (const auto& record : records) names.push_back(record.EthName);
  return names;
}

std::string TlvOf(const api::lldpInfo_t& neighbour, api::lldpTlvType_t::type type) {
  return neighbour.Tlv.at(static_cast<std::int8_t>(type));
}

TEST(ScenarioTest, CountersGrowByTheirRatesTimesTheElapsedTime) {
  const Scenario scenario = Scenario::Load(kSmall);
  const ServerData later = scenario.At(milliseconds(2500));

  // Port 1/1: 8 Gb/s out, 4 Gb/s in, frames of 1000 bytes, CRC errors 2/s.
  const auto& port11 = later.counters.at("eth1").at(0);
  EXPECT_EQ(port11.NbOfGoodOctetsReceived, 1000000 + 500000000LL * 5 / 2);
  EXPECT_EQ(port11.NbOfGoodOctectsSent, 2000000 + 1000000000LL * 5 / 2);
  EXPECT_EQ(port11.NbOfGoodUnicastFrameReceived, 1000 + 500000 * 5 / 2);
  EXPECT_EQ(port11.NbOfGoodUnicastFrameSent, 2000 + 1000000 * 5 / 2);
  EXPECT_EQ(port11.NbOfCrcErrorEvents, 3 + 5);
  // Port 2/1: 2 Gb/s in with frames of 500 bytes.
  EXPECT_EQ(later.counters.at("prs1").at(0).NbOfGoodUnicastFrameReceived,
            250000000LL / 500 * 5 / 2);
  EXPECT_EQ(later.counters.at("prs1").at(0).NbOfGoodPacketsMulticast, 12);
  // Port 1/2 has no rates: it does not move.
  EXPECT_EQ(later.counters.at("eth2").at(0).NbOfGoodOctetsReceived, 77);

  // Whole units only, rounded down: 2 CRC errors per second make none in 499 ms.
  EXPECT_EQ(scenario.At(milliseconds(499)).counters.at("eth1").at(0).NbOfCrcErrorEvents, 3);
  EXPECT_EQ(scenario.At(milliseconds(500)).counters.at("eth1").at(0).NbOfCrcErrorEvents, 4);
  EXPECT_EQ(scenario.At(milliseconds(1)).counters.at("eth1").at(0).NbOfGoodOctetsReceived,
            1000000 + 500000);
  // A year of traffic stays exact.
  EXPECT_EQ(scenario.At(milliseconds(31536000000LL)).counters.at("eth1").at(0).NbOfGoodOctectsSent,
            2000000 + 1000000000LL * 31536000);
  // The same time gives the same answers; the start is not changed by a later time.
  EXPECT_EQ(scenario.At(milliseconds(2500)).counters, later.counters);
  EXPECT_EQ(scenario.At(milliseconds(0)).counters.at("eth1").at(0).NbOfGoodOctetsReceived, 1000000);
}

// The ends of each range are served as written, and a counter past 64 bits
// wraps as a switch counter does.
TEST(ScenarioTest, ExtremeValuesAreServedAsWritten) {
  const Scenario scenario = Scenario::Parse(R"({
    "ports": [{"name": "p", "nbPhys": -128, "counters": {"NbOfMacCollision": 9223372036854775806},
               "growth": {"NbOfMacCollision": 1}}],
    "interfaces": [{"name": "e", "type": "Ethernet", "vid": 32767, "members": ["p"]}],
    "hardware": [{"port": 127, "subPorts": -128}],
    "lldp": {"neighbours": [{"interface": "p", "capabilities": {"supported": 65535}}]}
  })",
                                            "t.json");
  const ServerData data = scenario.At(milliseconds(1000));
  EXPECT_EQ(data.ethInfos.at(0).NbPhys, -128);
  EXPECT_EQ(data.ifInfos.at("e").Vid, 32767);
  EXPECT_EQ(data.hwDescs.at(0).NbSubPort, -128);
  EXPECT_EQ(TlvOf(data.lldpInfos.at(0), api::lldpTlvType_t::SystemCapabilities),
            std::string("\x0e\x04\xff\xff\x00\x00", 6));
  EXPECT_EQ(data.counters.at("e").at(0).NbOfMacCollision, 9223372036854775807LL);
  EXPECT_EQ(scenario.At(milliseconds(2000)).counters.at("e").at(0).NbOfMacCollision,
            -9223372036854775807LL - 1);
}

// The bytes of IEEE 802.1AB TLVs, header included; the collector's tests
// check that the monitor decodes them.
TEST(ScenarioTest, NeighboursAreServedAsTlvBytes) {
  const ServerData data = Scenario::Load(kSmall).At(milliseconds(0));
  ASSERT_EQ(data.lldpInfos.size(), 2u);
  const auto& core = data.lldpInfos[0];
  EXPECT_EQ(core.IfName, "1/1");
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::ChassisId),
            std::string("\x02\x07\x04\x00\x1b\x21\x3a\x4f\x5e", 9));
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::TimeToLive), std::string("\x06\x02\x00\x78", 4));
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::SystemCapabilities),
            std::string("\x0e\x04\x00\x14\x00\x14", 6));
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::ManagementAddress),
            std::string("\x10\x0c\x05\x01\xc0\x00\x02\x01\x02\x00\x00\x00\x00\x00", 14));
  const auto& edge = data.lldpInfos[1];
  EXPECT_EQ(TlvOf(edge, api::lldpTlvType_t::ChassisId),
            std::string("\x02\x06\x05\x01\xc0\x00\x02\x02", 8));
  // The raw organisationally specific TLV (802.1 port VLAN id 100), as written.
  EXPECT_EQ(TlvOf(edge, api::lldpTlvType_t::CustomTlv),
            std::string("\xfe\x06\x00\x80\xc2\x01\x00\x64", 8));
}

TEST(ScenarioTest, MissingMarksLeaveThingsOutOfTheirAnswers) {
  const ServerData data = Scenario::Parse(R"({
    "ports": [
      {"name": "a"},
      {"name": "b", "missing": ["info", "rates"]},
      {"name": "c", "missing": ["counters"]}
    ],
    "interfaces": [
      {"name": "x", "type": "Ethernet", "members": ["a", "b", "c", "a"]},
      {"name": "y", "type": 7, "members": ["a"], "missing": ["list", "counters", "mac"]},
      {"name": "z", "type": "Virtual", "missing": ["info", "rates"]}
    ]
  })",
                                          "t.json")
                              .At(milliseconds(0));

  EXPECT_EQ(data.ifList, (std::vector<std::string>{"x", "z"}));
  EXPECT_EQ(data.ifInfos.count("z"), 0u);
  EXPECT_EQ(data.ifInfos.at("y").Type, static_cast<api::IfType_t::type>(7));
  EXPECT_EQ(data.macs.count("y"), 0u);
  EXPECT_EQ(Names(data.counters.at("x")), (std::vector<std::string>{"a", "b", "a"}));
  EXPECT_EQ(data.counters.count("y"), 0u);
  EXPECT_TRUE(data.counters.at("z").empty());
  ASSERT_EQ(data.stats.at("x").size(), 3u);
  EXPECT_EQ(data.stats.at("x")[1].EthName, "c");
  EXPECT_EQ(data.stats.count("z"), 0u);
  ASSERT_EQ(data.ethInfos.size(), 2u);
  EXPECT_EQ(data.ethInfos[1].EthName, "c");
}

// A scenario that cannot be used, and the one line that says why.
struct BadScenario {
  const char* name;
  std::string text;
  std::string error;
};

void PrintTo(const BadScenario& bad, std::ostream* out) {
  *out << bad.name;
}

class BadScenarioTest : public ::testing::TestWithParam<BadScenario> {};

TEST_P(BadScenarioTest, IsRefusedWithThePlaceAndTheProblem) {
  try {
    Scenario::Parse(GetParam().text, "t.json");
    FAIL() << "accepted";
  } catch (const ScenarioError& error) {
    EXPECT_EQ(std::string(error.what()), GetParam().error);
  }
}

INSTANTIATE_TEST_SUITE_P(
    EveryKindOfMistake, BadScenarioTest,
    ::testing::Values(
        BadScenario{"NotJson", "{\"ports\": [",
                    "t.json: not valid JSON: Line 1, Column 12: "
                    "Syntax error: value, object or array expected."},
        BadScenario{"DuplicateKey", R"({"mainMacAddress": "a", "mainMacAddress": "b"})",
                    "t.json: not valid JSON: Line 1, Column 25: Duplicate key: 'mainMacAddress'"},
        BadScenario{"RootNotAnObject", "[]", "t.json: top level: expected an object"},
        BadScenario{"UnknownMember", R"({"interfaces": [], "prots": []})",
                    "t.json: top level: unknown member \"prots\""},
        BadScenario{"UnknownType", R"({"interfaces": [{"name": "e", "type": "Ether"}]})",
                    "t.json: interfaces[0].type: \"Ether\" is not one of Unknown, Ethernet, "
                    "BasicPrs, BasicLag, Virtual, __LAST__ (or a number)"},
        // Numbers beyond what the generated enum type can hold.
        BadScenario{"TypeNumberTooLarge", R"({"interfaces": [{"name": "e", "type": 42}]})",
                    "t.json: interfaces[0].type: 42 is not in 0..7"},
        BadScenario{"ClockModeNumberTooLarge", R"({"ptp": [{"clockMode": 9}]})",
                    "t.json: ptp[0].clockMode: 9 is not in -8..7"},
        BadScenario{"TypeMissing", R"({"interfaces": [{"name": "e"}]})",
                    "t.json: interfaces[0]: \"type\" is required"},
        BadScenario{"MemberNotAPort",
                    R"({"ports": [{"name": "p"}],
                        "interfaces": [{"name": "e", "type": "Ethernet", "members": ["p", "q"]}]})",
                    "t.json: interfaces[0].members[1]: no port of that name in \"ports\""},
        BadScenario{"UnknownHardwareMember", R"({"hardware": [{"port": 1, "ports": 2}]})",
                    "t.json: hardware[0]: unknown member \"ports\""},
        BadScenario{"CapabilitiesOutOfRange",
                    R"({"lldp": {"neighbours": [{"interface": "p",
                        "capabilities": {"supported": 65536}}]}})",
                    "t.json: lldp.neighbours[0].capabilities.supported: 65536 is not in 0..65535"},
        BadScenario{"SecondPortOfAName", R"({"ports": [{"name": "p"}, {"name": "p"}]})",
                    "t.json: ports[1].name: a second port named \"p\""},
        BadScenario{"CounterNameMisspelt",
                    R"({"ports": [{"name": "p", "counters": {"NbOfGoodOctetsRecieved": 1}}]})",
                    "t.json: ports[0].counters: \"NbOfGoodOctetsRecieved\" is not a counter name"},
        BadScenario{"NegativeCounter",
                    R"({"ports": [{"name": "p", "counters": {"NbOfCrcErrorEvents": -1}}]})",
                    "t.json: ports[0].counters.NbOfCrcErrorEvents: -1 is not in "
                    "0..9223372036854775807"},
        BadScenario{"FractionalField", R"({"ports": [{"name": "p", "nbPhys": 1.5}]})",
                    "t.json: ports[0].nbPhys: expected a whole number"},
        BadScenario{"MissingWordUnknown", R"({"ports": [{"name": "p", "missing": ["counter"]}]})",
                    "t.json: ports[0].missing[0]: expected one of info, counters, rates"},
        BadScenario{"BadChassisMac",
                    R"({"lldp": {"neighbours": [{"interface": "p",
                        "chassisId": {"subtype": "MacAddress", "id": "00:1b:21"}}]}})",
                    "t.json: lldp.neighbours[0].chassisId.id: expected a MAC address "
                    "(00:1b:21:3a:4f:5e)"},
        BadScenario{"TextTooLongForATlv",
                    R"({"lldp": {"neighbours": [{"interface": "p", "systemName": ")" +
                        std::string(600, 'n') + R"("}]}})",
                    "t.json: lldp.neighbours[0].systemName: a TLV value holds at most 511 "
                    "bytes, not 600"},
        BadScenario{"RawTlvTwice",
                    R"({"lldp": {"neighbours": [{"interface": "p", "systemName": "a",
                        "raw": {"5": "0a0161"}}]}})",
                    "t.json: lldp.neighbours[0].raw.5: the neighbour already has a TLV under "
                    "key 5"},
        BadScenario{"UnknownModule", R"({"management": {"versions": {"Kernel": "6.1"}}})",
                    "t.json: management.versions.Kernel: not a module: Manager, API or Package"}),
    [](const ::testing::TestParamInfo<BadScenario>& info) { return info.param.name; });

TEST(ScenarioLoadTest, LargeScenarioFilesAreWhatTheirScriptWrites) {
  TestSupport::TempDir dir;
  const auto result =
      TestSupport::RunCommand({ARQ_SOURCE_DIR "/scripts/generate-full-scenario", dir.Path()}, {},
                              std::chrono::seconds(30), true);
  ASSERT_EQ(result.status, 0) << result.output;
  for (const char* file : {"full-capacity.json", "ports-128.json"}) {
    EXPECT_EQ(TestSupport::ReadFile(dir.File(file)),
              TestSupport::ReadFile(std::string(ARQ_SCENARIO_DIR "/") + file))
        << file;
  }
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Simulator
