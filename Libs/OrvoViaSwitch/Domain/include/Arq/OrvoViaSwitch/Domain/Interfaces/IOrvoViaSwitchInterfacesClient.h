#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfIpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

class IOrvoViaSwitchInterfacesClient : public IOrvoViaSwitchClient {
 public:
  virtual std::vector<std::string> GetIfList(const Dto::Header& header) = 0;
  virtual std::map<std::string, Dto::IfInfo> GetIfInfo(const Dto::Header& header,
                                                       const std::vector<std::string>& names) = 0;
  virtual std::map<std::string, std::vector<Dto::EthCnt>> GetEthCnt(
      const Dto::Header& header, const std::vector<std::string>& names) = 0;
  virtual std::map<std::string, std::vector<Dto::EthStat>> GetEthStats(
      const Dto::Header& header, const std::vector<std::string>& names) = 0;
  virtual std::string GetMainMacAddr(const Dto::Header& header) = 0;
  virtual std::map<std::string, std::string> GetMacAddr(const Dto::Header& header,
                                                        const std::vector<std::string>& names) = 0;
  virtual void SetIfDescription(const Dto::Header& header, const std::string& name,
                                const std::string& description) = 0;
  virtual void SetIfStatus(const Dto::Header& header, const std::vector<std::string>& names,
                           const Dto::IfStatus& status) = 0;
  virtual void SetVID(const Dto::Header& header, const std::vector<std::string>& names,
                      std::int16_t vid) = 0;
  virtual void AddToVlan(const Dto::Header& header, const std::vector<std::string>& names,
                         std::int16_t vid) = 0;
  virtual void RemoveFromVlan(const Dto::Header& header, const std::vector<std::string>& names,
                              std::int16_t vid) = 0;
  virtual void DeleteIfs(const Dto::Header& header, const std::vector<std::string>& names) = 0;
  virtual void DeleteAllIfs(const Dto::Header& header) = 0;
  virtual void SetIpConfig(const Dto::Header& header, const std::string& name,
                           const Dto::IfIpConfig& config) = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
