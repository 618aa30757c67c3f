#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include <ArqSwitchApi/ArqSwitchApi_types.h>
#include <thrift/TToString.h>

namespace Arq::OrvoViaSwitchService::Simulator {

// What every handler of the loopback server does before answering, and what
// it has seen. Shared by the server's connection threads and whoever steers
// the server (a test, the simulator's control port).
class ServerBehaviour {
 public:
  enum class Mode { Answer, Fault, OtherException, Delay, Close, Garbage };

  // Bytes that no Thrift reader takes for a message: the first four read as
  // a version word that is not Thrift's.
  static const std::string kGarbage;

  void Answer();
  void Fault(ArqSwitchApi::ErrorCode_t::type code, const std::string& what);
  void OtherException(const std::string& what);
  void Delay(std::chrono::milliseconds value);
  // The connection is closed where the reply would be written.
  void Close();
  // `bytes` are written where the reply would be, then the connection is closed.
  void Garbage(const std::string& bytes = kGarbage);
  // Limits the configured behaviour to one call ("Interfaces:GetCnt"); the
  // other calls answer normally. Empty: every call.
  void Only(const std::string& call);
  // Serves the port's state as `state` from now on, whatever the data says.
  void PortState(const std::string& port, ArqSwitchApi::EthState_t::type state);
  // Applies the port states set so far to an Ethernet information answer.
  void OverridePortStates(std::vector<ArqSwitchApi::EthInfo_t>& infos) const;
  // Ends every delay under way and refuses new ones (teardown).
  void Release();

  // One line per call: "Service:Method" then each argument, blank-separated.
  std::vector<std::string> Calls() const;
  // The header of each switch-service call (the management service's calls
  // carry none).
  std::vector<ArqSwitchApi::Header_t> Headers() const;

  // Records a switch-service call, then answers, throws Fault_t, delays or
  // marks the reply for closing or garbage as configured.
  template <typename... Args>
  void Enter(const char* call, const ArqSwitchApi::Header_t& header, const Args&... args) {
    Apply(Line(call, args...), &header);
  }
  // The same for a management-service call, whose fault is ArqOrvoAPI::Fault.
  template <typename... Args>
  void EnterManagement(const char* call, const Args&... args) {
    Apply(Line(call, args...), nullptr);
  }

 private:
  template <typename... Args>
  static std::string Line(const char* call, const Args&... args) {
    std::ostringstream line;
    line << call;
    ((line << ' ' << apache::thrift::to_string(args)), ...);
    return line.str();
  }
  void Apply(const std::string& line, const ArqSwitchApi::Header_t* header);

  mutable std::mutex mutex;
  std::condition_variable released;
  bool isReleased = false;
  Mode mode = Mode::Answer;
  ArqSwitchApi::ErrorCode_t::type faultCode = ArqSwitchApi::ErrorCode_t::NoError;
  std::string text;
  std::chrono::milliseconds delay{0};
  std::string target;
  std::map<std::string, ArqSwitchApi::EthState_t::type> portStates;
  std::vector<std::string> calls;
  std::vector<ArqSwitchApi::Header_t> headers;
};

}  // namespace Arq::OrvoViaSwitchService::Simulator
