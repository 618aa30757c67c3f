#include "SwitchSimulator.h"

#include <unistd.h>

#include <sstream>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchSimulator {

namespace Wire = OrvoViaSwitchService::Service::Serialization::Thrift;
using OrvoViaSwitchService::Simulator::ServerBehaviour;
using OrvoViaSwitchService::Simulator::ServerData;

ServerData ToServerData(const Monitoring::SwitchSnapshot& s) {
  ServerData data;
  data.ifList = s.interfaceNames;
  for (const auto& [name, info] : s.interfaces) {
    data.ifInfos[name] = Wire::IfInfoConverter::ToGenerated(info);
    data.macs[name] = info.MacAddr;
  }
  for (const auto& [name, list] : s.ethCounters) {
    for (const auto& counters : list) {
      data.counters[name].push_back(Wire::EthCntConverter::ToGenerated(counters));
    }
  }
  for (const auto& [name, list] : s.ethStats) {
    for (const auto& stat : list)
      data.stats[name].push_back(Wire::EthStatConverter::ToGenerated(stat));
  }
  for (const auto& info : s.ethInfos)
    data.ethInfos.push_back(Wire::EthInfoConverter::ToGenerated(info));
  data.mainMac = s.mainMacAddress;
  data.lldpConfig = Wire::LldpConfigConverter::ToGenerated(s.lldpConfig);
  for (const auto& info : s.lldpNeighbours) {
    data.lldpInfos.push_back(Wire::LldpInfoConverter::ToGenerated(info));
  }
  for (const auto& config : s.ptpConfigs) {
    data.ptpConfigs.push_back(Wire::PTPConfigConverter::ToGenerated(config));
  }
  data.currentConfig = Wire::ConfigFileConverter::ToGenerated(s.currentConfig);
  data.configFiles = {data.currentConfig};
  data.comment = s.currentConfig.Comment;
  data.management.versions = {{ArqOrvoAPI::MODULE_VERSION::Manager, "4.1.0"},
                              {ArqOrvoAPI::MODULE_VERSION::API, "2.3"},
                              {ArqOrvoAPI::MODULE_VERSION::Package, "4.1.0-7"}};
  data.management.hostname = s.lldpConfig.SystemName;
  data.management.address.__set_bIpv6(false);
  data.management.address.__set_Address(s.lldpConfig.ManagementIP);
  return data;
}

std::string ApplyControl(ServerBehaviour& behaviour, const std::string& line) {
  std::istringstream words(line);
  std::string command;
  words >> command;
  std::string rest;
  std::getline(words >> std::ws, rest);
  if (command == "fault") {
    std::istringstream codeAndText(rest);
    int code = 0;
    std::string text;
    if (!(codeAndText >> code)) return "error fault needs a code";
    // Codes an ErrorCode_t can hold: the listed ones and those up to 15.
    if (code < 0 || code > 15) return "error fault code is not in 0..15";
    std::getline(codeAndText >> std::ws, text);
    behaviour.Fault(static_cast<ArqSwitchApi::ErrorCode_t::type>(code), text);
  } else if (command == "exception") {
    behaviour.OtherException(rest);
  } else if (command == "delay") {
    long millis = 0;  // 0 when the text is no number; the largest long when out of range
    std::istringstream(rest) >> millis;
    behaviour.Delay(std::chrono::milliseconds(millis));
  } else if (command == "close") {
    behaviour.Close();
  } else if (command == "garbage") {
    behaviour.Garbage(rest.empty() ? ServerBehaviour::kGarbage : rest);
  } else if (command == "answer") {
    behaviour.Answer();
    behaviour.Only("");
  } else if (command == "port") {
    std::istringstream nameAndState(rest);
    std::string name;
    std::string state;
    if (!(nameAndState >> name >> state) || (state != "up" && state != "down")) {
      return "error port needs a name and up or down";
    }
    behaviour.PortState(name, state == "up" ? ArqSwitchApi::EthState_t::LinkUp
                                            : ArqSwitchApi::EthState_t::LinkDown);
  } else if (command == "only") {
    behaviour.Only(rest == "*" ? std::string() : rest);
  } else if (command == "calls") {
    std::size_t count = 0;
    for (const auto& call : behaviour.Calls()) {
      if (rest.empty() || call.compare(0, rest.size(), rest) == 0) ++count;
    }
    return "calls " + std::to_string(count);
  } else {
    return "error unknown command";
  }
  return "ok";
}

ControlServer::ControlServer(ServerBehaviour& behaviour, int port)
    : behaviour_(behaviour),
      acceptor_(port, [this](int connection) { ServeConnection(connection); }) {}

void ControlServer::ServeConnection(int connection) {
  std::string pending;
  char buffer[512];
  ssize_t n;
  while (acceptor_.WaitReadable(connection) && (n = read(connection, buffer, sizeof buffer)) > 0) {
    pending.append(buffer, static_cast<size_t>(n));
    std::size_t end;
    while ((end = pending.find('\n')) != std::string::npos) {
      const std::string reply = ApplyControl(behaviour_, pending.substr(0, end)) + "\n";
      pending.erase(0, end + 1);
      (void)!write(connection, reply.data(), reply.size());
    }
  }
}

}  // namespace Arq::OrvoViaSwitchSimulator
