#pragma once

#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/HwDesc.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

class IOrvoViaSwitchEthernetClient : public IOrvoViaSwitchClient {
 public:
  virtual void ConfigureEth(const Dto::Header& header, const Dto::EthConfig& config,
                            const std::vector<std::string>& names) = 0;
  virtual std::vector<Dto::EthInfo> GetEthInfo(const Dto::Header& header,
                                               const std::vector<std::string>& names) = 0;
  virtual std::vector<Dto::HwDesc> GetHardwareDesc(const Dto::Header& header) = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
