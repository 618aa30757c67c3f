#include "Arq/Monitoring/ThriftMonitoringCollector.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <exception>
#include <set>
#include <utility>

#include "Arq/Monitoring/SwitchSnapshot.h"

namespace Arq::Monitoring {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Interfaces = OrvoViaSwitch::Domain::Interfaces;

namespace {

// One service call through a fresh client: create, open, call, close. Any
// standard exception (a DomainException in practice) is logged and gives the
// default result; the client, and its connection, go away in every case.
// Once interrupted, no call is made any more.
template <typename CreateClient, typename Call>
auto CallOnce(const std::atomic<bool>& interrupted, CreateClient&& createClient, Call&& call)
    -> decltype(call(*createClient())) {
  if (interrupted) return {};
  try {
    auto client = createClient();
    client->Open();
    auto result = call(*client);
    client->Close();
    return result;
  } catch (const std::exception& exception) {
    snmp_log(LOG_ERR, "Error: %s\n", exception.what());
    return {};
  }
}

}  // namespace

ThriftMonitoringCollector::ThriftMonitoringCollector(
    std::unique_ptr<Interfaces::IOrvoViaSwitchMonitoringClientFactory> clientFactory)
    : clientFactory(std::move(clientFactory)) {}

std::vector<std::string> ThriftMonitoringCollector::GetInterfaceNames() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchInterfacesProxyClient(); },
      [](Interfaces::IOrvoViaSwitchInterfacesClient& client) {
        return client.GetIfList(Dto::Header());
      });
}

std::map<std::string, Dto::IfInfo> ThriftMonitoringCollector::GetInterfacesInformation(
    const std::vector<std::string>& names) {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchInterfacesProxyClient(); },
      [&names](Interfaces::IOrvoViaSwitchInterfacesClient& client) {
        return client.GetIfInfo(Dto::Header(), names);
      });
}

std::vector<std::string> ThriftMonitoringCollector::GetEthNames(
    const std::map<std::string, Dto::IfInfo>& interfaces) {
  std::vector<std::string> names;
  std::set<std::string> seen;
  for (const auto& [interfaceName, info] : interfaces) {
    for (const auto& port : info.IfList) {
      if (seen.insert(port).second) {
        names.push_back(port);
      }
    }
  }
  return names;
}

std::vector<Dto::EthInfo> ThriftMonitoringCollector::GetEthernetInformation(
    const std::vector<std::string>& names) {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchEthernetProxyClient(); },
      [&names](Interfaces::IOrvoViaSwitchEthernetClient& client) {
        return client.GetEthInfo(Dto::Header(), names);
      });
}

std::map<std::string, std::vector<Dto::EthCnt>> ThriftMonitoringCollector::GetEthernetCounters(
    const std::vector<std::string>& names) {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchInterfacesProxyClient(); },
      [&names](Interfaces::IOrvoViaSwitchInterfacesClient& client) {
        return client.GetEthCnt(Dto::Header(), names);
      });
}

std::map<std::string, std::vector<Dto::EthStat>> ThriftMonitoringCollector::GetEthernetBandwidths(
    const std::vector<std::string>& names) {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchInterfacesProxyClient(); },
      [&names](Interfaces::IOrvoViaSwitchInterfacesClient& client) {
        return client.GetEthStats(Dto::Header(), names);
      });
}

std::string ThriftMonitoringCollector::GetMainMacAddress() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchInterfacesProxyClient(); },
      [](Interfaces::IOrvoViaSwitchInterfacesClient& client) {
        return client.GetMainMacAddr(Dto::Header());
      });
}

Dto::LldpConfig ThriftMonitoringCollector::GetLLDPConfiguration() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchLLDPProxyClient(); },
      [](Interfaces::IOrvoViaSwitchLLDPClient& client) {
        return client.GetLldpConfig(Dto::Header());
      });
}

std::vector<Dto::LldpInfo> ThriftMonitoringCollector::GetTopology() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchLLDPProxyClient(); },
      [](Interfaces::IOrvoViaSwitchLLDPClient& client) {
        return client.GetLldpInfo(Dto::Header());
      });
}

std::vector<Dto::PTPConfig> ThriftMonitoringCollector::GetPTPConfigurations() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchPTPProxyClient(); },
      [](Interfaces::IOrvoViaSwitchPTPClient& client) {
        return client.GetPTPConfig(Dto::Header());
      });
}

Dto::ConfigFile ThriftMonitoringCollector::GetCurrentConfiguration() {
  return CallOnce(
      interrupted, [this] { return clientFactory->CreateOrvoViaSwitchConfigProxyClient(); },
      [](Interfaces::IOrvoViaSwitchConfigClient& client) {
        return client.GetCurrentConfig(Dto::Header());
      });
}

void ThriftMonitoringCollector::Collect(
    OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) {
  // Every call first, each with its own connection; then the conversion.
  SwitchSnapshot snapshot;
  snapshot.interfaceNames = GetInterfaceNames();
  snapshot.interfaces = GetInterfacesInformation(snapshot.interfaceNames);
  const auto ethNames = GetEthNames(snapshot.interfaces);
  snapshot.ethInfos = GetEthernetInformation(ethNames);
  snapshot.ethCounters = GetEthernetCounters(ethNames);
  snapshot.ethStats = GetEthernetBandwidths(ethNames);
  snapshot.mainMacAddress = GetMainMacAddress();
  snapshot.lldpConfig = GetLLDPConfiguration();
  snapshot.lldpNeighbours = GetTopology();
  snapshot.ptpConfigs = GetPTPConfigurations();
  snapshot.currentConfig = GetCurrentConfiguration();
  // An interrupted collection is incomplete: the holders keep what they have.
  if (interrupted) return;

  try {
    PublishSnapshot(snapshot, values);
  } catch (const std::exception& exception) {
    snmp_log(LOG_ERR, "ThriftMonitoringCollector::Collect(), Error: %s\n", exception.what());
  }
}

void ThriftMonitoringCollector::Interrupt() {
  interrupted = true;
  clientFactory->InterruptCalls();
}

}  // namespace Arq::Monitoring
