#pragma once

#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

class IOrvoViaSwitchConfigClient : public IOrvoViaSwitchClient {
 public:
  virtual std::vector<Dto::ConfigFile> ListConfigFile(const Dto::Header& header,
                                                      const Dto::ConfigType& type) = 0;
  virtual void Reset(const Dto::Header& header) = 0;
  virtual void LoadConfig(const Dto::Header& header, const Dto::ConfigFile& file) = 0;
  virtual void LoadFactoryDefault(const Dto::Header& header) = 0;
  virtual void SaveRunningConfig2StartUpConfig(const Dto::Header& header) = 0;
  virtual void BackupRunningConfig(const Dto::Header& header, const Dto::ConfigFile& file) = 0;
  virtual void SetConfigComment(const Dto::Header& header, const Dto::ConfigFile& file) = 0;
  virtual std::string GetConfigComment(const Dto::Header& header, const Dto::ConfigFile& file) = 0;
  virtual Dto::ConfigFile GetCurrentConfig(const Dto::Header& header) = 0;
  virtual void CopyConfig(const Dto::Header& header, const Dto::ConfigFile& src,
                          const Dto::ConfigFile& dst) = 0;
  virtual void DeleteConfig(const Dto::Header& header, const Dto::ConfigFile& file) = 0;
  virtual void RenameConfig(const Dto::Header& header, const Dto::ConfigFile& src,
                            const Dto::ConfigFile& dst) = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
