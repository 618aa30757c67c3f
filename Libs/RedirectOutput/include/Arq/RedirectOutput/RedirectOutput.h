#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Arq/BannerProvider/IBannerProvider.h"
#include "Arq/Worker/StoppableWorker.h"

namespace Arq::RedirectOutput {

using Providers = std::vector<std::shared_ptr<BannerProvider::IBannerProvider>>;

// A stream (standard output) reopened on a file. The first opening appends
// and writes no banner; every later reopening (a split) starts the file with
// the banners.
class RedirectOutput {
 public:
  RedirectOutput(const char* path, FILE* stream, Providers providers);
  RedirectOutput(const char* path, FILE* stream);
  RedirectOutput(RedirectOutput&&) = default;
  RedirectOutput& operator=(RedirectOutput&&) = default;

  void Redirect(const char* path, const char* mode, FILE* stream);
  void WriteBanner(const std::string& text);
  long Size() const;
  // Moves the file to ".bak" and starts a fresh one once it exceeds maxSize.
  bool Split(long maxSize);

 private:
  std::string path_;
  std::string backupPath_;
  // The stream and its descriptor stay the same across reopenings: the file
  // is put under the descriptor (dup2). A reopen that fails leaves the stream
  // where it was, says so once on standard error, and is retried at the next
  // split; open_ tells whether the stream ever reached the file.
  FILE* stream_ = nullptr;
  Providers providers_;
  bool writeBanners_ = false;
  bool open_ = false;
  bool failureReported_ = false;
};

// Checks the file size every splitPeriod seconds on its own thread; a stop
// is noticed within one second.
class RedirectOutputWorker : public Worker::StoppableWorker {
 public:
  RedirectOutputWorker(RedirectOutput redirectOutput, int splitPeriod, long maxSize);
  ~RedirectOutputWorker() override;
  void Run() override;

 private:
  std::unique_ptr<RedirectOutput> redirectOutput_;
  int splitPeriod_;
  long maxSize_;
  std::unique_ptr<std::thread> thread_;
};

class DummyRedirectOutputWorker : public Worker::IWorker {
 public:
  void Run() override {}
  void Stop() override {}
};

struct RedirectOutputWorkerFactory {
  // An empty path gives the dummy worker: standard output stays as it is.
  static std::unique_ptr<Worker::IWorker> Create(const std::string& path, int splitPeriod,
                                                 long maxSize, Providers providers);
  static std::unique_ptr<Worker::IWorker> CreateAndRun(const std::string& path, int splitPeriod,
                                                       long maxSize, Providers providers);
};

}  // namespace Arq::RedirectOutput
