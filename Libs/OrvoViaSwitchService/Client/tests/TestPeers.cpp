#include "TestPeers.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

RawPeer::RawPeer(std::string replyBytes) : reply(std::move(replyBytes)) {
  listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(listener, 8) != 0) {
    throw std::runtime_error("raw peer: cannot listen");
  }
  socklen_t length = sizeof(address);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  port = ntohs(address.sin_port);
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) {
    throw std::runtime_error("raw peer: no pipe");
  }
  wakeRead = pipeEnds[0];
  wakeWrite = pipeEnds[1];
  thread = std::thread([this] { Serve(); });
}

RawPeer::~RawPeer() {
  const char stop = 's';
  (void)!write(wakeWrite, &stop, 1);
  thread.join();
  close(listener);
  close(wakeRead);
  close(wakeWrite);
}

std::string RawPeer::Received() const {
  std::lock_guard<std::mutex> lock(mutex);
  return received;
}

void RawPeer::Serve() {
  for (;;) {
    pollfd fds[2] = {{listener, POLLIN, 0}, {wakeRead, POLLIN, 0}};
    if (poll(fds, 2, -1) < 0 || (fds[1].revents & POLLIN)) {
      return;
    }
    const int connection = accept(listener, nullptr, nullptr);
    if (connection < 0) {
      continue;
    }
    // Read until the client pauses for 200 ms: one request.
    char buffer[4096];
    for (int reads = 0; reads < 1000; ++reads) {
      pollfd in = {connection, POLLIN, 0};
      if (poll(&in, 1, 200) <= 0) {
        break;
      }
      const ssize_t n = read(connection, buffer, sizeof(buffer));
      if (n <= 0) {
        break;
      }
      std::lock_guard<std::mutex> lock(mutex);
      received.append(buffer, static_cast<std::size_t>(n));
    }
    if (!reply.empty()) {
      (void)!write(connection, reply.data(), reply.size());
    }
    close(connection);
  }
}

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
