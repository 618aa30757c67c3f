#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Arq/Worker/StoppableWorker.h"

namespace {

// Counts loop rounds until a stop is requested, as the real workers do.
class CountingWorker : public Arq::Worker::StoppableWorker {
 public:
  void Run() override {
    while (!StopRequested()) {
      rounds.fetch_add(1);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  std::atomic<int> rounds{0};
};

TEST(StoppableWorker, LoopOnAnotherThreadRunsUntilStop) {
  CountingWorker worker;
  std::thread thread(std::ref(worker));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (worker.rounds.load() < 3 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_FALSE(worker.StopRequested());
  worker.Stop();
  thread.join();
  EXPECT_TRUE(worker.StopRequested());
  EXPECT_GE(worker.rounds.load(), 3);
}

}  // namespace
