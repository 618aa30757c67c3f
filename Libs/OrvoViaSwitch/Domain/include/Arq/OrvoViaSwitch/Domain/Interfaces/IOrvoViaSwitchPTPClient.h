#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

class IOrvoViaSwitchPTPClient : public IOrvoViaSwitchClient {
 public:
  virtual void SetPTPConfig(const Dto::Header& header, const Dto::PTPConfig& config) = 0;
  virtual void AddInterfaces(const Dto::Header& header, std::int8_t domain,
                             const std::vector<std::string>& names) = 0;
  virtual void RemoveInterfaces(const Dto::Header& header, std::int8_t domain,
                                const std::vector<std::string>& names) = 0;
  virtual void DelPTPConfig(const Dto::Header& header, std::int8_t domain) = 0;
  virtual std::vector<Dto::PTPConfig> GetPTPConfig(const Dto::Header& header) = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
