#include <gtest/gtest.h>

#include <memory>

#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"
#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace {

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace Metrics = Arq::OrvoViaSwitch::Domain::Dto::Metrics;
namespace Tlv = Arq::Monitoring::MetricConverter::LldpTlv;
using Arq::Monitoring::MetricConverter::LLDPMetricConverter;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

std::string B(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s += static_cast<char>(b);
  return s;
}

TEST(LldpTlvTest, HeaderIsCheckedAgainstTheRealSize) {
  EXPECT_EQ(Tlv::Value(B({0x0a, 0x02, 'a', 'b'}), 5), std::optional<std::string_view>("ab"));
  EXPECT_EQ(Tlv::Value(B({0x0a, 0x02, 'a', 'b', 'c'}), 5), std::optional<std::string_view>("ab"));
  EXPECT_FALSE(Tlv::Value(B({0x0a, 0x03, 'a', 'b'}), 5));  // length beyond the text
  EXPECT_FALSE(Tlv::Value(B({0x0a, 0x02, 'a', 'b'}), 4));  // other type
  EXPECT_FALSE(Tlv::Value(B({0x0a}), 5));
  EXPECT_FALSE(Tlv::Value("", 5));
  // The ninth length bit lives in the first byte.
  const std::string big = Tlv::Encode(6, std::string(300, 'x'));
  EXPECT_EQ(big.size(), 302u);
  EXPECT_EQ(static_cast<unsigned char>(big[0]), 0x0d);
  EXPECT_EQ(Tlv::Value(big, 6)->size(), 300u);
  EXPECT_EQ(Tlv::Encode(6, std::string(600, 'x')).size(), 513u);
}

TEST(LldpTlvTest, ChassisAndPortIdentifiersBySubtype) {
  const std::string mac = B({0x00, 0x1B, 0x21, 0x3a, 0x4f, 0x5e});
  struct Case {
    std::string tlv;
    std::optional<std::string> chassis;
  };
  const Case chassis[] = {
      {Tlv::Encode(1, B({4}) + mac), "00:1b:21:3a:4f:5e"},
      {Tlv::Encode(1, B({4}) + mac.substr(0, 5)), ""},
      {Tlv::Encode(1, B({5, 1, 10, 0, 0, 7})), "10.0.0.7"},
      {Tlv::Encode(1, B({5, 2, 'f', 'e'})), "fe"},  // not IPv4: the address as text
      {Tlv::Encode(1, B({5})), ""},                 // a network address without its family byte
      {Tlv::Encode(1, B({7}) + "rack3\x01sw"), "rack3.sw"},
      {Tlv::Encode(1, B({6}) + "bond0  "), "bond0"},
      {Tlv::Encode(1, ""), std::nullopt},
      {Tlv::Encode(2, B({4}) + mac), std::nullopt},
  };
  for (const auto& c : chassis) EXPECT_EQ(Tlv::ChassisId(c.tlv), c.chassis);

  const auto byMac = Tlv::PortIdentifier(Tlv::Encode(2, B({3}) + mac));
  ASSERT_TRUE(byMac);
  EXPECT_EQ(byMac->macAddress, "00:1b:21:3a:4f:5e");
  EXPECT_EQ(byMac->interfaceName, "");
  const auto byName = Tlv::PortIdentifier(Tlv::Encode(2, B({5}) + "Ethernet1/49"));
  ASSERT_TRUE(byName);
  EXPECT_EQ(byName->macAddress, "");
  EXPECT_EQ(byName->interfaceName, "Ethernet1/49");
  EXPECT_FALSE(Tlv::PortIdentifier(B({0x04, 0x09, 0x05, 'x'})));
}

