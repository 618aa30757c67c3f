#include "SwitchSimulator.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

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
    behaviour.Delay(std::chrono::milliseconds(std::atol(rest.c_str())));
  } else if (command == "close") {
    behaviour.Close();
  } else if (command == "garbage") {
    behaviour.Garbage(rest.empty() ? ServerBehaviour::kGarbage : rest);
  } else if (command == "answer") {
    behaviour.Answer();
    behaviour.Only("");
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

ControlServer::ControlServer(ServerBehaviour& behaviour, int port) : behaviour_(behaviour) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<uint16_t>(port));
  if (listener_ < 0 ||
      bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener_, 4) != 0 || pipe(wake_) != 0) {
    throw std::runtime_error("control port: cannot listen");
  }
  socklen_t length = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

ControlServer::~ControlServer() {
  const char stop = 's';
  (void)!write(wake_[1], &stop, 1);
  thread_.join();
  close(listener_);
  close(wake_[0]);
  close(wake_[1]);
}

void ControlServer::Serve() {
  for (;;) {
    pollfd fds[2] = {{listener_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
    if (poll(fds, 2, -1) < 0) continue;
    if (fds[1].revents != 0) return;
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) continue;
    std::string pending;
    char buffer[512];
    for (;;) {
      // A client may keep its connection open for good: the stop wakes this
      // wait too, so that the destructor's join never hangs.
      pollfd waits[2] = {{connection, POLLIN, 0}, {wake_[0], POLLIN, 0}};
      if (poll(waits, 2, -1) < 0) continue;
      if (waits[1].revents != 0) {
        close(connection);
        return;
      }
      const ssize_t n = read(connection, buffer, sizeof buffer);
      if (n <= 0) break;
      pending.append(buffer, static_cast<size_t>(n));
      std::size_t end;
      while ((end = pending.find('\n')) != std::string::npos) {
        const std::string reply = ApplyControl(behaviour_, pending.substr(0, end)) + "\n";
        pending.erase(0, end + 1);
        (void)!write(connection, reply.data(), reply.size());
      }
    }
    close(connection);
  }
}

}  // namespace Arq::OrvoViaSwitchSimulator
