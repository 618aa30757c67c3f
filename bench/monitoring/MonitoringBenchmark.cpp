// Cost of one collection's conversion into the holders, of the holder
// operations the SNMP handlers perform, and of the LLDP TLV decoding.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <thread>

#include "Arq/Monitoring/FakeMonitoringCollector.h"
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"
#include "Arq/Monitoring/Model/SwitchModelBuilder.h"

// Every allocation of the process is counted, so that a benchmark can report
// how many its loop made.
namespace {
std::atomic<long long> allocations{0};
}  // namespace

// The replacements pair malloc with free; GCC cannot see that the two
// replaced operators match once they are inlined into each other's callers.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace {

// Reports the allocations made since `before`, per iteration.
void ReportAllocations(benchmark::State& state, long long before) {
  state.counters["allocs/iter"] = benchmark::Counter(
      static_cast<double>(allocations.load() - before) / static_cast<double>(state.iterations()));
}

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

// A full conversion of a 24-port switch whose counters moved (every port holder changes).
void BM_PublishChangedSnapshot(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  auto conversion = std::make_unique<Arq::Monitoring::ConversionState>();
  long long second = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const auto snapshot =
        Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(++second));
    state.ResumeTiming();
    Arq::Monitoring::PublishSnapshot(snapshot, values.get(), *conversion);
  }
}
BENCHMARK(BM_PublishChangedSnapshot);

// A switch at the MIB's full capacity: 48 Ethernet, 24 PRS, 3 LAGs of 6 ports,
// 60 LLDP neighbours, 5 PTP domains; `tick` moves every counter.
Arq::Monitoring::SwitchSnapshot FullCapacity(long long tick) {
  const auto base = Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(1));
  Arq::Monitoring::SwitchSnapshot s;
  int port = 0;
  auto addPort = [&](const std::string& interface) {
    Dto::EthInfo info = base.ethInfos.front();
    info.EthName = "p" + std::to_string(++port);
    s.ethInfos.push_back(info);
    Dto::EthCnt counters = base.ethCounters.begin()->second.front();
    counters.EthName = info.EthName;
    counters.NbOfGoodOctetsReceived += tick * port;
    counters.NbOfGoodOctectsSent += tick;
    s.ethCounters[interface].push_back(counters);
    s.ethStats[interface].push_back(Dto::EthStat{info.EthName, 1000000LL * port, 2000000LL * port});
    return info.EthName;
  };
  auto addInterface = [&](const std::string& name, Dto::IfType type, int ports) {
    Dto::IfInfo info;
    info.Type = type;
    info.Status = Dto::IfStatus::Enabled;
    info.Vid = 100;
    info.Vlan = {100, 200, 300};
    for (int i = 0; i < ports; ++i) info.IfList.push_back(addPort(name));
    s.interfaceNames.push_back(name);
    s.interfaces[name] = info;
  };
  for (int i = 0; i < 48; ++i) addInterface("eth" + std::to_string(i), Dto::IfType::Ethernet, 1);
  for (int i = 0; i < 24; ++i) addInterface("prs" + std::to_string(i), Dto::IfType::BasicPrs, 2);
  for (int i = 0; i < 3; ++i) addInterface("lag" + std::to_string(i), Dto::IfType::BasicLag, 6);
  for (int i = 0; i < 60; ++i) s.lldpNeighbours.push_back(base.lldpNeighbours[i % 6]);
  for (int i = 0; i < 5; ++i) s.ptpConfigs.push_back(base.ptpConfigs[i % 2]);
  s.lldpConfig = base.lldpConfig;
  s.mainMacAddress = base.mainMacAddress;
  s.currentConfig = base.currentConfig;
  return s;
}

// One complete conversion of a full-capacity cycle whose counters all moved.
void BM_PublishFullCapacityCycle(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  auto conversion = std::make_unique<Arq::Monitoring::ConversionState>();
  const auto even = FullCapacity(2);
  const auto odd = FullCapacity(3);
  bool flip = false;
  const long long before = allocations.load();
  for (auto _ : state) {
    Arq::Monitoring::PublishSnapshot((flip = !flip) ? odd : even, values.get(), *conversion);
  }
  ReportAllocations(state, before);
}
BENCHMARK(BM_PublishFullCapacityCycle)->Unit(benchmark::kMicrosecond);

