#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <thread>

#include "Arq/DynamicParameters/DynamicParameters.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::DynamicParameters::DynamicParametersSerializer;
using Arq::DynamicParameters::DynamicParametersWorkerFactory;
using Arq::TestSupport::TempDir;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;
using namespace std::chrono_literals;

// Records every document handed over by the watcher.
class RecordingUpdater : public Arq::DynamicParameters::IDynamicParametersUpdater {
 public:
  void Update(const Json::Value& options) override {
    std::lock_guard<std::mutex> lock(mutex_);
    documents_.push_back(options);
  }
  std::vector<Json::Value> Documents() {
    std::lock_guard<std::mutex> lock(mutex_);
    return documents_;
  }

 private:
  std::mutex mutex_;
  std::vector<Json::Value> documents_;
};

// Only writing the options file in place hands it over (each time, and only
// when it parses); a folder that cannot be watched gives no worker, and
// destroying a worker blocked in its read returns (the test's time-out bounds it).
TEST(DynamicParametersWorkerTest, WritingTheFileInPlaceUpdatesAndNothingElseDoes) {
  auto updater = std::make_shared<RecordingUpdater>();
  EXPECT_EQ(
      DynamicParametersWorkerFactory::CreateWorkerAndRun(updater, "/nonexistent/folder", "o.json"),
      nullptr);
  TempDir dir;
  const std::string path = dir.File("SwitchMonitoringOptions.json");
  WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":3}})");
  auto worker = DynamicParametersWorkerFactory::CreateWorkerAndRun(updater, dir.Path() + "/",
                                                                   "SwitchMonitoringOptions.json");
  ASSERT_NE(worker, nullptr);
  // No initial read; another file and a rename onto the name do nothing.
  WriteFile(dir.File("other.json"), R"({"x":1})");
  WriteFile(dir.File("prepared.json"), R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":9}})");
  ASSERT_EQ(std::rename(dir.File("prepared.json").c_str(), path.c_str()), 0);
  std::this_thread::sleep_for(300ms);
  EXPECT_TRUE(updater->Documents().empty());

  WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":4}})");
  ASSERT_TRUE(WaitUntil([&] { return updater->Documents().size() == 1; }, 10s));
  WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":5}})");
  ASSERT_TRUE(WaitUntil([&] { return updater->Documents().size() == 2; }, 10s));
  const auto documents = updater->Documents();
  EXPECT_EQ(documents[0]["SwitchMonitoringControl"]["CollectMetricsPeriod"].asInt(), 4);
  EXPECT_EQ(documents[1]["SwitchMonitoringControl"]["CollectMetricsPeriod"].asInt(), 5);

  // A malformed write is not handed over.
  WriteFile(path, "{ not json");
  WriteFile(dir.File("other.json"), "{}");
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(updater->Documents().size(), 2u);
  worker.reset();
}

// A valid document of exactly `size` bytes.
std::string Padded(long size) {
  return "{\"pad\":\"" + std::string(static_cast<std::size_t>(size) - 10, 'x') + "\"}";
}

TEST(DynamicParametersSerializerTest, ReadsValidDocumentsOnlyAndWritesThemBack) {
  TempDir dir;
  const std::string path = dir.File("o.json");
  DynamicParametersSerializer serializer(path);
  Json::Value value;
  EXPECT_FALSE(serializer.Read(value));  // no file
  struct Case {
    const char* name;
    std::string content;
    bool valid;
  };
  const Case cases[] = {
      {"empty", "", false},
      {"malformed", "{\"SwitchMonitoringControl\": {", false},
      {"nested beyond the reader's limit", std::string(5000, '[') + std::string(5000, ']'), false},
      {"binary", std::string("\x00\xff\x13\x37garbage", 11), false},
      {"valid", R"({"SwitchMonitoringControl":{"DebugLevel":"Debug"}})", true},
      {"exactly at the size bound", Padded(DynamicParametersSerializer::kMaxFileSize), true},
      {"one byte over the size bound", Padded(DynamicParametersSerializer::kMaxFileSize + 1),
       false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WriteFile(path, c.content);
    Json::Value read;
    EXPECT_EQ(serializer.Read(read), c.valid);
  }
  Json::Value written;
  written["SwitchMonitoringControl"]["CollectMetrics"] = false;
  serializer.Write(written);
  Json::Value back;
  ASSERT_TRUE(serializer.Read(back));
  EXPECT_EQ(back, written);
  EXPECT_EQ(Arq::TestSupport::ReadFile(path),
            "{\n\t\"SwitchMonitoringControl\" : \n\t{\n\t\t\"CollectMetrics\" : false\n\t}\n}");
}

}  // namespace
