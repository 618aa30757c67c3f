#pragma once

#include <string>

namespace Arq::OrvoViaSwitchService::Simulator::Detail {

// What becomes of the reply of the call that the current thread processes.
// The threaded server reads a call, runs its handler and writes its reply on
// the connection's own thread, so a handler leaves word here for the
// connection's transport, which acts on it at the reply's first write.
struct ReplyFate {
  enum class Kind { Send, Close, Garbage };
  Kind kind = Kind::Send;
  std::string bytes;  // for Garbage
};

ReplyFate& PendingReply();

}  // namespace Arq::OrvoViaSwitchService::Simulator::Detail
