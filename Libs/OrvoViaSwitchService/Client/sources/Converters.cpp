#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

#include <cstdint>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

api::Header_t HeaderConverter::ToGenerated(const Dto::Header& header) {
  api::Header_t result;
  if (header.token.HasValue()) {
    result.__set_Token(header.token.Value());
  }
  return result;
}

Dto::Header HeaderConverter::FromGenerated(const api::Header_t& header) {
  Dto::Header result;
  if (header.__isset.Token) {
    result.token = OrvoViaSwitch::Domain::BaseTypes::Optional<std::string>(header.Token);
  }
  return result;
}

api::ConfigFile_t ConfigFileConverter::ToGenerated(const Dto::ConfigFile& file) {
  api::ConfigFile_t result;
  result.__set_Name(file.Name);
  result.__set_Type(EnumConverter::ToGeneratedEnum(file.Type));
  result.__set_Comment(file.Comment);
  result.__set_State(EnumConverter::ToGeneratedEnum(file.State));
  result.__set_BaseName(file.BaseName);
  result.__set_BaseType(EnumConverter::ToGeneratedEnum(file.BaseType));
  return result;
}

Dto::ConfigFile ConfigFileConverter::FromGenerated(const api::ConfigFile_t& file) {
  Dto::ConfigFile result;
  result.Name = file.Name;
  result.Type = EnumConverter::FromGeneratedEnum(file.Type);
  result.Comment = file.Comment;
  result.State = EnumConverter::FromGeneratedEnum(file.State);
  result.BaseName = file.BaseName;
  result.BaseType = EnumConverter::FromGeneratedEnum(file.BaseType);
  return result;
}

api::EthConfig_t EthConfigConverter::ToGenerated(const Dto::EthConfig& config) {
  api::EthConfig_t result;
  result.__set_Mode(EnumConverter::ToGeneratedEnum(config.Mode));
  result.__set_Speed(EnumConverter::ToGeneratedEnum(config.Speed));
  result.__set_FecType(EnumConverter::ToGeneratedEnum(config.FecType));
  return result;
}

Dto::EthConfig EthConfigConverter::FromGenerated(const api::EthConfig_t& config) {
  Dto::EthConfig result;
  result.Mode = EnumConverter::FromGeneratedEnum(config.Mode);
  result.Speed = EnumConverter::FromGeneratedEnum(config.Speed);
  result.FecType = EnumConverter::FromGeneratedEnum(config.FecType);
  return result;
}

api::EthInfo_t EthInfoConverter::ToGenerated(const Dto::EthInfo& info) {
  api::EthInfo_t result;
  result.__set_EthName(info.EthName);
  result.__set_Mode(EnumConverter::ToGeneratedEnum(info.Mode));
  result.__set_Speed(EnumConverter::ToGeneratedEnum(info.Speed));
  result.__set_IsMainPhys(info.IsMainPhys);
  result.__set_NbPhys(info.NbPhys);
  result.__set_State(EnumConverter::ToGeneratedEnum(info.State));
  result.__set_FailureSts(EnumConverter::ToGeneratedEnum(info.FailureSts));
  result.__set_FecType(EnumConverter::ToGeneratedEnum(info.FecType));
  result.__set_FecTypeState(EnumConverter::ToGeneratedEnum(info.FecTypeState));
  return result;
}

Dto::EthInfo EthInfoConverter::FromGenerated(const api::EthInfo_t& info) {
  Dto::EthInfo result;
  result.EthName = info.EthName;
  result.Mode = EnumConverter::FromGeneratedEnum(info.Mode);
  result.Speed = EnumConverter::FromGeneratedEnum(info.Speed);
  result.IsMainPhys = info.IsMainPhys;
  result.NbPhys = info.NbPhys;
  result.State = EnumConverter::FromGeneratedEnum(info.State);
  result.FailureSts = EnumConverter::FromGeneratedEnum(info.FailureSts);
  result.FecType = EnumConverter::FromGeneratedEnum(info.FecType);
  result.FecTypeState = EnumConverter::FromGeneratedEnum(info.FecTypeState);
  return result;
}

