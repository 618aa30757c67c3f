#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <ArqSwitchApi/Interfaces.h>
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/transport/TBufferTransports.h>

#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftConfigProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftEthernetProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftInterfacesProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftLLDPProxyClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftPTPProxyClient.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"
#include "RecordingLogger.h"
#include "TestPeers.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;
using OrvoViaSwitch::Domain::Exception::DomainException;
using Service::Serialization::Thrift::ConfigFileConverter;
using Service::Serialization::Thrift::EthCntConverter;
using Service::Serialization::Thrift::EthInfoConverter;
using Service::Serialization::Thrift::EthStatConverter;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HwDescConverter;
using Service::Serialization::Thrift::IfInfoConverter;
using Service::Serialization::Thrift::LldpConfigConverter;
using Service::Serialization::Thrift::LldpInfoConverter;
using Service::Serialization::Thrift::PTPConfigConverter;
using Simulator::LoopbackSwitchServer;
using Testing::ClosedPort;
using Testing::RawPeer;
using Testing::RecordingLogger;

constexpr int kConnectTimeoutMs = 2000;

// The five proxies of one switch, each over its own connection, all logging
// into one recording logger.
struct Proxies {
  Proxies(int port, int receiveTimeoutMs)
      : logger(std::make_shared<RecordingLogger>()),
        config(Fabric(port, receiveTimeoutMs), logger),
        ethernet(Fabric(port, receiveTimeoutMs), logger),
        interfaces(Fabric(port, receiveTimeoutMs), logger),
        lldp(Fabric(port, receiveTimeoutMs), logger),
        ptp(Fabric(port, receiveTimeoutMs), logger) {}

  static std::shared_ptr<OrvoViaSwitchThriftClientsFabric> Fabric(int port, int receiveTimeoutMs) {
    return std::make_shared<OrvoViaSwitchThriftClientsFabric>("127.0.0.1", port, kConnectTimeoutMs,
                                                              receiveTimeoutMs);
  }

  void OpenAll() {
    config.Open();
    ethernet.Open();
    interfaces.Open();
    lldp.Open();
    ptp.Open();
  }

  std::shared_ptr<RecordingLogger> logger;
  OrvoViaSwitchThriftConfigProxyClient config;
  OrvoViaSwitchThriftEthernetProxyClient ethernet;
  OrvoViaSwitchThriftInterfacesProxyClient interfaces;
  OrvoViaSwitchThriftLLDPProxyClient lldp;
  OrvoViaSwitchThriftPTPProxyClient ptp;
};

Dto::ConfigFile SampleFile(const std::string& name) {
  Dto::ConfigFile file;
  file.Name = name;
  file.Type = Dto::ConfigType::Debug;
  file.Comment = "c";
  file.State = Dto::ConfigState::altered;
  file.BaseName = "base";
  file.BaseType = Dto::ConfigType::Unknown;
  return file;
}

const std::string kSampleFileOnWire =
    "ConfigFile_t(Name=%, Type=Debug, Comment=c, State=altered, BaseName=base, BaseType=Unknown)";

std::string FileOnWire(const std::string& name) {
  std::string text = kSampleFileOnWire;
  return text.replace(text.find('%'), 1, name);
}

// An operation that answers nothing: what the server must have received.
struct CommandCase {
  const char* name;
  std::function<void(Proxies&)> call;
  std::string received;
};

void PrintTo(const CommandCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

class ProxyCommandTest : public ::testing::TestWithParam<CommandCase> {};

TEST_P(ProxyCommandTest, SendsConvertedArgumentsUnderServiceColonMethod) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 5000);
  proxies.OpenAll();

  GetParam().call(proxies);

  ASSERT_EQ(server.Behaviour().Calls(), std::vector<std::string>{GetParam().received});
  EXPECT_TRUE(proxies.logger->Entries().empty());
}

