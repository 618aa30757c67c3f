#include "Arq/Monitoring/ThriftMonitoringCollector.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <array>
#include <chrono>
#include <exception>
#include <set>
#include <utility>

#include "Arq/Monitoring/SwitchSnapshot.h"

namespace Arq::Monitoring {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Interfaces = OrvoViaSwitch::Domain::Interfaces;
namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;

namespace {

// One service call through a fresh client: create, open, call, close. Any
// standard exception (a DomainException in practice) is logged and gives the
// default result; the client, and its connection, go away in every case.
// Once interrupted, no call is made any more.
// `record` takes the call's outcome, its failure count, last error and
// duration.
template <typename CreateClient, typename Call>
auto CallOnce(const std::atomic<bool>& interrupted, Metrics::CollectorCallMetric& record,
              CreateClient&& createClient, Call&& call) -> decltype(call(*createClient())) {
  if (interrupted) return {};
  const auto started = std::chrono::steady_clock::now();
  const auto stopwatch = [&record, started] {
    record.durationUs = std::chrono::duration_cast<std::chrono::microseconds>(
                            std::chrono::steady_clock::now() - started)
                            .count();
  };
  try {
    auto client = createClient();
    client->Open();
    auto result = call(*client);
    client->Close();
    stopwatch();
    record.outcome = Metrics::CallOutcome::Ok;
    return result;
  } catch (const std::exception& exception) {
    stopwatch();
    snmp_log(LOG_ERR, "Error: %s\n", exception.what());
    record.outcome = Metrics::ClassifyCallFailure(exception);
    ++record.failures;
    record.lastError = exception.what();
    return {};
  }
}

// The services of the switch, and the service of each call of the list.
enum class Service { Interfaces, Ethernet, LLDP, PTP, Config };
#define ARQ_SERVICE_OF(service, method) Service::service,
constexpr std::array kServiceOf{ARQ_COLLECTOR_CALLS(ARQ_SERVICE_OF)};
#undef ARQ_SERVICE_OF

// The proxy client of a service, made by the factory's method named after it.
template <Service>
struct ServiceClient;
#define ARQ_SERVICE_CLIENT(service)                                                  \
  template <>                                                                        \
  struct ServiceClient<Service::service> {                                           \
    static auto Create(Interfaces::IOrvoViaSwitchMonitoringClientFactory& factory) { \
      return factory.CreateOrvoViaSwitch##service##ProxyClient();                    \
    }                                                                                \
  };
ARQ_SERVICE_CLIENT(Interfaces)
ARQ_SERVICE_CLIENT(Ethernet)
ARQ_SERVICE_CLIENT(LLDP)
ARQ_SERVICE_CLIENT(PTP)
ARQ_SERVICE_CLIENT(Config)
#undef ARQ_SERVICE_CLIENT

}  // namespace

template <std::size_t call, typename Invoke>
auto ThriftMonitoringCollector::Call(Invoke&& invoke) {
  return CallOnce(
      interrupted, calls_[call],
      [this] { return ServiceClient<kServiceOf[call]>::Create(*clientFactory); },
      std::forward<Invoke>(invoke));
}

ThriftMonitoringCollector::ThriftMonitoringCollector(
    std::unique_ptr<Interfaces::IOrvoViaSwitchMonitoringClientFactory> clientFactory)
    : clientFactory(std::move(clientFactory)) {}

std::vector<std::string> ThriftMonitoringCollector::GetInterfaceNames() {
  return Call<Metrics::CollectorCall::Interfaces_GetIfList>(
      [](auto& client) { return client.GetIfList(Dto::Header()); });
}

std::map<std::string, Dto::IfInfo> ThriftMonitoringCollector::GetInterfacesInformation(
    const std::vector<std::string>& names) {
  return Call<Metrics::CollectorCall::Interfaces_GetInfo>(
      [&names](auto& client) { return client.GetIfInfo(Dto::Header(), names); });
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
  return Call<Metrics::CollectorCall::Ethernet_GetEthInfo>(
      [&names](auto& client) { return client.GetEthInfo(Dto::Header(), names); });
}

std::map<std::string, std::vector<Dto::EthCnt>> ThriftMonitoringCollector::GetEthernetCounters(
    const std::vector<std::string>& names) {
  return Call<Metrics::CollectorCall::Interfaces_GetCnt>(
      [&names](auto& client) { return client.GetEthCnt(Dto::Header(), names); });
}

std::map<std::string, std::vector<Dto::EthStat>> ThriftMonitoringCollector::GetEthernetBandwidths(
    const std::vector<std::string>& names) {
  return Call<Metrics::CollectorCall::Interfaces_GetStats>(
      [&names](auto& client) { return client.GetEthStats(Dto::Header(), names); });
}

std::string ThriftMonitoringCollector::GetMainMacAddress() {
  return Call<Metrics::CollectorCall::Interfaces_GetMainMacAddr>(
      [](auto& client) { return client.GetMainMacAddr(Dto::Header()); });
}

Dto::LldpConfig ThriftMonitoringCollector::GetLLDPConfiguration() {
  return Call<Metrics::CollectorCall::LLDP_GetConfig>(
      [](auto& client) { return client.GetLldpConfig(Dto::Header()); });
}

std::vector<Dto::LldpInfo> ThriftMonitoringCollector::GetTopology() {
  return Call<Metrics::CollectorCall::LLDP_GetInfo>(
      [](auto& client) { return client.GetLldpInfo(Dto::Header()); });
}

std::vector<Dto::PTPConfig> ThriftMonitoringCollector::GetPTPConfigurations() {
  return Call<Metrics::CollectorCall::PTP_GetConfig>(
      [](auto& client) { return client.GetPTPConfig(Dto::Header()); });
}

Dto::ConfigFile ThriftMonitoringCollector::GetCurrentConfiguration() {
  return Call<Metrics::CollectorCall::Config_GetCurrentConfig>(
      [](auto& client) { return client.GetCurrentConfig(Dto::Header()); });
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
  for (std::size_t call = 0; call < calls_.size(); ++call) {
    values->collectorCalls[call].Value(calls_[call]);
    snapshot.answered[call] = calls_[call].outcome == Metrics::CallOutcome::Ok;
  }

  try {
    PublishSnapshot(snapshot, values, conversion_);
  } catch (const std::exception& exception) {
    snmp_log(LOG_ERR, "ThriftMonitoringCollector::Collect(), Error: %s\n", exception.what());
  }
}

void ThriftMonitoringCollector::Interrupt() {
  interrupted = true;
  clientFactory->InterruptCalls();
}

}  // namespace Arq::Monitoring
