#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/Optional.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace BaseTypes = Arq::OrvoViaSwitch::Domain::BaseTypes;

namespace {

template <typename E>
int Value(E e) {
  return static_cast<int>(e);
}

TEST(DomainRecordsTest, DefaultsAreEmptyAndUnknown) {
  const Dto::IfInfo info;
  EXPECT_EQ(Value(info.Type), -1);
  EXPECT_EQ(Value(info.Status), -1);
  EXPECT_EQ(info.Vid, 0);
  EXPECT_TRUE(info.Vlan.empty());
  EXPECT_TRUE(info.IfList.empty());
  EXPECT_TRUE(info.Description.empty());
  EXPECT_FALSE(info.IpConfig.Dhcp);

  const Dto::EthInfo eth;
  EXPECT_EQ(Value(eth.State), -1);
  EXPECT_EQ(Value(eth.FecType), -1);
  EXPECT_EQ(Value(eth.FecTypeState), -1);
  const Dto::ConfigFile file;
  EXPECT_EQ(Value(file.Type), -1);
  EXPECT_EQ(Value(file.State), -1);
  EXPECT_FALSE(Dto::Header().token.HasValue());
}

TEST(DomainRecordsTest, EqualityCopyAndMoveCoverEveryField) {
  Dto::IfInfo a;
  a.Type = Dto::IfType::BasicLag;
  a.Vlan = {10, 20};
  a.IfList = {"eth1", "eth2"};
  a.IpConfig.Ip.Address = "10.0.0.1";
  Dto::IfInfo copy = a;
  EXPECT_EQ(copy, a);
  copy.IpConfig.Ip.Address = "10.0.0.2";
  EXPECT_NE(copy, a);
  Dto::IfInfo moved = std::move(copy);
  EXPECT_EQ(moved.IpConfig.Ip.Address, "10.0.0.2");

  Dto::EthCnt first;
  Dto::EthCnt last;
  EXPECT_EQ(first, last);
  last.NbOfValidFrameSentHalfDupWithOutCollision = 1;
  EXPECT_NE(first, last);
  first.NbOfGoodOctetsReceived = 1;
  last.NbOfValidFrameSentHalfDupWithOutCollision = 0;
  EXPECT_NE(first, last);

  Dto::LldpInfo lldp;
  lldp.Tlv[Dto::LldpTlvType::SystemName] = std::string("\x0a\x02sw", 4);
  Dto::LldpInfo other = lldp;
  EXPECT_EQ(other, lldp);
  other.Tlv[Dto::LldpTlvType::SystemName] = "x";
  EXPECT_NE(other, lldp);

  Dto::PTPConfig ptp;
  Dto::PTPConfig ptp2 = ptp;
  ptp2.SlaveIfList = {"eth3"};
  EXPECT_NE(ptp, ptp2);
}

TEST(DomainRecordsTest, EthCntHoldsThirtyCountersAfterTheName) {
  EXPECT_EQ(std::tuple_size<decltype(Dto::EthCnt().Tie())>::value, 31u);
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
}

TEST(DtoToStringTest, JoinsWithSingleBlanks) {
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{}), "");
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{7}), "7");
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{10, -1, 4094}), "10 -1 4094");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{}), "");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{"eth1"}), "eth1");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{"eth1", "eth2", "eth3"}), "eth1 eth2 eth3");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{"", "eth2"}), " eth2");
}

// Every domain twin numbers Unknown as -1 and ends with __LAST__ after its last member.
TEST(DomainEnumsTest, UnknownIsMinusOneAndLastBoundsTheRange) {
  struct Row {
    const char* name;
    int unknown;
    int last;
  };
  const Row rows[] = {
      {"ConfigType", Value(Dto::ConfigType::Unknown), Value(Dto::ConfigType::__LAST__)},
      {"ConfigState", Value(Dto::ConfigState::Unknown), Value(Dto::ConfigState::__LAST__)},
      {"EthMode", Value(Dto::EthMode::Unknown), Value(Dto::EthMode::__LAST__)},
      {"EthSpeed", Value(Dto::EthSpeed::Unknown), Value(Dto::EthSpeed::__LAST__)},
      {"EthFecType", Value(Dto::EthFecType::Unknown), Value(Dto::EthFecType::__LAST__)},
      {"EthState", Value(Dto::EthState::Unknown), Value(Dto::EthState::__LAST__)},
      {"EthFailureSts", Value(Dto::EthFailureSts::Unknown), Value(Dto::EthFailureSts::__LAST__)},
      {"IfType", Value(Dto::IfType::Unknown), Value(Dto::IfType::__LAST__)},
      {"IfStatus", Value(Dto::IfStatus::Unknown), Value(Dto::IfStatus::__LAST__)},
      {"PTPPacketType", Value(Dto::PTPPacketType::Unknown), Value(Dto::PTPPacketType::__LAST__)},
      {"PTPClockMode", Value(Dto::PTPClockMode::Unknown), Value(Dto::PTPClockMode::__LAST__)},
      {"PrsState", Value(Dto::PrsState::Unknown), Value(Dto::PrsState::__LAST__)},
      {"PrsClock", Value(Dto::PrsClock::Unknown), Value(Dto::PrsClock::__LAST__)},
      {"LagState", Value(Dto::LagState::Unknown), Value(Dto::LagState::__LAST__)},
      {"LacpMode", Value(Dto::LacpMode::Unknown), Value(Dto::LacpMode::__LAST__)},
      {"LldpTlvType", Value(Dto::LldpTlvType::Unknown), Value(Dto::LldpTlvType::__LAST__)},
  };
  const int expectedLast[] = {4, 2, 5, 8, 3, 7, 6, 4, 2, 3, 4, 7, 2, 4, 3, 129};
  for (size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(rows[i].name);
    EXPECT_EQ(rows[i].unknown, -1);
    EXPECT_EQ(rows[i].last, expectedLast[i]);
  }
  EXPECT_EQ(Value(Dto::EthState::LinkUp), 4);
  EXPECT_EQ(Value(Dto::EthState::Failure), 6);
  EXPECT_EQ(Value(Dto::IfType::Virtual), 3);
  EXPECT_EQ(Value(Dto::IfStatus::Enabled), 1);
  EXPECT_EQ(Value(Dto::ConfigState::altered), 1);
  EXPECT_EQ(Value(Dto::EthFecType::Disable), 0);
  EXPECT_EQ(Value(Dto::EthFecType::FC_FEC), 1);
  EXPECT_EQ(Value(Dto::LldpTlvType::ManagementAddress), 8);
  EXPECT_EQ(Value(Dto::LldpChassisIdTlvType::MacAddress), 4);
  EXPECT_EQ(Value(Dto::LldpPortIdTlvType::InterfaceName), 5);
}

}  // namespace
