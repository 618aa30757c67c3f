#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"

#include <iostream>
#include <string>

#include "Arq/OrvoViaSwitchMonitoring/Constants.h"

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

struct ParameterLine {
  const char* keyword;
  const char* example;
  const char* placeholder;
  int blanks;
  const char* description;
};

using namespace Constants;

const ParameterLine kParameters[] = {
    {LOGGER_CONFIGURATIONS_PATH_ARG, "./LoggerConfigurationsForMonitoring.cfg", "<filepath>", 56,
     "full logger configurations path (multiple loggers are supported)"},
    {REDIRECT_OUTPUT_ARG, "/mnt/APPS/data/log/orvoviaswitchWarden.log", "<filepath>", 67,
     "full file name to which the standard output will be redirected"},
    {REDIRECT_OUTPUT_SPLIT_PERIOD_ARG, "300", "<period>", 56,
     "wait period before to check the redirect output file size before to split (express in "
     "seconds -> default = 300 seconds)"},
    {REDIRECT_OUTPUT_FILE_SIZE_ARG, "26214400", "<size>", 61,
     "maximum size of the redirect output file before a split (express in bytes)"},
    {REMOTE_IP_ADDRESS_ARG, "127.0.0.1", "<ip address>", 62,
     "remote ip address used by the client thrift"},
    {REMOTE_PORT_NUMBER_ARG, "9092", "<port>", 68, "remote port number used by the client thrift"},
    {REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG, "10000", "<Connection Timeout>", 44,
     "remote thrift connection timeout expressed in milli-seconds"},
    {REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG, "60000", "<Receive Timeout>", 50,
     "remote thrift receive timeout expressed in milli-seconds"},
    {LOG_LEVEL_ARG, "Warning", "<Log Level>", 72, "log level"},
    {MONITORING_PROCESSOR_MODE_ARG, "Thrift", "<monitoring processor mode type>", 35,
     "monitoring processor mode type (Thrift = default / Fake)"},
    {COLLECT_METRICS_PERIOD_ARG, "5", "<period>", 62,
     "wait period before to collect another sample of metrics (express in seconds -> default = "
     "5 seconds)"},
    {DATA_SETUP_FOLDER_ARG, "/data", "<filepath>", 65, "watch folder for dynamic parameters"},
    {OPTIONS_FILENAME_ARG, "SwitchMonitoringOptions.json", "<filename>", 66,
     "dynamic parameters filename"},
};

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
  text += std::string("  -v, --version") + std::string(80, ' ') +
          "display version information and exit\n";
  text += std::string("  -h, --help") + std::string(83, ' ') + "display this help text and exit\n";
  text += "\n";
  text += "Parameters:\n";
  for (const auto& line : kParameters) {
    text += std::string("  ") + line.keyword + line.placeholder +
            std::string(static_cast<std::size_t>(line.blanks), ' ') + line.description + "\n";
  }
  std::cout << text;
  std::cout.flush();
}

}  // namespace Arq::OrvoViaSwitchMonitoring
