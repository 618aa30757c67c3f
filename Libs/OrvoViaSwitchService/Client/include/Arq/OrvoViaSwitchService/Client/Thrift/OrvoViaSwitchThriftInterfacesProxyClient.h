#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchInterfacesClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftProxyClient.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class OrvoViaSwitchThriftInterfacesProxyClient
    : public OrvoViaSwitchThriftProxyClient<
          OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchInterfacesClient> {
 public:
  explicit OrvoViaSwitchThriftInterfacesProxyClient(
      std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric);
  // Logs to `logger` instead of the registry's logger of this class.
  OrvoViaSwitchThriftInterfacesProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                           std::shared_ptr<arq::logging::ILogger> logger);

  std::vector<std::string> GetIfList(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  std::map<std::string, OrvoViaSwitch::Domain::Dto::IfInfo> GetIfInfo(
      const OrvoViaSwitch::Domain::Dto::Header& header,
      const std::vector<std::string>& names) override;
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthCnt>> GetEthCnt(
      const OrvoViaSwitch::Domain::Dto::Header& header,
      const std::vector<std::string>& names) override;
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthStat>> GetEthStats(
      const OrvoViaSwitch::Domain::Dto::Header& header,
      const std::vector<std::string>& names) override;
  std::string GetMainMacAddr(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  std::map<std::string, std::string> GetMacAddr(const OrvoViaSwitch::Domain::Dto::Header& header,
                                                const std::vector<std::string>& names) override;
  void SetIfDescription(const OrvoViaSwitch::Domain::Dto::Header& header, const std::string& name,
                        const std::string& description) override;
  void SetIfStatus(const OrvoViaSwitch::Domain::Dto::Header& header,
                   const std::vector<std::string>& names,
                   const OrvoViaSwitch::Domain::Dto::IfStatus& status) override;
  void SetVID(const OrvoViaSwitch::Domain::Dto::Header& header,
              const std::vector<std::string>& names, std::int16_t vid) override;
  void AddToVlan(const OrvoViaSwitch::Domain::Dto::Header& header,
                 const std::vector<std::string>& names, std::int16_t vid) override;
  void RemoveFromVlan(const OrvoViaSwitch::Domain::Dto::Header& header,
                      const std::vector<std::string>& names, std::int16_t vid) override;
  void DeleteIfs(const OrvoViaSwitch::Domain::Dto::Header& header,
                 const std::vector<std::string>& names) override;
  void DeleteAllIfs(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  void SetIpConfig(const OrvoViaSwitch::Domain::Dto::Header& header, const std::string& name,
                   const OrvoViaSwitch::Domain::Dto::IfIpConfig& config) override;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
