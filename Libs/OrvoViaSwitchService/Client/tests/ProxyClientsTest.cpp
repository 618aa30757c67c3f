#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <thrift/TToString.h>

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
using Service::Serialization::Thrift::IfIpConfigConverter;
using Service::Serialization::Thrift::LldpConfigConverter;
using Service::Serialization::Thrift::LldpInfoConverter;
using Service::Serialization::Thrift::PTPConfigConverter;
using Simulator::LoopbackSwitchServer;
using Testing::ClosedPort;
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

Dto::ConfigFile File(const std::string& name) {
  Dto::ConfigFile file;
  file.Name = name;
  file.State = Dto::ConfigState::altered;
  return file;
}

// A record as the server receives it: converted, then printed by Thrift.
template <typename Converter, typename Record>
std::string OnWire(const Record& record) {
  return apache::thrift::to_string(Converter::ToGenerated(record));
}

std::string FileOnWire(const std::string& name) {
  return OnWire<ConfigFileConverter>(File(name));
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

const Dto::Header kNoToken;
const std::vector<std::string> kNames = {"p1", "p2"};
const Dto::EthConfig kEthConfig{Dto::EthMode::_1000BASE_X, Dto::EthSpeed::S12_5G,
                                Dto::EthFecType::Disable};
const Dto::IfIpConfig kIpConfig{{false, "10.1.1.1"}, {false, "255.0.0.0"}, {true, "fe80::1"}, true};
const Dto::LldpConfig kLldpConfig{"n", "d", "192.0.2.9", "c", 30};
const Dto::PTPConfig kPTPConfig{
    -5,           Dto::PTPPacketType::IEEE,   Dto::PTPClockMode::Slave, {"p1"},
    {"p2", "p3"}, Dto::PTPProfile::AES67_2015};

INSTANTIATE_TEST_SUITE_P(
    EveryCommand, ProxyCommandTest,
    ::testing::Values(
        CommandCase{"Reset", [](Proxies& p) { p.config.Reset(kNoToken); }, "Config:Reset"},
        CommandCase{"LoadConfig", [](Proxies& p) { p.config.LoadConfig(kNoToken, File("a")); },
                    "Config:LoadConfig " + FileOnWire("a")},
        CommandCase{"LoadFactoryDefault", [](Proxies& p) { p.config.LoadFactoryDefault(kNoToken); },
                    "Config:LoadFactoryDefault"},
        CommandCase{"SaveRunningConfig2StartUpConfig",
                    [](Proxies& p) { p.config.SaveRunningConfig2StartUpConfig(kNoToken); },
                    "Config:SaveRunningConfig2StartUpConfig"},
        CommandCase{"BackupRunningConfig",
                    [](Proxies& p) { p.config.BackupRunningConfig(kNoToken, File("b")); },
                    "Config:BackupRunningConfig " + FileOnWire("b")},
        CommandCase{"SetConfigComment",
                    [](Proxies& p) { p.config.SetConfigComment(kNoToken, File("c")); },
                    "Config:SetConfigComment " + FileOnWire("c")},
        CommandCase{"CopyConfig",
                    [](Proxies& p) { p.config.CopyConfig(kNoToken, File("s"), File("d")); },
                    "Config:Copy " + FileOnWire("s") + " " + FileOnWire("d")},
        CommandCase{"DeleteConfig", [](Proxies& p) { p.config.DeleteConfig(kNoToken, File("x")); },
                    "Config:Delete " + FileOnWire("x")},
        CommandCase{"RenameConfig",
                    [](Proxies& p) { p.config.RenameConfig(kNoToken, File("o"), File("n")); },
                    "Config:Rename " + FileOnWire("o") + " " + FileOnWire("n")},
        CommandCase{"ConfigureEth",
                    [](Proxies& p) { p.ethernet.ConfigureEth(kNoToken, kEthConfig, kNames); },
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
        CommandCase{"SetIpConfig",
                    [](Proxies& p) { p.interfaces.SetIpConfig(kNoToken, "eth1", kIpConfig); },
                    "Interfaces:SetIpConfig eth1 " + OnWire<IfIpConfigConverter>(kIpConfig)},
        CommandCase{"SetLldpConfig",
                    [](Proxies& p) { p.lldp.SetLldpConfig(kNoToken, kLldpConfig); },
                    "LLDP:SetConfig " + OnWire<LldpConfigConverter>(kLldpConfig)},
        CommandCase{"SetPTPConfig", [](Proxies& p) { p.ptp.SetPTPConfig(kNoToken, kPTPConfig); },
                    "PTP:SetConfig " + OnWire<PTPConfigConverter>(kPTPConfig)},
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

TEST_F(ProxyQueryTest, EthernetLldpPtpAndConfigQueriesReturnRecords) {
  const auto& data = server.Data();
  EXPECT_EQ(proxies.ethernet.GetEthInfo(kNoToken, kNames),
            FromGeneratedAll<EthInfoConverter>(data.ethInfos));
  EXPECT_EQ(proxies.ethernet.GetHardwareDesc(kNoToken),
            FromGeneratedAll<HwDescConverter>(data.hwDescs));
  EXPECT_EQ(proxies.lldp.GetLldpConfig(kNoToken),
            LldpConfigConverter::FromGenerated(data.lldpConfig));
  EXPECT_EQ(proxies.lldp.GetLldpInfo(kNoToken),
            FromGeneratedAll<LldpInfoConverter>(data.lldpInfos));
  EXPECT_EQ(proxies.ptp.GetPTPConfig(kNoToken),
            FromGeneratedAll<PTPConfigConverter>(data.ptpConfigs));
  EXPECT_EQ(proxies.config.GetCurrentConfig(kNoToken),
            ConfigFileConverter::FromGenerated(data.currentConfig));
  EXPECT_EQ(proxies.config.ListConfigFile(kNoToken, Dto::ConfigType::All),
            FromGeneratedAll<ConfigFileConverter>(data.configFiles));
  EXPECT_EQ(proxies.config.GetConfigComment(kNoToken, File("f")), "a comment");
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

// A switch that fails a call, and what the proxy makes of it: a SystemError
// with the library's text, one "Error: " line, never a crash, never a wait
// for the receive time-out when the reply is broken off.
struct BrokenReplyCase {
  const char* name;
  int receiveTimeoutMs;
  std::function<void(Simulator::ServerBehaviour&)> breakReplies;
  std::function<void(Proxies&)> call;
  const char* what;
};

void PrintTo(const BrokenReplyCase& testCase, std::ostream* out) {
  *out << testCase.name;
}

class ProxyBrokenReplyTest : public ::testing::TestWithParam<BrokenReplyCase> {};

TEST_P(ProxyBrokenReplyTest, FailsWithSystemErrorBeforeTheReceiveTimeOut) {
  LoopbackSwitchServer server;
  Proxies proxies(server.Port(), GetParam().receiveTimeoutMs);
  proxies.OpenAll();
  GetParam().breakReplies(server.Behaviour());

  const auto start = std::chrono::steady_clock::now();
  ExpectSystemError([&] { GetParam().call(proxies); }, *proxies.logger, GetParam().what);
  // Well before a 30 s receive time-out, and before a 5 s delay ends.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(server.Behaviour().Calls().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    EveryWayOfFailing, ProxyBrokenReplyTest,
    ::testing::Values(
        BrokenReplyCase{"ExceptionInTheService", 30000,
                        [](Simulator::ServerBehaviour& b) { b.OtherException("handler broke"); },
                        [](Proxies& p) { p.lldp.GetLldpConfig(kNoToken); }, "handler broke"},
        BrokenReplyCase{"ReceiveTimeOut", 300,
                        [](Simulator::ServerBehaviour& b) { b.Delay(std::chrono::seconds(5)); },
                        [](Proxies& p) { p.interfaces.GetIfList(kNoToken); },
                        "THRIFT_EAGAIN (timed out)"},
        BrokenReplyCase{"CloseOnGetEthCnt", 30000, [](Simulator::ServerBehaviour& b) { b.Close(); },
                        [](Proxies& p) { p.interfaces.GetEthCnt(kNoToken, kNames); },
                        "No more data to read."},
        BrokenReplyCase{"GarbageOnGetLldpInfo", 30000,
                        [](Simulator::ServerBehaviour& b) { b.Garbage(); },
                        [](Proxies& p) { p.lldp.GetLldpInfo(kNoToken); }, "Bad version identifier"},
        // The first byte of a message's version word, then nothing.
        BrokenReplyCase{
            "GarbageCutShort", 30000, [](Simulator::ServerBehaviour& b) { b.Garbage("\x80"); },
            [](Proxies& p) { p.interfaces.GetMainMacAddr(kNoToken); }, "No more data to read."}),
    [](const ::testing::TestParamInfo<BrokenReplyCase>& info) { return info.param.name; });

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

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
