// libFuzzer target: whole neighbour records through the typed decoder. The
// input is split into TLVs of the kinds a neighbour announces, each taken as
// the switch would pass it on, so that every field decoder meets arbitrary
// bytes; built with AddressSanitizer, a read outside a TLV is a crash.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Arq/Monitoring/Model/LldpNeighbourDecoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
  static constexpr Dto::LldpTlvType kTypes[] = {
      Dto::LldpTlvType::ChassisId,          Dto::LldpTlvType::PortId,
      Dto::LldpTlvType::TimeToLive,         Dto::LldpTlvType::PortDescription,
      Dto::LldpTlvType::SystemName,         Dto::LldpTlvType::SystemDescription,
      Dto::LldpTlvType::SystemCapabilities, Dto::LldpTlvType::ManagementAddress};
  Dto::LldpInfo info;
  info.IfName = "1/1";
  // Each TLV: one byte of length, then that many bytes (or what is left).
  std::size_t at = 0;
  for (const auto type : kTypes) {
    if (at >= size) break;
    const std::size_t length = data[at++];
    const std::size_t taken = length < size - at ? length : size - at;
    info.Tlv[type] = std::string(reinterpret_cast<const char*>(data + at), taken);
    at += taken;
  }
  const auto neighbour = Arq::Monitoring::DecodeNeighbour(info, 1);
  if (neighbour.managementAddress && neighbour.managementAddress->objectId &&
      neighbour.managementAddress->objectId->size() > 128) {
    __builtin_trap();  // SNMP cannot carry it: the decoder must have refused it
  }
  (void)Arq::Monitoring::DecodeObjectId(
      std::string_view(reinterpret_cast<const char*>(data), size));
  return 0;
}
