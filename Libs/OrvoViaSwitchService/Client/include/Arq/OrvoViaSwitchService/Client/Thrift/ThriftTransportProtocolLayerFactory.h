#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Arq/OrvoViaSwitchService/Client/Thrift/CallInterrupter.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayerFactory.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class ThriftTransportProtocolLayerFactory : public IThriftTransportProtocolLayerFactory {
 public:
  ThriftTransportProtocolLayerFactory(std::string host, std::int32_t port,
                                      std::int32_t connectionTimeout, std::int32_t receiveTimeout,
                                      std::shared_ptr<CallInterrupter> interrupter = nullptr);

  std::shared_ptr<IThriftTransportProtocolLayer> Create() override;

 private:
  std::string host;
  std::int32_t port;
  std::int32_t connectionTimeout;
  std::int32_t receiveTimeout;
  std::shared_ptr<CallInterrupter> interrupter;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
