#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/protocol/TVirtualProtocol.h>
#include <thrift/transport/TTransport.h>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// The binary protocol with strict reading and bounds on what one reply may
// make the reader allocate. A peer that is no Thrift server (a web server, a
// proxy, a broken switch) would otherwise have the first bytes of its answer
// taken as a string or container size and allocated at once. Each reply is
// charged, at every container header and string, an estimate of the memory
// that its reading builds (elements x an upper bound of their size); past the
// budget the reply fails as a protocol error, like any other bad reply.
class BoundedBinaryProtocol
    : public apache::thrift::protocol::TVirtualProtocol<
          BoundedBinaryProtocol,
          apache::thrift::protocol::TBinaryProtocolT<apache::thrift::transport::TTransport>> {
 public:
  struct Limits {
    std::int32_t stringBytes;
    std::int32_t containerElements;
    std::int64_t replyMemoryBytes;
  };
  // The bounds the switch client uses; see the source for why.
  static const Limits kSwitchReplyLimits;

  BoundedBinaryProtocol(std::shared_ptr<apache::thrift::transport::TTransport> transport,
                        const Limits& limits);

  // The reading operations the budget watches; the rest is the binary protocol's.
  std::uint32_t readMessageBegin(std::string& name, apache::thrift::protocol::TMessageType& type,
                                 std::int32_t& sequenceId);
  std::uint32_t readMapBegin(apache::thrift::protocol::TType& keyType,
                             apache::thrift::protocol::TType& valueType, std::uint32_t& size);
  std::uint32_t readListBegin(apache::thrift::protocol::TType& elementType, std::uint32_t& size);
  std::uint32_t readSetBegin(apache::thrift::protocol::TType& elementType, std::uint32_t& size);
  std::uint32_t readString(std::string& text);
  std::uint32_t readBinary(std::string& bytes);

 private:
  void Charge(std::int64_t elements, std::int64_t bytesEach);

  std::int64_t replyMemoryBytes_;
  std::int64_t charged_ = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
