#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <regex>
#include <thread>

#include "Arq/AppVersionBannerProvider/AppVersionBannerProvider.h"
#include "Arq/LogBanner/LogBanner.h"
#include "Arq/RedirectOutput/RedirectOutput.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::RedirectOutput::RedirectOutput;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::TempDir;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;

class FixedBanner : public Arq::BannerProvider::IBannerProvider {
 public:
  explicit FixedBanner(std::string text) : text_(std::move(text)) {}
  std::string GetBanner() override { return text_; }

 private:
  std::string text_;
};

Arq::RedirectOutput::Providers TwoBanners() {
  return {std::make_shared<FixedBanner>("banner one"), std::make_shared<FixedBanner>("banner two")};
}

const std::string kRule(96, '-');
const std::string kTwoBannersHead = kRule + "\nbanner one\nbanner two\n" + kRule + "\n";

// A stream of the test's own to redirect, closed at the end of the test.
struct Stream {
  Stream() : file(std::fopen("/dev/null", "w")) {}
  ~Stream() {
    if (file != nullptr) std::fclose(file);
  }
  FILE* file;
};

TEST(RedirectOutputTest, FirstOpeningAppendsWithoutBannerAndSplitStartsWithBanners) {
  TempDir dir;
  const std::string path = dir.File("out.log");
  WriteFile(path, "old line\n");
  Stream stream;
  ASSERT_NE(stream.file, nullptr);
  RedirectOutput output(path.c_str(), stream.file, TwoBanners());
  std::fputs("first\n", stream.file);
  EXPECT_EQ(ReadFile(path), "old line\nfirst\n");  // unbuffered: already in the file
  EXPECT_EQ(output.Size(), 15);

  EXPECT_FALSE(output.Split(15));  // exactly the limit: kept
  EXPECT_EQ(ReadFile(path), "old line\nfirst\n");
  EXPECT_FALSE(std::filesystem::exists(path + ".bak"));
  EXPECT_TRUE(output.Split(14));  // one byte more: split
  EXPECT_EQ(ReadFile(path + ".bak"), "old line\nfirst\n");
  EXPECT_EQ(ReadFile(path), kTwoBannersHead);
  std::fputs("after split\n", stream.file);
  EXPECT_EQ(ReadFile(path), kTwoBannersHead + "after split\n");

  // The next split replaces the older backup.
  EXPECT_TRUE(output.Split(0));
  EXPECT_EQ(ReadFile(path + ".bak"), kTwoBannersHead + "after split\n");
  EXPECT_EQ(ReadFile(path), kTwoBannersHead);
}

TEST(RedirectOutputTest, WithoutProvidersTheTimeLineHeadsTheNewFile) {
  TempDir dir;
  const std::string path = dir.File("plain.log");
  Stream stream;
  RedirectOutput output(path.c_str(), stream.file);
  std::fputs("x\n", stream.file);
  ASSERT_TRUE(output.Split(1));
  EXPECT_TRUE(std::regex_match(ReadFile(path),
                               std::regex(kRule + "\n----------------------------------- " +
                                          R"(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})" +
                                          " -----------------------------------\n" + kRule + "\n")))
      << ReadFile(path);
}

TEST(RedirectOutputTest, AFileThatCannotBeOpenedIsNeverSplitUnlessForced) {
  TempDir dir;
  const std::string folder = dir.File("later");
  const std::string path = folder + "/out.log";
  Stream stream;
  RedirectOutput output(path.c_str(), stream.file, TwoBanners());
  EXPECT_EQ(output.Size(), 0);
  EXPECT_FALSE(output.Split(0));
  // A negative limit splits regardless, and reopens the same stream object.
  std::filesystem::create_directory(folder);
  EXPECT_TRUE(output.Split(-1));
  EXPECT_EQ(ReadFile(path), kTwoBannersHead);
  EXPECT_FALSE(std::filesystem::exists(path + ".bak"));
}

TEST(RedirectOutputTest, WorkerSplitsAnOversizedFileAtTheEndOfTheFirstPeriod) {
  TempDir dir;
  const std::string path = dir.File("worker.log");
  const std::string old(500, 'o');
  WriteFile(path, old + "\n");
  Stream stream;
  {
    Arq::RedirectOutput::RedirectOutputWorker worker(
        RedirectOutput(path.c_str(), stream.file, TwoBanners()), 1, 300);
    worker.Run();
    worker.Run();  // a second Run starts nothing more
    std::fputs("appended\n", stream.file);
    EXPECT_EQ(ReadFile(path), old + "\nappended\n");
    EXPECT_TRUE(WaitUntil([&] { return std::filesystem::exists(path + ".bak"); },
                          std::chrono::seconds(10)));
  }
  EXPECT_EQ(ReadFile(path + ".bak"), old + "\nappended\n");
  // The fresh file (banners only) stays under the limit: one split only.
  EXPECT_EQ(ReadFile(path), kTwoBannersHead);
}

