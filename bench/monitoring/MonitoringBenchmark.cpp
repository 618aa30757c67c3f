// Cost of one collection's conversion into the holders, of the holder
// operations the SNMP handlers perform, and of the LLDP TLV decoding.
#include <benchmark/benchmark.h>

#include <memory>

#include "Arq/Monitoring/FakeMonitoringCollector.h"
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"

namespace {

using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

// A full conversion of a 24-port switch whose counters moved (every port holder changes).
void BM_PublishChangedSnapshot(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  long long second = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const auto snapshot =
        Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(++second));
    state.ResumeTiming();
    Arq::Monitoring::PublishSnapshot(snapshot, values.get());
  }
}
BENCHMARK(BM_PublishChangedSnapshot);

// The same snapshot again: every holder compares and keeps its value.
void BM_PublishUnchangedSnapshot(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  const auto snapshot = Arq::Monitoring::FakeMonitoringCollector::Snapshot(std::chrono::seconds(1));
  Arq::Monitoring::PublishSnapshot(snapshot, values.get());
  for (auto _ : state) Arq::Monitoring::PublishSnapshot(snapshot, values.get());
}
BENCHMARK(BM_PublishUnchangedSnapshot);

// What a table handler does per request when nothing changed: read the change time.
void BM_HolderChangeTime(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  for (auto _ : state) benchmark::DoNotOptimize(values->ethernetInterfaceMetrics[3].ChangeTime());
}
BENCHMARK(BM_HolderChangeTime);

// What it does when the row changed: copy the whole record under the lock.
void BM_HolderCopyPrsMetric(benchmark::State& state) {
  auto values = std::make_unique<Values>();
  Arq::OrvoViaSwitch::Domain::Dto::Metrics::PRSInterfaceMetric copy;
  for (auto _ : state) {
    values->pRSInterfaceMetrics[3].CopyValue(copy);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_HolderCopyPrsMetric);

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
