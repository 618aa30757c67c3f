#pragma once

#include <array>
#include <cstddef>

// The traffic counters of an Ethernet port, in the switch's order (the
// int64 fields 2 to 31 of the wire struct EthCnt_t, which uses the same
// names). This list is the one place that names them: the EthCnt record,
// the Thrift conversion, the switch simulator and the MIB module's counter
// columns (named after the counter without its "NbOf") are all made from it.
// Adding a counter is one line here plus its field in the interface
// definitions; the build fails if the two disagree.
#define ARQ_ETH_COUNTERS(X)                 \
  X(NbOfGoodOctetsReceived)                 \
  X(NbOfBadOctetsReceived)                  \
  X(NbOfFrameNotTransmitted)                \
  X(NbOfGoodPacketsBroadcast)               \
  X(NbOfGoodPacketsMulticast)               \
  X(NbOfGoodPackets64Bytes)                 \
  X(NbOfGoodPackets65to127Bytes)            \
  X(NbOfGoodPackets128to255Bytes)           \
  X(NbOfGoodPackets256to511Bytes)           \
  X(NbOfGoodPackets512to1023Bytes)          \
  X(NbOfGoodPackets1024toMaxBytes)          \
  X(NbOfGoodOctectsSent)                    \
  X(NbOfPacketsDropDueCollision)            \
  X(NbOfGoodMulticastPacketsSent)           \
  X(NbOfGoodBroadcastPacketsSent)           \
  X(NbOfGoodFlowControlFrameSent)           \
  X(NbOfGoodFlowControlFrameReceived)       \
  X(NbOfInternalDropPacketsBW)              \
  X(NbOfPacketsSizeLess64BytesReceived)     \
  X(NbOfFragmentedPacketsReceived)          \
  X(NbOfOversizedPacketsReceived)           \
  X(NbOfJabberPacketsReceived)              \
  X(NbOfReceivedErrorFromMac)               \
  X(NbOfCrcErrorEvents)                     \
  X(NbOfMacCollision)                       \
  X(NbOfLateMacCollision)                   \
  X(NbOfGoodUnicastFrameReceived)           \
  X(NbOfGoodUnicastFrameSent)               \
  X(NbOfValidFrameSentHalfDupWithCollision) \
  X(NbOfValidFrameSentHalfDupWithOutCollision)

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The position of each counter in the list, by its name:
// EthCounterIndex::NbOfGoodOctetsReceived is 0.
struct EthCounterIndex {
#define ARQ_ETH_COUNTER_INDEX(name) name,
  enum : std::size_t { ARQ_ETH_COUNTERS(ARQ_ETH_COUNTER_INDEX) };
#undef ARQ_ETH_COUNTER_INDEX
};

#define ARQ_ETH_COUNTER_NAME(name) #name,
inline constexpr std::array kEthCounterNames = {ARQ_ETH_COUNTERS(ARQ_ETH_COUNTER_NAME)};
#undef ARQ_ETH_COUNTER_NAME

inline constexpr std::size_t kEthCounterCount = kEthCounterNames.size();

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
