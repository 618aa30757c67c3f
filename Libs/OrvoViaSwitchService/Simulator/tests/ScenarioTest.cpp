#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/OrvoViaSwitchService/Simulator/Scenario.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::OrvoViaSwitchService::Simulator {
namespace {

namespace api = ArqSwitchApi;
namespace Tlv = Monitoring::MetricConverter::LldpTlv;
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

TEST(ScenarioTest, SmallScenarioAnswersWhatTheFileSays) {
  const ServerData data = Scenario::Load(kSmall).At(milliseconds(0));

  EXPECT_EQ(data.ifList, (std::vector<std::string>{"eth1", "eth2", "prs1", "lag1"}));
  ASSERT_EQ(data.ifInfos.size(), 4u);
  const auto& eth1 = data.ifInfos.at("eth1");
  EXPECT_EQ(eth1.Type, api::IfType_t::Ethernet);
  EXPECT_EQ(eth1.Status, api::IfStatus_t::Enabled);
  EXPECT_EQ(eth1.Vid, 100);
  EXPECT_EQ(eth1.Description, "uplink to core");
  EXPECT_EQ(eth1.MacAddr, "02:A0:C9:10:00:11");
  EXPECT_EQ(eth1.Vlan, (std::vector<std::int16_t>{100, 110}));
  EXPECT_EQ(eth1.IpConfig.Ip.Address, "10.0.100.2");
  EXPECT_EQ(eth1.IpConfig.Gateway.Address, "10.0.100.1");
  EXPECT_EQ(data.ifInfos.at("eth2").Status, api::IfStatus_t::Disabled);
  EXPECT_EQ(data.ifInfos.at("prs1").Type, api::IfType_t::BasicPrs);
  EXPECT_EQ(data.ifInfos.at("lag1").Type, api::IfType_t::BasicLag);
  EXPECT_EQ(data.ifInfos.at("lag1").IfList, (std::vector<std::string>{"3/1", "3/2", "3/3"}));
  EXPECT_EQ(data.macs.at("prs1"), "02:A0:C9:10:00:21");

  // Counters and rates by interface, each with its member ports' records.
  ASSERT_EQ(data.counters.size(), 4u);
  EXPECT_EQ(Names(data.counters.at("prs1")), (std::vector<std::string>{"2/1", "2/2"}));
  EXPECT_EQ(Names(data.counters.at("lag1")), (std::vector<std::string>{"3/1", "3/2", "3/3"}));
  const auto& port12 = data.counters.at("eth2").at(0);
  EXPECT_EQ(port12.NbOfGoodOctetsReceived, 77);
  EXPECT_EQ(port12.NbOfBadOctetsReceived, 5);
  EXPECT_EQ(port12.NbOfValidFrameSentHalfDupWithOutCollision, 0);
  EXPECT_EQ(data.counters.at("lag1").at(0).NbOfValidFrameSentHalfDupWithOutCollision, 9000000000LL);
  ASSERT_EQ(data.stats.at("eth1").size(), 1u);
  EXPECT_EQ(data.stats.at("eth1")[0].EthName, "1/1");
  EXPECT_EQ(data.stats.at("eth1")[0].TxSpeed, 8000000000LL);
  EXPECT_EQ(data.stats.at("eth1")[0].RxSpeed, 4000000000LL);
  EXPECT_EQ(data.stats.at("lag1")[2].TxSpeed, 0);

  ASSERT_EQ(data.ethInfos.size(), 7u);
  EXPECT_EQ(data.ethInfos[0].EthName, "1/1");
  EXPECT_EQ(data.ethInfos[0].Mode, api::EthMode_t::KR4);
  EXPECT_EQ(data.ethInfos[0].Speed, api::EthSpeed_t::S100G);
  EXPECT_EQ(data.ethInfos[0].NbPhys, 4);
  EXPECT_EQ(data.ethInfos[1].State, api::EthState_t::LinkDown);
  EXPECT_EQ(data.ethInfos[1].FailureSts, api::EthFailureSts_t::TrainingFailed);
  EXPECT_EQ(data.ethInfos[1].FecType, api::EthFecType_t::FC_FEC);
  EXPECT_EQ(data.ethInfos[1].FecTypeState, api::EthFecType_t::Disable);
  EXPECT_EQ(data.ethInfos[6].State, api::EthState_t::MacLinkDown);

  EXPECT_EQ(data.mainMac, "02:A0:C9:10:00:01");
  ASSERT_EQ(data.hwDescs.size(), 2u);
  EXPECT_EQ(data.hwDescs[1].Port, 2);
  EXPECT_EQ(data.hwDescs[1].NbSubPort, 1);
  EXPECT_EQ(data.lldpConfig.SystemName, "orvo-sim-small");
  EXPECT_EQ(data.lldpConfig.SystemDescr, "OrvoVia Switch; SIM-0001; 4.1.0");
  EXPECT_EQ(data.lldpConfig.ManagementIP, "192.0.2.10");
  EXPECT_EQ(data.lldpConfig.TTL, 120);
  ASSERT_EQ(data.ptpConfigs.size(), 1u);
  EXPECT_EQ(data.ptpConfigs[0].ClockMode, api::PTPClockMode_t::Boundary);
  EXPECT_EQ(data.ptpConfigs[0].IfList, (std::vector<std::string>{"1/1", "2/1"}));
  EXPECT_EQ(data.ptpConfigs[0].Profile, api::PTPProfile_t::SMPTE_2059);
  EXPECT_EQ(data.currentConfig.Name, "running");
  EXPECT_EQ(data.currentConfig.State, api::ConfigState_t::altered);
  EXPECT_EQ(data.currentConfig.BaseType, api::ConfigType_t::Release);
  ASSERT_EQ(data.configFiles.size(), 2u);
  EXPECT_EQ(data.configFiles[1].Type, api::ConfigType_t::Default);
  EXPECT_EQ(data.comment, "after maintenance");
  EXPECT_EQ(data.management.hostname, "orvo-sim-small");
  EXPECT_EQ(data.management.versions.at(ArqOrvoAPI::MODULE_VERSION::Package), "4.1.0-7");
  EXPECT_EQ(data.management.address.DefaultGateway, "192.0.2.254");
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
  EXPECT_EQ(port11.NbOfGoodPacketsBroadcast, 0);
  // Port 2/1: 2 Gb/s in with frames of 500 bytes.
  EXPECT_EQ(later.counters.at("prs1").at(0).NbOfGoodUnicastFrameReceived,
            250000000LL / 500 * 5 / 2);
  EXPECT_EQ(later.counters.at("prs1").at(0).NbOfGoodPacketsMulticast, 12);
  // Port 1/2 has no rates: it does not move.
  EXPECT_EQ(later.counters.at("eth2").at(0).NbOfGoodOctetsReceived, 77);
  // The rates themselves are constant.
  EXPECT_EQ(later.stats.at("eth1").at(0).RxSpeed, 4000000000LL);

  // Whole units only, rounded down: 2 CRC errors per second make none in 499 ms.
  EXPECT_EQ(scenario.At(milliseconds(499)).counters.at("eth1").at(0).NbOfCrcErrorEvents, 3);
  EXPECT_EQ(scenario.At(milliseconds(500)).counters.at("eth1").at(0).NbOfCrcErrorEvents, 4);
  EXPECT_EQ(scenario.At(milliseconds(1)).counters.at("eth1").at(0).NbOfGoodOctetsReceived,
            1000000 + 500000);
  // A year of traffic stays exact.
  const std::int64_t yearMs = 365LL * 24 * 3600 * 1000;
  EXPECT_EQ(scenario.At(milliseconds(yearMs)).counters.at("eth1").at(0).NbOfGoodOctectsSent,
            2000000 + 1000000000LL * (yearMs / 1000));
  // The same time gives the same answers; the start is not changed by a later time.
  EXPECT_EQ(scenario.At(milliseconds(2500)).counters, later.counters);
  EXPECT_EQ(scenario.At(milliseconds(0)).counters.at("eth1").at(0).NbOfGoodOctetsReceived, 1000000);
}

TEST(ScenarioTest, CounterPastSixtyFourBitsWrapsAsASwitchCounterDoes) {
  const Scenario scenario = Scenario::Parse(R"({
    "ports": [{"name": "p", "counters": {"NbOfMacCollision": 9223372036854775806},
               "growth": {"NbOfMacCollision": 1}}],
    "interfaces": [{"name": "e", "type": "Ethernet", "members": ["p"]}]
  })",
                                            "t.json");
  EXPECT_EQ(scenario.At(milliseconds(1000)).counters.at("e").at(0).NbOfMacCollision,
            9223372036854775807LL);
  EXPECT_EQ(scenario.At(milliseconds(2000)).counters.at("e").at(0).NbOfMacCollision,
            -9223372036854775807LL - 1);
}

