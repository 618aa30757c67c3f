#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <thrift/protocol/TProtocol.h>
#include <thrift/transport/TSocket.h>
#include <thrift/transport/TTransport.h>

#include "Arq/OrvoViaSwitchService/Client/Thrift/CallInterrupter.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/IThriftTransportProtocolLayer.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// Socket with connect and receive time-outs (milliseconds), buffered
// transport (512/512) and the binary protocol bounded against hostile replies
// (BoundedBinaryProtocol). Not locked: one user at a time. With an
// interrupter, the open socket can be shut down from another thread.
class ThriftTransportProtocolLayer : public IThriftTransportProtocolLayer {
 public:
  ThriftTransportProtocolLayer(std::string host, std::int32_t port, std::int32_t connectionTimeout,
                               std::int32_t receiveTimeout,
                               std::shared_ptr<CallInterrupter> interrupter = nullptr);
  ~ThriftTransportProtocolLayer() override;

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
  std::shared_ptr<CallInterrupter> interrupter;
  std::shared_ptr<apache::thrift::transport::TSocket> socket;
  int registeredSocket = -1;
  void UnregisterSocket();
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
