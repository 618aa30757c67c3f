#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchEthernetClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftProxyClient.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class OrvoViaSwitchThriftEthernetProxyClient
    : public OrvoViaSwitchThriftProxyClient<
          OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchEthernetClient> {
 public:
  explicit OrvoViaSwitchThriftEthernetProxyClient(
      std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric);
  // Logs to `logger` instead of the registry's logger of this class.
  OrvoViaSwitchThriftEthernetProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                         std::shared_ptr<arq::logging::ILogger> logger);

  void ConfigureEth(const OrvoViaSwitch::Domain::Dto::Header& header,
                    const OrvoViaSwitch::Domain::Dto::EthConfig& config,
                    const std::vector<std::string>& names) override;
  std::vector<OrvoViaSwitch::Domain::Dto::EthInfo> GetEthInfo(
      const OrvoViaSwitch::Domain::Dto::Header& header,
      const std::vector<std::string>& names) override;
  std::vector<OrvoViaSwitch::Domain::Dto::HwDesc> GetHardwareDesc(
      const OrvoViaSwitch::Domain::Dto::Header& header) override;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
