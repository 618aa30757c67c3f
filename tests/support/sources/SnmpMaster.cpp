#include "Arq/TestSupport/SnmpMaster.h"

#include <signal.h>
#include <sys/stat.h>

#include <sstream>

namespace Arq::TestSupport {

SnmpMaster::SnmpMaster(const std::string& dir) : dir_(dir), port_(FreeUdpPort()) {
  mkdir((dir_ + "/persist").c_str(), 0755);
  const std::string socket = "agentXSocket " + dir_ + "/agentx.sock\n";
  WriteFile(dir_ + "/snmpd.conf", "master agentx\n" + socket +
                                      "agentXPerms 0666 0755\n"
                                      "rocommunity public 127.0.0.1\n"
                                      "rwcommunity private 127.0.0.1\n");
  // The sub-agent registers again about 1 s after the master restarts.
  WriteFile(dir_ + "/orvovia-snmpd.conf", socket + "agentxPingInterval 2\n");
}

void SnmpMaster::AppendConfig(const std::string& lines) {
  WriteFile(dir_ + "/snmpd.conf", ReadFile(dir_ + "/snmpd.conf") + lines);
}

SnmpMaster::~SnmpMaster() {
  Stop();
}

std::map<std::string, std::string> SnmpMaster::Environment() const {
  return {{"SNMPCONFPATH", dir_}, {"SNMP_PERSISTENT_DIR", dir_ + "/persist"}, {"MIBS", ""}};
}

bool SnmpMaster::Start(std::chrono::milliseconds timeout) {
  process_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"snmpd", "-f", "-Lo", "-C", "-I", "-smux", "-c",
                               dir_ + "/snmpd.conf", "-p", dir_ + "/snmpd.pid", Address()},
      Environment(), dir_ + "/snmpd.log");
  // sysUpTime.0 is answered by the master itself once it listens.
  return WaitUntil(
             [this] {
               if (!process_->IsRunning()) return true;
               // A short time-out: a probe sent before snmpd listens is lost.
               return Tool("snmpget", {"-t", "0.3", "-r", "0"}, {"1.3.6.1.2.1.1.3.0"})
                          .output.find("Timeticks:") != std::string::npos;
             },
             timeout, std::chrono::milliseconds(200)) &&
         process_->IsRunning();
}

void SnmpMaster::Stop() {
  if (!process_) return;
  process_->Signal(SIGTERM);
  if (!process_->WaitExit(std::chrono::seconds(10))) process_->Signal(SIGKILL);
  process_.reset();
}

CommandResult SnmpMaster::Tool(const std::string& tool, const std::vector<std::string>& options,
                               const std::vector<std::string>& oids,
                               std::chrono::milliseconds timeout) const {
  std::vector<std::string> argv{tool, "-v2c", "-c", "public", "-On", "-Oe", "-t", "2", "-r", "1"};
  argv.insert(argv.end(), options.begin(), options.end());
  argv.push_back(Address());
  argv.insert(argv.end(), oids.begin(), oids.end());
  return RunCommand(argv, Environment(), timeout, true);
}

std::map<std::string, std::string> SnmpMaster::Walk(const std::string& oid) const {
  std::map<std::string, std::string> values;
  std::istringstream lines(Tool("snmpwalk", {}, {oid}, std::chrono::seconds(60)).output);
  std::string line;
  while (std::getline(lines, line)) {
    const auto separator = line.find(" = ");
    if (separator == std::string::npos || line.empty() || line[0] != '.') continue;
    values[line.substr(1, separator - 1)] = line.substr(separator + 3);
  }
  return values;
}

std::string SnmpMaster::Get(const std::string& oid) const {
  std::string output = Tool("snmpget", {}, {oid}).output;
  while (!output.empty() && output.back() == '\n') output.pop_back();
  const auto separator = output.find(" = ");
  return separator == std::string::npos ? output : output.substr(separator + 3);
}

}  // namespace Arq::TestSupport
