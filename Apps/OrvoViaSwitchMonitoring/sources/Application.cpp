#include "Arq/OrvoViaSwitchMonitoring/Application.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include "Arq/AppVersionBannerProvider/AppVersionBannerProvider.h"
#include "Arq/LogBanner/LogBanner.h"
#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"
#include "Arq/OrvoViaSwitchMonitoring/Defaults.h"
#include "Arq/OrvoViaSwitchMonitoring/InputParameters.h"
#include "Arq/OrvoViaSwitchMonitoring/MonitoringProcessorFactory.h"
#include "Arq/OrvoViaSwitchMonitoring/Services.h"
#include "Arq/RedirectOutput/RedirectOutput.h"

namespace Arq::OrvoViaSwitchMonitoring {
namespace {

using arq::logging::ILogger;
using OrvoViaSwitch::Domain::Interfaces::IAppVersion;

constexpr const char* kMainLoggerName = "OrvoViaSwitchMonitoring";

std::string EndLine(int code) {
  return "--- The End With Exit Code: (" + std::to_string(code) + ") ---";
}

void LogAtInfo(const std::shared_ptr<ILogger>& logger, const std::string& text, int line) {
  logger->Log(ILogger::Info, text, __FILE__, static_cast<unsigned long>(line));
}

// The daemon's version, start time and log level, for the MIB.
void PublishDaemon(const IAppVersion& appVersion, int logLevel) {
  OrvoViaSwitch::Domain::Dto::Metrics::DaemonMetric daemon;
  daemon.version = appVersion.Version();
  daemon.startTime = std::chrono::duration_cast<std::chrono::seconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
  daemon.logLevel = logLevel;
  Monitoring::MonitoringProcessor::monitoringValues.daemon.Value(daemon);
}

}  // namespace

void LogInputParameters(const std::shared_ptr<ILogger>& logger,
                        const std::shared_ptr<IAppVersion>& version, int argc, const char** argv) {
  if (!logger) return;
  LogBanner::LogLevelBannerWriter(
      logger, {std::make_shared<AppVersionBannerProvider::AppVersionBannerProvider>(version),
               std::make_shared<LogBanner::LogBannerProvider>(logger)})
      .Write();
  const auto level = logger->GetLevel();
  logger->SetLevel(ILogger::Info);
  LogAtInfo(logger, "*", __LINE__);
  LogAtInfo(logger,
            "* OrvoViaSwitchMonitoring started, argc: " + std::to_string(argc) + " **********",
            __LINE__);
  LogAtInfo(logger, "*", __LINE__);
  for (int i = 0; i < argc; ++i) {
    LogAtInfo(logger, "argv[" + std::to_string(i) + "]: " + argv[i], __LINE__);
  }
  logger->SetLevel(level);
}

int RunDaemon(int argc, const char** argv) {
  int exitCode = 0;
  auto defaults = std::make_unique<InputParameters>(
      Defaults::kRedirectOutputSplitPeriod, Defaults::kRedirectOutputFileSize,
      Defaults::kRemotePortNumber, Defaults::kRemoteConnectionTimeout,
      Defaults::kRemoteReceiveTimeout, Defaults::kLogLevel,
      MonitoringProcessorMode::IsFakeMode(Defaults::kMonitoringProcessorMode)
          ? MonitoringProcessorMode::Fake
          : MonitoringProcessorMode::Thrift,
      Defaults::kCollectMetricsPeriod, Defaults::kDataSetupFolder, Defaults::kOptionsFilename);
  std::unique_ptr<InputParameters::Parameters> parameters;
  std::unique_ptr<Worker::IWorker> redirectOutputWorker;
  std::shared_ptr<ILogger> logger;
  std::unique_ptr<Worker::IWorker> optionsWorker;
  try {
    parameters = std::make_unique<InputParameters::Parameters>(defaults->Parse(argc, argv));
    std::shared_ptr<IAppVersion> appVersion = AppVersion::CreateAppVersion();
    {
      RedirectOutput::Providers providers{
          std::make_shared<LogBanner::LogBannerProvider>(
              Logging::Loader::Loggers::GetInstance().GetLogger(kMainLoggerName)),
          std::make_shared<AppVersionBannerProvider::AppVersionBannerProvider>(appVersion)};
      redirectOutputWorker = RedirectOutput::RedirectOutputWorkerFactory::CreateAndRun(
          parameters->redirectOutput, parameters->redirectOutputSplitPeriod,
          parameters->redirectOutputFileSize, std::move(providers));
    }
    Logging::Loader::Loggers::GetInstance().SetLoggingLevel(parameters->logLevel);
    logger = Logging::Loader::Loggers::GetInstance().GetLogger(kMainLoggerName);
    LogInputParameters(logger, appVersion, argc, argv);
    PublishDaemon(*appVersion, static_cast<int>(parameters->logLevel));

    if (parameters->version) {
      PrintVersion::Print(appVersion);
    } else if (parameters->help) {
      PrintUsage::Print();
    } else {
      PrintVersion::Print(appVersion);
      std::shared_ptr<Monitoring::MonitoringProcessor> processor =
          parameters->monitoringProcessorMode == MonitoringProcessorMode::Fake
              ? MonitoringProcessorFactory::CreateFakeMonitoringProcessor(
                    parameters->collectMetricsPeriod)
              : MonitoringProcessorFactory::CreateThriftMonitoringProcessor(
                    parameters->collectMetricsPeriod, parameters->remoteIpAddress,
                    parameters->remotePortNumber, parameters->remoteConnectionTimeout,
                    parameters->remoteReceiveTimeout);
      RunServices(processor, *parameters, optionsWorker);
      processor.reset();
    }
    appVersion.reset();
  } catch (const std::exception& error) {
    if (logger && logger->GetLevel() <= ILogger::Fatal) {
      logger->Log(ILogger::Fatal, error.what(), __FILE__, __LINE__);
    }
    std::cout << error.what() << std::endl;
    exitCode = -1;
  } catch (...) {
    if (logger && logger->GetLevel() <= ILogger::Fatal) {
      logger->Log(ILogger::Fatal, "Something caught !", __FILE__, __LINE__);
    }
    std::cout << "Something caught !" << std::endl;
    exitCode = -1;
  }

  parameters.reset();
  if (logger && logger->GetLevel() <= ILogger::Info) {
    logger->Log(ILogger::Info, EndLine(exitCode), __FILE__, __LINE__);
  }
  std::cout << EndLine(exitCode) << std::endl;
  optionsWorker.reset();
  logger.reset();
  redirectOutputWorker.reset();
  defaults.reset();
  return exitCode;
}

}  // namespace Arq::OrvoViaSwitchMonitoring
