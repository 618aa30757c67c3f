#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <thrift/protocol/TProtocol.h>
#include <thrift/transport/TTransport.h>

#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// Socket with connect and receive time-outs (milliseconds), buffered
// transport (512/512) and binary protocol. Not locked: one user at a time.
class ThriftTransportProtocolLayer : public IThriftTransportProtocolLayer {
 public:
  ThriftTransportProtocolLayer(std::string host, std::int32_t port, std::int32_t connectionTimeout,
                               std::int32_t receiveTimeout);

  void Create() override;
  // Open, IsOpen and Close do nothing (IsOpen answers false) before Create().
  void Open() override;
  bool IsOpen() override;
  void Close() override;
  std::shared_ptr<apache::thrift::protocol::TProtocol> GetProtocol() override;

 private:
  std::string host;
  std::int32_t port;
  std::int32_t connectionTimeout;
  std::int32_t receiveTimeout;
  std::shared_ptr<apache::thrift::transport::TTransport> transport;
  std::shared_ptr<apache::thrift::protocol::TProtocol> protocol;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
