#include "Arq/OrvoViaSwitchService/Client/Thrift/BoundedBinaryProtocol.h"

#include <ArqSwitchApi/ArqSwitchApi_types.h>
#include <thrift/protocol/TProtocolException.h>

#include <utility>

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace {

using apache::thrift::protocol::TProtocolException;
using apache::thrift::protocol::TType;

// Upper bounds of what one element costs once read: a generated record, a
// string or container object, a map node's links, a number.
constexpr std::int64_t kRecordBytes = 512;
constexpr std::int64_t kObjectBytes = 48;
constexpr std::int64_t kMapNodeBytes = 48;
constexpr std::int64_t kScalarBytes = 8;

static_assert(sizeof(ArqSwitchApi::IfInfo_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::EthInfo_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::EthCnt_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::EthStat_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::lldpInfo_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::lldpConfig_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::PTPConfig_t) <= kRecordBytes &&
                  sizeof(ArqSwitchApi::ConfigFile_t) <= kRecordBytes,
              "a record read from the switch outgrew the per-element estimate");
static_assert(sizeof(std::string) <= kObjectBytes, "string object outgrew its estimate");

std::int64_t ElementBytes(TType type) {
  switch (type) {
    case apache::thrift::protocol::T_STRUCT:
      return kRecordBytes;
    case apache::thrift::protocol::T_STRING:
    case apache::thrift::protocol::T_MAP:
    case apache::thrift::protocol::T_SET:
    case apache::thrift::protocol::T_LIST:
      return kObjectBytes;
    default:
      return kScalarBytes;
  }
}

}  // namespace

// A whole full-capacity collection moves about 80 kB over its ten replies; its
// costliest reply is charged about 90 kB; its longest string is a 513-byte
// LLDP TLV and its longest list a VLAN list (4094 at most). The bounds leave
// two to three orders of magnitude above that, and keep the worst a peer can
// make one reply cost (the budget, plus one string not yet filled) near 17 MB.
const BoundedBinaryProtocol::Limits BoundedBinaryProtocol::kSwitchReplyLimits{
    1 << 20,   // 1 MiB per string
    1 << 16,   // 65536 elements per container
    16 << 20,  // 16 MiB of records, strings and containers per reply
};

BoundedBinaryProtocol::BoundedBinaryProtocol(
    std::shared_ptr<apache::thrift::transport::TTransport> transport, const Limits& limits)
    : TVirtualProtocol(std::move(transport)), replyMemoryBytes_(limits.replyMemoryBytes) {
  setStringSizeLimit(limits.stringBytes);
  setContainerSizeLimit(limits.containerElements);
  // Strict reading: a reply must start with the protocol's version word, so
  // an answer such as "HTTP/1.1 400" is refused before anything is allocated.
  setStrict(true, true);
}

void BoundedBinaryProtocol::Charge(std::int64_t elements, std::int64_t bytesEach) {
  charged_ += elements * bytesEach;
  if (charged_ > replyMemoryBytes_) {
    throw TProtocolException(
        TProtocolException::SIZE_LIMIT,
        "reply larger than " + std::to_string(replyMemoryBytes_ >> 20) + " MiB once read");
  }
}

std::uint32_t BoundedBinaryProtocol::readMessageBegin(std::string& name,
                                                      apache::thrift::protocol::TMessageType& type,
                                                      std::int32_t& sequenceId) {
  charged_ = 0;
  return TBinaryProtocolT::readMessageBegin(name, type, sequenceId);
}

std::uint32_t BoundedBinaryProtocol::readMapBegin(TType& keyType, TType& valueType,
                                                  std::uint32_t& size) {
  const auto read = TBinaryProtocolT::readMapBegin(keyType, valueType, size);
  Charge(size, kMapNodeBytes + ElementBytes(keyType) + ElementBytes(valueType));
  return read;
}

std::uint32_t BoundedBinaryProtocol::readListBegin(TType& elementType, std::uint32_t& size) {
  const auto read = TBinaryProtocolT::readListBegin(elementType, size);
  Charge(size, ElementBytes(elementType));
  return read;
}

std::uint32_t BoundedBinaryProtocol::readSetBegin(TType& elementType, std::uint32_t& size) {
  const auto read = TBinaryProtocolT::readSetBegin(elementType, size);
  Charge(size, kMapNodeBytes + ElementBytes(elementType));
  return read;
}

std::uint32_t BoundedBinaryProtocol::readString(std::string& text) {
  const auto read = TBinaryProtocolT::readString(text);
  Charge(1, static_cast<std::int64_t>(text.capacity()));
  return read;
}

std::uint32_t BoundedBinaryProtocol::readBinary(std::string& bytes) {
  const auto read = TBinaryProtocolT::readBinary(bytes);
  Charge(1, static_cast<std::int64_t>(bytes.capacity()));
  return read;
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
