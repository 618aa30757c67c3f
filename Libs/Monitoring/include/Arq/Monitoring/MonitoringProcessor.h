#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Arq/Monitoring/IMonitoringCollector.h"
#include "Arq/Monitoring/IMonitoringProcessorConfigurator.h"
#include "Arq/Monitoring/Model/Numbers.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModelStore.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "Arq/Worker/StoppableWorker.h"

namespace Arq::Monitoring {

// Owns one collector and the collection thread: every period it asks the
// collector to refresh the process-wide monitoring values that the SNMP side
// reads. The first collection happens one period after construction. It is
// also the run-time configurator of the collection (on/off, period); a change
// wakes the thread at once.
// Final: its constructor starts the thread and its destructor stops it, so no
// derived class may override Run or Stop.
class MonitoringProcessor final : public Worker::StoppableWorker,
                                  public IMonitoringProcessorConfigurator {
 public:
  MonitoringProcessor(bool collectMetrics, int collectMetricsPeriod,
                      std::unique_ptr<IMonitoringCollector> collector);
  ~MonitoringProcessor() override;

  void Run() override;
  // Requests the stop and interrupts the collection under way, if any.
  void Stop() override;
  // Stop(), then waits for the collection thread to leave.
  void StopAndWait();
  void SetCollectMetrics(bool collectMetrics) override;
  bool IsCollectMetrics() override;
  void SetCollectMetricsPeriod(int seconds) override;
  int GetCollectMetricsPeriod() override;
  // Keeps the interface numbers (fallback ifIndex values, port numbers,
  // bridge ports) in files of `folder` from the next collection on; until
  // then, and with an empty folder, they are kept in memory only.
  void KeepNumbersIn(const std::string& folder);

  // The one values set of the process, shared with the SNMP handlers.
  static OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s monitoringValues;
  // The typed model of the switch, with the collection's health, replaced
  // whole after each collection and each change of health: what the
  // standard views are projected from.
  static OrvoViaSwitch::Domain::Model::SwitchModelStore switchModel;

 private:
  void Loop();
  void WaitForCollectInterval();
  void Collect();
  void Wake();
  // Stores the health record, with the options in force, into the values set
  // and, with `model` or else the last published switch data, as a new model.
  void PublishHealth(std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> model = nullptr);

  // Plain fields: written by the configuring thread, read by the collection
  // thread after the wake-up the write causes.
  std::atomic<bool> collectMetrics_;
  std::atomic<int> collectMetricsPeriod_;
  std::unique_ptr<IMonitoringCollector> collector_;
  std::unique_ptr<std::thread> thread_;
  std::mutex wakeMutex_;
  std::condition_variable wakeCondition_;
  bool wake_ = false;
  std::mutex stopMutex_;
  // Numbers every model the collection thread publishes; replaced whole by
  // KeepNumbersIn.
  std::mutex numbersMutex_;
  std::shared_ptr<Numbers> numbers_ = std::make_shared<Numbers>("");
  // The collector's health, kept and published by the collection thread only.
  OrvoViaSwitch::Domain::Dto::Metrics::CollectorHealthMetric health_;
};

}  // namespace Arq::Monitoring
