#include "Arq/DynamicParameters/DynamicParameters.h"

#include <fcntl.h>
#include <json/reader.h>
#include <json/writer.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Logging/Log.h"

namespace Arq::DynamicParameters {

using arq::logging::ILogger;
using Logging::Loader::Loggers;

DynamicParametersSerializer::DynamicParametersSerializer(std::string path)
    : path_(std::move(path)), logger_(Loggers::GetInstance().GetLogger("OptionsSerializer")) {}

bool DynamicParametersSerializer::Read(Json::Value& value) {
  ARQ_LOG(logger_, ILogger::Info, "Read Options file:  " << path_);
  std::string content;
  if (!ReadBounded(content)) return false;
  Json::CharReaderBuilder builder;
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  bool parsed = false;
  try {
    parsed = reader->parse(content.data(), content.data() + content.size(), &value, &errors);
  } catch (const std::exception&) {
    // Nesting beyond the reader's stack limit is reported by an exception.
    parsed = false;
  }
  if (!parsed) {
    ARQ_LOG(logger_, ILogger::Warning, "Invalid file:  " << path_);
    return false;
  }
  return true;
}

bool DynamicParametersSerializer::ReadBounded(std::string& content) {
  // O_NONBLOCK: opening a FIFO for reading must not wait for a writer.
  const int fd = open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    ARQ_LOG(logger_, ILogger::Info, "No file:  " << path_);
    return false;
  }
  struct stat status {};
  const bool regular = fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
  if (regular && status.st_size <= kMaxFileSize) {
    // One byte more than the bound tells a file that grew since fstat.
    content.resize(static_cast<std::size_t>(kMaxFileSize) + 1);
    std::size_t length = 0;
    ssize_t got = 0;
    while (length < content.size() &&
           (got = read(fd, &content[length], content.size() - length)) > 0) {
      length += static_cast<std::size_t>(got);
    }
    content.resize(length);
  }
  close(fd);
  if (!regular) {
    ARQ_LOG(logger_, ILogger::Warning, "Refused file:  " << path_ << " (not a regular file)");
    return false;
  }
  if (status.st_size > kMaxFileSize || content.size() > static_cast<std::size_t>(kMaxFileSize)) {
    ARQ_LOG(logger_, ILogger::Warning,
            "Refused file:  " << path_ << " (larger than " << kMaxFileSize << " bytes)");
    return false;
  }
  return true;
}

void DynamicParametersSerializer::Write(const Json::Value& value) {
  Json::StreamWriterBuilder builder;
  const std::string text = Json::writeString(builder, value);
  {
    std::ofstream out(path_, std::ios::binary | std::ios::trunc);
    out << text;
  }
  ARQ_LOG(logger_, ILogger::Info, "Write Options file:  " << path_);
}

DynamicParameters::DynamicParameters(std::shared_ptr<IDynamicParametersUpdater> updater,
                                     std::shared_ptr<IDynamicParametersSerializer> serializer)
    : updater_(std::move(updater)),
      serializer_(std::move(serializer)),
      logger_(Loggers::GetInstance().GetLogger("DynamicParameters")) {}

void DynamicParameters::Update() {
  ARQ_LOG(logger_, ILogger::Info, "DynamicParameters::Update() is called");
  Json::Value value;
  if (serializer_->Read(value)) updater_->Update(value);
}

DynamicParametersWorker::DynamicParametersWorker(std::shared_ptr<DynamicParameters> parameters,
                                                 int inotifyFd, int watchFd, std::string folder,
                                                 std::string fileName)
    : parameters_(std::move(parameters)),
      inotifyFd_(inotifyFd),
      watchFd_(watchFd),
      stopFd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      folder_(std::move(folder)),
      fileName_(std::move(fileName)),
      logger_(Loggers::GetInstance().GetLogger("DynamicParametersWorker")) {}

DynamicParametersWorker::~DynamicParametersWorker() {
  Stop();
  // The thread waits on both descriptors: the stop event wakes it whatever
  // the state of the watch (removed with its folder, never re-added).
  const std::uint64_t one = 1;
  if (stopFd_ >= 0 && write(stopFd_, &one, sizeof one) < 0) {
    // Cannot happen on a fresh eventfd; without it the thread polls once a second.
  }
  if (thread_.joinable()) thread_.join();
  if (watchFd_ >= 0) inotify_rm_watch(inotifyFd_, watchFd_);
  close(inotifyFd_);
  if (stopFd_ >= 0) close(stopFd_);
}

void DynamicParametersWorker::Run() {
  if (thread_.joinable()) return;
  thread_ = std::thread([this] { Loop(); });
}