TEST(LldpTlvTest, ManagementAddressAndTimeToLive) {
  EXPECT_EQ(Tlv::ManagementAddress(Tlv::Encode(8, B({5, 1, 192, 0, 2, 33, 2, 0, 0, 0, 1, 0}))),
            "192.0.2.33");
  EXPECT_EQ(Tlv::ManagementAddress(Tlv::Encode(8, B({5, 1, 192, 0, 2}))), std::nullopt);
  EXPECT_EQ(Tlv::ManagementAddress(Tlv::Encode(8, B({17, 2, 0x20, 0x01}))), std::nullopt);
  EXPECT_EQ(Tlv::ManagementAddress(Tlv::Encode(8, B({0, 1}))), std::nullopt);

  EXPECT_EQ(Tlv::TimeToLive(Tlv::Encode(3, B({0x00, 0x78}))), 120);
  EXPECT_EQ(Tlv::TimeToLive(Tlv::Encode(3, B({0x12, 0x34}))), 0x1234);
  EXPECT_EQ(Tlv::TimeToLive(Tlv::Encode(3, B({0x00}))), 121);
  EXPECT_EQ(Tlv::TimeToLive(B({0x06, 0x02})), 121);
  EXPECT_EQ(Tlv::TimeToLive(B({0x06, 0x05, 0x00, 0x78})), 121);
  EXPECT_EQ(Tlv::TimeToLive(Tlv::Encode(4, B({0x00, 0x78}))), 121);
  // Only the header has to fit: bytes 3 and 4 give the number whatever length it announces.
  EXPECT_EQ(Tlv::TimeToLive(B({0x06, 0x01, 0x00, 0x78})), 120);
  EXPECT_EQ(Tlv::TimeToLive(B({0x06, 0x00, 0x01, 0x2c})), 300);
  EXPECT_EQ(Tlv::TimeToLive(B({0x06, 0x01, 0x00})), 121);
}

TEST(LldpTlvTest, SystemDescriptionSplit) {
  struct Case {
    const char* text;
    const char* type;
    const char* serial;
    const char* version;
  };
  const Case cases[] = {
      {"Arq OrvoVia-48X; SN OV48X-1; 5.4.1", "Arq OrvoVia-48X", "SN OV48X-1", "5.4.1"},
      {"Model only", "Model only", "", ""},
      {" A ;B", "A", "B", ""},
      {"A;B;C;D", "A", "B", "C;D"},
      {"", "", "", ""},
  };
  for (const auto& c : cases) {
    const auto parts = Tlv::SplitSystemDescription(c.text);
    EXPECT_EQ(parts.deviceType, c.type);
    EXPECT_EQ(parts.serialNumber, c.serial);
    EXPECT_EQ(parts.version, c.version);
  }
}

TEST(LLDPMetricConverterTest, LocalIdentityAndNeighbourHolders) {
  auto values = std::make_unique<Values>();
  Dto::LldpConfig config;
  config.SystemName = "orvovia-sw";
  config.SystemDescr = "Arq OrvoVia-24; SN OV24-9; 2.2.23";
  config.ManagementIP = "192.0.2.10";
  LLDPMetricConverter::ToMetric(config, "02:A0:C9:00:00:01", &values->lLDPMetric);
  // Fields: chassis, name, version, address, manufacturer, serial number.
  EXPECT_EQ(values->lLDPMetric.Value(),
            (Metrics::LLDPMetric{"02:a0:c9:00:00:01", "orvovia-sw", "2.2.23", "192.0.2.10",
                                 "Arq OrvoVia-24", "SN OV24-9"}));
  config.ChassisId = "sw-chassis-7";
  LLDPMetricConverter::ToMetric(config, "02a0c9000001", &values->lLDPMetric);
  EXPECT_EQ(values->lLDPMetric.Value().chassisId, "sw-chassis-7");
  EXPECT_EQ(LLDPMetricConverter::NormalizeMacAddress("02a0C9000001"), "02:a0:c9:00:00:01");
  EXPECT_EQ(LLDPMetricConverter::NormalizeMacAddress("02-a0-c9-00-00-01"), "02:a0:c9:00:00:01");
  EXPECT_EQ(LLDPMetricConverter::NormalizeMacAddress("not a mac"), "not a mac");

  // 62 neighbours fill the 60 holders; then fewer, and one changed: the memo
  // must not keep serving its former decoding.
  LLDPMetricConverter::Memo memo;
  std::vector<Dto::LldpInfo> infos(62);
  for (std::size_t i = 0; i < infos.size(); ++i) infos[i].IfName = "eth" + std::to_string(i);
  EXPECT_EQ(LLDPMetricConverter::ToMetric(infos, values->lLDPInfoMetrics.data(), memo), 62u);
  EXPECT_EQ(values->lLDPInfoMetrics[59].Value().localInterface, "eth59");
  infos.resize(2);
  infos[1].IfName = "eth99";
  EXPECT_EQ(LLDPMetricConverter::ToMetric(infos, values->lLDPInfoMetrics.data(), memo), 2u);
  EXPECT_EQ(values->lLDPInfoMetrics[0].Value().localInterface, "eth0");
  EXPECT_EQ(values->lLDPInfoMetrics[1].Value().localInterface, "eth99");
  EXPECT_EQ(values->lLDPInfoMetrics[2].Value(), Metrics::LLDPInfoMetric());
}

}  // namespace
