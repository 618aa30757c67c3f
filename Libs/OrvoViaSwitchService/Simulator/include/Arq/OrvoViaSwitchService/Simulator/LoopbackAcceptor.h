#pragma once

#include <functional>
#include <thread>

namespace Arq::OrvoViaSwitchService::Simulator {

// A TCP listener on 127.0.0.1 whose thread hands each connection, one at a
// time, to `serve`, then closes it. The destructor stops the thread, and also
// wakes a `serve` that waits with WaitReadable, so a client that keeps its
// connection open never holds the stop.
class LoopbackAcceptor {
 public:
  using Serve = std::function<void(int connection)>;
  // Port 0: a free port the system picks. Throws when it cannot listen.
  LoopbackAcceptor(int port, Serve serve);
  ~LoopbackAcceptor();
  LoopbackAcceptor(const LoopbackAcceptor&) = delete;
  LoopbackAcceptor& operator=(const LoopbackAcceptor&) = delete;

  int Port() const { return port_; }
  // Waits until the connection has bytes or is closed; false when stopping.
  bool WaitReadable(int connection) const;

 private:
  void Accept();

  Serve serve_;
  int listener_ = -1;
  int wake_[2] = {-1, -1};
  int port_ = 0;
  std::thread thread_;
};

}  // namespace Arq::OrvoViaSwitchService::Simulator