Dto::EthConfig SampleEthConfig() {
  Dto::EthConfig config;
  config.Mode = Dto::EthMode::_1000BASE_X;
  config.Speed = Dto::EthSpeed::S12_5G;
  config.FecType = Dto::EthFecType::Disable;
  return config;
}

Dto::IfIpConfig SampleIpConfig() {
  Dto::IfIpConfig config;
  config.Ip.Address = "10.1.1.1";
  config.Mask.Address = "255.0.0.0";
  config.Gateway.bIpv6 = true;
  config.Gateway.Address = "fe80::1";
  config.Dhcp = true;
  return config;
}

Dto::LldpConfig SampleLldpConfig() {
  Dto::LldpConfig config;
  config.SystemName = "n";
  config.SystemDescr = "d";
  config.ManagementIP = "192.0.2.9";
  config.ChassisId = "c";
  config.TTL = 30;
  return config;
}

Dto::PTPConfig SamplePTPConfig() {
  Dto::PTPConfig config;
  config.Domain = -5;
  config.PacketType = Dto::PTPPacketType::IEEE;
  config.ClockMode = Dto::PTPClockMode::Slave;
  config.IfList = {"p1"};
  config.SlaveIfList = {"p2", "p3"};
  config.Profile = Dto::PTPProfile::AES67_2015;
  return config;
}

const Dto::Header kNoToken;
const std::vector<std::string> kNames = {"p1", "p2"};

