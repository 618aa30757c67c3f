#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Arq::OrvoViaSwitchService::Simulator::LldpTlvEncoder {

// IEEE 802.1AB TLVs as the switch's LLDP agent hands them over: a two-byte
// header (7-bit type, 9-bit value length) followed by the value. Each
// builder throws std::invalid_argument for a value the header cannot carry.

std::string Tlv(int type, const std::string& value);
// Chassis ID (type 1) and Port ID (type 2): a subtype byte, then the id.
std::string ChassisId(int subtype, const std::string& id);
std::string PortId(int subtype, const std::string& id);
// Time To Live (type 3): seconds, two bytes big-endian.
std::string TimeToLive(int seconds);
// System Capabilities (type 7): two 16-bit bit maps, supported then enabled.
std::string SystemCapabilities(int supported, int enabled);
// Management Address (type 8) of an IPv4 address: address string length 5,
// subtype 1 (IPv4), the 4 bytes, interface numbering by ifIndex with
// `ifIndex`, no OID.
std::string ManagementAddressIpv4(const std::string& addressBytes, std::uint32_t ifIndex);

// "00:1b:21:3a:4f:5e" (or with '-') as its 6 bytes.
std::optional<std::string> MacBytes(const std::string& text);
// Dotted-decimal IPv4 as its 4 bytes.
std::optional<std::string> Ipv4Bytes(const std::string& text);
// An even number of hex digits as bytes.
std::optional<std::string> HexBytes(const std::string& text);

}  // namespace Arq::OrvoViaSwitchService::Simulator::LldpTlvEncoder
