#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/Optional.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/HwDesc.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IPAddress.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfIpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPTimeStamp.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace BaseTypes = Arq::OrvoViaSwitch::Domain::BaseTypes;

namespace {

template <typename E>
int Value(E e) {
  return static_cast<int>(e);
}

using Counter = std::int64_t Dto::EthCnt::*;

// The counters in the order in which the switch sends them: NbOfGoodOctetsReceived
// (field 2) to NbOfValidFrameSentHalfDupWithOutCollision (field 31).
const Counter kCountersInSwitchOrder[30] = {
    &Dto::EthCnt::NbOfGoodOctetsReceived,
    &Dto::EthCnt::NbOfBadOctetsReceived,
    &Dto::EthCnt::NbOfFrameNotTransmitted,
    &Dto::EthCnt::NbOfGoodPacketsBroadcast,
    &Dto::EthCnt::NbOfGoodPacketsMulticast,
    &Dto::EthCnt::NbOfGoodPackets64Bytes,
    &Dto::EthCnt::NbOfGoodPackets65to127Bytes,
    &Dto::EthCnt::NbOfGoodPackets128to255Bytes,
    &Dto::EthCnt::NbOfGoodPackets256to511Bytes,
    &Dto::EthCnt::NbOfGoodPackets512to1023Bytes,
    &Dto::EthCnt::NbOfGoodPackets1024toMaxBytes,
    &Dto::EthCnt::NbOfGoodOctectsSent,
    &Dto::EthCnt::NbOfPacketsDropDueCollision,
    &Dto::EthCnt::NbOfGoodMulticastPacketsSent,
    &Dto::EthCnt::NbOfGoodBroadcastPacketsSent,
    &Dto::EthCnt::NbOfGoodFlowControlFrameSent,
    &Dto::EthCnt::NbOfGoodFlowControlFrameReceived,
    &Dto::EthCnt::NbOfInternalDropPacketsBW,
    &Dto::EthCnt::NbOfPacketsSizeLess64BytesReceived,
    &Dto::EthCnt::NbOfFragmentedPacketsReceived,
    &Dto::EthCnt::NbOfOversizedPacketsReceived,
    &Dto::EthCnt::NbOfJabberPacketsReceived,
    &Dto::EthCnt::NbOfReceivedErrorFromMac,
    &Dto::EthCnt::NbOfCrcErrorEvents,
    &Dto::EthCnt::NbOfMacCollision,
    &Dto::EthCnt::NbOfLateMacCollision,
    &Dto::EthCnt::NbOfGoodUnicastFrameReceived,
    &Dto::EthCnt::NbOfGoodUnicastFrameSent,
    &Dto::EthCnt::NbOfValidFrameSentHalfDupWithCollision,
    &Dto::EthCnt::NbOfValidFrameSentHalfDupWithOutCollision};

template <typename Record>
using Mutators = std::vector<std::function<void(Record&)>>;

// One mutator per field: each must make the record unequal to a default one,
// and copies and moves of the changed record must compare equal to it. The
// count check catches a field added to the record but left out of equality.
template <typename Record>
void ExpectEveryFieldTakesPartInEquality(const char* name, const Mutators<Record>& mutators) {
  SCOPED_TRACE(name);
  EXPECT_EQ(std::tuple_size<decltype(Record().Tie())>::value, mutators.size());
  for (std::size_t i = 0; i < mutators.size(); ++i) {
    SCOPED_TRACE("field " + std::to_string(i));
    const Record base;
    Record changed = base;
    mutators[i](changed);
    EXPECT_NE(changed, base);
    EXPECT_FALSE(changed == base);
    const Record copy = changed;
    EXPECT_EQ(copy, changed);
    Record source = changed;
    const Record moved = std::move(source);
    EXPECT_EQ(moved, changed);
    Record assigned;
    assigned = changed;
    EXPECT_EQ(assigned, changed);
  }
}

TEST(DomainRecordsTest, DefaultIfInfoHasEmptyListsAndUnknownEnums) {
  const Dto::IfInfo info;
  EXPECT_EQ(Value(info.Type), -1);
  EXPECT_EQ(Value(info.Status), -1);
  EXPECT_EQ(info.Vid, 0);
  EXPECT_TRUE(info.Description.empty());
  EXPECT_TRUE(info.MacAddr.empty());
  EXPECT_TRUE(info.Vlan.empty());
  EXPECT_TRUE(info.IfList.empty());
  EXPECT_EQ(info.IpConfig, Dto::IfIpConfig());
  EXPECT_FALSE(info.IpConfig.Dhcp);
  EXPECT_FALSE(Dto::Header().token.HasValue());
}

TEST(DomainRecordsTest, EveryEnumFieldDefaultsToUnknown) {
  const Dto::EthInfo eth;
  const Dto::EthConfig config;
  const Dto::ConfigFile file;
  const Dto::PTPConfig ptp;
  const struct {
    const char* field;
    int value;
  } rows[] = {
      {"EthInfo.Mode", Value(eth.Mode)},
      {"EthInfo.Speed", Value(eth.Speed)},
      {"EthInfo.State", Value(eth.State)},
      {"EthInfo.FailureSts", Value(eth.FailureSts)},
      {"EthInfo.FecType", Value(eth.FecType)},
      {"EthInfo.FecTypeState", Value(eth.FecTypeState)},
      {"EthConfig.Mode", Value(config.Mode)},
      {"EthConfig.Speed", Value(config.Speed)},
      {"EthConfig.FecType", Value(config.FecType)},
      {"ConfigFile.Type", Value(file.Type)},
      {"ConfigFile.State", Value(file.State)},
      {"ConfigFile.BaseType", Value(file.BaseType)},
      {"PTPConfig.PacketType", Value(ptp.PacketType)},
      {"PTPConfig.ClockMode", Value(ptp.ClockMode)},
      {"PTPConfig.Profile", Value(ptp.Profile)},
  };
  for (const auto& row : rows) EXPECT_EQ(row.value, -1) << row.field;
}

TEST(DomainRecordsTest, EqualityCopyAndMoveCoverEveryField) {
  ExpectEveryFieldTakesPartInEquality<Dto::Header>(
      "Header", {[](Dto::Header& r) { r.token = BaseTypes::Optional<std::string>(""); }});
  ExpectEveryFieldTakesPartInEquality<Dto::IPAddress>(
      "IPAddress",
      {[](Dto::IPAddress& r) { r.bIpv6 = true; }, [](Dto::IPAddress& r) { r.Address = "::1"; }});
  ExpectEveryFieldTakesPartInEquality<Dto::IfIpConfig>(
      "IfIpConfig", {[](Dto::IfIpConfig& r) { r.Ip.Address = "10.0.0.1"; },
                     [](Dto::IfIpConfig& r) { r.Mask.bIpv6 = true; },
                     [](Dto::IfIpConfig& r) { r.Gateway.Address = "10.0.0.254"; },
                     [](Dto::IfIpConfig& r) { r.Dhcp = true; }});
  ExpectEveryFieldTakesPartInEquality<Dto::IfInfo>(
      "IfInfo",
      {[](Dto::IfInfo& r) { r.Type = Dto::IfType::Ethernet; },
       [](Dto::IfInfo& r) { r.Status = Dto::IfStatus::Disabled; },
       [](Dto::IfInfo& r) { r.Vid = -1; }, [](Dto::IfInfo& r) { r.Description = "uplink"; },
       [](Dto::IfInfo& r) { r.MacAddr = "00:11:22:33:44:55"; },
       [](Dto::IfInfo& r) { r.Vlan = {0}; }, [](Dto::IfInfo& r) { r.IfList = {""}; },
       [](Dto::IfInfo& r) { r.IpConfig.Gateway.bIpv6 = true; }});
  ExpectEveryFieldTakesPartInEquality<Dto::EthInfo>(
      "EthInfo",
      {[](Dto::EthInfo& r) { r.EthName = "eth1"; },
       [](Dto::EthInfo& r) { r.Mode = Dto::EthMode::KR; },
       [](Dto::EthInfo& r) { r.Speed = Dto::EthSpeed::S1G; },
       [](Dto::EthInfo& r) { r.IsMainPhys = true; }, [](Dto::EthInfo& r) { r.NbPhys = -128; },
       [](Dto::EthInfo& r) { r.State = Dto::EthState::NotConfigured; },
       [](Dto::EthInfo& r) { r.FailureSts = Dto::EthFailureSts::NoFailure; },
       [](Dto::EthInfo& r) { r.FecType = Dto::EthFecType::Disable; },
       [](Dto::EthInfo& r) { r.FecTypeState = Dto::EthFecType::RS_FEC; }});
  ExpectEveryFieldTakesPartInEquality<Dto::EthStat>(
      "EthStat", {[](Dto::EthStat& r) { r.EthName = "eth2"; },
                  [](Dto::EthStat& r) { r.TxSpeed = 1; }, [](Dto::EthStat& r) { r.RxSpeed = -1; }});
  ExpectEveryFieldTakesPartInEquality<Dto::EthConfig>(
      "EthConfig", {[](Dto::EthConfig& r) { r.Mode = Dto::EthMode::_1000BASE_X; },
                    [](Dto::EthConfig& r) { r.Speed = Dto::EthSpeed::S100G; },
                    [](Dto::EthConfig& r) { r.FecType = Dto::EthFecType::FC_FEC; }});
  ExpectEveryFieldTakesPartInEquality<Dto::HwDesc>(
      "HwDesc", {[](Dto::HwDesc& r) { r.Port = 1; }, [](Dto::HwDesc& r) { r.NbSubPort = 4; }});
  ExpectEveryFieldTakesPartInEquality<Dto::LldpConfig>(
      "LldpConfig",
      {[](Dto::LldpConfig& r) { r.SystemName = "sw"; },
       [](Dto::LldpConfig& r) { r.SystemDescr = "d"; },
       [](Dto::LldpConfig& r) { r.ManagementIP = "192.0.2.1"; },
       [](Dto::LldpConfig& r) { r.ChassisId = "c"; }, [](Dto::LldpConfig& r) { r.TTL = 120; }});
  ExpectEveryFieldTakesPartInEquality<Dto::LldpInfo>(
      "LldpInfo", {[](Dto::LldpInfo& r) { r.IfName = "eth3"; },
                   [](Dto::LldpInfo& r) {
                     r.Tlv[Dto::LldpTlvType::SystemName] = std::string("\x0a\x02sw", 4);
                   }});
  ExpectEveryFieldTakesPartInEquality<Dto::PTPConfig>(
      "PTPConfig", {[](Dto::PTPConfig& r) { r.Domain = 127; },
                    [](Dto::PTPConfig& r) { r.PacketType = Dto::PTPPacketType::UDP; },
                    [](Dto::PTPConfig& r) { r.ClockMode = Dto::PTPClockMode::Slave; },
                    [](Dto::PTPConfig& r) { r.IfList = {"eth1"}; },
                    [](Dto::PTPConfig& r) { r.SlaveIfList = {"eth2"}; },
                    [](Dto::PTPConfig& r) { r.Profile = Dto::PTPProfile::IEEE_1588_2008; }});
  ExpectEveryFieldTakesPartInEquality<Dto::PTPTimeStamp>(
      "PTPTimeStamp",
      {[](Dto::PTPTimeStamp& r) { r.NanoSec = 1; }, [](Dto::PTPTimeStamp& r) { r.Sec = 1; },
       [](Dto::PTPTimeStamp& r) { r.FracNs = 1; }});
  ExpectEveryFieldTakesPartInEquality<Dto::ConfigFile>(
      "ConfigFile", {[](Dto::ConfigFile& r) { r.Name = "startup"; },
                     [](Dto::ConfigFile& r) { r.Type = Dto::ConfigType::All; },
                     [](Dto::ConfigFile& r) { r.Comment = "c"; },
                     [](Dto::ConfigFile& r) { r.State = Dto::ConfigState::clean; },
                     [](Dto::ConfigFile& r) { r.BaseName = "factory"; },
                     [](Dto::ConfigFile& r) { r.BaseType = Dto::ConfigType::Debug; }});

  Mutators<Dto::EthCnt> counters{[](Dto::EthCnt& r) { r.EthName = "eth4"; }};
  for (const auto counter : kCountersInSwitchOrder) {
    counters.push_back([counter](Dto::EthCnt& r) { r.*counter = 7; });
  }
  ExpectEveryFieldTakesPartInEquality<Dto::EthCnt>("EthCnt", counters);
}

TEST(DomainRecordsTest, EthCntDeclaresItsThirtyCountersInTheSwitchOrder) {
  Dto::EthCnt counters;
  const char* previous = reinterpret_cast<const char*>(&counters.EthName);
  for (std::size_t i = 0; i < std::size(kCountersInSwitchOrder); ++i) {
    // Members are laid out in declaration order.
    const auto* address = reinterpret_cast<const char*>(&(counters.*kCountersInSwitchOrder[i]));
    EXPECT_LT(previous, address) << "counter " << i;
    previous = address;
    counters.*kCountersInSwitchOrder[i] = static_cast<std::int64_t>(i + 1);
  }
  // Equality (Tie) follows the same order.
  std::int64_t expected = 0;
  const auto check = [&expected](std::int64_t counter) { EXPECT_EQ(counter, ++expected); };
  std::apply(
      [&check](const std::string& name, const auto&... rest) {
        EXPECT_TRUE(name.empty());
        (check(rest), ...);
      },
      counters.Tie());
  EXPECT_EQ(expected, 30);
}

TEST(OptionalTest, EmptyOptionalThrowsTheStandardRuntimeError) {
  const BaseTypes::Optional<std::string> empty;
  EXPECT_FALSE(empty.HasValue());
  try {
    (void)empty.Value();
    FAIL() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Can't retrieve the value of a Null Optional value");
  }
  const BaseTypes::Optional<std::string> full("token-1");
  EXPECT_TRUE(full.HasValue());
  EXPECT_EQ(full.Value(), "token-1");
  EXPECT_NE(full, empty);
  EXPECT_EQ(empty, BaseTypes::Optional<std::string>());
  EXPECT_NE(full, BaseTypes::Optional<std::string>("token-2"));
  // An empty text is a value, not an absence.
  EXPECT_NE(BaseTypes::Optional<std::string>(""), empty);

  BaseTypes::Optional<std::string> reset("token-3");
  reset.Reset();
  EXPECT_EQ(reset, empty);
  EXPECT_THROW((void)reset.Value(), std::runtime_error);
}

TEST(DtoToStringTest, JoinsWithSingleBlanks) {
  const struct {
    std::vector<std::int16_t> values;
    const char* text;
  } numbers[] = {
      {{}, ""},
      {{7}, "7"},
      {{10, -1, 4094}, "10 -1 4094"},
      {{0, 0}, "0 0"},
      {{-32768, 32767}, "-32768 32767"},
  };
  for (const auto& row : numbers) EXPECT_EQ(Dto::ToString(row.values), row.text);

  const struct {
    std::vector<std::string> values;
    const char* text;
  } names[] = {
      {{}, ""},
      {{"eth1"}, "eth1"},
      {{"eth1", "eth2", "eth3"}, "eth1 eth2 eth3"},
      {{"", "eth2"}, " eth2"},
      {{"eth1", ""}, "eth1 "},
      {{""}, ""},
  };
  for (const auto& row : names) EXPECT_EQ(Dto::ToString(row.values), row.text);
}

// Every domain twin numbers Unknown as -1 and its members from 0, and ends with
// __LAST__ just after its last member. The LLDP enums keep their IEEE numbers
// and the path choice has no unknown value.
TEST(DomainEnumsTest, UnknownIsMinusOneAndLastBoundsTheRange) {
  const struct {
    const char* name;
    int unknown;
    int first;
    int last;
  } rows[] = {
      {"Status", Value(Dto::Status::Unknown), Value(Dto::Status::Failed),
       Value(Dto::Status::__LAST__)},
      {"ConfigType", Value(Dto::ConfigType::Unknown), Value(Dto::ConfigType::All),
       Value(Dto::ConfigType::__LAST__)},
      {"ConfigState", Value(Dto::ConfigState::Unknown), Value(Dto::ConfigState::clean),
       Value(Dto::ConfigState::__LAST__)},
      {"EthMode", Value(Dto::EthMode::Unknown), Value(Dto::EthMode::KR),
       Value(Dto::EthMode::__LAST__)},
      {"EthSpeed", Value(Dto::EthSpeed::Unknown), Value(Dto::EthSpeed::S1G),
       Value(Dto::EthSpeed::__LAST__)},
      {"EthFecType", Value(Dto::EthFecType::Unknown), Value(Dto::EthFecType::Disable),
       Value(Dto::EthFecType::__LAST__)},
      {"EthState", Value(Dto::EthState::Unknown), Value(Dto::EthState::NotConfigured),
       Value(Dto::EthState::__LAST__)},
      {"EthFailureSts", Value(Dto::EthFailureSts::Unknown), Value(Dto::EthFailureSts::NoFailure),
       Value(Dto::EthFailureSts::__LAST__)},
      {"IfType", Value(Dto::IfType::Unknown), Value(Dto::IfType::Ethernet),
       Value(Dto::IfType::__LAST__)},
      {"IfStatus", Value(Dto::IfStatus::Unknown), Value(Dto::IfStatus::Disabled),
       Value(Dto::IfStatus::__LAST__)},
      {"PTPPacketType", Value(Dto::PTPPacketType::Unknown), Value(Dto::PTPPacketType::Disabled),
       Value(Dto::PTPPacketType::__LAST__)},
      {"PTPClockMode", Value(Dto::PTPClockMode::Unknown), Value(Dto::PTPClockMode::Transparent),
       Value(Dto::PTPClockMode::__LAST__)},
      {"PTPProfile", Value(Dto::PTPProfile::Unknown), Value(Dto::PTPProfile::IEEE_1588_2008),
       Value(Dto::PTPProfile::__LAST__)},
      {"PrsState", Value(Dto::PrsState::Unknown), Value(Dto::PrsState::NotConfigured),
       Value(Dto::PrsState::__LAST__)},
      {"PrsClock", Value(Dto::PrsClock::Unknown), Value(Dto::PrsClock::Internal),
       Value(Dto::PrsClock::__LAST__)},
      {"LagState", Value(Dto::LagState::Unknown), Value(Dto::LagState::Disabled),
       Value(Dto::LagState::__LAST__)},
      {"LacpMode", Value(Dto::LacpMode::Unknown), Value(Dto::LacpMode::Static),
       Value(Dto::LacpMode::__LAST__)},
      {"McFloodPolicy", Value(Dto::McFloodPolicy::Unknown), Value(Dto::McFloodPolicy::Flood),
       Value(Dto::McFloodPolicy::__LAST__)},
      {"MirroringMode", Value(Dto::MirroringMode::Unknown), Value(Dto::MirroringMode::Ingress),
       Value(Dto::MirroringMode::__LAST__)},
      {"CageType", Value(Dto::CageType::Unknown), Value(Dto::CageType::SFP),
       Value(Dto::CageType::__LAST__)},
      {"FlowDirection", Value(Dto::FlowDirection::Unknown), Value(Dto::FlowDirection::In),
       Value(Dto::FlowDirection::__LAST__)},
      {"NatFlowStatus", Value(Dto::NatFlowStatus::Unknown), Value(Dto::NatFlowStatus::Inactive),
       Value(Dto::NatFlowStatus::__LAST__)},
      {"LldpTlvType", Value(Dto::LldpTlvType::Unknown), Value(Dto::LldpTlvType::EndOfLLDPU),
       Value(Dto::LldpTlvType::__LAST__)},
      {"LldpChassisIdTlvType", Value(Dto::LldpChassisIdTlvType::Unknown),
       Value(Dto::LldpChassisIdTlvType::AliasChassis), Value(Dto::LldpChassisIdTlvType::__LAST__)},
      {"LldpPortIdTlvType", Value(Dto::LldpPortIdTlvType::Unknown),
       Value(Dto::LldpPortIdTlvType::AliasInterface), Value(Dto::LldpPortIdTlvType::__LAST__)},
  };
  const struct {
    int first;
    int last;
  } expected[] = {{0, 2}, {0, 4}, {0, 2}, {0, 5}, {0, 8},   {0, 3}, {0, 7}, {0, 6}, {0, 4},
                  {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 7},   {0, 2}, {0, 4}, {0, 3}, {0, 2},
                  {0, 3}, {0, 2}, {0, 2}, {0, 2}, {0, 129}, {1, 7}, {1, 6}};
  ASSERT_EQ(std::size(rows), std::size(expected));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].name);
    EXPECT_EQ(rows[i].unknown, -1);
    EXPECT_EQ(rows[i].first, expected[i].first);
    EXPECT_EQ(rows[i].last, expected[i].last);
  }
  EXPECT_EQ(Value(Dto::PrsPath::Auto), 0);
  EXPECT_EQ(Value(Dto::PrsPath::__LAST__), 3);

  // Members whose numbers the converters and metrics depend on.
  EXPECT_EQ(Value(Dto::EthState::LinkUp), 4);
  EXPECT_EQ(Value(Dto::EthState::Failure), 6);
  EXPECT_EQ(Value(Dto::IfType::Virtual), 3);
  EXPECT_EQ(Value(Dto::IfStatus::Enabled), 1);
  EXPECT_EQ(Value(Dto::ConfigState::altered), 1);
  EXPECT_EQ(Value(Dto::EthFecType::FC_FEC), 1);
  EXPECT_EQ(Value(Dto::EthFecType::RS_FEC), 2);
  EXPECT_EQ(Value(Dto::EthSpeed::S100G), 7);
  EXPECT_EQ(Value(Dto::EthMode::_1000BASE_X), 4);
  EXPECT_EQ(Value(Dto::LldpTlvType::ManagementAddress), 8);
  EXPECT_EQ(Value(Dto::LldpTlvType::CustomTlv), 127);
  EXPECT_EQ(Value(Dto::LldpChassisIdTlvType::MacAddress), 4);
  EXPECT_EQ(Value(Dto::LldpPortIdTlvType::InterfaceName), 5);
}

}  // namespace
