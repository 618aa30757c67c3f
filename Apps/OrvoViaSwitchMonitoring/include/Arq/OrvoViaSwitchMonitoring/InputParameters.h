#pragma once

#include <cstdint>
#include <string>

#include "Arq/OrvoViaSwitchMonitoring/MonitoringProcessorMode.h"
#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchMonitoring {

// The daemon's start-up settings: the defaults it holds and the keyword:value
// words of the command line applied over them.
class InputParameters {
 public:
  struct Parameters {
    std::string loggerConfigurationsPath;
    std::string redirectOutput;
    std::int32_t redirectOutputSplitPeriod;
    std::int64_t redirectOutputFileSize;
    std::string remoteIpAddress;
    // 1 to 65535: the 16 bits of the command line's number, read unsigned.
    std::uint16_t remotePortNumber;
    std::int32_t remoteConnectionTimeout;
    std::int32_t remoteReceiveTimeout;
    arq::logging::ILogger::Level logLevel;
    bool help = false;
    bool version = false;
    MonitoringProcessorMode::Type monitoringProcessorMode;
    std::int32_t collectMetricsPeriod;
    std::string dataSetupFolder;
    std::string optionsFilename;
  };

  InputParameters(int redirectOutputSplitPeriod, long redirectOutputFileSize,
                  std::uint16_t remotePortNumber, int remoteConnectionTimeout,
                  int remoteReceiveTimeout, std::string logLevel,
                  MonitoringProcessorMode::Type monitoringProcessorMode, int collectMetricsPeriod,
                  std::string dataSetupFolder, std::string optionsFilename);

  // Throws InvalidInputParameterException on an unknown argument.
  Parameters Parse(int argc, const char** argv) const;

  static bool StartsWith(const std::string& text, const std::string& prefix);
  // Decimal conversion; the fallback when there are no digits or the number
  // is out of range. The short form truncates the int to 16 bits.
  static int StringToInt(const std::string& text, int fallback);
  static long StringToInt(const std::string& text, long fallback);
  static short StringToInt(const std::string& text, short fallback);

 private:
  int redirectOutputSplitPeriod_;
  long redirectOutputFileSize_;
  std::uint16_t remotePortNumber_;
  int remoteConnectionTimeout_;
  int remoteReceiveTimeout_;
  std::string logLevel_;
  MonitoringProcessorMode::Type monitoringProcessorMode_;
  int collectMetricsPeriod_;
  std::string dataSetupFolder_;
  std::string optionsFilename_;
};

}  // namespace Arq::OrvoViaSwitchMonitoring
