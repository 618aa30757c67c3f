#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

TEST(HeaderConverterTest, AbsentTokenStaysEmptyAndUnset) {
  const auto header = HeaderConverter::ToGenerated(Dto::Header());
  EXPECT_FALSE(header.__isset.Token);
  EXPECT_EQ(header.Token, "");
}

TEST(HeaderConverterTest, PresentTokenIsCopiedAndMarked) {
  Dto::Header domain;
  domain.token = OrvoViaSwitch::Domain::BaseTypes::Optional<std::string>("t-1");
  const auto header = HeaderConverter::ToGenerated(domain);
  EXPECT_TRUE(header.__isset.Token);
  EXPECT_EQ(header.Token, "t-1");
  EXPECT_EQ(HeaderConverter::FromGenerated(header), domain);
}

TEST(EthStatConverterTest, NameIsCopiedOnlyWhenMarkedAsSet) {
  api::EthStat_t unmarked;
  unmarked.EthName = "p1";
  unmarked.TxSpeed = 10;
  unmarked.RxSpeed = 20;
  api::EthStat_t marked = unmarked;
  marked.__isset.EthName = true;

  const auto fromUnmarked = EthStatConverter::FromGenerated(unmarked);
  const auto fromMarked = EthStatConverter::FromGenerated(marked);

  EXPECT_EQ(fromUnmarked.EthName, "");
  EXPECT_EQ(fromUnmarked.TxSpeed, 10);
  EXPECT_EQ(fromUnmarked.RxSpeed, 20);
  EXPECT_EQ(fromMarked.EthName, "p1");
}

TEST(EthInfoConverterTest, EnumsAreTranslatedOnTheWire) {
  Dto::EthInfo info;
  info.EthName = "p9";
  info.Mode = Dto::EthMode::KR4;
  info.Speed = Dto::EthSpeed::S25G;
  info.IsMainPhys = true;
  info.NbPhys = -2;
  info.State = Dto::EthState::MacLinkDown;
  info.FailureSts = Dto::EthFailureSts::CreatePortFailed;
  info.FecType = Dto::EthFecType::Disable;
  info.FecTypeState = Dto::EthFecType::Unknown;

  const auto wire = EthInfoConverter::ToGenerated(info);

  EXPECT_EQ(wire.EthName, "p9");
  EXPECT_EQ(wire.Mode, 3);
  EXPECT_EQ(wire.Speed, 5);
  EXPECT_TRUE(wire.IsMainPhys);
  EXPECT_EQ(wire.NbPhys, -2);
  EXPECT_EQ(wire.State, 5);
  EXPECT_EQ(wire.FailureSts, 5);
  EXPECT_EQ(wire.FecType, 2);
  EXPECT_EQ(wire.FecTypeState, 0);
  EXPECT_EQ(EthInfoConverter::FromGenerated(wire), info);
}

TEST(EthCntConverterTest, EveryCounterKeepsItsPlace) {
  api::EthCnt_t wire;
  wire.__set_EthName("p1");
  wire.__set_NbOfGoodOctetsReceived(2);
  wire.__set_NbOfGoodOctectsSent(13);
  wire.__set_NbOfCrcErrorEvents(25);
  wire.__set_NbOfValidFrameSentHalfDupWithOutCollision(31);

  const auto counters = EthCntConverter::FromGenerated(wire);

  EXPECT_EQ(counters.EthName, "p1");
  EXPECT_EQ(counters.NbOfGoodOctetsReceived, 2);
  EXPECT_EQ(counters.NbOfBadOctetsReceived, 0);
  EXPECT_EQ(counters.NbOfGoodOctectsSent, 13);
  EXPECT_EQ(counters.NbOfCrcErrorEvents, 25);
  EXPECT_EQ(counters.NbOfValidFrameSentHalfDupWithOutCollision, 31);
  EXPECT_EQ(EthCntConverter::ToGenerated(counters), wire);
}

TEST(IfInfoConverterTest, RecordSurvivesTheWireWithNestedAddresses) {
  Dto::IfInfo info;
  info.Type = Dto::IfType::BasicLag;
  info.Status = Dto::IfStatus::Enabled;
  info.Vid = -7;
  info.Description = "d";
  info.MacAddr = "m";
  info.Vlan = {1, -1, 4094};
  info.IfList = {"p1", "p2"};
  info.IpConfig.Ip.Address = "10.0.0.1";
  info.IpConfig.Gateway.bIpv6 = true;
  info.IpConfig.Dhcp = true;

  const auto wire = IfInfoConverter::ToGenerated(info);

  EXPECT_EQ(wire.Type, api::IfType_t::BasicLag);
  EXPECT_EQ(wire.Status, api::IfStatus_t::Enabled);
  EXPECT_EQ(wire.IpConfig.Ip.Address, "10.0.0.1");
  EXPECT_TRUE(wire.IpConfig.Gateway.bIpv6);
  EXPECT_EQ(IfInfoConverter::FromGenerated(wire), info);
}

