#include "Arq/OrvoViaSwitchMonitoring/DynamicParametersUpdater.h"

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/Monitoring/MonitoringProcessor.h"

namespace Arq::OrvoViaSwitchMonitoring {
namespace {

using arq::logging::ILogger;
using Logging::Loader::Loggers;

constexpr const char* kGroup = "SwitchMonitoringControl";

// The option's member when the document and its group are objects; null otherwise.
const Json::Value* Option(const Json::Value& options, const char* key) {
  if (!options.isObject()) return nullptr;
  const Json::Value* group = options.find(kGroup, kGroup + std::char_traits<char>::length(kGroup));
  if (group == nullptr || !group->isObject()) return nullptr;
  return group->find(key, key + std::char_traits<char>::length(key));
}

const char* BoolText(bool value) {
  return value ? "True" : "False";
}

}  // namespace

DynamicParametersUpdater::DynamicParametersUpdater(
    std::shared_ptr<Monitoring::IMonitoringProcessorConfigurator> configurator)
    : configurator_(std::move(configurator)),
      logger_(Loggers::GetInstance().GetLogger("DynamicParametersUpdater")) {}

void DynamicParametersUpdater::Update(const Json::Value& options) {
  UpdateLoggerLevel(options);
  UpdateCollectMetrics(options);
  UpdateCollectMetricsPeriod(options);
}

ILogger::Level DynamicParametersUpdater::RetrieveLoggerLevel(const Json::Value& options,
                                                             ILogger::Level current) {
  const auto* value = Option(options, "DebugLevel");
  return value != nullptr && value->isString() ? ILogger::FromString(value->asString()) : current;
}

bool DynamicParametersUpdater::RetrieveCollectMetrics(const Json::Value& options, bool current) {
  const auto* value = Option(options, "CollectMetrics");
  return value != nullptr && value->isBool() ? value->asBool() : current;
}

int DynamicParametersUpdater::RetrieveCollectMetricsPeriod(const Json::Value& options,
                                                           int current) {
  const auto* value = Option(options, "CollectMetricsPeriod");
  return value != nullptr && value->isInt() ? value->asInt() : current;
}

std::string DynamicParametersUpdater::ToString(ILogger::Level level) {
  return ILogger::ToString(level);
}

void DynamicParametersUpdater::LogTransition(const std::string& text, int line) {
  if (logger_ && logger_->GetLevel() <= ILogger::Warning) {
    logger_->Log(ILogger::Warning, text, __FILE__, static_cast<unsigned long>(line));
  }
}

void DynamicParametersUpdater::UpdateLoggerLevel(const Json::Value& options) {
  const auto current = Loggers::GetInstance().GetLoggingLevel();
  const auto wanted = RetrieveLoggerLevel(options, current);
  if (wanted == current) return;
  // Let the transition line through whatever the old and new thresholds.
  Loggers::GetInstance().SetLoggingLevel(ILogger::Info);
  LogTransition("Logging Level Transition from " + ToString(current) + " to " + ToString(wanted),
                __LINE__);
  Loggers::GetInstance().SetLoggingLevel(wanted);
  auto& holder = Monitoring::MonitoringProcessor::monitoringValues.daemon;
  auto daemon = holder.Value();
  daemon.logLevel = static_cast<int>(wanted);
  holder.Value(daemon);
}

void DynamicParametersUpdater::UpdateCollectMetrics(const Json::Value& options) {
  const bool current = configurator_->IsCollectMetrics();
  const bool wanted = RetrieveCollectMetrics(options, current);
  if (wanted == current) return;
  LogTransition(std::string("Collect Metrics Transition from ") + BoolText(current) + " to " +
                    BoolText(wanted),
                __LINE__);
  configurator_->SetCollectMetrics(wanted);
}

void DynamicParametersUpdater::UpdateCollectMetricsPeriod(const Json::Value& options) {
  const int current = configurator_->GetCollectMetricsPeriod();
  const int wanted = RetrieveCollectMetricsPeriod(options, current);
  if (wanted == current) return;
  LogTransition("Collect Metrics Period Transition from " + std::to_string(current) + " to " +
                    std::to_string(wanted),
                __LINE__);
  configurator_->SetCollectMetricsPeriod(wanted);
}

}  // namespace Arq::OrvoViaSwitchMonitoring
