#include "Arq/Snmp/SnmpSubAgent.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "Arq/Snmp/LogFilter.h"
#include "MasterSocket.h"
#include "Mechanism.h"
#include "Modules.h"
#include "Standard/StandardViews.h"

namespace {

// Written by the signal handler, read by the run loop.
volatile std::sig_atomic_t keep_running = 0;

constexpr const char* kApplicationName = "orvovia-snmpd";

}  // namespace

extern "C" void stop_server(int) {
  keep_running = 0;
}

namespace Arq::Snmp {

SnmpSubAgent::SnmpSubAgent(std::string logFileName, std::function<int()> logThreshold)
    : logFileName(std::move(logFileName)), logThreshold(std::move(logThreshold)) {}

SnmpSubAgent::~SnmpSubAgent() = default;

void SnmpSubAgent::Run() {
  if (!logFileName.empty() && IsStandardOutputOn(logFileName)) {
    // A handle of the library's own on the path would stay on the old file
    // after a split (then on a deleted one): the one descriptor of standard
    // output is moved to the new file at each split, so the log follows it.
    netsnmp_register_loghandler(NETSNMP_LOGHANDLER_STDOUT, LOG_DEBUG);
  } else if (!logFileName.empty()) {
    snmp_enable_filelog(logFileName.c_str(), 1);
  } else if (useSyslog != 0) {
    snmp_enable_syslog();
  } else {
    snmp_enable_stderrlog();
  }
  InstallLogFilter(std::make_shared<LogFilter>(logThreshold));
  if (agentxSubagent != 0) {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
  }
  init_agent(kApplicationName);

  init_arqSwitchOrvoViaNbEthernetInterfaces();
  init_arqSwitchOrvoViaEthernetInterfacesTable();
  init_arqSwitchOrvoViaNbPRSInterfaces();
  init_arqSwitchOrvoViaPRSInterfacesTable();
  init_arqSwitchOrvoViaNbPTPs();
  init_arqSwitchOrvoViaPTPsTable();
  init_arqSwitchOrvoViaLLDPLocalChassisId();
  init_arqSwitchOrvoViaLLDPLocalManufacturer();
  init_arqSwitchOrvoViaLLDPLocalDeviceName();
  init_arqSwitchOrvoViaLLDPLocalIPManagementAddress();
  init_arqSwitchOrvoViaLLDPLocalDeviceVersion();
  init_arqSwitchOrvoViaLLDPLocalSerialNumber();
  init_arqSwitchOrvoViaNbHardwareInfos();
  init_arqSwitchOrvoViaHardwareInfosTable();
  init_arqSwitchOrvoViaConfigCurrentConfigName();
  init_arqSwitchOrvoViaConfigCurrentConfigState();
  init_arqSwitchOrvoViaNbLAGInterfaces();
  init_arqSwitchOrvoViaLAG1InterfaceName();
  init_arqSwitchOrvoViaLAG1InterfaceStatus();
  init_arqSwitchOrvoViaLAG1InterfaceVlanId();
  init_arqSwitchOrvoViaLAG1InterfaceVlanIds();
  init_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts();
  init_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
  init_arqSwitchOrvoViaLAG2InterfaceName();
  init_arqSwitchOrvoViaLAG2InterfaceStatus();
  init_arqSwitchOrvoViaLAG2InterfaceVlanId();
  init_arqSwitchOrvoViaLAG2InterfaceVlanIds();
  init_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts();
  init_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
  init_arqSwitchOrvoViaLAG3InterfaceName();
  init_arqSwitchOrvoViaLAG3InterfaceStatus();
  init_arqSwitchOrvoViaLAG3InterfaceVlanId();
  init_arqSwitchOrvoViaLAG3InterfaceVlanIds();
  init_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts();
  init_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
  // The one owner of the standard views' tables, over the daemon's model
  // store. Net-SNMP keeps pointers into it (the handlers' myvoid, the alarms'
  // client arguments) as long as the agent runs, so it lives as long as this
  // sub-agent: past snmp_shutdown, which stops every request and alarm.
  views = std::make_unique<Standard::StandardViews>(Monitoring::MonitoringProcessor::switchModel);
  init_arqSwitchOrvoViaCollector(*views);
  init_ifMib(*views);
  init_lldpMib(*views);
  init_portCounterViews(*views);
  init_entityMib(*views);
  init_bridgeMib(*views);
  init_ptpBaseMib(*views);

  if (agentxSubagent == 0) {
    init_vacm();
    init_usm();
  }
  init_snmp(kApplicationName);
  if (agentxSubagent != 0) ReportMasterSocketAccess();
  if (agentxSubagent == 0) init_master_agent();

  keep_running = 1;
  (void)signal(SIGTERM, stop_server);
  (void)signal(SIGINT, stop_server);
  // SIGKILL cannot be caught: this call fails, harmlessly, and is ignored.
  (void)signal(SIGKILL, stop_server);
  // The daemon has nothing to reload: a hang-up (its terminal or session
  // gone) is an orderly stop like SIGTERM, with the end line.
  (void)signal(SIGHUP, stop_server);
  init_arqSwitchOrvoViaNotifications(*views);
  snmp_log(LOG_INFO, "orvovia-snmpd is up and running.\n");

  while (keep_running != 0) agent_check_and_process(1);

  shutdown_arqSwitchOrvoViaEthernetInterfacesTable();
  shutdown_arqSwitchOrvoViaPRSInterfacesTable();
  shutdown_arqSwitchOrvoViaPTPsTable();
  shutdown_arqSwitchOrvoViaHardwareInfosTable();
  shutdown_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
  shutdown_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
  shutdown_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
  snmp_log(LOG_INFO, "orvovia-snmpd is shutdowning.\n");
  snmp_shutdown(kApplicationName);
}

bool SnmpSubAgent::IsStandardOutputOn(const std::string& path) {
  struct stat file {};
  struct stat output {};
  return stat(path.c_str(), &file) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
         file.st_dev == output.st_dev && file.st_ino == output.st_ino;
}

}  // namespace Arq::Snmp
