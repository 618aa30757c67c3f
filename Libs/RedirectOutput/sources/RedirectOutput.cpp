#include "Arq/RedirectOutput/RedirectOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>

namespace Arq::RedirectOutput {

RedirectOutput::RedirectOutput(const char* path, FILE* stream, Providers providers)
    : path_(path), backupPath_(path_ + ".bak"), stream_(stream), providers_(std::move(providers)) {
  Redirect(path, "a", stream);
  writeBanners_ = true;
}

RedirectOutput::RedirectOutput(const char* path, FILE* stream)
    : RedirectOutput(path, stream, Providers()) {}

void RedirectOutput::Redirect(const char* path, const char* mode, FILE* stream) {
  const std::string time = BannerProvider::UtcAscTime();
  stream_ = stream;
  if (stream == nullptr) return;
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (mode[0] == 'w' ? O_TRUNC : O_APPEND);
  const int fd = open(path, flags, 0644);
  // A zero-length write fails where every write would (/dev/full) and costs
  // nothing elsewhere.
  const bool usable = fd >= 0 && write(fd, "", 0) == 0;
  const int error = errno;
  if (!usable) {
    if (fd >= 0) close(fd);
    // The stream stays where it was: a reopen that failed must not take
    // standard output (and every line after it) away.
    if (!failureReported_) {
      char reason[128];
      (void)std::fprintf(stderr, "Cannot redirect standard output to '%s': %s\n", path,
                         strerror_r(error, reason, sizeof reason));
      failureReported_ = true;
    }
    return;
  }
  (void)std::fflush(stream);
  const int target = fileno(stream);
  const bool moved = target >= 0 && dup2(fd, target) >= 0;
  close(fd);
  if (!moved) return;
  failureReported_ = false;
  open_ = true;
  std::clearerr(stream);
  std::setbuf(stream_, nullptr);
  if (writeBanners_) {
    WriteBanner("----------------------------------- " + time +
                " -----------------------------------\n");
  }
}

void RedirectOutput::WriteBanner(const std::string& text) {
  if (!open_) return;
  std::string banner(96, '-');
  banner += '\n';
  if (providers_.empty()) {
    banner += text;
  } else {
    for (const auto& provider : providers_) banner += provider->GetBanner() + "\n";
  }
  banner += std::string(96, '-') + "\n";
  (void)std::fputs(banner.c_str(), stream_);
}

long RedirectOutput::Size() const {
  struct stat status {};
  if (!open_) return 0;
  const int fd = fileno(stream_);
  if (fd < 0 || fstat(fd, &status) != 0) return 0;
  return static_cast<long>(status.st_size);
}

bool RedirectOutput::Split(long maxSize) {
  struct stat status {};
  const int fd = open_ ? fileno(stream_) : -1;
  if (fd >= 0 && fstat(fd, &status) == 0) {
    if (status.st_size <= maxSize) return false;
  } else if (maxSize >= 0) {
    return false;
  }
  // A rename that failed leaves the file to the truncation below: the size
  // limit holds either way.
  (void)std::rename(path_.c_str(), backupPath_.c_str());
  Redirect(path_.c_str(), "w", stream_);
  return true;
}

RedirectOutputWorker::RedirectOutputWorker(RedirectOutput redirectOutput, int splitPeriod,
                                           long maxSize)
    : redirectOutput_(std::make_unique<RedirectOutput>(std::move(redirectOutput))),
      splitPeriod_(splitPeriod),
      maxSize_(maxSize) {}

RedirectOutputWorker::~RedirectOutputWorker() {
  if (!StopRequested()) Stop();
  if (thread_ && thread_->joinable()) thread_->join();
}

void RedirectOutputWorker::Run() {
  if (thread_) return;
  thread_ = std::make_unique<std::thread>([this, output = std::move(redirectOutput_)]() mutable {
    int seconds = 0;
    while (!StopRequested()) {
      // A sleep interrupted by a signal is started again, whole.
      const timespec oneSecond{1, 0};
      while (nanosleep(&oneSecond, nullptr) != 0 && errno == EINTR) {
      }
      if (++seconds == splitPeriod_) {
        output->Split(maxSize_);
        seconds = 0;
      }
    }
  });
}

std::unique_ptr<Worker::IWorker> RedirectOutputWorkerFactory::Create(const std::string& path,
                                                                     int splitPeriod, long maxSize,
                                                                     Providers providers) {
  if (path.empty()) return std::make_unique<DummyRedirectOutputWorker>();
  return std::make_unique<RedirectOutputWorker>(
      RedirectOutput(path.c_str(), stdout, std::move(providers)), splitPeriod, maxSize);
}

std::unique_ptr<Worker::IWorker> RedirectOutputWorkerFactory::CreateAndRun(const std::string& path,
                                                                           int splitPeriod,
                                                                           long maxSize,
                                                                           Providers providers) {
  auto worker = Create(path, splitPeriod, maxSize, std::move(providers));
  worker->Run();
  return worker;
}

}  // namespace Arq::RedirectOutput