TEST(ScenarioTest, NeighboursAreServedAsTlvBytesTheMonitorDecodes) {
  const ServerData data = Scenario::Load(kSmall).At(milliseconds(0));
  ASSERT_EQ(data.lldpInfos.size(), 2u);
  const auto& core = data.lldpInfos[0];
  EXPECT_EQ(core.IfName, "1/1");
  EXPECT_EQ(core.Tlv.size(), 8u);

  const std::string chassis = TlvOf(core, api::lldpTlvType_t::ChassisId);
  EXPECT_EQ(chassis, std::string("\x02\x07\x04\x00\x1b\x21\x3a\x4f\x5e", 9));
  EXPECT_EQ(Tlv::ChassisId(chassis), "00:1b:21:3a:4f:5e");
  const std::string port = TlvOf(core, api::lldpTlvType_t::PortId);
  EXPECT_EQ(port, std::string("\x04\x0d\x05") + "Ethernet1/49");
  EXPECT_EQ(Tlv::PortIdentifier(port)->interfaceName, "Ethernet1/49");
  const std::string ttl = TlvOf(core, api::lldpTlvType_t::TimeToLive);
  EXPECT_EQ(ttl, std::string("\x06\x02\x00\x78", 4));
  EXPECT_EQ(Tlv::TimeToLive(ttl), 120);
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::PortDescription),
            std::string("\x08\x11") + "to orvo-sim-small");
  EXPECT_EQ(Tlv::Text(TlvOf(core, api::lldpTlvType_t::SystemName), 5), "core-sw-01");
  EXPECT_EQ(Tlv::Text(TlvOf(core, api::lldpTlvType_t::SystemDescription), 6),
            "CoreSwitch 9000; CS9K-12345; 7.2.1");
  EXPECT_EQ(TlvOf(core, api::lldpTlvType_t::SystemCapabilities),
            std::string("\x0e\x04\x00\x14\x00\x14", 6));
  const std::string address = TlvOf(core, api::lldpTlvType_t::ManagementAddress);
  EXPECT_EQ(address, std::string("\x10\x0c\x05\x01\xc0\x00\x02\x01\x02\x00\x00\x00\x00\x00", 14));
  EXPECT_EQ(Tlv::ManagementAddress(address), "192.0.2.1");

  const auto& edge = data.lldpInfos[1];
  EXPECT_EQ(edge.IfName, "3/1");
  EXPECT_EQ(Tlv::ChassisId(TlvOf(edge, api::lldpTlvType_t::ChassisId)), "192.0.2.2");
  EXPECT_EQ(TlvOf(edge, api::lldpTlvType_t::ChassisId),
            std::string("\x02\x06\x05\x01\xc0\x00\x02\x02", 8));
  EXPECT_EQ(Tlv::PortIdentifier(TlvOf(edge, api::lldpTlvType_t::PortId))->macAddress,
            "00:1b:21:3a:4f:60");
  EXPECT_EQ(Tlv::TimeToLive(TlvOf(edge, api::lldpTlvType_t::TimeToLive)), 90);
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

