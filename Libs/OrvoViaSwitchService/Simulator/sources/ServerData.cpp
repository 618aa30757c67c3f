#include "Arq/OrvoViaSwitchService/Simulator/ServerData.h"

#include <cstdint>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"

namespace Arq::OrvoViaSwitchService::Simulator {

namespace api = ArqSwitchApi;

namespace {

api::EthCnt_t Counters(const std::string& name, std::int64_t base) {
  api::EthCnt_t c;
  c.__set_EthName(name);
  // Every counter its own value, base + 1 upwards in the list's order; the
  // last one beyond 32 bits.
  std::int64_t next = base;
#define ARQ_SET_COUNTER(field) c.__set_##field(++next);
  ARQ_ETH_COUNTERS(ARQ_SET_COUNTER)
#undef ARQ_SET_COUNTER
  c.__set_NbOfValidFrameSentHalfDupWithOutCollision(base + 9000000000LL);
  return c;
}

api::IPAddress_t Address(const std::string& text) {
  api::IPAddress_t address;
  address.__set_bIpv6(false);
  address.__set_Address(text);
  return address;
}

api::IfInfo_t Interface(api::IfType_t::type type, api::IfStatus_t::type status, std::int16_t vid,
                        const std::vector<std::string>& members) {
  api::IfInfo_t info;
  info.__set_Type(type);
  info.__set_Status(status);
  info.__set_Vid(vid);
  info.__set_Description("if " + std::to_string(vid));
  info.__set_MacAddr("00:11:22:33:44:" + std::to_string(10 + vid % 80));
  info.__set_Vlan({vid, static_cast<std::int16_t>(vid + 1)});
  info.__set_IfList(members);
  api::IfIpConfig_t ip;
  ip.__set_Ip(Address("10.0.0." + std::to_string(vid % 250)));
  ip.__set_Mask(Address("255.255.255.0"));
  ip.__set_Gateway(Address("10.0.0.254"));
  ip.__set_Dhcp(vid % 2 == 0);
  info.__set_IpConfig(ip);
  return info;
}

api::EthInfo_t Port(const std::string& name, api::EthMode_t::type mode, api::EthSpeed_t::type speed,
                    api::EthState_t::type state, api::EthFecType_t::type fec,
                    api::EthFecType_t::type fecState) {
  api::EthInfo_t info;
  info.__set_EthName(name);
  info.__set_Mode(mode);
  info.__set_Speed(speed);
  info.__set_IsMainPhys(true);
  info.__set_NbPhys(4);
  info.__set_State(state);
  info.__set_FailureSts(api::EthFailureSts_t::NoFailure);
  info.__set_FecType(fec);
  info.__set_FecTypeState(fecState);
  return info;
}

api::EthStat_t Rates(const std::string& name, std::int64_t tx, std::int64_t rx) {
  api::EthStat_t stat;
  stat.__set_EthName(name);
  stat.__isset.EthName = true;
  stat.__set_TxSpeed(tx);
  stat.__set_RxSpeed(rx);
  return stat;
}

api::ConfigFile_t File(const std::string& name, api::ConfigType_t::type type,
                       api::ConfigState_t::type state) {
  api::ConfigFile_t file;
  file.__set_Name(name);
  file.__set_Type(type);
  file.__set_Comment("comment of " + name);
  file.__set_State(state);
  file.__set_BaseName("factory");
  file.__set_BaseType(api::ConfigType_t::Default);
  return file;
}

}  // namespace

ServerData ServerData::Sample() {
  ServerData d;
  d.ifList = {"eth1", "eth2", "prs1", "lag1"};
  d.ifInfos["eth1"] = Interface(api::IfType_t::Ethernet, api::IfStatus_t::Enabled, 10, {"p1"});
  d.ifInfos["eth2"] = Interface(api::IfType_t::Ethernet, api::IfStatus_t::Disabled, 11, {"p2"});
  d.ifInfos["prs1"] =
      Interface(api::IfType_t::BasicPrs, api::IfStatus_t::Unknown, 12, {"p3", "p4"});
  d.ifInfos["lag1"] =
      Interface(api::IfType_t::BasicLag, api::IfStatus_t::Enabled, 13, {"p5", "p6"});
  d.counters["eth1"] = {Counters("p1", 100)};
  d.counters["prs1"] = {Counters("p3", 300), Counters("p4", 400)};
  d.stats["eth1"] = {Rates("p1", 1000, 2000)};
  d.stats["prs1"] = {Rates("p3", 3000, 4000), Rates("p4", 5000, 6000)};
  d.mainMac = "00:11:22:33:44:55";
  d.macs = {{"eth1", "00:11:22:33:44:01"}, {"eth2", "00:11:22:33:44:02"}};
  d.ethInfos = {
      Port("p1", api::EthMode_t::KR, api::EthSpeed_t::S10G, api::EthState_t::LinkUp,
           api::EthFecType_t::Disable, api::EthFecType_t::FC_FEC),
      Port("p2", api::EthMode_t::_1000BASE_X, api::EthSpeed_t::S100G, api::EthState_t::LinkDown,
           api::EthFecType_t::RS_FEC, api::EthFecType_t::Unknown),
      Port("p3", api::EthMode_t::Unknown, api::EthSpeed_t::Unknown, api::EthState_t::Unknown,
           api::EthFecType_t::FC_FEC, api::EthFecType_t::Disable)};
  api::HwDesc_t hw;
  hw.__set_Port(7);
  hw.__set_NbSubPort(-4);
  d.hwDescs = {hw};
  d.lldpConfig.__set_SystemName("switch-a");
  d.lldpConfig.__set_SystemDescr("a test switch");
  d.lldpConfig.__set_ManagementIP("192.0.2.1");
  d.lldpConfig.__set_ChassisId("00:11:22:33:44:55");
  d.lldpConfig.__set_TTL(120);
  api::lldpInfo_t neighbour;
  neighbour.__set_IfName("p1");
  neighbour.__set_Tlv({{static_cast<std::int8_t>(api::lldpTlvType_t::ChassisId), "chassis"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::SystemName), "peer"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::CustomTlv), "custom"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::CustomEEETlv), "eee"}});
  d.lldpInfos = {neighbour};
  api::PTPConfig_t ptp;
  ptp.__set_Domain(-3);
  ptp.__set_PacketType(api::PTPPacketType_t::UDP);
  ptp.__set_ClockMode(api::PTPClockMode_t::Boundary);
  ptp.__set_IfList({"p1", "p2"});
  ptp.__set_SlaveIfList({"p2"});
  ptp.__set_Profile(api::PTPProfile_t::SMPTE_2059);
  d.ptpConfigs = {ptp};
  d.currentConfig = File("running", api::ConfigType_t::Release, api::ConfigState_t::altered);
  d.configFiles = {File("a", api::ConfigType_t::Debug, api::ConfigState_t::clean),
                   File("b", api::ConfigType_t::Unknown, api::ConfigState_t::Unknown)};
  d.comment = "a comment";
  d.management.versions = {{ArqOrvoAPI::MODULE_VERSION::Manager, "4.1.0"},
                           {ArqOrvoAPI::MODULE_VERSION::API, "2.3"},
                           {ArqOrvoAPI::MODULE_VERSION::Package, "4.1.0-7"}};
  d.management.hostname = "switch-a";
  d.management.address.__set_bIpv6(false);
  d.management.address.__set_Address("192.0.2.1");
  d.management.address.__set_SubNetMask("255.255.255.0");
  d.management.address.__set_DefaultGateway("192.0.2.254");
  return d;
}