// The typed model's share of that cycle: building it alone, with its history
// (link changes, counter discontinuities) against the previous model.
void BM_BuildModelFullCapacity(benchmark::State& state) {
  Arq::Monitoring::SwitchModelBuilder builder;
  const auto even = FullCapacity(2);
  const auto odd = FullCapacity(3);
  bool flip = false;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        builder.Build((flip = !flip) ? odd : even, std::chrono::steady_clock::now()));
  }
}
BENCHMARK(BM_BuildModelFullCapacity)->Unit(benchmark::kMicrosecond);

// The same snapshot again: every holder compares and keeps its value.
void BM_PublishUnchangedSnapshot(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  auto conversion = std::make_unique<Arq::Monitoring::ConversionState>();
  const auto snapshot = Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(1));
  Arq::Monitoring::PublishSnapshot(snapshot, values.get(), *conversion);
  for (auto _ : state) Arq::Monitoring::PublishSnapshot(snapshot, values.get(), *conversion);
}
BENCHMARK(BM_PublishUnchangedSnapshot);

// What a table handler does per request when nothing changed: read the change time.
void BM_HolderChangeTime(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  const long long before = allocations.load();
  for (auto _ : state) benchmark::DoNotOptimize(values->ethernetInterfaceMetrics[3].ChangeTime());
  ReportAllocations(state, before);
}
BENCHMARK(BM_HolderChangeTime);

// What it does when the row changed: copy the whole record under the lock.
void BM_HolderCopyPrsMetric(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  Arq::OrvoViaSwitch::Domain::Dto::Metrics::PRSInterfaceMetric copy;
  const long long before = allocations.load();
  for (auto _ : state) {
    values->pRSInterfaceMetrics[3].CopyValue(copy);
    benchmark::DoNotOptimize(copy);
  }
  ReportAllocations(state, before);
}
BENCHMARK(BM_HolderCopyPrsMetric);

// A handler's read of a full-capacity row whose value did not change since the
// last copy: the change time is read, the cached copy kept.
void BM_HolderReadUnchanged(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  auto conversion = std::make_unique<Arq::Monitoring::ConversionState>();
  Arq::Monitoring::PublishSnapshot(FullCapacity(1), values.get(), *conversion);
  auto& holder = values->lAGInterfaceMetrics[2];
  Arq::OrvoViaSwitch::Domain::Dto::Metrics::LAGInterfaceMetric copy;
  holder.CopyValue(copy);
  auto last = holder.ChangeTime();
  long long copies = 0;
  const long long before = allocations.load();
  for (auto _ : state) {
    const auto changed = holder.ChangeTime();
    if (changed != last) {
      holder.CopyValue(copy);
      last = changed;
      ++copies;
    }
    benchmark::DoNotOptimize(copy);
  }
  ReportAllocations(state, before);
  state.counters["copies"] = static_cast<double>(copies);
}
BENCHMARK(BM_HolderReadUnchanged);

// A handler's read (change time, then copy) while the collection thread keeps
// writing changed metrics into the same holder.
void BM_HolderReadWithConcurrentWriter(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    Arq::OrvoViaSwitch::Domain::Dto::Metrics::EthernetInterfaceMetric metric;
    while (!stop.load(std::memory_order_relaxed)) {
      ++metric.ethernet.counters[0];
      values->ethernetInterfaceMetrics[0].Value(metric);
    }
  });
  Arq::OrvoViaSwitch::Domain::Dto::Metrics::EthernetInterfaceMetric copy;
  auto last = values->ethernetInterfaceMetrics[0].ChangeTime();
  for (auto _ : state) {
    const auto changed = values->ethernetInterfaceMetrics[0].ChangeTime();
    if (changed != last) {
      values->ethernetInterfaceMetrics[0].CopyValue(copy);
      last = changed;
    }
    benchmark::DoNotOptimize(copy);
  }
  stop = true;
  writer.join();
}
BENCHMARK(BM_HolderReadWithConcurrentWriter);

void BM_DecodeLldpNeighbour(benchmark::State& state) {
  const auto snapshot = Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(1));
  const auto& neighbour = snapshot.lldpNeighbours.front();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Arq::Monitoring::MetricConverter::LLDPMetricConverter::ToLLDPInfoMetric(neighbour));
  }
}
BENCHMARK(BM_DecodeLldpNeighbour);

}  // namespace

BENCHMARK_MAIN();