TEST(ScenarioTest, AnEmptyScenarioIsASwitchWithNothing) {
  const ServerData data = Scenario::Parse("{}", "t.json").At(milliseconds(1000));
  EXPECT_TRUE(data.ifList.empty());
  EXPECT_TRUE(data.counters.empty());
  EXPECT_TRUE(data.lldpInfos.empty());
  EXPECT_EQ(data.mainMac, "");
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
        BadScenario{"TrailingGarbage", "{} x",
                    "t.json: not valid JSON: Line 1, Column 4: Extra non-whitespace after "
                    "JSON value."},
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
        BadScenario{"NameMissing", R"({"ports": [{"mode": "KR"}]})",
                    "t.json: ports[0]: \"name\" is required"},
        BadScenario{"MemberNotAPort",
                    R"({"ports": [{"name": "p"}],
                        "interfaces": [{"name": "e", "type": "Ethernet", "members": ["p", "q"]}]})",
                    "t.json: interfaces[0].members[1]: no port of that name in \"ports\""},
        BadScenario{"SecondPortOfAName", R"({"ports": [{"name": "p"}, {"name": "p"}]})",
                    "t.json: ports[1].name: a second port named \"p\""},
        BadScenario{"CounterNameMisspelt",
                    R"({"ports": [{"name": "p", "counters": {"NbOfGoodOctetsRecieved": 1}}]})",
                    "t.json: ports[0].counters: \"NbOfGoodOctetsRecieved\" is not a counter name"},
        BadScenario{"NegativeCounter",
                    R"({"ports": [{"name": "p", "counters": {"NbOfCrcErrorEvents": -1}}]})",
                    "t.json: ports[0].counters.NbOfCrcErrorEvents: -1 is not in "
                    "0..9223372036854775807"},
        BadScenario{"RateAsText", R"({"ports": [{"name": "p", "rates": {"tx": "fast"}}]})",
                    "t.json: ports[0].rates.tx: expected a whole number"},
        BadScenario{"FractionalField", R"({"ports": [{"name": "p", "nbPhys": 1.5}]})",
                    "t.json: ports[0].nbPhys: expected a whole number"},
        BadScenario{"VidOutOfRange",
                    R"({"interfaces": [{"name": "e", "type": "Ethernet", "vid": 40000}]})",
                    "t.json: interfaces[0].vid: 40000 is not in -32768..32767"},
        BadScenario{"MissingWordUnknown", R"({"ports": [{"name": "p", "missing": ["counter"]}]})",
                    "t.json: ports[0].missing[0]: expected one of info, counters, rates"},
        BadScenario{"BadChassisMac",
                    R"({"lldp": {"neighbours": [{"interface": "p",
                        "chassisId": {"subtype": "MacAddress", "id": "00:1b:21"}}]}})",
                    "t.json: lldp.neighbours[0].chassisId.id: expected a MAC address "
                    "(00:1b:21:3a:4f:5e)"},
        BadScenario{"BadPortAddress",
                    R"({"lldp": {"neighbours": [{"interface": "p",
                        "portId": {"subtype": "NetworkAddress", "id": "192.0.2"}}]}})",
                    "t.json: lldp.neighbours[0].portId.id: expected a dotted IPv4 address"},
        BadScenario{"TextTooLongForATlv",
                    R"({"lldp": {"neighbours": [{"interface": "p", "systemName": ")" +
                        std::string(600, 'n') + R"("}]}})",
                    "t.json: lldp.neighbours[0].systemName: a TLV value holds at most 511 "
                    "bytes, not 600"},
        BadScenario{"TtlOutOfRange",
                    R"({"lldp": {"neighbours": [{"interface": "p", "ttl": 70000}]}})",
                    "t.json: lldp.neighbours[0].ttl: 70000 is not in 0..65535"},
        BadScenario{"RawTlvTwice",
                    R"({"lldp": {"neighbours": [{"interface": "p", "systemName": "a",
                        "raw": {"5": "0a0161"}}]}})",
                    "t.json: lldp.neighbours[0].raw.5: the neighbour already has a TLV under "
                    "key 5"},
        BadScenario{"RawTlvNotHex",
                    R"({"lldp": {"neighbours": [{"interface": "p", "raw": {"127": "fe0"}}]}})",
                    "t.json: lldp.neighbours[0].raw.127: expected hex bytes"},
        BadScenario{"UnknownModule", R"({"management": {"versions": {"Kernel": "6.1"}}})",
                    "t.json: management.versions.Kernel: not a module: Manager, API or Package"}),
    [](const ::testing::TestParamInfo<BadScenario>& info) { return info.param.name; });