// The counters of ARQ_ETH_COUNTERS have the same names in the record and
// in the wire struct.
api::EthCnt_t EthCntConverter::ToGenerated(const Dto::EthCnt& counters) {
  api::EthCnt_t result;
  result.__set_EthName(counters.EthName);
#define ARQ_SET_COUNTER(name) result.__set_##name(counters.name);
  ARQ_ETH_COUNTERS(ARQ_SET_COUNTER)
#undef ARQ_SET_COUNTER
  return result;
}

Dto::EthCnt EthCntConverter::FromGenerated(const api::EthCnt_t& counters) {
  Dto::EthCnt result;
  result.EthName = counters.EthName;
#define ARQ_COPY_COUNTER(name) result.name = counters.name;
  ARQ_ETH_COUNTERS(ARQ_COPY_COUNTER)
#undef ARQ_COPY_COUNTER
  return result;
}

api::EthStat_t EthStatConverter::ToGenerated(const Dto::EthStat& stat) {
  api::EthStat_t result;
  result.__set_EthName(stat.EthName);
  result.__isset.EthName = true;
  result.__set_TxSpeed(stat.TxSpeed);
  result.__set_RxSpeed(stat.RxSpeed);
  return result;
}

Dto::EthStat EthStatConverter::FromGenerated(const api::EthStat_t& stat) {
  Dto::EthStat result;
  if (stat.__isset.EthName) {
    result.EthName = stat.EthName;
  }
  result.TxSpeed = stat.TxSpeed;
  result.RxSpeed = stat.RxSpeed;
  return result;
}

api::HwDesc_t HwDescConverter::ToGenerated(const Dto::HwDesc& desc) {
  api::HwDesc_t result;
  result.__set_Port(desc.Port);
  result.__set_NbSubPort(desc.NbSubPort);
  return result;
}

Dto::HwDesc HwDescConverter::FromGenerated(const api::HwDesc_t& desc) {
  Dto::HwDesc result;
  result.Port = desc.Port;
  result.NbSubPort = desc.NbSubPort;
  return result;
}

api::IPAddress_t IPAddressConverter::ToGenerated(const Dto::IPAddress& address) {
  api::IPAddress_t result;
  result.__set_bIpv6(address.bIpv6);
  result.__set_Address(address.Address);
  return result;
}

Dto::IPAddress IPAddressConverter::FromGenerated(const api::IPAddress_t& address) {
  Dto::IPAddress result;
  result.bIpv6 = address.bIpv6;
  result.Address = address.Address;
  return result;
}

api::IfIpConfig_t IfIpConfigConverter::ToGenerated(const Dto::IfIpConfig& config) {
  api::IfIpConfig_t result;
  result.__set_Ip(IPAddressConverter::ToGenerated(config.Ip));
  result.__set_Mask(IPAddressConverter::ToGenerated(config.Mask));
  result.__set_Gateway(IPAddressConverter::ToGenerated(config.Gateway));
  result.__set_Dhcp(config.Dhcp);
  return result;
}

Dto::IfIpConfig IfIpConfigConverter::FromGenerated(const api::IfIpConfig_t& config) {
  Dto::IfIpConfig result;
  result.Ip = IPAddressConverter::FromGenerated(config.Ip);
  result.Mask = IPAddressConverter::FromGenerated(config.Mask);
  result.Gateway = IPAddressConverter::FromGenerated(config.Gateway);
  result.Dhcp = config.Dhcp;
  return result;
}

