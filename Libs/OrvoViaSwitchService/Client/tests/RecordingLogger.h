#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

// Keeps every message it is given, at every level.
class RecordingLogger : public arq::logging::ILogger {
 public:
  struct Entry {
    Level level;
    std::string message;
    std::string file;
  };

  void Log(Level level, const std::string& message, const char* file,
           unsigned long /*line*/) override {
    std::lock_guard<std::mutex> lock(mutex);
    entries.push_back({level, message, file == nullptr ? "" : file});
  }
  void SetLevel(Level) override {}
  Level GetLevel() const override { return Trace; }

  std::vector<Entry> Entries() const {
    std::lock_guard<std::mutex> lock(mutex);
    return entries;
  }

 private:
  mutable std::mutex mutex;
  std::vector<Entry> entries;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing
