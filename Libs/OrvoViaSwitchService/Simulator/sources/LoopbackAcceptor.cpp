#include "Arq/OrvoViaSwitchService/Simulator/LoopbackAcceptor.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace Arq::OrvoViaSwitchService::Simulator {

LoopbackAcceptor::LoopbackAcceptor(int port, Serve serve) : serve_(std::move(serve)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (listener_ < 0 ||
      bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener_, 16) != 0 || pipe2(wake_, O_CLOEXEC) != 0) {
    if (listener_ >= 0) close(listener_);
    throw std::runtime_error("cannot listen on 127.0.0.1 port " + std::to_string(port));
  }
  socklen_t length = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Accept(); });
}

LoopbackAcceptor::~LoopbackAcceptor() {
  const char stop = 's';
  (void)!write(wake_[1], &stop, 1);
  thread_.join();
  close(listener_);
  close(wake_[0]);
  close(wake_[1]);
}

bool LoopbackAcceptor::WaitReadable(int connection) const {
  for (;;) {
    pollfd fds[2] = {{connection, POLLIN, 0}, {wake_[0], POLLIN, 0}};
    if (poll(fds, 2, -1) < 0) continue;
    return fds[1].revents == 0;
  }
}

void LoopbackAcceptor::Accept() {
  while (WaitReadable(listener_)) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) continue;
    serve_(connection);
    close(connection);
  }
}

}  // namespace Arq::OrvoViaSwitchService::Simulator