TEST(ScenarioLoadTest, UnreadableFileIsNamedInTheError) {
  TestSupport::TempDir dir;
  try {
    Scenario::Load(dir.File("absent.json"));
    FAIL() << "loaded";
  } catch (const ScenarioError& error) {
    EXPECT_EQ(std::string(error.what()),
              dir.File("absent.json") + ": cannot open the scenario file");
  }
}

TEST(ScenarioLoadTest, ErrorsNameTheFileTheyComeFrom) {
  TestSupport::TempDir dir;
  TestSupport::WriteFile(dir.File("bad.json"), "{\"ptp\": [{\"domain\": 300}]}");
  try {
    Scenario::Load(dir.File("bad.json"));
    FAIL() << "loaded";
  } catch (const ScenarioError& error) {
    EXPECT_EQ(std::string(error.what()),
              dir.File("bad.json") + ": ptp[0].domain: 300 is not in -128..127");
  }
}

TEST(ScenarioLoadTest, FullCapacityFileIsWhatItsScriptWrites) {
  TestSupport::TempDir dir;
  const auto result = TestSupport::RunCommand(
      {ARQ_SOURCE_DIR "/scripts/generate-full-scenario", dir.File("full.json")}, {},
      std::chrono::seconds(30), true);
  ASSERT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(TestSupport::ReadFile(dir.File("full.json")),
            TestSupport::ReadFile(ARQ_SCENARIO_DIR "/full-capacity.json"));
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Simulator
