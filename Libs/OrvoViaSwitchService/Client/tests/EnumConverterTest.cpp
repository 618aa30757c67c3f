#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

// One association table seen through plain numbers: every (domain, wire)
// pair it must hold, and a value of each side that it must not know.
struct TableCase {
  const char* name;
  std::function<int(int)> toGenerated;
  std::function<int(int)> fromGenerated;
  std::vector<std::pair<int, int>> pairs;
  int foreignDomain;
  // A generated enum holds only values of its declared range: PrsPath_t
  // (0..3) has no room for a value outside its table.
  std::optional<int> foreignGenerated;
};

void PrintTo(const TableCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

template <typename Domain, typename Generated>
TableCase Table(const char* name, std::vector<std::pair<int, int>> pairs, int foreignDomain,
                std::optional<int> foreignGenerated) {
  return TableCase{
      name,
      [](int value) {
        return static_cast<int>(EnumConverter::ToGeneratedEnum(static_cast<Domain>(value)));
      },
      [](int value) {
        return static_cast<int>(EnumConverter::FromGeneratedEnum(static_cast<Generated>(value)));
      },
      std::move(pairs),
      foreignDomain,
      foreignGenerated};
}

std::vector<std::pair<int, int>> Equal(int first, int last) {
  std::vector<std::pair<int, int>> pairs;
  for (int value = first; value <= last; ++value) {
    pairs.emplace_back(value, value);
  }
  return pairs;
}

class EnumConverterTableTest : public ::testing::TestWithParam<TableCase> {};

TEST_P(EnumConverterTableTest, ConvertsEveryPairBothWays) {
  for (const auto& [domain, generated] : GetParam().pairs) {
    EXPECT_EQ(GetParam().toGenerated(domain), generated) << "domain " << domain;
    EXPECT_EQ(GetParam().fromGenerated(generated), domain) << "wire " << generated;
  }
}

TEST_P(EnumConverterTableTest, UnknownValueConvertsToZero) {
  EXPECT_EQ(GetParam().toGenerated(GetParam().foreignDomain), 0);
  if (GetParam().foreignGenerated) {
    EXPECT_EQ(GetParam().fromGenerated(*GetParam().foreignGenerated), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(
    EveryTable, EnumConverterTableTest,
    ::testing::Values(
        Table<Dto::ErrorCode, api::ErrorCode_t::type>("ErrorCode", Equal(0, 11), -1, 12),
        Table<Dto::ConfigType, api::ConfigType_t::type>("ConfigType", Equal(-1, 4), 5, -2),
        Table<Dto::ConfigState, api::ConfigState_t::type>("ConfigState", Equal(-1, 2), 3, -2),
        Table<Dto::EthMode, api::EthMode_t::type>(
            "EthMode", {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}}, 6, 7),
        Table<Dto::EthSpeed, api::EthSpeed_t::type>(
            "EthSpeed",
            {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}}, 9,
            12),
        Table<Dto::EthFecType, api::EthFecType_t::type>("EthFecType",
                                                        {{-1, 0}, {0, 2}, {1, 1}, {2, 3}, {3, 4}},
                                                        4, 5),
        Table<Dto::EthState, api::EthState_t::type>("EthState", Equal(-1, 7), 8, -2),
        Table<Dto::EthFailureSts, api::EthFailureSts_t::type>("EthFailureSts", Equal(-1, 6), 7, -2),
        Table<Dto::IfType, api::IfType_t::type>("IfType",
                                                {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}},
                                                5, 6),
        Table<Dto::IfStatus, api::IfStatus_t::type>("IfStatus", Equal(-1, 2), 3, -2),
        Table<Dto::PrsState, api::PrsState_t::type>("PrsState", Equal(-1, 7), 8, -2),
        Table<Dto::PrsPath, api::PrsPath_t::type>("PrsPath", Equal(0, 3), 4, std::nullopt),
        Table<Dto::PrsClock, api::PrsClock_t::type>("PrsClock", Equal(-1, 2), 3, -2),
        Table<Dto::LagState, api::LagState_t::type>("LagState", Equal(-1, 4), 5, -2),
        Table<Dto::LacpMode, api::LacpMode_t::type>("LacpMode", Equal(-1, 3), 4, -2),
        Table<Dto::LldpTlvType, api::lldpTlvType_t::type>("LldpTlvType",
                                                          {{0, 0},
                                                           {1, 1},
                                                           {2, 2},
                                                           {3, 3},
                                                           {4, 4},
                                                           {5, 5},
                                                           {6, 6},
                                                           {7, 7},
                                                           {8, 8},
                                                           {127, 127},
                                                           {128, 128},
                                                           {129, 129}},
                                                          9, 126),
        Table<Dto::LldpChassisIdTlvType, api::lldpChassisIdTlvType_t::type>("LldpChassisIdTlvType",
                                                                            Equal(1, 7), 8, 0),
        Table<Dto::LldpPortIdTlvType, api::lldpPortIdTlvType_t::type>("LldpPortIdTlvType",
                                                                      Equal(1, 6), 7, 0),
        Table<Dto::PTPPacketType, api::PTPPacketType_t::type>("PTPPacketType", Equal(-1, 3), 4, -2),
        Table<Dto::PTPClockMode, api::PTPClockMode_t::type>("PTPClockMode", Equal(-1, 4), 5, -2),
        Table<Dto::PTPProfile, api::PTPProfile_t::type>("PTPProfile", Equal(0, 4), -1, 5),
        Table<Dto::McFloodPolicy, api::McFloodPolicy_t::type>("McFloodPolicy", Equal(-1, 2), 3, -2),
        Table<Dto::MirroringMode, api::MirroringMode_t::type>("MirroringMode", Equal(-1, 3), 4, -2),
        Table<Dto::CageType, api::CageType_t::type>("CageType", Equal(-1, 2), 3, -2),
        Table<Dto::FlowDirection, api::FlowDirection_t::type>("FlowDirection", Equal(-1, 2), 3, -2),
        Table<Dto::NatFlowStatus, api::NatFlowStatus_t::type>("NatFlowStatus", Equal(-1, 2), 3,
                                                              -2)),
    [](const ::testing::TestParamInfo<TableCase>& info) { return info.param.name; });

TEST(EnumConverterTest, FecTypeOrderDiffersBetweenDomainAndWire) {
  EXPECT_EQ(EnumConverter::FromGeneratedEnum(api::EthFecType_t::Disable), Dto::EthFecType::Disable);
  EXPECT_EQ(static_cast<int>(Dto::EthFecType::Disable), 0);
  EXPECT_EQ(EnumConverter::ToGeneratedEnum(Dto::EthFecType::Disable), api::EthFecType_t::Disable);
  EXPECT_EQ(EnumConverter::FromGeneratedEnum(api::EthFecType_t::FC_FEC), Dto::EthFecType::FC_FEC);
  EXPECT_EQ(EnumConverter::ToGeneratedEnum(Dto::EthFecType::RS_FEC), api::EthFecType_t::RS_FEC);
}

TEST(EnumConverterTest, ShiftedEnumsMeetByName) {
  EXPECT_EQ(EnumConverter::FromGeneratedEnum(api::IfType_t::Ethernet), Dto::IfType::Ethernet);
  EXPECT_EQ(static_cast<int>(Dto::IfType::Ethernet), 0);
  EXPECT_EQ(EnumConverter::FromGeneratedEnum(api::IfType_t::Unknown), Dto::IfType::Unknown);
  EXPECT_EQ(EnumConverter::ToGeneratedEnum(Dto::EthMode::_1000BASE_X), api::EthMode_t::_1000BASE_X);
  EXPECT_EQ(EnumConverter::ToGeneratedEnum(Dto::EthSpeed::S100G), api::EthSpeed_t::S100G);
}

// EthSpeed_t can hold 0..15 only, so its out-of-table value here is 12;
// lldpTlvType_t reaches 255 and takes 42.
TEST(EnumConverterTest, ValuesOutsideTheTablesGiveZero) {
  EXPECT_EQ(
      static_cast<int>(EnumConverter::FromGeneratedEnum(static_cast<api::EthSpeed_t::type>(12))),
      0);
  EXPECT_EQ(
      static_cast<int>(EnumConverter::FromGeneratedEnum(static_cast<api::lldpTlvType_t::type>(42))),
      0);
  EXPECT_EQ(static_cast<int>(EnumConverter::ToGeneratedEnum(static_cast<Dto::EthSpeed>(42))), 0);
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
