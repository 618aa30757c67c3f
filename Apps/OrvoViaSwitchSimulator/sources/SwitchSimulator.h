#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Arq/Monitoring/FakeMonitoringCollector.h"
#include "Arq/OrvoViaSwitchService/Simulator/LoopbackAcceptor.h"
#include "Arq/OrvoViaSwitchService/Simulator/ServerBehaviour.h"
#include "Arq/OrvoViaSwitchService/Simulator/ServerData.h"

namespace Arq::OrvoViaSwitchSimulator {

// The switch's answers for a snapshot of the synthetic switch, as wire structures.
OrvoViaSwitchService::Simulator::ServerData ToServerData(
    const Monitoring::SwitchSnapshot& snapshot);

// Applies one control line to the server's behaviour and returns the reply:
//   fault <code> <text>   every call answers Fault_t(code, text), code 0..15
//   exception <text>      every call fails with another exception
//   delay <ms>            every call waits before answering
//   close                 every call's connection is closed without a reply
//   garbage [text]        every call is answered with bytes that are no Thrift
//                         message (the text, if given), then the connection closes
//   port <name> up|down   the port's state in every Ethernet information answer
//   only <Service:Method> the behaviour above for that call only ("only *": all)
//   answer                back to normal answers, for every call
//   calls [prefix]        "calls <n>": the calls received so far (of that prefix)
// Anything else: "error unknown command".
std::string ApplyControl(OrvoViaSwitchService::Simulator::ServerBehaviour& behaviour,
                         const std::string& line);

// Serves ApplyControl on a loopback TCP port, one line in, one line out.
class ControlServer {
 public:
  ControlServer(OrvoViaSwitchService::Simulator::ServerBehaviour& behaviour, int port);
  int Port() const { return acceptor_.Port(); }

 private:
  void ServeConnection(int connection);
  OrvoViaSwitchService::Simulator::ServerBehaviour& behaviour_;
  OrvoViaSwitchService::Simulator::LoopbackAcceptor acceptor_;
};

}  // namespace Arq::OrvoViaSwitchSimulator
