#pragma once

#include <memory>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchLLDPClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftProxyClient.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class OrvoViaSwitchThriftLLDPProxyClient
    : public OrvoViaSwitchThriftProxyClient<
          OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchLLDPClient> {
 public:
  explicit OrvoViaSwitchThriftLLDPProxyClient(
      std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric);
  // Logs to `logger` instead of the registry's logger of this class.
  OrvoViaSwitchThriftLLDPProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                     std::shared_ptr<arq::logging::ILogger> logger);

  void SetLldpConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                     const OrvoViaSwitch::Domain::Dto::LldpConfig& config) override;
  OrvoViaSwitch::Domain::Dto::LldpConfig GetLldpConfig(
      const OrvoViaSwitch::Domain::Dto::Header& header) override;
  std::vector<OrvoViaSwitch::Domain::Dto::LldpInfo> GetLldpInfo(
      const OrvoViaSwitch::Domain::Dto::Header& header) override;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
