#include "Arq/OrvoViaSwitchService/Simulator/ServerBehaviour.h"

#include <stdexcept>

#include <ArqOrvoAPI/ArqOrvoAPI_types.h>

#include "ReplyFate.h"

namespace Arq::OrvoViaSwitchService::Simulator {

namespace api = ArqSwitchApi;

const std::string ServerBehaviour::kGarbage("\xde\xad\xbe\xefnot a thrift reply\r\n", 24);

namespace Detail {

ReplyFate& PendingReply() {
  thread_local ReplyFate fate;
  return fate;
}

}  // namespace Detail

namespace {

// A service's fault with its code and text, thrown as a temporary.
template <typename Fault, typename Code>
Fault MakeFault(Code code, const std::string& what) {
  Fault fault;
  fault.__set_ErrCode(code);
  fault.__set_What(what);
  return fault;
}

// The management service's code of the same name (its codes are negative and
// fewer); RuntimeError for a switch code it has no name for.
ArqOrvoAPI::ERROR_CODE::type ManagementCode(api::ErrorCode_t::type code) {
  const auto name = api::_ErrorCode_t_VALUES_TO_NAMES.find(code);
  if (name != api::_ErrorCode_t_VALUES_TO_NAMES.end()) {
    for (const auto& [value, text] : ArqOrvoAPI::_ERROR_CODE_VALUES_TO_NAMES) {
      if (std::string(text) == name->second)
        return static_cast<ArqOrvoAPI::ERROR_CODE::type>(value);
    }
  }
  return ArqOrvoAPI::ERROR_CODE::RuntimeError;
}

}  // namespace

void ServerBehaviour::Answer() {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Answer;
}

void ServerBehaviour::Fault(api::ErrorCode_t::type code, const std::string& what) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Fault;
  faultCode = code;
  text = what;
}

void ServerBehaviour::OtherException(const std::string& what) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::OtherException;
  text = what;
}

void ServerBehaviour::Delay(std::chrono::milliseconds value) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Delay;
  delay = value;
}

void ServerBehaviour::Close() {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Close;
}

void ServerBehaviour::Garbage(const std::string& bytes) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Garbage;
  text = bytes;
}

void ServerBehaviour::Only(const std::string& call) {
  std::lock_guard<std::mutex> lock(mutex);
  target = call;
}

void ServerBehaviour::PortState(const std::string& port, ArqSwitchApi::EthState_t::type state) {
  std::lock_guard<std::mutex> lock(mutex);
  portStates[port] = state;
}

void ServerBehaviour::OverridePortStates(std::vector<ArqSwitchApi::EthInfo_t>& infos) const {
  std::lock_guard<std::mutex> lock(mutex);
  for (auto& info : infos) {
    const auto state = portStates.find(info.EthName);
    if (state != portStates.end()) info.__set_State(state->second);
  }
}

void ServerBehaviour::Release() {
  {
    std::lock_guard<std::mutex> lock(mutex);
    isReleased = true;
  }
  released.notify_all();
}

std::vector<std::string> ServerBehaviour::Calls() const {
  std::lock_guard<std::mutex> lock(mutex);
  return calls;
}

std::vector<api::Header_t> ServerBehaviour::Headers() const {
  std::lock_guard<std::mutex> lock(mutex);
  return headers;
}

void ServerBehaviour::Apply(const std::string& line, const api::Header_t* header) {
  auto& reply = Detail::PendingReply();
  reply = Detail::ReplyFate();
  std::unique_lock<std::mutex> lock(mutex);
  calls.push_back(line);
  if (header != nullptr) headers.push_back(*header);
  const bool targeted =
      target.empty() || (line.compare(0, target.size(), target) == 0 &&
                         (line.size() == target.size() || line[target.size()] == ' '));
  switch (targeted ? mode : Mode::Answer) {
    case Mode::Answer:
      return;
    case Mode::Fault: {
      if (header == nullptr) throw MakeFault<ArqOrvoAPI::Fault>(ManagementCode(faultCode), text);
      throw MakeFault<api::Fault_t>(faultCode, text);
    }
    case Mode::OtherException:
      // The generated processor answers a TApplicationException for it.
      throw std::runtime_error(text);
    case Mode::Delay:
      released.wait_for(lock, delay, [this] { return isReleased; });
      return;
    case Mode::Close:
      reply.kind = Detail::ReplyFate::Kind::Close;
      return;
    case Mode::Garbage:
      reply.kind = Detail::ReplyFate::Kind::Garbage;
      reply.bytes = text;
      return;
  }
}

}  // namespace Arq::OrvoViaSwitchService::Simulator
