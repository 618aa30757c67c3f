#pragma once

#include <mutex>
#include <set>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// Lets another thread end the switch calls under way at once, whatever the
// switch does: the connections register their socket while open, and
// Interrupt() shuts every registered socket down (a blocked receive returns
// at once, as if the switch had closed) and refuses every later connection.
// Used when the daemon stops, so that a slow or silent switch cannot hold the
// process beyond its stop.
class CallInterrupter {
 public:
  void Interrupt();
  bool Interrupted();
  // Called by a connection once open: false (and the socket already shut
  // down) when an interruption came first.
  bool Register(int socket);
  // Called before the socket is closed, so that its number is never shut
  // down once reused.
  void Unregister(int socket);

 private:
  std::mutex mutex_;
  bool interrupted_ = false;
  std::set<int> sockets_;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