TEST(ConfigFileConverterTest, RecordSurvivesTheWire) {
  Dto::ConfigFile file;
  file.Name = "n";
  file.Type = Dto::ConfigType::All;
  file.Comment = "c";
  file.State = Dto::ConfigState::clean;
  file.BaseName = "b";
  file.BaseType = Dto::ConfigType::__LAST__;

  const auto wire = ConfigFileConverter::ToGenerated(file);

  EXPECT_EQ(wire.Type, api::ConfigType_t::All);
  EXPECT_EQ(wire.BaseType, api::ConfigType_t::__LAST__);
  EXPECT_EQ(ConfigFileConverter::FromGenerated(wire), file);
}

TEST(LldpInfoConverterTest, TlvKeysAboveOneHundredTwentySevenSurviveTheSignedByte) {
  Dto::LldpInfo info;
  info.IfName = "p1";
  info.Tlv = {{Dto::LldpTlvType::ChassisId, "c"},
              {Dto::LldpTlvType::CustomTlv, "x"},
              {Dto::LldpTlvType::CustomEEETlv, "e"},
              {Dto::LldpTlvType::__LAST__, "l"}};

  const auto wire = LldpInfoConverter::ToGenerated(info);

  EXPECT_EQ(wire.Tlv,
            (std::map<std::int8_t, std::string>{{1, "c"}, {127, "x"}, {-128, "e"}, {-127, "l"}}));
  EXPECT_EQ(LldpInfoConverter::FromGenerated(wire), info);
}

TEST(LldpInfoConverterTest, UnknownTlvKeyFallsOnZero) {
  api::lldpInfo_t wire;
  wire.__set_Tlv({{100, "odd"}});

  const auto info = LldpInfoConverter::FromGenerated(wire);

  EXPECT_EQ(info.Tlv,
            (std::map<Dto::LldpTlvType, std::string>{{Dto::LldpTlvType::EndOfLLDPU, "odd"}}));
}

TEST(PTPConfigConverterTest, RecordSurvivesTheWire) {
  Dto::PTPConfig config;
  config.Domain = -128;
  config.PacketType = Dto::PTPPacketType::Disabled;
  config.ClockMode = Dto::PTPClockMode::Transparent;
  config.IfList = {"a", "b"};
  config.SlaveIfList = {};
  config.Profile = Dto::PTPProfile::INTEROP_AES_SMPTE;

  const auto wire = PTPConfigConverter::ToGenerated(config);

  EXPECT_EQ(wire.PacketType, api::PTPPacketType_t::Disabled);
  EXPECT_EQ(wire.ClockMode, api::PTPClockMode_t::Transparent);
  EXPECT_EQ(wire.Profile, api::PTPProfile_t::INTEROP_AES_SMPTE);
  EXPECT_EQ(PTPConfigConverter::FromGenerated(wire), config);
}

TEST(SmallConvertersTest, RecordsSurviveTheWire) {
  Dto::LldpConfig lldp;
  lldp.SystemName = "s";
  lldp.SystemDescr = "d";
  lldp.ManagementIP = "i";
  lldp.ChassisId = "c";
  lldp.TTL = -1;
  EXPECT_EQ(LldpConfigConverter::FromGenerated(LldpConfigConverter::ToGenerated(lldp)), lldp);

  Dto::HwDesc hw;
  hw.Port = 48;
  hw.NbSubPort = -3;
  EXPECT_EQ(HwDescConverter::FromGenerated(HwDescConverter::ToGenerated(hw)), hw);

  Dto::EthConfig eth;
  eth.Mode = Dto::EthMode::SGMII;
  eth.Speed = Dto::EthSpeed::Unknown;
  eth.FecType = Dto::EthFecType::FC_FEC;
  const auto wire = EthConfigConverter::ToGenerated(eth);
  EXPECT_EQ(wire.Mode, api::EthMode_t::SGMII);
  EXPECT_EQ(wire.Speed, api::EthSpeed_t::Unknown);
  EXPECT_EQ(wire.FecType, api::EthFecType_t::FC_FEC);
  EXPECT_EQ(EthConfigConverter::FromGenerated(wire), eth);
}

TEST(ContainerConversionTest, MapsKeepKeysAndConvertEveryListElement) {
  std::map<std::string, std::vector<api::EthStat_t>> wire;
  api::EthStat_t stat;
  stat.__set_EthName("p1");
  stat.__isset.EthName = true;
  stat.__set_TxSpeed(5);
  wire["eth1"] = {stat, stat};
  wire["eth2"] = {};

  const auto converted = FromGeneratedAll<EthStatConverter>(wire);

  ASSERT_EQ(converted.size(), 2u);
  ASSERT_EQ(converted.at("eth1").size(), 2u);
  EXPECT_EQ(converted.at("eth1")[1].EthName, "p1");
  EXPECT_EQ(converted.at("eth1")[1].TxSpeed, 5);
  EXPECT_TRUE(converted.at("eth2").empty());
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
