#include "Arq/DynamicParameters/DynamicParameters.h"

#include <json/reader.h>
#include <json/writer.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
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
  std::ifstream in(path_, std::ios::binary);
  if (!in) {
    ARQ_LOG(logger_, ILogger::Info, "No file:  " << path_);
    return false;
  }
  std::ostringstream text;
  text << in.rdbuf();
  const std::string content = text.str();
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
                                                 int inotifyFd, int watchFd, std::string fileName)
    : parameters_(std::move(parameters)),
      inotifyFd_(inotifyFd),
      watchFd_(watchFd),
      fileName_(std::move(fileName)),
      logger_(Loggers::GetInstance().GetLogger("DynamicParametersWorker")) {}

DynamicParametersWorker::~DynamicParametersWorker() {
  Stop();
  inotify_rm_watch(inotifyFd_, watchFd_);
  if (thread_.joinable()) thread_.join();
  close(inotifyFd_);
}

void DynamicParametersWorker::Run() {
  if (thread_.joinable()) return;
  thread_ = std::thread([this] { Loop(); });
}

void DynamicParametersWorker::Loop() {
  alignas(inotify_event) char buffer[4096];
  while (!StopRequested()) {
    const ssize_t length = read(inotifyFd_, buffer, sizeof buffer);
    if (length < 1) continue;
    for (ssize_t offset = 0; offset + static_cast<ssize_t>(sizeof(inotify_event)) <= length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
      offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      if (event->wd != watchFd_ || (event->mask & IN_CLOSE_WRITE) == 0 || event->len == 0) {
        continue;
      }
      const std::string name(event->name, strnlen(event->name, event->len));
      if (name != fileName_) continue;
      ARQ_LOG(logger_, ILogger::Info,
              "New Dynamic Parameters values -> file: " << name << " Refresh parameters");
      parameters_->Update();
    }
  }
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
  const int fd = inotify_init1(IN_CLOEXEC);
  if (fd < 0) {
    ARQ_LOG(logger, ILogger::Error, "inotify_init failed: " << std::strerror(errno));
    return nullptr;
  }
  const int wd = inotify_add_watch(fd, folder.c_str(), IN_CLOSE_WRITE);
  if (wd < 0) {
    ARQ_LOG(logger, ILogger::Error,
            "Error (" << wd << ") watching '" << folder << "' for IN_CLOSE_WRITE mask");
    close(fd);
    return nullptr;
  }
  ARQ_LOG(logger, ILogger::Info,
          "Watching file '" << fileName << "' in folder '" << folder << "' for IN_CLOSE_WRITE");
  return std::make_unique<DynamicParametersWorker>(
      CreateDynamicParameters(updater, folder, fileName), fd, wd, fileName);
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
