// libFuzzer target: every LLDP TLV reader on arbitrary bytes. Built with clang
// and AddressSanitizer, so a read outside the input is a crash.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace Tlv = Arq::Monitoring::MetricConverter::LldpTlv;
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
  return 0;
}
