#include "Arq/OrvoViaSwitchService/Simulator/LldpTlvEncoder.h"

#include <cctype>
#include <stdexcept>

namespace Arq::OrvoViaSwitchService::Simulator::LldpTlvEncoder {
namespace {

constexpr std::size_t kMaxValueLength = 511;
constexpr int kMaxType = 127;
constexpr int kManagementAddressIpv4 = 1;
constexpr int kInterfaceNumberingIfIndex = 2;

std::string BigEndian16(int value) {
  return {static_cast<char>((value >> 8) & 0xff), static_cast<char>(value & 0xff)};
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const int lower = std::tolower(static_cast<unsigned char>(c));
  if (lower >= 'a' && lower <= 'f') return lower - 'a' + 10;
  return -1;
}

std::string SubtypedId(int type, int subtype, const std::string& id) {
  if (subtype < 0 || subtype > 255) {
    throw std::invalid_argument("subtype " + std::to_string(subtype) + " is not a byte");
  }
  if (id.empty() || id.size() > 255) {
    throw std::invalid_argument("an id holds 1 to 255 bytes, not " + std::to_string(id.size()));
  }
  return Tlv(type, static_cast<char>(subtype) + id);
}

}  // namespace

std::string Tlv(int type, const std::string& value) {
  if (type < 0 || type > kMaxType) {
    throw std::invalid_argument("TLV type " + std::to_string(type) + " is not in 0..127");
  }
  if (value.size() > kMaxValueLength) {
    throw std::invalid_argument("a TLV value holds at most 511 bytes, not " +
                                std::to_string(value.size()));
  }
  const auto length = static_cast<int>(value.size());
  std::string tlv;
  tlv += static_cast<char>((type << 1) | (length >> 8));
  tlv += static_cast<char>(length & 0xff);
  return tlv + value;
}

std::string ChassisId(int subtype, const std::string& id) {
  return SubtypedId(1, subtype, id);
}

std::string PortId(int subtype, const std::string& id) {
  return SubtypedId(2, subtype, id);
}

std::string TimeToLive(int seconds) {
  if (seconds < 0 || seconds > 65535) {
    throw std::invalid_argument("a time to live is 0 to 65535 seconds, not " +
                                std::to_string(seconds));
  }
  return Tlv(3, BigEndian16(seconds));
}

std::string SystemCapabilities(int supported, int enabled) {
  if (supported < 0 || supported > 65535 || enabled < 0 || enabled > 65535) {
    throw std::invalid_argument("capabilities are 16-bit bit maps");
  }
  return Tlv(7, BigEndian16(supported) + BigEndian16(enabled));
}

std::string ManagementAddressIpv4(const std::string& addressBytes, std::uint32_t ifIndex) {
  if (addressBytes.size() != 4) throw std::invalid_argument("an IPv4 address has 4 bytes");
  std::string value;
  value += static_cast<char>(1 + addressBytes.size());
  value += static_cast<char>(kManagementAddressIpv4);
  value += addressBytes;
  value += static_cast<char>(kInterfaceNumberingIfIndex);
  for (int shift = 24; shift >= 0; shift -= 8) {
    value += static_cast<char>((ifIndex >> shift) & 0xff);
  }
  value += '\0';
  return Tlv(8, value);
}

std::optional<std::string> MacBytes(const std::string& text) {
  if (text.size() != 17) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); i += 3) {
    const int high = HexDigit(text[i]);
    const int low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    if (i + 2 < text.size() && text[i + 2] != ':' && text[i + 2] != '-') return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  return bytes;
}

std::optional<std::string> Ipv4Bytes(const std::string& text) {
  std::string bytes;
  std::size_t start = 0;
  for (int part = 0; part < 4; ++part) {
    const std::size_t end = part == 3 ? text.size() : text.find('.', start);
    if (end == std::string::npos || end == start || end - start > 3) return std::nullopt;
    int value = 0;
    for (std::size_t i = start; i < end; ++i) {
      if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
      value = value * 10 + (text[i] - '0');
    }
    if (value > 255) return std::nullopt;
    bytes += static_cast<char>(value);
    start = end + 1;
  }
  return bytes;
}

std::optional<std::string> HexBytes(const std::string& text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = HexDigit(text[i]);
    const int low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  return bytes;
}

}  // namespace Arq::OrvoViaSwitchService::Simulator::LldpTlvEncoder