TEST(RedirectOutputTest, DestroyingTheWorkerStopsItWithinABound) {
  TempDir dir;
  const std::string path = dir.File("stop.log");
  Stream stream;
  for (const bool stopFirst : {false, true}) {
    SCOPED_TRACE(stopFirst ? "stopped, then destroyed" : "destroyed");
    auto worker = std::make_unique<Arq::RedirectOutput::RedirectOutputWorker>(
        RedirectOutput(path.c_str(), stream.file), 3600, 0);
    worker->Run();
    // Let the thread reach its one-second sleep, so that the stop has to wait for it.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    if (stopFirst) worker->Stop();
    const auto start = std::chrono::steady_clock::now();
    worker.reset();
    // The loop looks at the stop signal once a second; allow for a slow machine.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  }
}

TEST(RedirectOutputTest, EmptyPathGivesTheDummyWorkerAndLeavesStandardOutputAlone) {
  struct stat before {};
  ASSERT_EQ(fstat(STDOUT_FILENO, &before), 0);
  auto worker =
      Arq::RedirectOutput::RedirectOutputWorkerFactory::CreateAndRun("", 1, 1, TwoBanners());
  EXPECT_NE(dynamic_cast<Arq::RedirectOutput::DummyRedirectOutputWorker*>(worker.get()), nullptr);
  worker->Stop();
  worker->Stop();
  struct stat after {};
  ASSERT_EQ(fstat(STDOUT_FILENO, &after), 0);
  EXPECT_EQ(after.st_dev, before.st_dev);
  EXPECT_EQ(after.st_ino, before.st_ino);
}

class FixedLevelLogger : public arq::logging::ILogger {
 public:
  void Log(Level, const std::string&, const char*, unsigned long) override {}
  void SetLevel(Level) override {}
  Level GetLevel() const override { return Info; }
};

class FixedVersion : public Arq::OrvoViaSwitch::Domain::Interfaces::IAppVersion {
 public:
  std::string Version() const override { return "2.2.23"; }
  std::string ProjectName() const override { return "OrvoViaSwitchMonitoring"; }
  std::string DateTime() const override { return "Oct  3 2023 18:00:50"; }
};

// Runs `body` in a child process; the child is killed and reaped by PID if it
// is still running when the test ends.
class ForkedChild {
 public:
  explicit ForkedChild(const std::function<int()>& body) : pid_((std::fflush(nullptr), fork())) {
    if (pid_ == 0) _exit(body());
  }
  ~ForkedChild() {
    if (pid_ > 0 && !status_) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }
  pid_t Pid() const { return pid_; }
  // The exit code, or -1 when the child did not end before the deadline.
  int Wait(std::chrono::seconds timeout) {
    int status = 0;
    const bool ended = WaitUntil([&] { return waitpid(pid_, &status, WNOHANG) == pid_; }, timeout,
                                 std::chrono::milliseconds(20));
    if (!ended) return -1;
    status_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t pid_;
  bool status_ = false;
};

TEST(RedirectOutputTest, FactoryRedirectsStandardOutputAndHeadsNewFilesWithTheBanners) {
  TempDir dir;
  const std::string path = dir.File("daemon.log");
  const std::string line(250, 'y');
  ForkedChild child([&] {
    auto logger = std::make_shared<FixedLevelLogger>();
    // Create, write, then Run: the split thread starts after these writes and
    // is joined before the last one, so no write races with the reopening.
    auto worker = Arq::RedirectOutput::RedirectOutputWorkerFactory::Create(
        path, 1, 450,
        {std::make_shared<Arq::LogBanner::LogBannerProvider>(logger),
         std::make_shared<Arq::AppVersionBannerProvider::AppVersionBannerProvider>(
             std::make_shared<FixedVersion>())});
    std::printf("%s\n", line.c_str());
    const ssize_t written = write(STDOUT_FILENO, (line + "\n").data(), line.size() + 1);
    worker->Run();
    const bool split = WaitUntil([&] { return std::filesystem::exists(path + ".bak"); },
                                 std::chrono::seconds(10), std::chrono::milliseconds(20));
    worker.reset();
    std::printf("after\n");
    return split && written == static_cast<ssize_t>(line.size() + 1) ? 0 : 1;
  });
  ASSERT_GT(child.Pid(), 0);
  ASSERT_EQ(child.Wait(std::chrono::seconds(20)), 0);
  EXPECT_EQ(ReadFile(path + ".bak"), line + "\n" + line + "\n");
  EXPECT_TRUE(std::regex_match(
      ReadFile(path),
      std::regex(kRule +
                 "\n--------------------------------- Criticity threshold:   Info  "
                 "---------------------------------\n"
                 "------ ARQ VANTELLIS --- OrvoViaSwitchWarden version 2\\.2\\.23 --- "
                 R"(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})"
                 " ------\n" +
                 kRule + "\nafter\n")))
      << ReadFile(path);
}

}  // namespace
