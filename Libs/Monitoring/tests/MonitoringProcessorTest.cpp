#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "Arq/Monitoring/MonitoringProcessor.h"
#include "SnmpLogCapture.h"

namespace {

using Arq::Monitoring::MonitoringProcessor;
using Arq::Monitoring::Testing::SnmpLogCapture;
using Values = Arq::OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using namespace std::chrono_literals;

// Counts collections; optionally fails every other one.
class CountingCollector : public Arq::Monitoring::IMonitoringCollector {
 public:
  struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
    Values* lastValues = nullptr;
    bool failOdd = false;

    bool WaitFor(int expected, std::chrono::milliseconds timeout = 10s) {
      std::unique_lock<std::mutex> lock(mutex);
      return changed.wait_for(lock, timeout, [&] { return count >= expected; });
    }
    int Count() {
      std::lock_guard<std::mutex> lock(mutex);
      return count;
    }
  };
  explicit CountingCollector(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}
  void Collect(Values* values) override {
    bool fail;
    {
      std::lock_guard<std::mutex> lock(shared_->mutex);
      ++shared_->count;
      shared_->lastValues = values;
      fail = shared_->failOdd && shared_->count % 2 == 1;
    }
    shared_->changed.notify_all();
    if (fail) throw std::runtime_error("switch unreachable");
  }

 private:
  std::shared_ptr<Shared> shared_;
};

std::unique_ptr<MonitoringProcessor> Make(bool enabled, int period,
                                          const std::shared_ptr<CountingCollector::Shared>& s) {
  return std::make_unique<MonitoringProcessor>(enabled, period,
                                               std::make_unique<CountingCollector>(s));
}

TEST(MonitoringProcessorTest, FirstCollectionComesOnePeriodAfterConstruction) {
  auto shared = std::make_shared<CountingCollector::Shared>();
  auto processor = Make(true, 1, shared);
  EXPECT_EQ(shared->Count(), 0);
  ASSERT_TRUE(shared->WaitFor(2));
  EXPECT_EQ(shared->lastValues, &MonitoringProcessor::monitoringValues);
}

// Each collection's model carries the wall-clock time it was made, the same
// second as the health record's, and a later collection a later time.
TEST(MonitoringProcessorTest, ModelCarriesTheCollectionWallClockTime) {
  auto shared = std::make_shared<CountingCollector::Shared>();
  const auto before = std::chrono::system_clock::now();
  auto processor = Make(true, 0, shared);
  ASSERT_TRUE(shared->WaitFor(3));
  processor.reset();
  const auto model = MonitoringProcessor::switchModel.Current();
  const auto wall = model->collection.collectedAtWall;
  EXPECT_GE(wall, before);
  EXPECT_LE(wall, std::chrono::system_clock::now());
  EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(wall.time_since_epoch()).count(),
            model->collection.health.lastCollection);
}

// Disabled, a new period only wakes the thread; enabled again, it collects
// at once and back to back, then waits the period (zero: continuously).
TEST(MonitoringProcessorTest, EnablingCollectsTwiceBackToBackThenWaitsThePeriod) {
  auto shared = std::make_shared<CountingCollector::Shared>();
  auto processor = Make(true, 3600, shared);
  processor->SetCollectMetrics(false);
  processor->SetCollectMetricsPeriod(3600);
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(shared->Count(), 0);
  EXPECT_FALSE(processor->IsCollectMetrics());
  processor->SetCollectMetrics(true);
  ASSERT_TRUE(shared->WaitFor(2));
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(shared->Count(), 2);
  processor->SetCollectMetricsPeriod(0);
  EXPECT_EQ(processor->GetCollectMetricsPeriod(), 0);
  ASSERT_TRUE(shared->WaitFor(20));
}

TEST(MonitoringProcessorTest, CollectorFailureCostsOneCycleAndIsLogged) {
  SnmpLogCapture log;
  auto shared = std::make_shared<CountingCollector::Shared>();
  shared->failOdd = true;
  auto processor = Make(true, 0, shared);
  ASSERT_TRUE(shared->WaitFor(3));
  processor.reset();
  const auto lines = log.Lines();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines.front(), "3 Error: switch unreachable\n");
  EXPECT_THAT(lines, testing::Contains("6 MonitoringProcessor Closing\n"));
  EXPECT_EQ(lines.back(), "6 MonitoringProcessor Closed\n");
}

TEST(MonitoringProcessorTest, DestructionDuringALongWaitReturns) {
  SnmpLogCapture log;
  auto shared = std::make_shared<CountingCollector::Shared>();
  auto processor = Make(true, 86400, shared);
  processor->Run();  // already running: no second thread
  processor->Stop();
  processor.reset();
  EXPECT_EQ(shared->Count(), 0);
  EXPECT_THAT(log.Lines(), testing::ElementsAre("6 MonitoringProcessor Closing\n",
                                                "6 MonitoringProcessor Closed\n"));
}

}  // namespace