ServerData ServerData::FullCapacity() {
  ServerData d;
  const auto add = [&d](const std::string& name, api::IfType_t::type type, int ports) {
    std::vector<std::string> members;
    for (int i = 0; i < ports; ++i) {
      const std::string port = name + "-p" + std::to_string(i);
      members.push_back(port);
      d.ethInfos.push_back(Port(port, api::EthMode_t::KR4, api::EthSpeed_t::S100G,
                                api::EthState_t::LinkUp, api::EthFecType_t::RS_FEC,
                                api::EthFecType_t::RS_FEC));
      d.counters[name].push_back(Counters(port, 1000000 * static_cast<std::int64_t>(i + 1)));
      d.stats[name].push_back(Rates(port, 25000000000LL, 24000000000LL));
    }
    d.ifList.push_back(name);
    d.ifInfos[name] = Interface(type, api::IfStatus_t::Enabled,
                                static_cast<std::int16_t>(d.ifList.size()), members);
    d.macs[name] = d.ifInfos[name].MacAddr;
  };
  for (int i = 0; i < 48; ++i) {
    add("eth" + std::to_string(i), api::IfType_t::Ethernet, 1);
  }
  for (int i = 0; i < 24; ++i) {
    add("prs" + std::to_string(i), api::IfType_t::BasicPrs, 2);
  }
  for (int i = 0; i < 3; ++i) {
    add("lag" + std::to_string(i), api::IfType_t::BasicLag, 6);
  }
  const ServerData sample = Sample();
  d.mainMac = sample.mainMac;
  d.hwDescs = sample.hwDescs;
  d.lldpConfig = sample.lldpConfig;
  for (int i = 0; i < 60; ++i) {
    api::lldpInfo_t neighbour = sample.lldpInfos[0];
    neighbour.__set_IfName("eth" + std::to_string(i % 48));
    neighbour.Tlv[static_cast<std::int8_t>(api::lldpTlvType_t::PortDescription)] =
        "neighbour port " + std::to_string(i);
    d.lldpInfos.push_back(neighbour);
  }
  d.ptpConfigs.assign(5, sample.ptpConfigs[0]);
  for (std::size_t i = 0; i < d.ptpConfigs.size(); ++i) {
    d.ptpConfigs[i].__set_Domain(static_cast<std::int8_t>(i));
  }
  d.currentConfig = sample.currentConfig;
  d.configFiles = sample.configFiles;
  d.comment = sample.comment;
  d.management = sample.management;
  return d;
}

}  // namespace Arq::OrvoViaSwitchService::Simulator
