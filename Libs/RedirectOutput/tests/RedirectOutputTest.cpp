#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "Arq/RedirectOutput/RedirectOutput.h"
#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::RedirectOutput::RedirectOutput;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::TempDir;
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

TEST(RedirectOutputTest, FirstOpeningAppendsWithoutBannerAndSplitStartsWithBanners) {
  TempDir dir;
  const std::string path = dir.File("out.log");
  WriteFile(path, "old line\n");
  FILE* stream = std::fopen("/dev/null", "w");
  ASSERT_NE(stream, nullptr);
  RedirectOutput output(path.c_str(), stream, TwoBanners());
  std::fputs("first\n", stream);
  EXPECT_EQ(ReadFile(path), "old line\nfirst\n");  // unbuffered: already in the file
  EXPECT_EQ(output.Size(), 15);

  EXPECT_FALSE(output.Split(15));  // exactly the limit: kept
  EXPECT_TRUE(output.Split(14));
  EXPECT_EQ(ReadFile(path + ".bak"), "old line\nfirst\n");
  EXPECT_EQ(ReadFile(path), kRule + "\nbanner one\nbanner two\n" + kRule + "\n");
  std::fputs("after split\n", stream);
  EXPECT_EQ(ReadFile(path), kRule + "\nbanner one\nbanner two\n" + kRule + "\nafter split\n");

  // The next split replaces the older backup.
  EXPECT_TRUE(output.Split(0));
  EXPECT_EQ(ReadFile(path + ".bak"),
            kRule + "\nbanner one\nbanner two\n" + kRule + "\nafter split\n");
  std::fclose(stream);
}

TEST(RedirectOutputTest, WithoutProvidersTheTimeLineHeadsTheNewFile) {
  TempDir dir;
  const std::string path = dir.File("plain.log");
  FILE* stream = std::fopen("/dev/null", "w");
  RedirectOutput output(path.c_str(), stream);
  std::fputs("x\n", stream);
  ASSERT_TRUE(output.Split(1));
  const std::string text = ReadFile(path);
  ASSERT_EQ(text.size(), 97u + 36 + 24 + 36 + 1 + 97u) << text;
  EXPECT_EQ(text.substr(0, 97), kRule + "\n");
  EXPECT_EQ(text.substr(97, 36), "----------------------------------- ");
  EXPECT_EQ(text.substr(text.size() - 97), kRule + "\n");
  std::fclose(stream);
}

TEST(RedirectOutputTest, WorkerSplitsEachPeriodAndStopsPromptly) {
  TempDir dir;
  const std::string path = dir.File("worker.log");
  FILE* stream = std::fopen("/dev/null", "w");
  {
    Arq::RedirectOutput::RedirectOutputWorker worker(
        RedirectOutput(path.c_str(), stream, TwoBanners()), 1, 300);
    worker.Run();
    worker.Run();
    std::fputs(std::string(400, 'x').append("\n").c_str(), stream);
    EXPECT_TRUE(Arq::TestSupport::WaitUntil([&] { return std::filesystem::exists(path + ".bak"); },
                                            std::chrono::seconds(10)));
  }
  // The fresh file (banners only) stays under the limit: one split only.
  EXPECT_EQ(ReadFile(path + ".bak"), std::string(400, 'x') + "\n");
  EXPECT_EQ(ReadFile(path), kRule + "\nbanner one\nbanner two\n" + kRule + "\n");
  std::fclose(stream);
}

TEST(RedirectOutputTest, EmptyPathGivesTheDummyWorker) {
  auto worker = Arq::RedirectOutput::RedirectOutputWorkerFactory::CreateAndRun("", 1, 1, {});
  EXPECT_NE(dynamic_cast<Arq::RedirectOutput::DummyRedirectOutputWorker*>(worker.get()), nullptr);
  worker->Stop();
}

}  // namespace
