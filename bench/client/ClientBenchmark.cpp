#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <ArqSwitchApi/Config.h>
#include <ArqSwitchApi/Ethernet.h>
#include <ArqSwitchApi/Interfaces.h>
#include <ArqSwitchApi/LLDP.h>
#include <ArqSwitchApi/PTP.h>
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/protocol/TMultiplexedProtocol.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TSocket.h>

#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitchService/Client/OrvoViaSwitchMonitoringClientFactory.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"

namespace {

namespace api = ArqSwitchApi;
using Arq::OrvoViaSwitchService::Simulator::LoopbackSwitchServer;
using Arq::OrvoViaSwitchService::Simulator::ServerData;

constexpr int kConnectTimeoutMs = 10000;
constexpr int kReceiveTimeoutMs = 60000;

LoopbackSwitchServer& Server() {
  static LoopbackSwitchServer server(ServerData::FullCapacity(),
                                     LoopbackSwitchServer::PortRange::High);
  return server;
}

// Per-cycle figures taken from the server's side of the connections.
void ReportWire(benchmark::State& state, std::uint64_t bytesBefore, int connectionsBefore) {
  const auto cycles = static_cast<double>(state.iterations());
  state.counters["wire_bytes_per_cycle"] =
      static_cast<double>(Server().BytesIn() + Server().BytesOut() - bytesBefore) / cycles;
  state.counters["connections_per_cycle"] =
      static_cast<double>(Server().Connections() - connectionsBefore) / cycles;
}

void BM_CollectFullCapacity(benchmark::State& state) {
  auto& server = Server();
  Arq::Monitoring::ThriftMonitoringCollector collector(
      Arq::OrvoViaSwitchService::Client::OrvoViaSwitchMonitoringClientFactory::
          CreateSimpleClientFactory("127.0.0.1", static_cast<std::int16_t>(server.Port()),
                                    kConnectTimeoutMs, kReceiveTimeoutMs));
  auto values =
      std::make_unique<Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s>();
  const auto bytes = server.BytesIn() + server.BytesOut();
  const auto connections = server.Connections();
  for (auto _ : state) {
    collector.Collect(values.get());
  }
  ReportWire(state, bytes, connections);
  if (values->nbEthernetInterfaces.Value() != 48 || values->nbLLDPInfos.Value() != 60) {
    state.SkipWithError("the collection did not fill the holders");
  }
}

// One call over a fresh connection with the collector's transport stack.
template <typename Client, typename Body>
void CallOnce(int port, const char* service, Body&& body) {
  auto socket = std::make_shared<apache::thrift::transport::TSocket>("127.0.0.1", port);
  socket->setConnTimeout(kConnectTimeoutMs);
  socket->setRecvTimeout(kReceiveTimeoutMs);
  auto transport =
      std::make_shared<apache::thrift::transport::TBufferedTransport>(socket, 512, 512);
  auto protocol = std::make_shared<apache::thrift::protocol::TMultiplexedProtocol>(
      std::make_shared<apache::thrift::protocol::TBinaryProtocol>(transport), service);
  transport->open();
  Client client(protocol);
  body(client);
  transport->close();
}

void BM_FloorTenCalls(benchmark::State& state) {
  auto& server = Server();
  const int port = server.Port();
  const api::Header_t header;
  const auto bytes = server.BytesIn() + server.BytesOut();
  const auto connections = server.Connections();
  for (auto _ : state) {
    std::vector<std::string> ifList;
    std::map<std::string, api::IfInfo_t> infos;
    std::vector<api::EthInfo_t> ethInfos;
    std::map<std::string, std::vector<api::EthCnt_t>> counters;
    std::map<std::string, std::vector<api::EthStat_t>> stats;
    std::string mac;
    api::lldpConfig_t lldpConfig;
    std::vector<api::lldpInfo_t> neighbours;
    std::vector<api::PTPConfig_t> ptp;
    api::ConfigFile_t config;
    CallOnce<api::InterfacesClient>(port, "Interfaces",
                                    [&](auto& c) { c.GetIfList(ifList, header); });
    CallOnce<api::InterfacesClient>(port, "Interfaces",
                                    [&](auto& c) { c.GetInfo(infos, header, ifList); });
    std::vector<std::string> ports;
    std::set<std::string> seen;
    for (const auto& [name, info] : infos) {
      for (const auto& member : info.IfList) {
        if (seen.insert(member).second) {
          ports.push_back(member);
        }
      }
    }
    CallOnce<api::EthernetClient>(port, "Ethernet",
                                  [&](auto& c) { c.GetEthInfo(ethInfos, header, ports); });
    CallOnce<api::InterfacesClient>(port, "Interfaces",
                                    [&](auto& c) { c.GetCnt(counters, header, ports); });
    CallOnce<api::InterfacesClient>(port, "Interfaces",
                                    [&](auto& c) { c.GetStats(stats, header, ports); });
    CallOnce<api::InterfacesClient>(port, "Interfaces",
                                    [&](auto& c) { c.GetMainMacAddr(mac, header); });
    CallOnce<api::LLDPClient>(port, "LLDP", [&](auto& c) { c.GetConfig(lldpConfig, header); });
    CallOnce<api::LLDPClient>(port, "LLDP", [&](auto& c) { c.GetInfo(neighbours, header); });
    CallOnce<api::PTPClient>(port, "PTP", [&](auto& c) { c.GetConfig(ptp, header); });
    CallOnce<api::ConfigClient>(port, "Config",
                                [&](auto& c) { c.GetCurrentConfig(config, header); });
    benchmark::DoNotOptimize(config);
  }
  ReportWire(state, bytes, connections);
}

// The wire-to-domain conversion of one full-capacity collection, alone.
void BM_ConvertFullCapacity(benchmark::State& state) {
  namespace conversion = Arq::OrvoViaSwitchService::Service::Serialization::Thrift;
  const ServerData& data = Server().Data();
  for (auto _ : state) {
    auto infos = conversion::FromGeneratedAll<conversion::IfInfoConverter>(data.ifInfos);
    auto ports = conversion::FromGeneratedAll<conversion::EthInfoConverter>(data.ethInfos);
    auto counters = conversion::FromGeneratedAll<conversion::EthCntConverter>(data.counters);
    auto stats = conversion::FromGeneratedAll<conversion::EthStatConverter>(data.stats);
    auto neighbours = conversion::FromGeneratedAll<conversion::LldpInfoConverter>(data.lldpInfos);
    auto ptp = conversion::FromGeneratedAll<conversion::PTPConfigConverter>(data.ptpConfigs);
    benchmark::DoNotOptimize(infos);
    benchmark::DoNotOptimize(ports);
    benchmark::DoNotOptimize(counters);
    benchmark::DoNotOptimize(stats);
    benchmark::DoNotOptimize(neighbours);
    benchmark::DoNotOptimize(ptp);
  }
}

BENCHMARK(BM_CollectFullCapacity)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_FloorTenCalls)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_ConvertFullCapacity)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
