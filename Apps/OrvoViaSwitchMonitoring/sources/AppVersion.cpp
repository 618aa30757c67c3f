#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"

#include <iostream>
#include <string>

#include "Arq/OrvoViaSwitchMonitoring/Constants.h"
#include "Arq/OrvoViaSwitchMonitoring/Defaults.h"

namespace Arq::OrvoViaSwitchMonitoring {

std::unique_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion> AppVersion::CreateAppVersion() {
  return std::make_unique<AppVersion>();
}

std::string AppVersion::Version() const {
  return "2.2.23";
}

std::string AppVersion::ProjectName() const {
  return "OrvoViaSwitchMonitoring";
}

std::string AppVersion::DateTime() const {
  return std::string(__DATE__) + " " + __TIME__;
}

void PrintVersion::Print(
    const std::shared_ptr<OrvoViaSwitch::Domain::Interfaces::IAppVersion>& version) {
  std::cout << "project name: " << version->ProjectName() << " version: " << version->Version()
            << " " << version->DateTime() << std::endl;
}

namespace {

using namespace Constants;

// Every description starts at this column after the two leading blanks.
constexpr std::size_t kDescriptionColumn = 93;

struct ParameterLine {
  const char* keyword;
  std::string example;
  const char* placeholder;
  std::string description;
  std::size_t column = kDescriptionColumn;
};

std::string Seconds(int seconds) {
  return "(express in seconds -> default = " + std::to_string(seconds) + " seconds)";
}

const ParameterLine kParameters[] = {
    {LOGGER_CONFIGURATIONS_PATH_ARG, "./LoggerConfigurationsForMonitoring.cfg", "<filepath>",
     "full logger configurations path (multiple loggers are supported)"},
    {REDIRECT_OUTPUT_ARG, "/mnt/APPS/data/log/orvoviaswitchWarden.log", "<filepath>",
     "full file name to which the standard output will be redirected"},
    {REDIRECT_OUTPUT_SPLIT_PERIOD_ARG, std::to_string(Defaults::kRedirectOutputSplitPeriod),
     "<period>",
     "wait period before to check the redirect output file size before to split " +
         Seconds(Defaults::kRedirectOutputSplitPeriod)},
    {REDIRECT_OUTPUT_FILE_SIZE_ARG, std::to_string(Defaults::kRedirectOutputFileSize), "<size>",
     "maximum size of the redirect output file before a split (express in bytes)"},
    // The one description that has always started a column to the left.
    {REMOTE_IP_ADDRESS_ARG, "127.0.0.1", "<ip address>",
     "remote ip address used by the client thrift", kDescriptionColumn - 1},
    {REMOTE_PORT_NUMBER_ARG, std::to_string(Defaults::kRemotePortNumber), "<port>",
     "remote port number used by the client thrift"},
    {REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG,
     std::to_string(Defaults::kRemoteConnectionTimeout), "<Connection Timeout>",
     "remote thrift connection timeout expressed in milli-seconds"},
    {REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG, std::to_string(Defaults::kRemoteReceiveTimeout),
     "<Receive Timeout>", "remote thrift receive timeout expressed in milli-seconds"},
    {LOG_LEVEL_ARG, Defaults::kLogLevel, "<Log Level>", "log level"},
    {MONITORING_PROCESSOR_MODE_ARG, Defaults::kMonitoringProcessorMode,
     "<monitoring processor mode type>",
     std::string("monitoring processor mode type (") + Defaults::kMonitoringProcessorMode +
         " = default / Fake)"},
    {COLLECT_METRICS_PERIOD_ARG, std::to_string(Defaults::kCollectMetricsPeriod), "<period>",
     "wait period before to collect another sample of metrics " +
         Seconds(Defaults::kCollectMetricsPeriod)},
    {DATA_SETUP_FOLDER_ARG, Defaults::kDataSetupFolder, "<filepath>",
     "watch folder for dynamic parameters"},
    {OPTIONS_FILENAME_ARG, Defaults::kOptionsFilename, "<filename>", "dynamic parameters filename"},
};

// Two blanks, the words, blanks up to the description's column, the description.
std::string UsageLine(const std::string& words, const std::string& description,
                      std::size_t column = kDescriptionColumn) {
  return "  " + words + std::string(column - words.size(), ' ') + description + "\n";
}

}  // namespace

void PrintUsage::Print() {
  std::string text = "Usage:\n";
  text += " OrvoViaSwitchMonitoring [OPTION] FILEPATH... [STDOUT REDIRECTION]\n";
  text += "FILEPATH is a full filepath\n";
  text += "Example: OrvoViaSwitchMonitoring";
  for (const auto& line : kParameters) text += std::string(" ") + line.keyword + line.example;
  text += " \n";
  text += "\n";
  text += "Miscellaneous:\n";
  text += UsageLine("-v, --version", "display version information and exit");
  text += UsageLine("-h, --help", "display this help text and exit");
  text += "\n";
  text += "Parameters:\n";
  for (const auto& line : kParameters) {
    text += UsageLine(std::string(line.keyword) + line.placeholder, line.description, line.column);
  }
  std::cout << text;
  std::cout.flush();
}

}  // namespace Arq::OrvoViaSwitchMonitoring
