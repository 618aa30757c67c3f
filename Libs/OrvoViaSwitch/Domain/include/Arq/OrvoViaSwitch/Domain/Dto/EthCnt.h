#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace Arq::OrvoViaSwitch::Domain::Dto {

// The 30 traffic counters of one Ethernet port, in the switch's order.
struct EthCnt {
  std::string EthName;
  std::int64_t NbOfGoodOctetsReceived = 0;
  std::int64_t NbOfBadOctetsReceived = 0;
  std::int64_t NbOfFrameNotTransmitted = 0;
  std::int64_t NbOfGoodPacketsBroadcast = 0;
  std::int64_t NbOfGoodPacketsMulticast = 0;
  std::int64_t NbOfGoodPackets64Bytes = 0;
  std::int64_t NbOfGoodPackets65to127Bytes = 0;
  std::int64_t NbOfGoodPackets128to255Bytes = 0;
  std::int64_t NbOfGoodPackets256to511Bytes = 0;
  std::int64_t NbOfGoodPackets512to1023Bytes = 0;
  std::int64_t NbOfGoodPackets1024toMaxBytes = 0;
  std::int64_t NbOfGoodOctectsSent = 0;
  std::int64_t NbOfPacketsDropDueCollision = 0;
  std::int64_t NbOfGoodMulticastPacketsSent = 0;
  std::int64_t NbOfGoodBroadcastPacketsSent = 0;
  std::int64_t NbOfGoodFlowControlFrameSent = 0;
  std::int64_t NbOfGoodFlowControlFrameReceived = 0;
  std::int64_t NbOfInternalDropPacketsBW = 0;
  std::int64_t NbOfPacketsSizeLess64BytesReceived = 0;
  std::int64_t NbOfFragmentedPacketsReceived = 0;
  std::int64_t NbOfOversizedPacketsReceived = 0;
  std::int64_t NbOfJabberPacketsReceived = 0;
  std::int64_t NbOfReceivedErrorFromMac = 0;
  std::int64_t NbOfCrcErrorEvents = 0;
  std::int64_t NbOfMacCollision = 0;
  std::int64_t NbOfLateMacCollision = 0;
  std::int64_t NbOfGoodUnicastFrameReceived = 0;
  std::int64_t NbOfGoodUnicastFrameSent = 0;
  std::int64_t NbOfValidFrameSentHalfDupWithCollision = 0;
  std::int64_t NbOfValidFrameSentHalfDupWithOutCollision = 0;

  auto Tie() const {
    return std::tie(
        EthName, NbOfGoodOctetsReceived, NbOfBadOctetsReceived, NbOfFrameNotTransmitted,
        NbOfGoodPacketsBroadcast, NbOfGoodPacketsMulticast, NbOfGoodPackets64Bytes,
        NbOfGoodPackets65to127Bytes, NbOfGoodPackets128to255Bytes, NbOfGoodPackets256to511Bytes,
        NbOfGoodPackets512to1023Bytes, NbOfGoodPackets1024toMaxBytes, NbOfGoodOctectsSent,
        NbOfPacketsDropDueCollision, NbOfGoodMulticastPacketsSent, NbOfGoodBroadcastPacketsSent,
        NbOfGoodFlowControlFrameSent, NbOfGoodFlowControlFrameReceived, NbOfInternalDropPacketsBW,
        NbOfPacketsSizeLess64BytesReceived, NbOfFragmentedPacketsReceived,
        NbOfOversizedPacketsReceived, NbOfJabberPacketsReceived, NbOfReceivedErrorFromMac,
        NbOfCrcErrorEvents, NbOfMacCollision, NbOfLateMacCollision, NbOfGoodUnicastFrameReceived,
        NbOfGoodUnicastFrameSent, NbOfValidFrameSentHalfDupWithCollision,
        NbOfValidFrameSentHalfDupWithOutCollision);
  }
  bool operator==(const EthCnt& other) const { return Tie() == other.Tie(); }
  bool operator!=(const EthCnt& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
