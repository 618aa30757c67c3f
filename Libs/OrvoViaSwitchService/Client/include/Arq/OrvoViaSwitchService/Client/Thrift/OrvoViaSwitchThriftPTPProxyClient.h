#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchPTPClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftProxyClient.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class OrvoViaSwitchThriftPTPProxyClient
    : public OrvoViaSwitchThriftProxyClient<
          OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchPTPClient> {
 public:
  explicit OrvoViaSwitchThriftPTPProxyClient(
      std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric);
  // Logs to `logger` instead of the registry's logger of this class.
  OrvoViaSwitchThriftPTPProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                    std::shared_ptr<arq::logging::ILogger> logger);

  void SetPTPConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                    const OrvoViaSwitch::Domain::Dto::PTPConfig& config) override;
  void AddInterfaces(const OrvoViaSwitch::Domain::Dto::Header& header, std::int8_t domain,
                     const std::vector<std::string>& names) override;
  void RemoveInterfaces(const OrvoViaSwitch::Domain::Dto::Header& header, std::int8_t domain,
                        const std::vector<std::string>& names) override;
  void DelPTPConfig(const OrvoViaSwitch::Domain::Dto::Header& header, std::int8_t domain) override;
  std::vector<OrvoViaSwitch::Domain::Dto::PTPConfig> GetPTPConfig(
      const OrvoViaSwitch::Domain::Dto::Header& header) override;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