INSTANTIATE_TEST_SUITE_P(
    EveryCommand, ProxyCommandTest,
    ::testing::Values(
        CommandCase{"Reset", [](Proxies& p) { p.config.Reset(kNoToken); }, "Config:Reset"},
        CommandCase{"LoadConfig",
                    [](Proxies& p) { p.config.LoadConfig(kNoToken, SampleFile("a")); },
                    "Config:LoadConfig " + FileOnWire("a")},
        CommandCase{"LoadFactoryDefault", [](Proxies& p) { p.config.LoadFactoryDefault(kNoToken); },
                    "Config:LoadFactoryDefault"},
        CommandCase{"SaveRunningConfig2StartUpConfig",
                    [](Proxies& p) { p.config.SaveRunningConfig2StartUpConfig(kNoToken); },
                    "Config:SaveRunningConfig2StartUpConfig"},
        CommandCase{"BackupRunningConfig",
                    [](Proxies& p) { p.config.BackupRunningConfig(kNoToken, SampleFile("b")); },
                    "Config:BackupRunningConfig " + FileOnWire("b")},
        CommandCase{"SetConfigComment",
                    [](Proxies& p) { p.config.SetConfigComment(kNoToken, SampleFile("c")); },
                    "Config:SetConfigComment " + FileOnWire("c")},
        CommandCase{
            "CopyConfig",
            [](Proxies& p) { p.config.CopyConfig(kNoToken, SampleFile("s"), SampleFile("d")); },
            "Config:Copy " + FileOnWire("s") + " " + FileOnWire("d")},
        CommandCase{"DeleteConfig",
                    [](Proxies& p) { p.config.DeleteConfig(kNoToken, SampleFile("x")); },
                    "Config:Delete " + FileOnWire("x")},
        CommandCase{
            "RenameConfig",
            [](Proxies& p) { p.config.RenameConfig(kNoToken, SampleFile("o"), SampleFile("n")); },
            "Config:Rename " + FileOnWire("o") + " " + FileOnWire("n")},
        CommandCase{
            "ConfigureEth",
            [](Proxies& p) { p.ethernet.ConfigureEth(kNoToken, SampleEthConfig(), kNames); },
            "Ethernet:Configure EthConfig_t(Mode=_1000BASE_X, Speed=S12_5G, "
            "FecType=Disable) [p1, p2]"},
        CommandCase{"SetIfDescription",
                    [](Proxies& p) { p.interfaces.SetIfDescription(kNoToken, "eth1", "uplink"); },
                    "Interfaces:SetDescription eth1 uplink"},
        CommandCase{
            "SetIfStatus",
            [](Proxies& p) { p.interfaces.SetIfStatus(kNoToken, kNames, Dto::IfStatus::Disabled); },
            "Interfaces:SetStatus [p1, p2] Disabled"},
        CommandCase{"SetVID", [](Proxies& p) { p.interfaces.SetVID(kNoToken, kNames, -2); },
                    "Interfaces:SetVID [p1, p2] -2"},
        CommandCase{"AddToVlan", [](Proxies& p) { p.interfaces.AddToVlan(kNoToken, kNames, 300); },
                    "Interfaces:AddToVlan [p1, p2] 300"},
        CommandCase{"RemoveFromVlan",
                    [](Proxies& p) { p.interfaces.RemoveFromVlan(kNoToken, kNames, 301); },
                    "Interfaces:RemoveFromVlan [p1, p2] 301"},
        CommandCase{"DeleteIfs", [](Proxies& p) { p.interfaces.DeleteIfs(kNoToken, kNames); },
                    "Interfaces:Delete [p1, p2]"},
        CommandCase{"DeleteAllIfs", [](Proxies& p) { p.interfaces.DeleteAllIfs(kNoToken); },
                    "Interfaces:DeleteAll"},
        CommandCase{
            "SetIpConfig",
            [](Proxies& p) { p.interfaces.SetIpConfig(kNoToken, "eth1", SampleIpConfig()); },
            "Interfaces:SetIpConfig eth1 IfIpConfig_t(Ip=IPAddress_t(bIpv6=0, "
            "Address=10.1.1.1), Mask=IPAddress_t(bIpv6=0, Address=255.0.0.0), "
            "Gateway=IPAddress_t(bIpv6=1, Address=fe80::1), Dhcp=1)"},
        CommandCase{"SetLldpConfig",
                    [](Proxies& p) { p.lldp.SetLldpConfig(kNoToken, SampleLldpConfig()); },
                    "LLDP:SetConfig lldpConfig_t(SystemName=n, SystemDescr=d, "
                    "ManagementIP=192.0.2.9, ChassisId=c, TTL=30)"},
        CommandCase{"SetPTPConfig",
                    [](Proxies& p) { p.ptp.SetPTPConfig(kNoToken, SamplePTPConfig()); },
                    "PTP:SetConfig PTPConfig_t(Domain=\xfb, PacketType=IEEE, ClockMode=Slave, "
                    "IfList=[p1], SlaveIfList=[p2, p3], Profile=AES67_2015)"},
        CommandCase{"AddInterfaces", [](Proxies& p) { p.ptp.AddInterfaces(kNoToken, 3, kNames); },
                    "PTP:AddInterfaces 3 [p1, p2]"},
        CommandCase{"RemoveInterfaces",
                    [](Proxies& p) { p.ptp.RemoveInterfaces(kNoToken, -1, kNames); },
                    "PTP:RemoveInterfaces -1 [p1, p2]"},
        CommandCase{"DelPTPConfig", [](Proxies& p) { p.ptp.DelPTPConfig(kNoToken, 127); },
                    "PTP:DelConfig 127"}),
    [](const ::testing::TestParamInfo<CommandCase>& info) { return info.param.name; });

class ProxyQueryTest : public ::testing::Test {
 protected:
  ProxyQueryTest() : proxies(server.Port(), 5000) { proxies.OpenAll(); }

  LoopbackSwitchServer server;
  Proxies proxies;
};

