#include "Arq/OrvoViaSwitchMonitoring/InputParameters.h"

#include <stdexcept>

#include "Arq/OrvoViaSwitchMonitoring/Constants.h"
#include "Arq/OrvoViaSwitchMonitoring/Defaults.h"
#include "Arq/OrvoViaSwitchMonitoring/Exceptions.h"

namespace Arq::OrvoViaSwitchMonitoring {

using namespace Constants;
using namespace Defaults;

InputParameters::InputParameters(int redirectOutputSplitPeriod, long redirectOutputFileSize,
                                 std::uint16_t remotePortNumber, int remoteConnectionTimeout,
                                 int remoteReceiveTimeout, std::string logLevel,
                                 MonitoringProcessorMode::Type monitoringProcessorMode,
                                 int collectMetricsPeriod, std::string dataSetupFolder,
                                 std::string optionsFilename)
    : redirectOutputSplitPeriod_(redirectOutputSplitPeriod),
      redirectOutputFileSize_(redirectOutputFileSize),
      remotePortNumber_(remotePortNumber),
      remoteConnectionTimeout_(remoteConnectionTimeout),
      remoteReceiveTimeout_(remoteReceiveTimeout),
      logLevel_(std::move(logLevel)),
      monitoringProcessorMode_(monitoringProcessorMode),
      collectMetricsPeriod_(collectMetricsPeriod),
      dataSetupFolder_(std::move(dataSetupFolder)),
      optionsFilename_(std::move(optionsFilename)) {}

InputParameters::Parameters InputParameters::Parse(int argc, const char** argv) const {
  Parameters p;
  p.redirectOutputSplitPeriod = redirectOutputSplitPeriod_;
  p.redirectOutputFileSize = redirectOutputFileSize_;
  p.remotePortNumber = remotePortNumber_;
  p.remoteConnectionTimeout = remoteConnectionTimeout_;
  p.remoteReceiveTimeout = remoteReceiveTimeout_;
  p.logLevel = arq::logging::ILogger::FromString(logLevel_);
  p.monitoringProcessorMode = monitoringProcessorMode_;
  p.collectMetricsPeriod = collectMetricsPeriod_;
  p.dataSetupFolder = dataSetupFolder_;
  p.optionsFilename = optionsFilename_;
  if (argc < 2) {
    p.help = true;
    return p;
  }
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    // Prefix matching, in this order: "-verbose" counts as the version flag.
    // A malformed number gives the fixed default, not the holder's.
    const auto value = [&](const char* keyword) {
      return argument.substr(std::char_traits<char>::length(keyword));
    };
    const auto number = [&](const char* keyword, auto fallback) {
      return StringToInt(value(keyword), fallback);
    };
    if (StartsWith(argument, LONG_VERSION_ARG) || StartsWith(argument, SHORT_VERSION_ARG)) {
      p.version = true;
    } else if (StartsWith(argument, LONG_HELP_ARG) || StartsWith(argument, SHORT_HELP_ARG)) {
      p.help = true;
    } else if (StartsWith(argument, LOGGER_CONFIGURATIONS_PATH_ARG)) {
      p.loggerConfigurationsPath = value(LOGGER_CONFIGURATIONS_PATH_ARG);
    } else if (StartsWith(argument, REDIRECT_OUTPUT_ARG)) {
      p.redirectOutput = value(REDIRECT_OUTPUT_ARG);
    } else if (StartsWith(argument, REDIRECT_OUTPUT_SPLIT_PERIOD_ARG)) {
      p.redirectOutputSplitPeriod =
          number(REDIRECT_OUTPUT_SPLIT_PERIOD_ARG, kRedirectOutputSplitPeriod);
    } else if (StartsWith(argument, REDIRECT_OUTPUT_FILE_SIZE_ARG)) {
      p.redirectOutputFileSize = number(REDIRECT_OUTPUT_FILE_SIZE_ARG, kRedirectOutputFileSize);
    } else if (StartsWith(argument, REMOTE_IP_ADDRESS_ARG)) {
      p.remoteIpAddress = value(REMOTE_IP_ADDRESS_ARG);
    } else if (StartsWith(argument, REMOTE_PORT_NUMBER_ARG)) {
      p.remotePortNumber =
          static_cast<std::uint16_t>(number(REMOTE_PORT_NUMBER_ARG, kRemotePortNumber));
    } else if (StartsWith(argument, REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG)) {
      p.remoteConnectionTimeout =
          number(REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG, kRemoteConnectionTimeout);
    } else if (StartsWith(argument, REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG)) {
      p.remoteReceiveTimeout =
          number(REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG, kRemoteReceiveTimeout);
    } else if (StartsWith(argument, LOG_LEVEL_ARG)) {
      p.logLevel = arq::logging::ILogger::FromString(value(LOG_LEVEL_ARG));
    } else if (StartsWith(argument, MONITORING_PROCESSOR_MODE_ARG)) {
      p.monitoringProcessorMode =
          MonitoringProcessorMode::IsFakeMode(value(MONITORING_PROCESSOR_MODE_ARG))
              ? MonitoringProcessorMode::Fake
              : MonitoringProcessorMode::Thrift;
    } else if (StartsWith(argument, COLLECT_METRICS_PERIOD_ARG)) {
      p.collectMetricsPeriod = number(COLLECT_METRICS_PERIOD_ARG, kCollectMetricsPeriod);
    } else if (StartsWith(argument, DATA_SETUP_FOLDER_ARG)) {
      p.dataSetupFolder = value(DATA_SETUP_FOLDER_ARG);
    } else if (StartsWith(argument, OPTIONS_FILENAME_ARG)) {
      p.optionsFilename = value(OPTIONS_FILENAME_ARG);
    } else {
      throw InvalidInputParameterException("InputParameters:Parse Invalid Input Parameter " +
                                           argument);
    }
  }
  return p;
}

bool InputParameters::StartsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

int InputParameters::StringToInt(const std::string& text, int fallback) {
  try {
    return std::stoi(text);
  } catch (const std::logic_error&) {
    return fallback;
  }
}

long InputParameters::StringToInt(const std::string& text, long fallback) {
  try {
    return std::stol(text);
  } catch (const std::logic_error&) {
    return fallback;
  }
}

short InputParameters::StringToInt(const std::string& text, short fallback) {
  try {
    return static_cast<short>(std::stoi(text));
  } catch (const std::logic_error&) {
    return fallback;
  }
}

}  // namespace Arq::OrvoViaSwitchMonitoring
