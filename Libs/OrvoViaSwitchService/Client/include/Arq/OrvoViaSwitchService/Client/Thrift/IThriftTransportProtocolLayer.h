#pragma once

#include <memory>

#include <thrift/protocol/TProtocol.h>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// One TCP connection to the switch service with its transport and protocol.
class IThriftTransportProtocolLayer {
 public:
  virtual ~IThriftTransportProtocolLayer() = default;
  // Builds the socket, transport and protocol; does not connect.
  virtual void Create() = 0;
  virtual void Open() = 0;
  virtual bool IsOpen() = 0;
  virtual void Close() = 0;
  virtual std::shared_ptr<apache::thrift::protocol::TProtocol> GetProtocol() = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
