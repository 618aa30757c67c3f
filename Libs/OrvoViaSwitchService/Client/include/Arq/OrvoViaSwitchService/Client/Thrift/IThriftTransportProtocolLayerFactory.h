#pragma once

#include <memory>

#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

class IThriftTransportProtocolLayerFactory {
 public:
  virtual ~IThriftTransportProtocolLayerFactory() = default;
  // A new layer, created but not connected.
  virtual std::shared_ptr<IThriftTransportProtocolLayer> Create() = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
