#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchConfigClient.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftProxyClient.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class OrvoViaSwitchThriftConfigProxyClient
    : public OrvoViaSwitchThriftProxyClient<
          OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchConfigClient> {
 public:
  explicit OrvoViaSwitchThriftConfigProxyClient(
      std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric);
  // Logs to `logger` instead of the registry's logger of this class.
  OrvoViaSwitchThriftConfigProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                       std::shared_ptr<arq::logging::ILogger> logger);

  std::vector<OrvoViaSwitch::Domain::Dto::ConfigFile> ListConfigFile(
      const OrvoViaSwitch::Domain::Dto::Header& header,
      const OrvoViaSwitch::Domain::Dto::ConfigType& type) override;
  void Reset(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  void LoadConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                  const OrvoViaSwitch::Domain::Dto::ConfigFile& file) override;
  void LoadFactoryDefault(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  void SaveRunningConfig2StartUpConfig(const OrvoViaSwitch::Domain::Dto::Header& header) override;
  void BackupRunningConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                           const OrvoViaSwitch::Domain::Dto::ConfigFile& file) override;
  void SetConfigComment(const OrvoViaSwitch::Domain::Dto::Header& header,
                        const OrvoViaSwitch::Domain::Dto::ConfigFile& file) override;
  std::string GetConfigComment(const OrvoViaSwitch::Domain::Dto::Header& header,
                               const OrvoViaSwitch::Domain::Dto::ConfigFile& file) override;
  OrvoViaSwitch::Domain::Dto::ConfigFile GetCurrentConfig(
      const OrvoViaSwitch::Domain::Dto::Header& header) override;
  void CopyConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                  const OrvoViaSwitch::Domain::Dto::ConfigFile& src,
                  const OrvoViaSwitch::Domain::Dto::ConfigFile& dst) override;
  void DeleteConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                    const OrvoViaSwitch::Domain::Dto::ConfigFile& file) override;
  void RenameConfig(const OrvoViaSwitch::Domain::Dto::Header& header,
                    const OrvoViaSwitch::Domain::Dto::ConfigFile& src,
                    const OrvoViaSwitch::Domain::Dto::ConfigFile& dst) override;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