api::IfInfo_t IfInfoConverter::ToGenerated(const Dto::IfInfo& info) {
  api::IfInfo_t result;
  result.__set_Type(EnumConverter::ToGeneratedEnum(info.Type));
  result.__set_Status(EnumConverter::ToGeneratedEnum(info.Status));
  result.__set_Vid(info.Vid);
  result.__set_Description(info.Description);
  result.__set_MacAddr(info.MacAddr);
  result.__set_Vlan(info.Vlan);
  result.__set_IfList(info.IfList);
  result.__set_IpConfig(IfIpConfigConverter::ToGenerated(info.IpConfig));
  return result;
}

Dto::IfInfo IfInfoConverter::FromGenerated(const api::IfInfo_t& info) {
  Dto::IfInfo result;
  result.Type = EnumConverter::FromGeneratedEnum(info.Type);
  result.Status = EnumConverter::FromGeneratedEnum(info.Status);
  result.Vid = info.Vid;
  result.Description = info.Description;
  result.MacAddr = info.MacAddr;
  result.Vlan = info.Vlan;
  result.IfList = info.IfList;
  result.IpConfig = IfIpConfigConverter::FromGenerated(info.IpConfig);
  return result;
}

api::lldpConfig_t LldpConfigConverter::ToGenerated(const Dto::LldpConfig& config) {
  api::lldpConfig_t result;
  result.__set_SystemName(config.SystemName);
  result.__set_SystemDescr(config.SystemDescr);
  result.__set_ManagementIP(config.ManagementIP);
  result.__set_ChassisId(config.ChassisId);
  result.__set_TTL(config.TTL);
  return result;
}

Dto::LldpConfig LldpConfigConverter::FromGenerated(const api::lldpConfig_t& config) {
  Dto::LldpConfig result;
  result.SystemName = config.SystemName;
  result.SystemDescr = config.SystemDescr;
  result.ManagementIP = config.ManagementIP;
  result.ChassisId = config.ChassisId;
  result.TTL = config.TTL;
  return result;
}

api::lldpInfo_t LldpInfoConverter::ToGenerated(const Dto::LldpInfo& info) {
  api::lldpInfo_t result;
  result.__set_IfName(info.IfName);
  std::map<std::int8_t, std::string> tlvs;
  for (const auto& [type, text] : info.Tlv) {
    tlvs.emplace(static_cast<std::int8_t>(EnumConverter::ToGeneratedEnum(type)), text);
  }
  result.__set_Tlv(tlvs);
  return result;
}

Dto::LldpInfo LldpInfoConverter::FromGenerated(const api::lldpInfo_t& info) {
  Dto::LldpInfo result;
  result.IfName = info.IfName;
  for (const auto& [key, text] : info.Tlv) {
    const auto type = static_cast<api::lldpTlvType_t::type>(static_cast<std::uint8_t>(key));
    result.Tlv.emplace(EnumConverter::FromGeneratedEnum(type), text);
  }
  return result;
}

api::PTPConfig_t PTPConfigConverter::ToGenerated(const Dto::PTPConfig& config) {
  api::PTPConfig_t result;
  result.__set_Domain(config.Domain);
  result.__set_PacketType(EnumConverter::ToGeneratedEnum(config.PacketType));
  result.__set_ClockMode(EnumConverter::ToGeneratedEnum(config.ClockMode));
  result.__set_IfList(config.IfList);
  result.__set_SlaveIfList(config.SlaveIfList);
  result.__set_Profile(EnumConverter::ToGeneratedEnum(config.Profile));
  return result;
}

Dto::PTPConfig PTPConfigConverter::FromGenerated(const api::PTPConfig_t& config) {
  Dto::PTPConfig result;
  result.Domain = config.Domain;
  result.PacketType = EnumConverter::FromGeneratedEnum(config.PacketType);
  result.ClockMode = EnumConverter::FromGeneratedEnum(config.ClockMode);
  result.ClockModeDefined = EnumConverter::Defines(config.ClockMode);
  result.IfList = config.IfList;
  result.SlaveIfList = config.SlaveIfList;
  result.Profile = EnumConverter::FromGeneratedEnum(config.Profile);
  return result;
}

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
