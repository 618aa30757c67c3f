#include "Arq/OrvoViaSwitchMonitoring/Services.h"

#include "Arq/OrvoViaSwitchMonitoring/DynamicParametersUpdater.h"
#include "Arq/Snmp/SnmpSubAgent.h"

namespace Arq::OrvoViaSwitchMonitoring {

void RunServices(const std::shared_ptr<Monitoring::MonitoringProcessor>& processor,
                 const InputParameters::Parameters& parameters,
                 std::unique_ptr<Worker::IWorker>& optionsWorker) {
  auto updater = std::make_shared<DynamicParametersUpdater>(processor);
  optionsWorker = DynamicParameters::DynamicParametersWorkerFactory::CreateWorkerAndRun(
      updater, parameters.dataSetupFolder, parameters.optionsFilename);
  // When the output could not be redirected it stayed where it was, and the
  // SNMP library's log stays on standard error as without a redirection.
  const std::string& output = parameters.redirectOutput;
  auto agent = std::make_unique<Snmp::SnmpSubAgent>(
      Snmp::SnmpSubAgent::IsStandardOutputOn(output) ? output : "");
  agent->Run();
  agent.reset();
  // The collection thread is done before the end line, whatever the switch
  // does: a call in flight is cut short rather than waited for.
  processor->StopAndWait();
}

}  // namespace Arq::OrvoViaSwitchMonitoring