void DynamicParametersWorker::Loop() {
  alignas(inotify_event) char buffer[4096];
  while (!StopRequested()) {
    pollfd fds[2] = {{inotifyFd_, POLLIN, 0}, {stopFd_, POLLIN, 0}};
    // Without a watch (folder gone) the folder is looked for again at each
    // time-out; the stop event ends the wait in either state.
    const int timeout = watchFd_ < 0 ? kRewatchMilliseconds : (stopFd_ < 0 ? 1000 : -1);
    const int ready = poll(fds, 2, timeout);
    if (StopRequested()) break;
    if (watchFd_ < 0) {
      Rewatch();
      continue;
    }
    if (ready < 1 || (fds[0].revents & POLLIN) == 0) continue;
    const ssize_t length = read(inotifyFd_, buffer, sizeof buffer);
    if (length < 1) continue;
    for (ssize_t offset = 0; offset + static_cast<ssize_t>(sizeof(inotify_event)) <= length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
      offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      if (event->wd != watchFd_) continue;
      if ((event->mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF)) != 0) {
        FolderLost();
        break;
      }
      // A rename onto the name gives IN_MOVED_TO alone; an in-place write
      // IN_CLOSE_WRITE alone: either is one change, applied once.
      if ((event->mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) == 0 || event->len == 0) continue;
      const std::string name(event->name, strnlen(event->name, event->len));
      if (name != fileName_) continue;
      ARQ_LOG(logger_, ILogger::Info,
              "New Dynamic Parameters values -> file: " << name << " Refresh parameters");
      parameters_->Update();
    }
  }
}

void DynamicParametersWorker::FolderLost() {
  // A folder moved away keeps its watch: drop it, the path is what counts.
  inotify_rm_watch(inotifyFd_, watchFd_);
  watchFd_ = -1;
  ARQ_LOG(logger_, ILogger::Warning,
          "Folder '" << folder_ << "' vanished: watching it again when it reappears");
}

void DynamicParametersWorker::Rewatch() {
  const int wd = inotify_add_watch(inotifyFd_, folder_.c_str(), kWatchMask);
  if (wd < 0) return;
  watchFd_ = wd;
  ARQ_LOG(
      logger_, ILogger::Warning,
      "Watching file '" << fileName_ << "' in folder '" << folder_ << "' again for IN_CLOSE_WRITE");
  // The file may have been written before the watch was back.
  parameters_->Update();
}

std::unique_ptr<Worker::IWorker> DynamicParametersWorkerFactory::CreateWorkerAndRun(
    const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
    const std::string& fileName) {
  auto worker = CreateWorker(updater, folder, fileName);
  if (worker) worker->Run();
  return worker;
}

std::unique_ptr<DynamicParametersWorker> DynamicParametersWorkerFactory::CreateWorker(
    const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
    const std::string& fileName) {
  auto logger = Loggers::GetInstance().GetLogger("DynamicParametersWorkerFactory::CreateWorker");
  const int fd = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (fd < 0) {
    char reason[128];
    ARQ_LOG(logger, ILogger::Error,
            "inotify_init failed: " << strerror_r(errno, reason, sizeof reason));
    return nullptr;
  }
  const int wd = inotify_add_watch(fd, folder.c_str(), DynamicParametersWorker::kWatchMask);
  if (wd < 0) {
    ARQ_LOG(logger, ILogger::Error,
            "Error (" << wd << ") watching '" << folder << "' for IN_CLOSE_WRITE mask");
    close(fd);
    return nullptr;
  }
  ARQ_LOG(logger, ILogger::Info,
          "Watching file '" << fileName << "' in folder '" << folder << "' for IN_CLOSE_WRITE");
  return std::make_unique<DynamicParametersWorker>(
      CreateDynamicParameters(updater, folder, fileName), fd, wd, folder, fileName);
}

std::shared_ptr<DynamicParameters> DynamicParametersWorkerFactory::CreateDynamicParameters(
    const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
    const std::string& fileName) {
  return std::make_shared<DynamicParameters>(updater, CreateSerializer(folder, fileName));
}

std::shared_ptr<IDynamicParametersSerializer> DynamicParametersWorkerFactory::CreateSerializer(
    const std::string& folder, const std::string& fileName) {
  return CreateSerializer(BuildFilepath(folder, fileName));
}

std::shared_ptr<IDynamicParametersSerializer> DynamicParametersWorkerFactory::CreateSerializer(
    const std::string& path) {
  return std::make_shared<DynamicParametersSerializer>(path);
}

std::string DynamicParametersWorkerFactory::BuildFilepath(const std::string& folder,
                                                          const std::string& fileName) {
  return IsEndingWith(folder, "/") ? folder + fileName : folder + "/" + fileName;
}

bool DynamicParametersWorkerFactory::IsEndingWith(const std::string& text,
                                                  const std::string& suffix) {
  return text.size() >= suffix.size() &&
         text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

}  // namespace Arq::DynamicParameters
