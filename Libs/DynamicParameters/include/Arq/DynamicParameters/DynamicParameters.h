#pragma once

#include <json/value.h>
#include <sys/inotify.h>

#include <cstdint>

#include <memory>
#include <string>
#include <thread>

#include "Arq/Worker/StoppableWorker.h"
#include "arq/logging/ILogger.h"

namespace Arq::DynamicParameters {

class IDynamicParametersSerializer {
 public:
  virtual ~IDynamicParametersSerializer() = default;
  // True when the file was opened and parsed into `value`.
  virtual bool Read(Json::Value& value) = 0;
  virtual void Write(const Json::Value& value) = 0;
};

// Reads and writes the options file as JSON.
class DynamicParametersSerializer : public IDynamicParametersSerializer {
 public:
  explicit DynamicParametersSerializer(std::string path);
  bool Read(Json::Value& value) override;
  void Write(const Json::Value& value) override;

  // Only a regular file up to this size is read. The three options take about
  // a hundred bytes; 64 KiB leaves room for indentation, comments and members
  // of other tools, and keeps a wrong file (a log, an image) from being read
  // whole into memory.
  static constexpr long kMaxFileSize = 64L * 1024;

 private:
  // The file's text, or false (one line logged) when it is missing, not a
  // regular file (a FIFO must never block the reader) or over the bound.
  bool ReadBounded(std::string& content);

  std::string path_;
  std::shared_ptr<arq::logging::ILogger> logger_;
};

// The hook that applies a freshly read options document.
class IDynamicParametersUpdater {
 public:
  virtual ~IDynamicParametersUpdater() = default;
  virtual void Update(const Json::Value& options) = 0;
};

class DynamicParameters {
 public:
  DynamicParameters(std::shared_ptr<IDynamicParametersUpdater> updater,
                    std::shared_ptr<IDynamicParametersSerializer> serializer);
  // Re-reads the file and hands a valid document to the updater.
  void Update();

 private:
  std::shared_ptr<IDynamicParametersUpdater> updater_;
  std::shared_ptr<IDynamicParametersSerializer> serializer_;
  std::shared_ptr<arq::logging::ILogger> logger_;
};

// Watches the options file's folder with inotify and calls Update() each
// time the file itself is closed after writing, or a file is moved or renamed
// onto its name (sed -i, editors and configuration-management tools write a
// new file and rename it over the old one). There is no initial read.
// When the folder vanishes (deleted or moved away) this is logged once, the
// folder is looked for again every half second, and once it is back it is
// watched again and the file applied.
class DynamicParametersWorker : public Worker::StoppableWorker {
 public:
  static constexpr std::uint32_t kWatchMask =
      IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
  static constexpr int kRewatchMilliseconds = 500;

  DynamicParametersWorker(std::shared_ptr<DynamicParameters> parameters, int inotifyFd, int watchFd,
                          std::string folder, std::string fileName);
  // Stops, wakes the thread through its stop event, joins, closes: prompt
  // whatever the thread is waiting for.
  ~DynamicParametersWorker() override;
  void Run() override;

 private:
  void Loop();
  void FolderLost();
  void Rewatch();

  std::shared_ptr<DynamicParameters> parameters_;
  int inotifyFd_;
  int watchFd_;
  int stopFd_;
  std::string folder_;
  std::string fileName_;
  std::thread thread_;
  std::shared_ptr<arq::logging::ILogger> logger_;
};

struct DynamicParametersWorkerFactory {
  // Null when inotify cannot be set up (the reason is logged); the daemon then
  // runs without run-time option changes.
  static std::unique_ptr<Worker::IWorker> CreateWorkerAndRun(
      const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
      const std::string& fileName);
  static std::unique_ptr<DynamicParametersWorker> CreateWorker(
      const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
      const std::string& fileName);
  static std::shared_ptr<DynamicParameters> CreateDynamicParameters(
      const std::shared_ptr<IDynamicParametersUpdater>& updater, const std::string& folder,
      const std::string& fileName);
  static std::shared_ptr<IDynamicParametersSerializer> CreateSerializer(
      const std::string& folder, const std::string& fileName);
  static std::shared_ptr<IDynamicParametersSerializer> CreateSerializer(const std::string& path);
  static std::string BuildFilepath(const std::string& folder, const std::string& fileName);
  static bool IsEndingWith(const std::string& text, const std::string& suffix);
};

}  // namespace Arq::DynamicParameters
