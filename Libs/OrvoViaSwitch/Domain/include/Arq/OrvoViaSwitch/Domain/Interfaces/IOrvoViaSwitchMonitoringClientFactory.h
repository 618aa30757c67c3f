#pragma once

#include <memory>

#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchConfigClient.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchEthernetClient.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchInterfacesClient.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchLLDPClient.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchPTPClient.h"

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

// Makes switch service clients; each one comes with a fresh, unopened
// connection of its own.
class IOrvoViaSwitchMonitoringClientFactory {
 public:
  virtual ~IOrvoViaSwitchMonitoringClientFactory() = default;
  virtual std::unique_ptr<IOrvoViaSwitchConfigClient> CreateOrvoViaSwitchConfigProxyClient() = 0;
  virtual std::unique_ptr<IOrvoViaSwitchEthernetClient>
  CreateOrvoViaSwitchEthernetProxyClient() = 0;
  virtual std::unique_ptr<IOrvoViaSwitchInterfacesClient>
  CreateOrvoViaSwitchInterfacesProxyClient() = 0;
  virtual std::unique_ptr<IOrvoViaSwitchLLDPClient> CreateOrvoViaSwitchLLDPProxyClient() = 0;
  virtual std::unique_ptr<IOrvoViaSwitchPTPClient> CreateOrvoViaSwitchPTPProxyClient() = 0;
  // Ends the calls under way at once and makes every later one fail at once
  // (the daemon is stopping). Safe from any thread. Nothing to do by default.
  virtual void InterruptCalls() {}
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
