#pragma once

#include <cstdint>
#include <string>

namespace arq::logging {

// A named logger. Part of the plug-in binary interface: the virtual slot
// order (destructor, Log, SetLevel, GetLevel) and the level values are shared
// with every logger plug-in and must not change.
class ILogger {
 public:
  enum Level : std::int32_t {
    Trace = 10,
    Debug = 20,
    Info = 30,
    Warning = 40,
    Error = 50,
    Fatal = 60,
    NoLog = 100,
  };

  virtual ~ILogger() = default;

  // Emits one message when `level` is at or above the threshold. `file` is the
  // call site's source path, `line` its line number.
  virtual void Log(Level level, const std::string& message, const char* file,
                   unsigned long line) = 0;
  virtual void SetLevel(Level level) = 0;
  virtual Level GetLevel() const = 0;

  // The level's name; "Unknown" for a value that is not a level.
  static const char* ToString(Level level) {
    switch (level) {
      case Trace:
        return "Trace";
      case Debug:
        return "Debug";
      case Info:
        return "Info";
      case Warning:
        return "Warning";
      case Error:
        return "Error";
      case Fatal:
        return "Fatal";
      case NoLog:
        return "NoLog";
    }
    return "Unknown";
  }

  // Exact, case-sensitive: every other text, "NoLog" included, is NoLog.
  static Level FromString(const std::string& text) {
    if (text == "Trace") return Trace;
    if (text == "Debug") return Debug;
    if (text == "Info") return Info;
    if (text == "Warning") return Warning;
    if (text == "Error") return Error;
    if (text == "Fatal") return Fatal;
    return NoLog;
  }
};

}  // namespace arq::logging
