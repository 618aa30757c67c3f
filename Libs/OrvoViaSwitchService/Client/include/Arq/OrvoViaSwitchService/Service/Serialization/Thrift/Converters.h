#pragma once

#include <ArqSwitchApi/ArqSwitchApi_types.h>

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

// One converter per switch-interface struct: ToGenerated builds the wire
// struct from the domain record, FromGenerated the record from the wire
// struct. Fields are copied by name; enums go through EnumConverter; nested
// structs through their own converter.
namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

// The token travels only when the domain header holds one; otherwise Token
// stays empty and unset.
class HeaderConverter {
 public:
  static ArqSwitchApi::Header_t ToGenerated(const OrvoViaSwitch::Domain::Dto::Header& header);
  static OrvoViaSwitch::Domain::Dto::Header FromGenerated(const ArqSwitchApi::Header_t& header);
};

class ConfigFileConverter {
 public:
  static ArqSwitchApi::ConfigFile_t ToGenerated(const OrvoViaSwitch::Domain::Dto::ConfigFile& file);
  static OrvoViaSwitch::Domain::Dto::ConfigFile FromGenerated(
      const ArqSwitchApi::ConfigFile_t& file);
};

class EthConfigConverter {
 public:
  static ArqSwitchApi::EthConfig_t ToGenerated(const OrvoViaSwitch::Domain::Dto::EthConfig& config);
  static OrvoViaSwitch::Domain::Dto::EthConfig FromGenerated(
      const ArqSwitchApi::EthConfig_t& config);
};

class EthInfoConverter {
 public:
  static ArqSwitchApi::EthInfo_t ToGenerated(const OrvoViaSwitch::Domain::Dto::EthInfo& info);
  static OrvoViaSwitch::Domain::Dto::EthInfo FromGenerated(const ArqSwitchApi::EthInfo_t& info);
};

class EthCntConverter {
 public:
  static ArqSwitchApi::EthCnt_t ToGenerated(const OrvoViaSwitch::Domain::Dto::EthCnt& counters);
  static OrvoViaSwitch::Domain::Dto::EthCnt FromGenerated(const ArqSwitchApi::EthCnt_t& counters);
};

// FromGenerated copies EthName only when it is marked as set (a received
// field is); ToGenerated marks it.
class EthStatConverter {
 public:
  static ArqSwitchApi::EthStat_t ToGenerated(const OrvoViaSwitch::Domain::Dto::EthStat& stat);
  static OrvoViaSwitch::Domain::Dto::EthStat FromGenerated(const ArqSwitchApi::EthStat_t& stat);
};

class HwDescConverter {
 public:
  static ArqSwitchApi::HwDesc_t ToGenerated(const OrvoViaSwitch::Domain::Dto::HwDesc& desc);
  static OrvoViaSwitch::Domain::Dto::HwDesc FromGenerated(const ArqSwitchApi::HwDesc_t& desc);
};

class IPAddressConverter {
 public:
  static ArqSwitchApi::IPAddress_t ToGenerated(
      const OrvoViaSwitch::Domain::Dto::IPAddress& address);
  static OrvoViaSwitch::Domain::Dto::IPAddress FromGenerated(
      const ArqSwitchApi::IPAddress_t& address);
};

class IfIpConfigConverter {
 public:
  static ArqSwitchApi::IfIpConfig_t ToGenerated(
      const OrvoViaSwitch::Domain::Dto::IfIpConfig& config);
  static OrvoViaSwitch::Domain::Dto::IfIpConfig FromGenerated(
      const ArqSwitchApi::IfIpConfig_t& config);
};

class IfInfoConverter {
 public:
  static ArqSwitchApi::IfInfo_t ToGenerated(const OrvoViaSwitch::Domain::Dto::IfInfo& info);
  static OrvoViaSwitch::Domain::Dto::IfInfo FromGenerated(const ArqSwitchApi::IfInfo_t& info);
};

class LldpConfigConverter {
 public:
  static ArqSwitchApi::lldpConfig_t ToGenerated(
      const OrvoViaSwitch::Domain::Dto::LldpConfig& config);
  static OrvoViaSwitch::Domain::Dto::LldpConfig FromGenerated(
      const ArqSwitchApi::lldpConfig_t& config);
};

// TLV keys travel as lldpTlvType_t values narrowed to a signed byte; they are
// widened back through the unsigned byte, so 128 and 129 survive the trip.
class LldpInfoConverter {
 public:
  static ArqSwitchApi::lldpInfo_t ToGenerated(const OrvoViaSwitch::Domain::Dto::LldpInfo& info);
  static OrvoViaSwitch::Domain::Dto::LldpInfo FromGenerated(const ArqSwitchApi::lldpInfo_t& info);
};

class PTPConfigConverter {
 public:
  static ArqSwitchApi::PTPConfig_t ToGenerated(const OrvoViaSwitch::Domain::Dto::PTPConfig& config);
  static OrvoViaSwitch::Domain::Dto::PTPConfig FromGenerated(
      const ArqSwitchApi::PTPConfig_t& config);
};

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