TEST_F(ProxyQueryTest, InterfacesQueriesReturnTheServersDataAsRecords) {
  const auto& data = server.Data();
  EXPECT_EQ(proxies.interfaces.GetIfList(kNoToken), data.ifList);
  EXPECT_EQ(proxies.interfaces.GetIfInfo(kNoToken, kNames),
            FromGeneratedAll<IfInfoConverter>(data.ifInfos));
  EXPECT_EQ(proxies.interfaces.GetEthCnt(kNoToken, kNames),
            FromGeneratedAll<EthCntConverter>(data.counters));
  EXPECT_EQ(proxies.interfaces.GetEthStats(kNoToken, kNames),
            FromGeneratedAll<EthStatConverter>(data.stats));
  EXPECT_EQ(proxies.interfaces.GetMainMacAddr(kNoToken), "00:11:22:33:44:55");
  EXPECT_EQ(proxies.interfaces.GetMacAddr(kNoToken, kNames), data.macs);
  EXPECT_EQ(
      server.Behaviour().Calls(),
      (std::vector<std::string>{"Interfaces:GetIfList", "Interfaces:GetInfo [p1, p2]",
                                "Interfaces:GetCnt [p1, p2]", "Interfaces:GetStats [p1, p2]",
                                "Interfaces:GetMainMacAddr", "Interfaces:GetMacAddr [p1, p2]"}));
}

TEST_F(ProxyQueryTest, InterfaceRecordsKeepShiftedEnumsAndAllMembers) {
  const auto infos = proxies.interfaces.GetIfInfo(kNoToken, {});
  ASSERT_EQ(infos.size(), 4u);
  EXPECT_EQ(infos.at("eth1").Type, Dto::IfType::Ethernet);
  EXPECT_EQ(infos.at("prs1").Type, Dto::IfType::BasicPrs);
  EXPECT_EQ(infos.at("prs1").Status, Dto::IfStatus::Unknown);
  EXPECT_EQ(infos.at("lag1").Type, Dto::IfType::BasicLag);
  EXPECT_EQ(infos.at("lag1").IfList, (std::vector<std::string>{"p5", "p6"}));
  EXPECT_EQ(infos.at("eth2").Vlan, (std::vector<std::int16_t>{11, 12}));
  const auto counters = proxies.interfaces.GetEthCnt(kNoToken, {});
  ASSERT_EQ(counters.at("prs1").size(), 2u);
  EXPECT_EQ(counters.at("prs1")[1].EthName, "p4");
  EXPECT_EQ(counters.at("prs1")[1].NbOfGoodOctetsReceived, 401);
  EXPECT_EQ(counters.at("prs1")[1].NbOfValidFrameSentHalfDupWithOutCollision, 9000000400LL);
}

TEST_F(ProxyQueryTest, EthernetLldpPtpAndConfigQueriesReturnRecords) {
  const auto& data = server.Data();
  const auto ports = proxies.ethernet.GetEthInfo(kNoToken, kNames);
  EXPECT_EQ(ports, FromGeneratedAll<EthInfoConverter>(data.ethInfos));
  ASSERT_EQ(ports.size(), 3u);
  EXPECT_EQ(ports[0].FecType, Dto::EthFecType::Disable);
  EXPECT_EQ(ports[0].FecTypeState, Dto::EthFecType::FC_FEC);
  EXPECT_EQ(ports[1].Mode, Dto::EthMode::_1000BASE_X);
  EXPECT_EQ(ports[2].Speed, Dto::EthSpeed::Unknown);
  EXPECT_EQ(proxies.ethernet.GetHardwareDesc(kNoToken),
            FromGeneratedAll<HwDescConverter>(data.hwDescs));
  EXPECT_EQ(proxies.lldp.GetLldpConfig(kNoToken),
            LldpConfigConverter::FromGenerated(data.lldpConfig));
  const auto neighbours = proxies.lldp.GetLldpInfo(kNoToken);
  ASSERT_EQ(neighbours.size(), 1u);
  EXPECT_EQ(neighbours[0].Tlv.at(Dto::LldpTlvType::CustomEEETlv), "eee");
  EXPECT_EQ(neighbours[0].Tlv.at(Dto::LldpTlvType::SystemName), "peer");
  EXPECT_EQ(proxies.ptp.GetPTPConfig(kNoToken),
            FromGeneratedAll<PTPConfigConverter>(data.ptpConfigs));
  EXPECT_EQ(proxies.config.GetCurrentConfig(kNoToken),
            ConfigFileConverter::FromGenerated(data.currentConfig));
  EXPECT_EQ(proxies.config.ListConfigFile(kNoToken, Dto::ConfigType::All),
            FromGeneratedAll<ConfigFileConverter>(data.configFiles));
  EXPECT_EQ(proxies.config.GetConfigComment(kNoToken, SampleFile("f")), "a comment");
  EXPECT_EQ(server.Behaviour().Calls().back(), "Config:GetConfigComment " + FileOnWire("f"));
  EXPECT_TRUE(proxies.logger->Entries().empty());
}

