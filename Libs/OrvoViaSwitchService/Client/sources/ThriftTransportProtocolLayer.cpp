#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayer.h"

#include <utility>

#include <thrift/TConfiguration.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TTransportException.h>

#include "Arq/OrvoViaSwitchService/Client/Thrift/BoundedBinaryProtocol.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace {
constexpr std::uint32_t kBufferSize = 512;
// Bytes of one reply (the library's default is 100 MiB): 50 times a whole
// full-capacity collection. What a reply may make the reader allocate is
// bounded by the protocol itself.
constexpr int kMaxReplyBytes = 4 << 20;
}  // namespace

ThriftTransportProtocolLayer::ThriftTransportProtocolLayer(
    std::string host, std::int32_t port, std::int32_t connectionTimeout,
    std::int32_t receiveTimeout, std::shared_ptr<CallInterrupter> interrupter)
    : host(std::move(host)),
      port(port),
      connectionTimeout(connectionTimeout),
      receiveTimeout(receiveTimeout),
      interrupter(std::move(interrupter)) {}

ThriftTransportProtocolLayer::~ThriftTransportProtocolLayer() {
  UnregisterSocket();
}

void ThriftTransportProtocolLayer::Create() {
  UnregisterSocket();
  auto configuration = std::make_shared<apache::thrift::TConfiguration>(kMaxReplyBytes);
  socket = std::make_shared<apache::thrift::transport::TSocket>(host, port, configuration);
  socket->setConnTimeout(connectionTimeout);
  socket->setRecvTimeout(receiveTimeout);
  transport = std::make_shared<apache::thrift::transport::TBufferedTransport>(
      socket, kBufferSize, kBufferSize, configuration);
  protocol =
      std::make_shared<BoundedBinaryProtocol>(transport, BoundedBinaryProtocol::kSwitchReplyLimits);
}

void ThriftTransportProtocolLayer::Open() {
  if (!transport) return;
  using apache::thrift::transport::TTransportException;
  if (interrupter && interrupter->Interrupted()) {
    throw TTransportException(TTransportException::INTERRUPTED, "call interrupted: stopping");
  }
  transport->open();
  if (interrupter) {
    const int fd = static_cast<int>(socket->getSocketFD());
    if (!interrupter->Register(fd)) {
      transport->close();
      throw TTransportException(TTransportException::INTERRUPTED, "call interrupted: stopping");
    }
    registeredSocket = fd;
  }
}

void ThriftTransportProtocolLayer::UnregisterSocket() {
  if (interrupter && registeredSocket >= 0) interrupter->Unregister(registeredSocket);
  registeredSocket = -1;
}

bool ThriftTransportProtocolLayer::IsOpen() {
  return transport && transport->isOpen();
}

void ThriftTransportProtocolLayer::Close() {
  UnregisterSocket();
  if (transport) {
    transport->close();
  }
}

std::shared_ptr<apache::thrift::protocol::TProtocol> ThriftTransportProtocolLayer::GetProtocol() {
  return protocol;
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
