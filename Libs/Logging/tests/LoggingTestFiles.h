#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "Arq/TestSupport/TempDir.h"

namespace Arq::Logging::Testing {

// A logger configurations file in a private folder, removed with it.
class ConfigurationFile {
 public:
  explicit ConfigurationFile(const std::string& content) : path_(dir_.File("loggers.cfg")) {
    TestSupport::WriteFile(path_, content);
  }
  const std::string& Path() const { return path_; }
  std::string Sibling(const std::string& name) const { return dir_.File(name); }

 private:
  TestSupport::TempDir dir_{"arq-logging"};
  std::string path_;
};

// One "loggers" entry for `library` (the project's stream logger by default);
// `extra` is appended to the members, starting with a comma.
inline std::string PluginEntry(const std::string& name, const std::string& extra = "",
                               const std::string& library = ARQ_STREAM_LOGGER_PATH) {
  return R"({"name":")" + name + R"(","libraryPath":")" + library + "\"" + extra + "}";
}

inline std::string Configuration(const std::vector<std::string>& entries) {
  std::string text = R"({"version":"1.0.0", /* comments are allowed */ "loggers":[)";
  for (size_t i = 0; i < entries.size(); ++i) text += (i ? "," : "") + entries[i];
  return text + "]}";
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

// <UTC time with milliseconds> <level> <logger>: <message> (<file:line>)
inline const char* const kStreamLinePattern =
    R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z (\w+) (\w+): (.*) \(([^()]*)\)$)";

}  // namespace Arq::Logging::Testing