TEST_F(ProxyQueryTest, HeaderTokenTravelsOnlyWhenPresent) {
  Dto::Header withToken;
  withToken.token = OrvoViaSwitch::Domain::BaseTypes::Optional<std::string>("secret");
  proxies.interfaces.GetIfList(kNoToken);
  proxies.interfaces.GetIfList(withToken);

  const auto headers = server.Behaviour().Headers();
  ASSERT_EQ(headers.size(), 2u);
  EXPECT_FALSE(headers[0].__isset.Token);
  EXPECT_EQ(headers[0].Token, "");
  EXPECT_TRUE(headers[1].__isset.Token);
  EXPECT_EQ(headers[1].Token, "secret");
}

// A failure reported by the switch, and what the proxy makes of it.
struct FaultCase {
  const char* name;
  api::ErrorCode_t::type wireCode;
  Dto::ErrorCode domainCode;
  std::function<void(Proxies&)> call;
  const char* proxyFile;
};

void PrintTo(const FaultCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

class ProxyFaultTest : public ::testing::TestWithParam<FaultCase> {};

TEST_P(ProxyFaultTest, FaultBecomesDomainExceptionWithMappedCodeAndOneErrorLine) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 5000);
  proxies.OpenAll();
  server.Behaviour().Fault(GetParam().wireCode, "it went wrong");

  try {
    GetParam().call(proxies);
    FAIL() << "no exception";
  } catch (const DomainException& exception) {
    EXPECT_EQ(exception.GetErrorCode(), GetParam().domainCode);
    EXPECT_STREQ(exception.what(), "it went wrong");
  }
  const auto entries = proxies.logger->Entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].level, arq::logging::ILogger::Error);
  EXPECT_EQ(entries[0].message,
            "Error Code: " + Dto::ToString(GetParam().domainCode) + " - Error: it went wrong");
  EXPECT_NE(entries[0].file.find(GetParam().proxyFile), std::string::npos) << entries[0].file;
}

INSTANTIATE_TEST_SUITE_P(
    EveryProxy, ProxyFaultTest,
    ::testing::Values(
        FaultCase{"ConfigNotFound", api::ErrorCode_t::NotFound, Dto::ErrorCode::NotFound,
                  [](Proxies& p) { p.config.GetCurrentConfig(kNoToken); },
                  "OrvoViaSwitchThriftConfigProxyClient.cpp"},
        FaultCase{"EthernetTimeOut", api::ErrorCode_t::TimeOut, Dto::ErrorCode::TimeOut,
                  [](Proxies& p) { p.ethernet.GetEthInfo(kNoToken, kNames); },
                  "OrvoViaSwitchThriftEthernetProxyClient.cpp"},
        FaultCase{"InterfacesAlreadyInUse", api::ErrorCode_t::AlreadyInUse,
                  Dto::ErrorCode::AlreadyInUse,
                  [](Proxies& p) { p.interfaces.GetEthCnt(kNoToken, kNames); },
                  "OrvoViaSwitchThriftInterfacesProxyClient.cpp"},
        FaultCase{"InterfacesCommandNotImplemented", api::ErrorCode_t::NotImplemented,
                  Dto::ErrorCode::NotImplemented,
                  [](Proxies& p) { p.interfaces.DeleteAllIfs(kNoToken); },
                  "OrvoViaSwitchThriftInterfacesProxyClient.cpp"},
        FaultCase{"LldpLast", api::ErrorCode_t::__LAST__, Dto::ErrorCode::__LAST__,
                  [](Proxies& p) { p.lldp.GetLldpInfo(kNoToken); },
                  "OrvoViaSwitchThriftLLDPProxyClient.cpp"},
        FaultCase{"PtpCodeOutsideTheTable", static_cast<api::ErrorCode_t::type>(14),
                  Dto::ErrorCode::NoError, [](Proxies& p) { p.ptp.GetPTPConfig(kNoToken); },
                  "OrvoViaSwitchThriftPTPProxyClient.cpp"}),
    [](const ::testing::TestParamInfo<FaultCase>& info) { return info.param.name; });

