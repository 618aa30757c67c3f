#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Arq::Monitoring::MetricConverter::LldpTlv {

// Readers of whole IEEE 802.1AB TLVs as the switch hands them over: a
// two-byte header (7-bit type, 9-bit length) followed by the value. Every
// reader checks the header against the text's real size and never reads past
// it; a truncated, oversized, empty or mistyped TLV gives nothing.

// The value of a well-formed TLV of the expected type.
std::optional<std::string_view> Value(std::string_view tlv, int expectedType);

// Six bytes as lower-case colon-separated hex ("00:1b:21:3a:4f:5e").
std::string MacText(std::string_view bytes);
// Four bytes as dotted decimal.
std::string Ipv4Text(std::string_view bytes);
// Printable text: control bytes and bytes above 0x7e become '.', trailing NUL
// bytes and blanks are dropped.
std::string PrintableText(std::string_view bytes);

// Chassis ID (type 1): MAC subtype (4) as MAC text; network address subtype
// (5) as dotted IPv4 when its family is IPv4; the other subtypes (component,
// interface alias or name, locally assigned) as printable text.
std::optional<std::string> ChassisId(std::string_view tlv);

struct PortId {
  std::string macAddress;     // set when the subtype is MAC address (3)
  std::string interfaceName;  // the printable text of any other subtype
};
// Port ID (type 2).
std::optional<PortId> PortIdentifier(std::string_view tlv);

// Management Address (type 8): the address when its subtype is IPv4 (1).
std::optional<std::string> ManagementAddress(std::string_view tlv);

// Time To Live (type 3): the big-endian seconds; 121 for any malformed TTL.
std::int32_t TimeToLive(std::string_view tlv);

// Port Description (4), System Name (5), System Description (6): printable text.
std::optional<std::string> Text(std::string_view tlv, int expectedType);

// A System Description split into device type, serial number and version: the
// text is cut at its first two ';' and each part is trimmed of blanks. A
// missing part is empty; any further ';' stay in the version.
struct SystemDescription {
  std::string deviceType;
  std::string serialNumber;
  std::string version;
};
SystemDescription SplitSystemDescription(std::string_view text);

// Builds a TLV from a type and a value (the value is cut at 511 bytes).
std::string Encode(int type, std::string_view value);

}  // namespace Arq::Monitoring::MetricConverter::LldpTlv
