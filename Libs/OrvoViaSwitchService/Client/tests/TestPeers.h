#pragma once

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

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