// Any other failure: SystemError, the library's text, one "Error: " line.
void ExpectSystemError(const std::function<void()>& call, const RecordingLogger& logger,
                       const std::string& what) {
  try {
    call();
    FAIL() << "no exception";
  } catch (const DomainException& exception) {
    EXPECT_EQ(exception.GetErrorCode(), Dto::ErrorCode::SystemError);
    EXPECT_EQ(std::string(exception.what()), what);
  }
  const auto entries = logger.Entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].level, arq::logging::ILogger::Error);
  EXPECT_EQ(entries[0].message, "Error: " + what);
}

TEST(ProxyFailureTest, ExceptionInTheServiceBecomesSystemError) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 5000);
  proxies.OpenAll();
  server.Behaviour().OtherException("handler broke");

  ExpectSystemError([&] { proxies.lldp.GetLldpConfig(kNoToken); }, *proxies.logger,
                    "handler broke");
}

TEST(ProxyFailureTest, ReceiveTimeOutBecomesSystemError) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 300);
  proxies.OpenAll();
  server.Behaviour().Delay(std::chrono::seconds(5));

  ExpectSystemError([&] { proxies.interfaces.GetIfList(kNoToken); }, *proxies.logger,
                    "THRIFT_EAGAIN (timed out)");
}

// A switch that breaks off a call where its reply should be, and what the
// proxy makes of it: a SystemError with the library's text, never the
// receive time-out (30 s here), never a crash.
struct BrokenReplyCase {
  const char* name;
  std::function<void(Simulator::ServerBehaviour&)> breakReplies;
  std::function<void(Proxies&)> call;
  const char* what;
};

void PrintTo(const BrokenReplyCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

class ProxyBrokenReplyTest : public ::testing::TestWithParam<BrokenReplyCase> {};

TEST_P(ProxyBrokenReplyTest, FailsWithSystemErrorBeforeTheReceiveTimeOut) {
  constexpr auto kReceiveTimeOut = std::chrono::seconds(30);
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), static_cast<int>(kReceiveTimeOut.count() * 1000));
  proxies.OpenAll();
  GetParam().breakReplies(server.Behaviour());

  const auto start = std::chrono::steady_clock::now();
  ExpectSystemError([&] { GetParam().call(proxies); }, *proxies.logger, GetParam().what);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kReceiveTimeOut);
  EXPECT_EQ(server.Behaviour().Calls().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    CloseAndGarbage, ProxyBrokenReplyTest,
    ::testing::Values(
        BrokenReplyCase{"CloseOnGetEthCnt", [](Simulator::ServerBehaviour& b) { b.Close(); },
                        [](Proxies& p) { p.interfaces.GetEthCnt(kNoToken, kNames); },
                        "No more data to read."},
        BrokenReplyCase{"CloseOnVoidCommand", [](Simulator::ServerBehaviour& b) { b.Close(); },
                        [](Proxies& p) { p.config.Reset(kNoToken); }, "No more data to read."},
        BrokenReplyCase{"GarbageOnGetLldpInfo", [](Simulator::ServerBehaviour& b) { b.Garbage(); },
                        [](Proxies& p) { p.lldp.GetLldpInfo(kNoToken); }, "Bad version identifier"},
        BrokenReplyCase{"GarbageOnGetPTPConfig", [](Simulator::ServerBehaviour& b) { b.Garbage(); },
                        [](Proxies& p) { p.ptp.GetPTPConfig(kNoToken); }, "Bad version identifier"},
        // The first byte of a message's version word, then nothing.
        BrokenReplyCase{"GarbageCutShort", [](Simulator::ServerBehaviour& b) { b.Garbage("\x80"); },
                        [](Proxies& p) { p.interfaces.GetMainMacAddr(kNoToken); },
                        "No more data to read."}),
    [](const ::testing::TestParamInfo<BrokenReplyCase>& info) { return info.param.name; });

