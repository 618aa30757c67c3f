// libFuzzer target: every LLDP TLV reader on arbitrary bytes, and the decoder
// of whole neighbour records on the same bytes split into the TLVs a
// neighbour announces (each behind one byte of length). Built with clang and
// AddressSanitizer, so a read outside the input is a crash.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/Monitoring/Model/LldpNeighbourDecoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace Tlv = Arq::Monitoring::MetricConverter::LldpTlv;
  namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
  const std::string_view tlv(reinterpret_cast<const char*>(data), size);
  (void)Tlv::ChassisId(tlv);
  (void)Tlv::PortIdentifier(tlv);
  (void)Tlv::ManagementAddress(tlv);
  (void)Tlv::TimeToLive(tlv);
  for (int type : {4, 5, 6}) {
    if (const auto text = Tlv::Text(tlv, type)) (void)Tlv::SplitSystemDescription(*text);
  }
  (void)Tlv::SplitSystemDescription(tlv);
  (void)Tlv::MacText(tlv);
  (void)Tlv::Ipv4Text(tlv);

  Dto::LldpInfo info;
  std::size_t at = 0;
  for (int type = 1; type <= 8 && at < size; ++type) {
    const std::size_t length = std::min<std::size_t>(data[at++], size - at);
    info.Tlv[static_cast<Dto::LldpTlvType>(type)] = std::string(tlv.substr(at, length));
    at += length;
  }
  const auto neighbour = Arq::Monitoring::DecodeNeighbour(info, 1);
  const auto& address = neighbour.managementAddress;
  if (address && address->objectId && address->objectId->size() > 128) __builtin_trap();
  (void)Arq::Monitoring::DecodeObjectId(tlv);
  return 0;
}
