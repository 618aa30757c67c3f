#include "Arq/Monitoring/MonitoringProcessor.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <malloc.h>

#include <chrono>
#include <exception>

namespace Arq::Monitoring {

namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;

namespace {
// A disabled collector has nothing to do until a configuration change, which
// wakes it at once; with a period of zero or below its wait would end at once
// and spin, so it waits the daemon's default period instead.
constexpr long long kDisabledIdleSeconds = 5;
}  // namespace

OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s MonitoringProcessor::monitoringValues;
OrvoViaSwitch::Domain::Model::SwitchModelStore MonitoringProcessor::switchModel;

MonitoringProcessor::MonitoringProcessor(bool collectMetrics, int collectMetricsPeriod,
                                         std::unique_ptr<IMonitoringCollector> collector)
    : collectMetrics_(collectMetrics),
      collectMetricsPeriod_(collectMetricsPeriod),
      collector_(std::move(collector)) {
  Run();
}

MonitoringProcessor::~MonitoringProcessor() {
  snmp_log(LOG_INFO, "MonitoringProcessor Closing\n");
  StopAndWait();
  snmp_log(LOG_INFO, "MonitoringProcessor Closed\n");
}

void MonitoringProcessor::Run() {
  if (thread_) return;
  thread_ = std::make_unique<std::thread>([this] { Loop(); });
}

void MonitoringProcessor::Stop() {
  {
    // The stop signal is one-shot: a second Stop (the destructor's) only wakes.
    std::lock_guard<std::mutex> lock(stopMutex_);
    if (!StopRequested()) StoppableWorker::Stop();
  }
  Wake();
  // A collection under way is not waited for: its call is cut short.
  collector_->Interrupt();
}

void MonitoringProcessor::StopAndWait() {
  Stop();
  if (thread_ && thread_->joinable()) thread_->join();
}

void MonitoringProcessor::SetCollectMetrics(bool collectMetrics) {
  if (collectMetrics_ == collectMetrics) return;
  collectMetrics_ = collectMetrics;
  Wake();
}

bool MonitoringProcessor::IsCollectMetrics() {
  return collectMetrics_;
}

void MonitoringProcessor::SetCollectMetricsPeriod(int seconds) {
  if (collectMetricsPeriod_ == seconds) return;
  collectMetricsPeriod_ = seconds;
  Wake();
}

int MonitoringProcessor::GetCollectMetricsPeriod() {
  return collectMetricsPeriod_;
}

void MonitoringProcessor::Wake() {
  {
    std::lock_guard<std::mutex> lock(wakeMutex_);
    wake_ = true;
  }
  wakeCondition_.notify_all();
}

void MonitoringProcessor::Loop() {
  PublishHealth();
  while (!StopRequested()) {
    WaitForCollectInterval();
    if (StopRequested()) return;
    if (!collectMetrics_) {
      health_.state = Metrics::CollectorState::Disabled;
      PublishHealth();
      continue;
    }
    Collect();
    // A collection builds a model and frees the one before; the readers
    // (SNMP, gNMI, the metrics endpoint) free their answers on threads of
    // their own, each with a malloc arena that keeps what it freed. Handing
    // the free pages of every arena back once a collection keeps the resident
    // set at what is in use.
    malloc_trim(0);
  }
}

void MonitoringProcessor::PublishHealth(
    std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> model) {
  health_.collectEnabled = collectMetrics_;
  health_.period = collectMetricsPeriod_;
  monitoringValues.collectorHealth.Value(health_);
  if (!model)
    model = std::make_shared<OrvoViaSwitch::Domain::Model::SwitchModel>(*switchModel.Current());
  model->collection.health = health_;
  for (std::size_t call = 0; call < model->collection.calls.size(); ++call) {
    model->collection.calls[call] = monitoringValues.collectorCalls[call].Value();
  }
  switchModel.Publish(std::move(model));
}

void MonitoringProcessor::WaitForCollectInterval() {
  long long period = collectMetricsPeriod_;
  if (!collectMetrics_ && period <= 0) period = kDisabledIdleSeconds;
  std::unique_lock<std::mutex> lock(wakeMutex_);
  const bool woken = wake_;
  wake_ = false;
  if (woken) return;
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::nanoseconds(period * 1000000000LL);
  // A wake during the wait ends it but stays set, so the next wait is skipped.
  wakeCondition_.wait_until(lock, deadline, [this] { return wake_; });
}

void MonitoringProcessor::Collect() {
  const auto started = std::chrono::steady_clock::now();
  bool collectorFailed = false;
  try {
    collector_->Collect(&monitoringValues);
  } catch (const std::exception& error) {
    snmp_log(LOG_ERR, "Error: %s\n", error.what());
    collectorFailed = true;
    health_.lastError = error.what();
  }
  if (StopRequested()) return;  // an interrupted collection says nothing of the switch
  const auto now = std::chrono::system_clock::now();

  // The calls of this collection, as the collector recorded them (a
  // collector that makes no switch calls, the fake one, records none).
  std::size_t made = 0;
  std::size_t failed = 0;
  for (const auto& holder : monitoringValues.collectorCalls) {
    const Metrics::CollectorCallMetric call = holder.Value();
    if (call.outcome == Metrics::CallOutcome::NotCalled) continue;
    ++made;
    if (call.outcome != Metrics::CallOutcome::Ok) {
      ++failed;
      health_.lastError = call.lastError;
    }
  }
  if (failed == 0 && !collectorFailed) {
    health_.state = Metrics::CollectorState::Ok;
  } else if (made > 0 && failed == made) {
    health_.state = Metrics::CollectorState::Unreachable;
  } else {
    health_.state = Metrics::CollectorState::Partial;
  }
  const bool success = health_.state == Metrics::CollectorState::Ok;
  const std::int64_t seconds =
      std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count();
  health_.lastCollection = seconds;
  if (success) health_.lastSuccess = seconds;
  health_.lastDurationMs = std::chrono::duration_cast<std::chrono::milliseconds>(
                               std::chrono::steady_clock::now() - started)
                               .count();
  ++health_.collections;
  health_.consecutiveFailures = success ? 0 : health_.consecutiveFailures + 1;
  health_.consecutiveUnreachable = health_.state == Metrics::CollectorState::Unreachable
                                       ? health_.consecutiveUnreachable + 1
                                       : 0;
  auto model = collector_->TakeModel();
  if (!model) {
    // A collector that failed as a whole gave no model: the last switch data
    // stands, marked as not this collection's.
    model = std::make_shared<OrvoViaSwitch::Domain::Model::SwitchModel>(*switchModel.Current());
    model->collection.interfacesCurrent = false;
  }
  model->collection.collectedAtWall = now;
  std::shared_ptr<Numbers> numbers;
  {
    const std::lock_guard<std::mutex> lock(numbersMutex_);
    numbers = numbers_;
  }
  numbers->Assign(*model,
                  std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count());
  PublishHealth(std::move(model));
}

void MonitoringProcessor::KeepNumbersIn(const std::string& folder) {
  auto numbers = std::make_shared<Numbers>(folder);
  const std::lock_guard<std::mutex> lock(numbersMutex_);
  numbers_ = std::move(numbers);
}

}  // namespace Arq::Monitoring
