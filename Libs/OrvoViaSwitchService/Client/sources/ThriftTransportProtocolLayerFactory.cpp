#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayerFactory.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Client/Thrift/ThriftTransportProtocolLayer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

ThriftTransportProtocolLayerFactory::ThriftTransportProtocolLayerFactory(
    std::string host, std::int32_t port, std::int32_t connectionTimeout,
    std::int32_t receiveTimeout, std::shared_ptr<CallInterrupter> interrupter)
    : host(std::move(host)),
      port(port),
      connectionTimeout(connectionTimeout),
      receiveTimeout(receiveTimeout),
      interrupter(std::move(interrupter)) {}

std::shared_ptr<IThriftTransportProtocolLayer> ThriftTransportProtocolLayerFactory::Create() {
  auto layer = std::make_shared<ThriftTransportProtocolLayer>(host, port, connectionTimeout,
                                                              receiveTimeout, interrupter);
  layer->Create();
  return layer;
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
