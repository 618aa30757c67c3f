#pragma once

#include <map>
#include <string>
#include <vector>

#include <ArqOrvoAPI/ArqOrvoAPI_types.h>
#include <ArqSwitchApi/ArqSwitchApi_types.h>

namespace Arq::OrvoViaSwitchService::Simulator {

// The answers of the appliance's management service.
struct ManagementData {
  // By MODULE_VERSION value.
  std::map<int, std::string> versions;
  std::string hostname;
  ArqOrvoAPI::IPAddress_t address;
};

// The answers of the loopback server, as wire structures. The counters and
// rates are keyed by interface name, each holding the records of that
// interface's member ports, and are answered whole whatever names a request
// lists, as the switch does.
struct ServerData {
  std::vector<std::string> ifList;
  std::map<std::string, ArqSwitchApi::IfInfo_t> ifInfos;
  std::map<std::string, std::vector<ArqSwitchApi::EthCnt_t>> counters;
  std::map<std::string, std::vector<ArqSwitchApi::EthStat_t>> stats;
  std::string mainMac;
  std::map<std::string, std::string> macs;
  std::vector<ArqSwitchApi::EthInfo_t> ethInfos;
  std::vector<ArqSwitchApi::HwDesc_t> hwDescs;
  ArqSwitchApi::lldpConfig_t lldpConfig;
  std::vector<ArqSwitchApi::lldpInfo_t> lldpInfos;
  std::vector<ArqSwitchApi::PTPConfig_t> ptpConfigs;
  ArqSwitchApi::ConfigFile_t currentConfig;
  std::vector<ArqSwitchApi::ConfigFile_t> configFiles;
  std::string comment;
  ManagementData management;

  static ServerData Sample();
  // 48 Ethernet, 24 PRS (2 ports each), 3 LAG (6 ports each) interfaces with
  // their ports' records, 60 LLDP neighbours, 5 PTP records.
  static ServerData FullCapacity();
};

}  // namespace Arq::OrvoViaSwitchService::Simulator
