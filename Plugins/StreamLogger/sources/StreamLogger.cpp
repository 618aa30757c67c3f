// A logger plug-in writing one line per message:
//   2026-11-23T04:30:12.345Z Warning OrvoViaSwitchMonitoring: text (Apps/x.cpp:42)
// Entry settings (all optional) in the logger configurations file:
//   "output": "stdout" (default, so the daemon's output redirection bounds it),
//             "stderr" or "syslog";
//   "level":  a minimum level of this plug-in's own ("Trace" .. "Fatal", "NoLog"),
//             applied on top of the daemon's threshold;
//   "ident":  the syslog identity (default "OrvoViaSwitchMonitoring").
#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

#include "Arq/Logging/Loader/DummyNestedDiagnosticContext.h"
#include "Arq/Logging/Loader/ILoggingEventHandlerSetter.h"
#include "Arq/Logging/Loader/ILoggingLoaderFactory.h"
#include "arq/logging/ILogger.h"
#include "arq/logging/ILoggerFactory.h"

namespace {

using arq::logging::ILogger;

enum class Output { Stdout, Stderr, Syslog };

int SyslogPriority(ILogger::Level level) {
  if (level >= ILogger::Fatal) return LOG_CRIT;
  if (level >= ILogger::Error) return LOG_ERR;
  if (level >= ILogger::Warning) return LOG_WARNING;
  if (level >= ILogger::Info) return LOG_INFO;
  return LOG_DEBUG;
}

std::string UtcTimestamp() {
  const auto now = std::chrono::system_clock::now();
  const auto millis =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
  const auto seconds = static_cast<std::time_t>(millis / 1000);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[32];
  const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  (void)std::snprintf(text + length, sizeof text - length, ".%03dZ",
                      static_cast<int>(millis % 1000));
  return text;
}

// Writes the whole buffer; one write(2) in the usual case, so lines from
// several threads never interleave (a pipe or file keeps writes up to PIPE_BUF
// or whole regular-file writes together).
void WriteAll(int fd, const std::string& line) {
  const char* data = line.data();
  size_t left = line.size();
  while (left > 0) {
    const ssize_t written = ::write(fd, data, left);
    if (written < 0) {
      if (errno == EINTR) continue;
      return;
    }
    data += written;
    left -= static_cast<size_t>(written);
  }
}

class StreamLogger : public ILogger {
 public:
  StreamLogger(std::string name, Output output, Level minimum)
      : name_(std::move(name)), output_(output), minimum_(minimum) {}

  void Log(Level level, const std::string& message, const char* file, unsigned long line) override {
    if (level < level_.load() || level < minimum_) return;
    std::string location = std::string(file != nullptr ? file : "?") + ":" + std::to_string(line);
    if (output_ == Output::Syslog) {
      syslog(SyslogPriority(level), "%s %s: %s (%s)", ILogger::ToString(level), name_.c_str(),
             message.c_str(), location.c_str());
      return;
    }
    std::string text = UtcTimestamp();
    text.append(" ").append(ILogger::ToString(level)).append(" ").append(name_).append(": ");
    text.append(message).append(" (").append(location).append(")\n");
    WriteAll(output_ == Output::Stderr ? STDERR_FILENO : STDOUT_FILENO, text);
  }
  void SetLevel(Level level) override { level_ = level; }
  Level GetLevel() const override {
    const Level threshold = level_.load();
    return threshold > minimum_ ? threshold : minimum_;
  }

 private:
  const std::string name_;
  const Output output_;
  const Level minimum_;
  std::atomic<Level> level_{Warning};
};

class StreamLoggerFactory : public arq::logging::ILoggerFactory {
 public:
  StreamLoggerFactory(Output output, ILogger::Level minimum, std::string ident)
      : output_(output), minimum_(minimum), ident_(std::move(ident)) {
    if (output_ == Output::Syslog) openlog(ident_.c_str(), LOG_PID | LOG_NDELAY, LOG_DAEMON);
  }
  ~StreamLoggerFactory() override {
    if (output_ == Output::Syslog) closelog();
  }
  std::shared_ptr<ILogger> Create(const std::string& name) override {
    return std::make_shared<StreamLogger>(name, output_, minimum_);
  }
  arq::logging::INestedDiagnosticContext& CreateNDC() override { return context_; }

 private:
  const Output output_;
  const ILogger::Level minimum_;
  const std::string ident_;  // openlog keeps the pointer
  Arq::Logging::Loader::DummyNestedDiagnosticContext context_;
};

std::string Member(const Json::Value& entry, const char* key, const char* fallback) {
  if (!entry.isObject()) return fallback;
  const Json::Value& value = entry[key];
  return value.isString() ? value.asString() : fallback;
}

class StreamLoggingLoaderFactory : public Arq::Logging::Loader::ILoggingLoaderFactory {
 public:
  const char* GetPluginName() const override { return "StreamLogger"; }
  arq::logging::ILoggerFactory* CreateLoggerFactory(const Json::Value& entry) override {
    const std::string output = Member(entry, "output", "stdout");
    const Output chosen = output == "stderr"   ? Output::Stderr
                          : output == "syslog" ? Output::Syslog
                                               : Output::Stdout;
    const std::string level = Member(entry, "level", "Trace");
    return new StreamLoggerFactory(chosen, ILogger::FromString(level),
                                   Member(entry, "ident", "OrvoViaSwitchMonitoring"));
  }
};

// The plug-in has nothing to do with the application's event handler.
class StreamEventHandlerSetter : public Arq::Logging::Loader::ILoggingEventHandlerSetter {
 public:
  void SetEventHandler(std::shared_ptr<Arq::Logging::Loader::ILoggingEventHandler>) override {}
};

}  // namespace

extern "C" __attribute__((visibility("default"))) Arq::Logging::Loader::ILoggingLoaderFactory*
ILoggingLoaderFactoryMaker() {
  static StreamLoggingLoaderFactory factory;
  return &factory;
}

extern "C" __attribute__((visibility("default"))) Arq::Logging::Loader::ILoggingEventHandlerSetter*
ILoggingEventHandlerSetterMaker() {
  static StreamEventHandlerSetter setter;
  return &setter;
}
