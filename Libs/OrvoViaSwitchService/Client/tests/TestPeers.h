#pragma once

#include <mutex>
#include <string>
#include <thread>

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

// A TCP peer that is not a Thrift server: accepts one connection at a time,
// keeps what the client sent (up to the first pause), writes `reply`, then
// closes. Stopped and joined by the destructor.
class RawPeer {
 public:
  explicit RawPeer(std::string reply = std::string());
  ~RawPeer();
  RawPeer(const RawPeer&) = delete;
  RawPeer& operator=(const RawPeer&) = delete;

  int Port() const { return port; }
  // Every byte received so far, all connections together.
  std::string Received() const;

 private:
  void Serve();

  std::string reply;
  int listener = -1;
  int port = 0;
  int wakeRead = -1;
  int wakeWrite = -1;
  mutable std::mutex mutex;
  std::string received;
  std::thread thread;
};

// A loopback port on which nothing listens (bound, never listening).
class ClosedPort {
 public:
  ClosedPort();
  ~ClosedPort();
  ClosedPort(const ClosedPort&) = delete;
  ClosedPort& operator=(const ClosedPort&) = delete;
  int Port() const { return port; }

 private:
  int socket = -1;
  int port = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing
