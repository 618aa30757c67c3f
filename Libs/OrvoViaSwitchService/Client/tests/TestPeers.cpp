#include "TestPeers.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

ClosedPort::ClosedPort() {
  socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (socket < 0 || bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("closed port: cannot bind");
  }
  socklen_t length = sizeof(address);
  getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
  port = ntohs(address.sin_port);
}

ClosedPort::~ClosedPort() {
  close(socket);
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing
