#pragma once

#include <json/value.h>

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

 private:
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
// time the file itself is closed after writing. There is no initial read.
class DynamicParametersWorker : public Worker::StoppableWorker {
 public:
  DynamicParametersWorker(std::shared_ptr<DynamicParameters> parameters, int inotifyFd, int watchFd,
                          std::string fileName);
  // Stops, removes the watch (which wakes the blocked read), closes, joins.
  ~DynamicParametersWorker() override;
  void Run() override;

 private:
  void Loop();

  std::shared_ptr<DynamicParameters> parameters_;
  int inotifyFd_;
  int watchFd_;
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
