#pragma once

#include <json/value.h>

#include <memory>
#include <string>

#include "Arq/DynamicParameters/DynamicParameters.h"
#include "Arq/Monitoring/IMonitoringProcessorConfigurator.h"
#include "arq/logging/ILogger.h"

namespace Arq::OrvoViaSwitchMonitoring {

// Applies the options file: the logging threshold to the logger registry,
// collection on/off and its period to the monitoring processor. Every change
// is logged as one transition line at Warning; a repeated value changes nothing.
class DynamicParametersUpdater : public DynamicParameters::IDynamicParametersUpdater {
 public:
  explicit DynamicParametersUpdater(
      std::shared_ptr<Monitoring::IMonitoringProcessorConfigurator> configurator);

  void Update(const Json::Value& options) override;

  static arq::logging::ILogger::Level RetrieveLoggerLevel(const Json::Value& options,
                                                          arq::logging::ILogger::Level current);
  static bool RetrieveCollectMetrics(const Json::Value& options, bool current);
  static int RetrieveCollectMetricsPeriod(const Json::Value& options, int current);
  static std::string ToString(arq::logging::ILogger::Level level);

 private:
  void UpdateLoggerLevel(const Json::Value& options);
  void UpdateCollectMetrics(const Json::Value& options);
  void UpdateCollectMetricsPeriod(const Json::Value& options);
  void LogTransition(const std::string& text, int line);

  std::shared_ptr<Monitoring::IMonitoringProcessorConfigurator> configurator_;
  std::shared_ptr<arq::logging::ILogger> logger_;
};

}  // namespace Arq::OrvoViaSwitchMonitoring
