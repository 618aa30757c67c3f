#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <thread>

#include "Arq/RedirectOutput/RedirectOutput.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::RedirectOutput::RedirectOutput;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::WaitUntil;
using Arq::TestSupport::WriteFile;
using namespace std::chrono_literals;

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
const std::string kHead = kRule + "\nbanner one\nbanner two\n" + kRule + "\n";

// A stream of the test's own to redirect, closed at the end of the test.
struct Stream {
  Stream() : file(std::fopen("/dev/null", "w")) {}
  ~Stream() { std::fclose(file); }
  FILE* file;
};

long OpenDescriptors() {
  const std::filesystem::directory_iterator fds("/proc/self/fd");
  return std::distance(begin(fds), end(fds));
}

// The first opening appends without a banner; a split (only above the limit)
// moves the file to the one ".bak" and heads the new file with the banners,
// or with the time line when there are none. No descriptor is left behind.
TEST(RedirectOutputTest, SplitsAboveTheLimitIntoOneBackupAndAFileHeadedByBanners) {
  Arq::TestSupport::TempDir dir;
  const std::string path = dir.File("out.log");
  WriteFile(path, "old line\n");
  Stream stream, plainStream;
  const long descriptors = OpenDescriptors();
  {
    RedirectOutput output(path.c_str(), stream.file, TwoBanners());
    std::fputs("first\n", stream.file);
    EXPECT_EQ(ReadFile(path), "old line\nfirst\n");  // unbuffered: already in the file
    EXPECT_EQ(output.Size(), 15);
    EXPECT_FALSE(output.Split(15));  // exactly the limit: kept
    EXPECT_FALSE(std::filesystem::exists(path + ".bak"));
    EXPECT_TRUE(output.Split(14));
    EXPECT_EQ(ReadFile(path + ".bak"), "old line\nfirst\n");
    std::fputs("after split\n", stream.file);
    EXPECT_EQ(ReadFile(path), kHead + "after split\n");
    EXPECT_TRUE(output.Split(0));  // replaces the older backup
    EXPECT_EQ(ReadFile(path + ".bak"), kHead + "after split\n");
    EXPECT_EQ(ReadFile(path), kHead);
    // A backup that cannot be replaced: the file starts again, empty, all the same.
    std::filesystem::remove(path + ".bak");
    std::filesystem::create_directories(path + ".bak/full");
    std::fputs("kept in place\n", stream.file);
    EXPECT_TRUE(output.Split(0));
    EXPECT_EQ(ReadFile(path), kHead);

    RedirectOutput plain(dir.File("plain.log").c_str(), plainStream.file);
    std::fputs("x\n", plainStream.file);
    ASSERT_TRUE(plain.Split(1));
    EXPECT_TRUE(std::regex_match(
        ReadFile(dir.File("plain.log")),
        std::regex(kRule + "\n-{35} " + R"(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})" + " -{35}\n" +
                   kRule + "\n")))
        << ReadFile(dir.File("plain.log"));

    // A file that cannot be opened (a device refusing writes, a missing
    // folder) is never split unless the limit is negative; the stream stays.
    // The device is reached through a link of the test's own, so that a
    // faulty split renames the link, never the device.
    Arq::TestSupport::CapturedOutput errors(2);
    const std::string device = dir.File("full");
    std::filesystem::create_symlink("/dev/full", device);
    RedirectOutput full(device.c_str(), stream.file);
    EXPECT_EQ(full.Size(), 0);
    EXPECT_FALSE(full.Split(0));
    const std::string later = dir.File("later") + "/out.log";
    RedirectOutput missing(later.c_str(), plainStream.file, TwoBanners());
    EXPECT_FALSE(missing.Split(0));
    std::filesystem::create_directory(dir.File("later"));
    EXPECT_TRUE(missing.Split(-1));
    EXPECT_EQ(ReadFile(later), kHead);
    EXPECT_EQ(errors.Text(), "Cannot redirect standard output to '" + device +
                                 "': No space left on device\n" +
                                 "Cannot redirect standard output to '" + later +
                                 "': No such file or directory\n");
  }
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

// The worker splits an oversized file at the end of its first period, once;
// destroyed (stopped first or not) it ends within its one-second tick.
TEST(RedirectOutputTest, WorkerSplitsAtTheEndOfThePeriodAndStopsWithinABound) {
  Arq::TestSupport::TempDir dir;
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
    EXPECT_TRUE(WaitUntil([&] { return std::filesystem::exists(path + ".bak"); }, 10s));
  }
  EXPECT_EQ(ReadFile(path + ".bak"), old + "\nappended\n");
  EXPECT_EQ(ReadFile(path), kHead);  // under the limit: one split only
  for (const bool stopFirst : {false, true}) {
    auto worker = std::make_unique<Arq::RedirectOutput::RedirectOutputWorker>(
        RedirectOutput(path.c_str(), stream.file), 3600, 0);
    worker->Run();
    std::this_thread::sleep_for(200ms);  // the thread is in its one-second sleep
    if (stopFirst) worker->Stop();
    const auto start = std::chrono::steady_clock::now();
    worker.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << stopFirst;
  }
}

// An empty path gives the dummy worker and leaves standard output alone.
// (Standard output redirected by a path, under the program's own banners, is
// the whole-system tests' part.)
TEST(RedirectOutputTest, EmptyPathGivesTheDummyWorkerAndLeavesStandardOutputAlone) {
  struct stat before {};
  ASSERT_EQ(fstat(STDOUT_FILENO, &before), 0);
  auto dummy = Arq::RedirectOutput::RedirectOutputWorkerFactory::CreateAndRun("", 1, 1, {});
  EXPECT_NE(dynamic_cast<Arq::RedirectOutput::DummyRedirectOutputWorker*>(dummy.get()), nullptr);
  dummy->Stop();
  dummy->Stop();
  struct stat after {};
  ASSERT_EQ(fstat(STDOUT_FILENO, &after), 0);
  EXPECT_EQ(after.st_ino, before.st_ino);
}

}  // namespace
