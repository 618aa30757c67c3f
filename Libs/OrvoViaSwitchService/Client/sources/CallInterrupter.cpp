#include "Arq/OrvoViaSwitchService/Client/Thrift/CallInterrupter.h"

#include <sys/socket.h>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

void CallInterrupter::Interrupt() {
  std::lock_guard<std::mutex> lock(mutex_);
  interrupted_ = true;
  for (const int socket : sockets_) shutdown(socket, SHUT_RDWR);
}

bool CallInterrupter::Interrupted() {
  std::lock_guard<std::mutex> lock(mutex_);
  return interrupted_;
}

bool CallInterrupter::Register(int socket) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (interrupted_) {
    shutdown(socket, SHUT_RDWR);
    return false;
  }
  sockets_.insert(socket);
  return true;
}

void CallInterrupter::Unregister(int socket) {
  std::lock_guard<std::mutex> lock(mutex_);
  sockets_.erase(socket);
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
