#pragma once

// The daemon's start-up defaults, declared once: the holder built at start-up,
// the parser's fallbacks for malformed numbers (fixed values, whatever the
// holder holds), the usage text's example line and its "default =" texts all
// take them from here; a test checks the README, the man page and the
// environment file against them.
namespace Arq::OrvoViaSwitchMonitoring::Defaults {

inline constexpr int kRedirectOutputSplitPeriod = 300;      // seconds
inline constexpr long kRedirectOutputFileSize = 26214400L;  // bytes
inline constexpr short kRemotePortNumber = 9092;
inline constexpr int kRemoteConnectionTimeout = 10000;  // milliseconds
inline constexpr int kRemoteReceiveTimeout = 60000;     // milliseconds
inline constexpr const char* kLogLevel = "Warning";
inline constexpr const char* kMonitoringProcessorMode = "Thrift";
inline constexpr int kCollectMetricsPeriod = 5;  // seconds
inline constexpr const char* kDataSetupFolder = "/data";
inline constexpr const char* kOptionsFilename = "SwitchMonitoringOptions.json";

}  // namespace Arq::OrvoViaSwitchMonitoring::Defaults
