#pragma once

#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/Monitoring/IMonitoringCollector.h"
#include "Arq/Monitoring/SwitchSnapshot.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Interfaces/IOrvoViaSwitchMonitoringClientFactory.h"

namespace Arq::Monitoring {

// Gathers one collection from the switch service: ten calls, each through a
// new client with its own connection, all made before any holder is
// written; then the metric converters store the results. A failed call
// costs only its own data: it is logged and its step yields an empty result.
// Interrupt() ends the call under way at once (its connection is shut down)
// and skips the rest of the collection, publishing nothing.
class ThriftMonitoringCollector : public IMonitoringCollector {
 public:
  explicit ThriftMonitoringCollector(
      std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchMonitoringClientFactory>
          clientFactory);

  void Collect(OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) override;
  void Interrupt() override;
  std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> TakeModel() override {
    return std::move(conversion_.model);
  }

 private:
  // The member port names of every interface, in key order, each name once
  // (first seen wins).
  static std::vector<std::string> GetEthNames(
      const std::map<std::string, OrvoViaSwitch::Domain::Dto::IfInfo>& interfaces);

  // Call `call` of the list (CollectorCall) through a fresh client of its
  // service, recorded in its own record; `invoke` makes the request.
  template <std::size_t call, typename Invoke>
  auto Call(Invoke&& invoke);

  std::vector<std::string> GetInterfaceNames();
  std::map<std::string, OrvoViaSwitch::Domain::Dto::IfInfo> GetInterfacesInformation(
      const std::vector<std::string>& names);
  std::vector<OrvoViaSwitch::Domain::Dto::EthInfo> GetEthernetInformation(
      const std::vector<std::string>& names);
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthCnt>> GetEthernetCounters(
      const std::vector<std::string>& names);
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthStat>> GetEthernetBandwidths(
      const std::vector<std::string>& names);
  std::string GetMainMacAddress();
  OrvoViaSwitch::Domain::Dto::LldpConfig GetLLDPConfiguration();
  std::vector<OrvoViaSwitch::Domain::Dto::LldpInfo> GetTopology();
  std::vector<OrvoViaSwitch::Domain::Dto::PTPConfig> GetPTPConfigurations();
  OrvoViaSwitch::Domain::Dto::ConfigFile GetCurrentConfiguration();

  std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IOrvoViaSwitchMonitoringClientFactory>
      clientFactory;
  std::atomic<bool> interrupted{false};
  // The ten calls' records, in call order, published after each collection.
  std::array<OrvoViaSwitch::Domain::Dto::Metrics::CollectorCallMetric,
             OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallCount>
      calls_{};
  ConversionState conversion_;
};

}  // namespace Arq::Monitoring
