// A sub-agent serving known monitoring values, for the integration tests:
// SIGUSR1 switches to a second set of values. Argument: the SNMP log file.
#include <atomic>
#include <csignal>
#include <string>
#include <thread>

#include "Arq/Monitoring/MonitoringProcessor.h"
#include "Arq/Snmp/SnmpSubAgent.h"

namespace {

namespace Metrics = Arq::OrvoViaSwitch::Domain::Dto::Metrics;
// Set by the signal handler, read by the changer thread: a lock-free atomic
// is safe in both places (a volatile sig_atomic_t is not, across threads).
std::atomic<int> second{0};

Metrics::EthernetMetric Port(const std::string& name, long long base) {
  Metrics::EthernetMetric port;
  port.ethName = name;
  port.mode = 0;
  port.speed = 4;
  port.state = 1;
  for (std::size_t i = 0; i < port.counters.size(); ++i) port.counters[i] = base + i;
  port.counters[29] = -7;
  port.counters[28] = 1234567890123456789LL;
  port.txSpeed = 1499999;
  port.rxSpeed = 1500000;
  return port;
}

void Fill(bool changed) {
  auto& v = Arq::Monitoring::MonitoringProcessor::monitoringValues;
  v.nbEthernetInterfaces.Value(changed ? 3 : 2);
  v.nbPRSInterfaces.Value(1);
  v.nbPTPs.Value(1);
  v.nbLAGInterfaces.Value(1);
  Metrics::EthernetInterfaceMetric eth;
  eth.name = changed ? "eth1-renamed" : "eth1";
  eth.status = 1;
  eth.vid = 100;
  eth.vlanIds = "100 110";
  eth.ethernet = Port("eth1", 1000);
  v.ethernetInterfaceMetrics[0].Value(eth);
  eth.name = "eth2";
  eth.ethernet = Port("eth2", 2000);
  eth.ethernet.mode = -1;
  eth.ethernet.counters[0] = 4294967301LL;  // beyond 32 bits
  v.ethernetInterfaceMetrics[1].Value(eth);
  Metrics::PRSInterfaceMetric prs;
  prs.name = "prs1";
  prs.ethernets = {Port("eth17", 17000), Port("eth18", 18000)};
  v.pRSInterfaceMetrics[0].Value(prs);
  Metrics::LAGInterfaceMetric lag;
  lag.name = "lag-with-a-very-long-name";
  lag.status = 1;
  lag.vlanId = 10;
  lag.vlanIds = "10 20 30";
  lag.nbEthernetPorts = 2;
  lag.ethernets[0] = Port("eth21", 21000);
  lag.ethernets[1] = Port("eth22", 22000);
  v.lAGInterfaceMetrics[1].Value(lag);
  Metrics::PTPMetric ptp;
  ptp.domain = -3;
  ptp.interfaces = "eth1 eth2";
  v.pTPMetrics[0].Value(ptp);
  Metrics::LLDPMetric local;
  local.chassisId = "0123456789abcdefghijKLMNO";
  local.ipManagementAddress = changed ? "10.0.0.256" : "10.0.0.1";
  local.manufacturer = "Arq OrvoVia-24";
  v.lLDPMetric.Value(local);
  Metrics::LLDPInfoMetric neighbour;
  neighbour.version = "5.4.1";
  neighbour.ipAddress = "10.20.0.1";
  neighbour.timeToLive = 120;
  neighbour.serialNumber = "OV48X-2210457";
  v.lLDPInfoMetrics[0].Value(neighbour);
  Metrics::ConfigMetric config;
  config.name = "studio.cfg";
  config.state = changed ? 1 : 0;
  v.currentConfigMetric.Value(config);
}

}  // namespace

int main(int argc, char** argv) {
  Fill(false);
  std::signal(SIGUSR1, [](int) { second = 1; });
  std::thread changer([] {
    while (second.load() == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    Fill(true);
  });
  changer.detach();
  Arq::Snmp::SnmpSubAgent(argc > 1 ? argv[1] : "").Run();
  return 0;
}