TEST(ProxyFailureTest, CloseLimitedToOneCallLeavesTheOthersAnswering) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 30000);
  proxies.OpenAll();
  server.Behaviour().Only("Interfaces:GetStats");
  server.Behaviour().Close();

  EXPECT_EQ(proxies.interfaces.GetIfList(kNoToken), server.Data().ifList);
  ExpectSystemError([&] { proxies.interfaces.GetEthStats(kNoToken, kNames); }, *proxies.logger,
                    "No more data to read.");
  // The proxy's connection is gone with the call; a new one gets answers.
  proxies.interfaces.Close();
  proxies.interfaces.Open();
  EXPECT_EQ(proxies.interfaces.GetMainMacAddr(kNoToken), "00:11:22:33:44:55");
}

TEST(ProxyFailureTest, RefusedConnectionFailsOpenWithSystemError) {
  ClosedPort closed;
  Proxies proxies(closed.Port(), 1000);

  ExpectSystemError([&] { proxies.config.Open(); }, *proxies.logger,
                    "socket open() error: Connection refused");
}

TEST(ProxyFailureTest, CallWithoutOpenFailsWithSystemError) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), 1000);

  ExpectSystemError([&] { proxies.ptp.GetPTPConfig(kNoToken); }, *proxies.logger,
                    "Called write on non-open socket");
  EXPECT_TRUE(server.Behaviour().Calls().empty());
}

TEST(ProxyFailureTest, PeerClosingTheConnectionFailsTheCall) {
  RawPeer peer;
  Proxies proxies(peer.Port(), 5000);
  proxies.interfaces.Open();

  ExpectSystemError([&] { proxies.interfaces.GetEthCnt(kNoToken, kNames); }, *proxies.logger,
                    "No more data to read.");
}

TEST(ProxyFailureTest, GarbageReplyFailsTheCallCleanly) {
  RawPeer peer("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
  Proxies proxies(peer.Port(), 5000);
  proxies.lldp.Open();

  EXPECT_THROW(proxies.lldp.GetLldpInfo(kNoToken), DomainException);
  const auto entries = proxies.logger->Entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].message.rfind("Error: ", 0), 0u) << entries[0].message;
}

TEST(ProxyWireTest, RequestIsNamedServiceColonMethodAndOmitsAnAbsentToken) {
  RawPeer peer;
  Proxies proxies(peer.Port(), 5000);
  proxies.interfaces.Open();
  EXPECT_THROW(proxies.interfaces.GetEthCnt(kNoToken, kNames), DomainException);

  const std::string bytes = peer.Received();
  auto buffer = std::make_shared<apache::thrift::transport::TMemoryBuffer>(
      reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.data())),
      static_cast<std::uint32_t>(bytes.size()));
  apache::thrift::protocol::TBinaryProtocol protocol(buffer);
  std::string name;
  apache::thrift::protocol::TMessageType type;
  std::int32_t sequence = 0;
  protocol.readMessageBegin(name, type, sequence);
  api::Interfaces_GetCnt_args arguments;
  arguments.read(&protocol);

  EXPECT_EQ(name, "Interfaces:GetCnt");
  EXPECT_EQ(type, apache::thrift::protocol::T_CALL);
  EXPECT_FALSE(arguments.header.__isset.Token);
  EXPECT_EQ(arguments.IfList, kNames);
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
