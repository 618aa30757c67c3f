#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

// A record whose every field differs from its default comes back from the
// wire equal: a field that a converter drops comes back at its default.
template <typename Converter, typename Record>
void ExpectRoundTrip(const Record& record) {
  EXPECT_EQ(Converter::FromGenerated(Converter::ToGenerated(record)), record);
}

TEST(ConvertersTest, EveryFieldOfEveryRecordSurvivesTheWire) {
  Dto::ConfigFile file;
  file.Name = "n";
  file.Type = Dto::ConfigType::All;
  file.Comment = "c";
  file.State = Dto::ConfigState::clean;
  file.BaseName = "b";
  file.BaseType = Dto::ConfigType::Debug;
  ExpectRoundTrip<ConfigFileConverter>(file);

  Dto::EthConfig config;
  config.Mode = Dto::EthMode::SGMII;
  config.Speed = Dto::EthSpeed::S1G;
  config.FecType = Dto::EthFecType::FC_FEC;
  ExpectRoundTrip<EthConfigConverter>(config);

  Dto::EthInfo info;
  info.EthName = "p9";
  info.Mode = Dto::EthMode::KR4;
  info.Speed = Dto::EthSpeed::S25G;
  info.IsMainPhys = true;
  info.NbPhys = -2;
  info.State = Dto::EthState::MacLinkDown;
  info.FailureSts = Dto::EthFailureSts::CreatePortFailed;
  info.FecType = Dto::EthFecType::Disable;
  info.FecTypeState = Dto::EthFecType::RS_FEC;
  ExpectRoundTrip<EthInfoConverter>(info);

  Dto::EthCnt counters;
  counters.EthName = "p1";
  std::int64_t next = 1LL << 40;
#define ARQ_SET_COUNTER(name) counters.name = ++next;
  ARQ_ETH_COUNTERS(ARQ_SET_COUNTER)
#undef ARQ_SET_COUNTER
  ExpectRoundTrip<EthCntConverter>(counters);

  Dto::HwDesc hardware;
  hardware.Port = 48;
  hardware.NbSubPort = -3;
  ExpectRoundTrip<HwDescConverter>(hardware);

  Dto::IfInfo interface;
  interface.Type = Dto::IfType::BasicLag;
  interface.Status = Dto::IfStatus::Enabled;
  interface.Vid = -7;
  interface.Description = "d";
  interface.MacAddr = "m";
  interface.Vlan = {1, -1, 4094};
  interface.IfList = {"p1", "p2"};
  interface.IpConfig.Ip = {true, "::1"};
  interface.IpConfig.Mask = {false, "255.0.0.0"};
  interface.IpConfig.Gateway = {true, "fe80::1"};
  interface.IpConfig.Dhcp = true;
  ExpectRoundTrip<IfInfoConverter>(interface);

  Dto::LldpConfig lldp;
  lldp.SystemName = "s";
  lldp.SystemDescr = "d";
  lldp.ManagementIP = "i";
  lldp.ChassisId = "c";
  lldp.TTL = -1;
  ExpectRoundTrip<LldpConfigConverter>(lldp);

  Dto::PTPConfig ptp;
  ptp.Domain = -128;
  ptp.PacketType = Dto::PTPPacketType::Disabled;
  ptp.ClockMode = Dto::PTPClockMode::Transparent;
  ptp.IfList = {"a", "b"};
  ptp.SlaveIfList = {"c"};
  ptp.Profile = Dto::PTPProfile::INTEROP_AES_SMPTE;
  ExpectRoundTrip<PTPConfigConverter>(ptp);
}

TEST(ConvertersTest, TokenAndPortNameTravelOnlyWhenMarkedAsSet) {
  EXPECT_FALSE(HeaderConverter::ToGenerated(Dto::Header()).__isset.Token);
  Dto::Header header;
  header.token = OrvoViaSwitch::Domain::BaseTypes::Optional<std::string>("");
  EXPECT_TRUE(HeaderConverter::ToGenerated(header).__isset.Token);
  ExpectRoundTrip<HeaderConverter>(header);
  ExpectRoundTrip<HeaderConverter>(Dto::Header());

  api::EthStat_t stat;
  stat.EthName = "p1";
  stat.TxSpeed = 10;
  stat.RxSpeed = -20;
  const auto unmarked = EthStatConverter::FromGenerated(stat);
  EXPECT_EQ(unmarked.EthName, "");
  EXPECT_EQ(unmarked.TxSpeed, 10);
  EXPECT_EQ(unmarked.RxSpeed, -20);
  stat.__isset.EthName = true;
  EXPECT_EQ(EthStatConverter::FromGenerated(stat).EthName, "p1");
  ExpectRoundTrip<EthStatConverter>(EthStatConverter::FromGenerated(stat));
}

TEST(ConvertersTest, TlvKeysTravelAsSignedBytesAndUnknownOnesFallOnZero) {
  Dto::LldpInfo info;
  info.IfName = "p1";
  info.Tlv = {{Dto::LldpTlvType::ChassisId, "c"},
              {Dto::LldpTlvType::CustomTlv, "x"},
              {Dto::LldpTlvType::CustomEEETlv, "e"},
              {Dto::LldpTlvType::__LAST__, "l"}};
  const auto wire = LldpInfoConverter::ToGenerated(info);
  EXPECT_EQ(wire.Tlv,
            (std::map<std::int8_t, std::string>{{1, "c"}, {127, "x"}, {-128, "e"}, {-127, "l"}}));
  ExpectRoundTrip<LldpInfoConverter>(info);

  api::lldpInfo_t odd;
  odd.__set_Tlv({{100, "odd"}});
  EXPECT_EQ(LldpInfoConverter::FromGenerated(odd).Tlv,
            (std::map<Dto::LldpTlvType, std::string>{{Dto::LldpTlvType::EndOfLLDPU, "odd"}}));
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
