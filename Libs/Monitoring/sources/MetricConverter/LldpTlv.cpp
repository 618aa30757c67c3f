#include "Arq/Monitoring/MetricConverter/LldpTlv.h"

#include <cstdio>

namespace Arq::Monitoring::MetricConverter::LldpTlv {
namespace {

constexpr int kChassisIdMac = 4;
constexpr int kChassisIdNetworkAddress = 5;
constexpr int kPortIdMac = 3;
constexpr int kPortIdNetworkAddress = 4;
constexpr int kAddressFamilyIpv4 = 1;
constexpr int kManagementAddressIpv4 = 1;
constexpr std::int32_t kMalformedTimeToLive = 121;

std::uint8_t Byte(std::string_view text, std::size_t i) {
  return static_cast<std::uint8_t>(text[i]);
}

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

// A network address as carried by the Chassis ID and Port ID subtypes: one
// IANA address-family byte, then the address.
std::string NetworkAddressText(std::string_view address) {
  if (address.size() == 5 && Byte(address, 0) == kAddressFamilyIpv4) {
    return Ipv4Text(address.substr(1));
  }
  return PrintableText(address.substr(address.empty() ? 0 : 1));
}

}  // namespace

std::optional<std::string_view> Value(std::string_view tlv, int expectedType) {
  if (tlv.size() < 2) return std::nullopt;
  const int type = Byte(tlv, 0) >> 1;
  const std::size_t length = (static_cast<std::size_t>(Byte(tlv, 0) & 1u) << 8) | Byte(tlv, 1);
  if (type != expectedType || length + 2 > tlv.size()) return std::nullopt;
  return tlv.substr(2, length);
}

std::string MacText(std::string_view bytes) {
  std::string text;
  char part[4];
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    (void)std::snprintf(part, sizeof part, i == 0 ? "%02x" : ":%02x", Byte(bytes, i));
    text += part;
  }
  return text;
}

std::string Ipv4Text(std::string_view bytes) {
  if (bytes.size() != 4) return {};
  return std::to_string(Byte(bytes, 0)) + "." + std::to_string(Byte(bytes, 1)) + "." +
         std::to_string(Byte(bytes, 2)) + "." + std::to_string(Byte(bytes, 3));
}

std::string PrintableText(std::string_view bytes) {
  while (!bytes.empty() && (bytes.back() == '\0' || bytes.back() == ' ')) bytes.remove_suffix(1);
  std::string text(bytes);
  for (auto& c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (byte < 0x20 || byte > 0x7e) c = '.';
  }
  return text;
}

std::optional<std::string> ChassisId(std::string_view tlv) {
  const auto value = Value(tlv, 1);
  if (!value || value->empty()) return std::nullopt;
  const int subtype = Byte(*value, 0);
  const auto id = value->substr(1);
  if (subtype == kChassisIdMac) return id.size() == 6 ? MacText(id) : std::string();
  if (subtype == kChassisIdNetworkAddress) return NetworkAddressText(id);
  return PrintableText(id);
}

std::optional<PortId> PortIdentifier(std::string_view tlv) {
  const auto value = Value(tlv, 2);
  if (!value || value->empty()) return std::nullopt;
  const int subtype = Byte(*value, 0);
  const auto id = value->substr(1);
  PortId port;
  if (subtype == kPortIdMac) {
    if (id.size() == 6) port.macAddress = MacText(id);
  } else if (subtype == kPortIdNetworkAddress) {
    port.interfaceName = NetworkAddressText(id);
  } else {
    port.interfaceName = PrintableText(id);
  }
  return port;
}

std::optional<std::string> ManagementAddress(std::string_view tlv) {
  const auto value = Value(tlv, 8);
  // Address string length (subtype byte + address), subtype, address.
  if (!value || value->size() < 2) return std::nullopt;
  const std::size_t length = Byte(*value, 0);
  if (length < 1 || length + 1 > value->size()) return std::nullopt;
  if (Byte(*value, 1) != kManagementAddressIpv4 || length != 5) return std::nullopt;
  return Ipv4Text(value->substr(2, 4));
}

std::int32_t TimeToLive(std::string_view tlv) {
  // The header only has to fit in the text: the number is always read from
  // the third and fourth bytes, whatever length the header announces. A text
  // too short to hold those two bytes has no number to give.
  if (tlv.size() < 4 || !Value(tlv, 3)) return kMalformedTimeToLive;
  return static_cast<std::int32_t>((Byte(tlv, 2) << 8) | Byte(tlv, 3));
}

std::optional<std::string> Text(std::string_view tlv, int expectedType) {
  const auto value = Value(tlv, expectedType);
  if (!value) return std::nullopt;
  return PrintableText(*value);
}

SystemDescription SplitSystemDescription(std::string_view text) {
  SystemDescription parts;
  const auto first = text.find(';');
  parts.deviceType = std::string(Trim(text.substr(0, first)));
  if (first == std::string_view::npos) return parts;
  const auto rest = text.substr(first + 1);
  const auto second = rest.find(';');
  parts.serialNumber = std::string(Trim(rest.substr(0, second)));
  if (second != std::string_view::npos) parts.version = std::string(Trim(rest.substr(second + 1)));
  return parts;
}

std::string Encode(int type, std::string_view value) {
  const std::size_t length = value.size() > 511 ? 511 : value.size();
  std::string tlv;
  tlv += static_cast<char>(((type & 0x7f) << 1) | static_cast<int>(length >> 8));
  tlv += static_cast<char>(length & 0xff);
  tlv.append(value.substr(0, length));
  return tlv;
}

}  // namespace Arq::Monitoring::MetricConverter::LldpTlv
