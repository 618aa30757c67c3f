#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
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

// Writing the options file in place or renaming a file onto its name (from
// the folder, as sed -i does, or from another folder) hands it over once per
// change, and only when it parses; other files do nothing; a folder that
// cannot be watched gives no worker, and destroying a worker blocked in its
// read returns (the test's time-out bounds it).
TEST(DynamicParametersWorkerTest, WritesAndRenamesOntoTheFileUpdateOncePerChange) {
  auto updater = std::make_shared<RecordingUpdater>();
  EXPECT_EQ(
      DynamicParametersWorkerFactory::CreateWorkerAndRun(updater, "/nonexistent/folder", "o.json"),
      nullptr);
  TempDir dir;
  TempDir elsewhere;
  const std::string path = dir.File("SwitchMonitoringOptions.json");
  WriteFile(path, R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":3}})");
  auto worker = DynamicParametersWorkerFactory::CreateWorkerAndRun(updater, dir.Path() + "/",
                                                                   "SwitchMonitoringOptions.json");
  ASSERT_NE(worker, nullptr);
  const auto renamed = [&](const std::string& from) {
    return [&path, from](const std::string& text) {
      WriteFile(from, text);
      ASSERT_EQ(std::rename(from.c_str(), path.c_str()), 0);
    };
  };
  struct Case {
    const char* name;
    std::function<void(const std::string&)> write;
    int period;  // 0: a malformed document
    std::size_t documents;
  };
  const Case cases[] = {
      {"another file", [&](const std::string& t) { WriteFile(dir.File("other.json"), t); }, 8, 0},
      {"in place", [&](const std::string& t) { WriteFile(path, t); }, 4, 1},
      {"renamed in the folder", renamed(dir.File(".sedXYZ")), 5, 2},
      {"moved from another folder", renamed(elsewhere.File("prepared.json")), 6, 3},
      {"malformed in place", [&](const std::string& t) { WriteFile(path, t); }, 0, 3},
      {"malformed renamed", renamed(dir.File(".sedABC")), 0, 3},
      {"in place again", [&](const std::string& t) { WriteFile(path, t); }, 7, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    c.write(c.period == 0 ? "{ not json"
                          : R"({"SwitchMonitoringControl":{"CollectMetricsPeriod":)" +
                                std::to_string(c.period) + "}}");
    EXPECT_TRUE(WaitUntil([&] { return updater->Documents().size() >= c.documents; }, 10s));
    std::this_thread::sleep_for(300ms);
    const auto documents = updater->Documents();
    ASSERT_EQ(documents.size(), c.documents);
    if (c.period != 0 && c.documents > 0) {
      EXPECT_EQ(documents.back()["SwitchMonitoringControl"]["CollectMetricsPeriod"].asInt(),
                c.period);
    }
  }
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
