#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayer.h"

#include <utility>

#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TSocket.h>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace {
constexpr std::uint32_t kBufferSize = 512;
}

ThriftTransportProtocolLayer::ThriftTransportProtocolLayer(std::string host, std::int32_t port,
                                                           std::int32_t connectionTimeout,
                                                           std::int32_t receiveTimeout)
    : host(std::move(host)),
      port(port),
      connectionTimeout(connectionTimeout),
      receiveTimeout(receiveTimeout) {}

void ThriftTransportProtocolLayer::Create() {
  auto socket = std::make_shared<apache::thrift::transport::TSocket>(host, port);
  socket->setConnTimeout(connectionTimeout);
  socket->setRecvTimeout(receiveTimeout);
  transport = std::make_shared<apache::thrift::transport::TBufferedTransport>(socket, kBufferSize,
                                                                              kBufferSize);
  protocol = std::make_shared<apache::thrift::protocol::TBinaryProtocol>(transport);
}

void ThriftTransportProtocolLayer::Open() {
  if (transport) {
    transport->open();
  }
}

bool ThriftTransportProtocolLayer::IsOpen() {
  return transport && transport->isOpen();
}

void ThriftTransportProtocolLayer::Close() {
  if (transport) {
    transport->close();
  }
}

std::shared_ptr<apache::thrift::protocol::TProtocol> ThriftTransportProtocolLayer::GetProtocol() {
  return protocol;
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
