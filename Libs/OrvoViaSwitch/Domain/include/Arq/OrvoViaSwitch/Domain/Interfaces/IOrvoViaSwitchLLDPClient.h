#pragma once

#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

class IOrvoViaSwitchLLDPClient : public IOrvoViaSwitchClient {
 public:
  virtual void SetLldpConfig(const Dto::Header& header, const Dto::LldpConfig& config) = 0;
  virtual Dto::LldpConfig GetLldpConfig(const Dto::Header& header) = 0;
  virtual std::vector<Dto::LldpInfo> GetLldpInfo(const Dto::Header& header) = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
