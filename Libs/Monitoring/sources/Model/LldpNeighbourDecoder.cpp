#include "Arq/Monitoring/Model/LldpNeighbourDecoder.h"

#include <cctype>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"

namespace Arq::Monitoring {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Model = OrvoViaSwitch::Domain::Model;
namespace LldpTlv = MetricConverter::LldpTlv;

// The largest object identifier SNMP carries.
constexpr std::size_t kMaxArcs = 128;

std::uint8_t Byte(std::string_view bytes, std::size_t i) {
  return static_cast<std::uint8_t>(bytes[i]);
}

std::optional<std::string_view> TlvValue(const Dto::LldpInfo& info, Dto::LldpTlvType type) {
  const auto found = info.Tlv.find(type);
  if (found == info.Tlv.end()) return std::nullopt;
  return LldpTlv::Value(found->second, static_cast<int>(type));
}

// Chassis ID (subtypes 1-7) and Port ID: a subtype byte then 1 to 255 bytes.
std::optional<Model::LldpId> Identifier(const Dto::LldpInfo& info, Dto::LldpTlvType type) {
  const auto value = TlvValue(info, type);
  if (!value || value->size() < 2 || value->size() > 256 || Byte(*value, 0) < 1 ||
      Byte(*value, 0) > 7) {
    return std::nullopt;
  }
  return Model::LldpId{Byte(*value, 0), std::string(value->substr(1))};
}

std::optional<std::string> Text(const Dto::LldpInfo& info, Dto::LldpTlvType type) {
  const auto value = TlvValue(info, type);
  if (!value) return std::nullopt;
  return std::string(*value);
}

// Management Address: address string length (subtype included), subtype,
// address, interface numbering subtype, interface number (4 bytes), OID
// length, OID (BER).
std::optional<Model::LldpManagementAddress> ManagementAddress(const Dto::LldpInfo& info) {
  const auto value = TlvValue(info, Dto::LldpTlvType::ManagementAddress);
  if (!value || value->size() < 2) return std::nullopt;
  const std::size_t length = Byte(*value, 0);
  if (length < 2 || length > 32 || length + 7 > value->size()) return std::nullopt;
  const std::size_t after = 1 + length;
  const std::size_t oidLength = Byte(*value, after + 5);
  if (after + 6 + oidLength != value->size()) return std::nullopt;
  Model::LldpManagementAddress address;
  address.subtype = Byte(*value, 1);
  address.address = std::string(value->substr(2, length - 1));
  address.interfaceSubtype = Byte(*value, after);
  address.interfaceNumber = (static_cast<std::uint32_t>(Byte(*value, after + 1)) << 24) |
                            (static_cast<std::uint32_t>(Byte(*value, after + 2)) << 16) |
                            (static_cast<std::uint32_t>(Byte(*value, after + 3)) << 8) |
                            Byte(*value, after + 4);
  // An identifier SNMP cannot carry leaves its column out; the address stays.
  if (oidLength != 0) address.objectId = DecodeObjectId(value->substr(after + 6));
  return address;
}

}  // namespace

std::optional<std::vector<std::uint32_t>> DecodeObjectId(std::string_view ber) {
  std::vector<std::uint32_t> arcs;
  std::uint64_t arc = 0;
  std::size_t arcBytes = 0;
  for (std::size_t i = 0; i < ber.size(); ++i) {
    const std::uint8_t byte = Byte(ber, i);
    if (arcBytes == 0 && byte == 0x80) return std::nullopt;  // a leading zero group
    arc = (arc << 7) | (byte & 0x7fu);
    if (++arcBytes > 5 || arc > 0xffffffffu) return std::nullopt;
    if ((byte & 0x80) != 0) continue;
    if (arcs.empty()) {
      // The first group holds the first two arcs: 40 * X + Y.
      arcs.push_back(arc < 80 ? static_cast<std::uint32_t>(arc / 40) : 2);
      arcs.push_back(static_cast<std::uint32_t>(arc < 80 ? arc % 40 : arc - 80));
    } else {
      arcs.push_back(static_cast<std::uint32_t>(arc));
    }
    if (arcs.size() > kMaxArcs) return std::nullopt;
    arc = 0;
    arcBytes = 0;
  }
  if (arcBytes != 0 || arcs.size() < 2) return std::nullopt;  // cut inside an arc, or empty
  return arcs;
}

Model::LldpNeighbour DecodeNeighbour(const Dto::LldpInfo& info, std::size_t position) {
  Model::LldpNeighbour neighbour;
  neighbour.localPort = info.IfName;
  neighbour.position = position;
  neighbour.chassisId = Identifier(info, Dto::LldpTlvType::ChassisId);
  neighbour.portId = Identifier(info, Dto::LldpTlvType::PortId);
  neighbour.portDescription = Text(info, Dto::LldpTlvType::PortDescription);
  neighbour.systemName = Text(info, Dto::LldpTlvType::SystemName);
  neighbour.systemDescription = Text(info, Dto::LldpTlvType::SystemDescription);
  if (const auto value = TlvValue(info, Dto::LldpTlvType::SystemCapabilities);
      value && value->size() == 4) {
    neighbour.capabilitiesSupported =
        static_cast<std::uint16_t>((Byte(*value, 0) << 8) | Byte(*value, 1));
    neighbour.capabilitiesEnabled =
        static_cast<std::uint16_t>((Byte(*value, 2) << 8) | Byte(*value, 3));
  }
  if (const auto value = TlvValue(info, Dto::LldpTlvType::TimeToLive);
      value && value->size() == 2) {
    neighbour.ttl = static_cast<std::uint16_t>((Byte(*value, 0) << 8) | Byte(*value, 1));
  }
  neighbour.managementAddress = ManagementAddress(info);
  return neighbour;
}

std::optional<Model::MacAddress> ParseMac(std::string_view text) {
  if (text.size() != 17) return std::nullopt;
  const char separator = text[2];
  if (separator != ':' && separator != '-') return std::nullopt;
  Model::MacAddress mac{};
  for (std::size_t i = 0; i < 6; ++i) {
    const std::size_t at = i * 3;
    if (i > 0 && text[at - 1] != separator) return std::nullopt;
    unsigned value = 0;
    for (std::size_t k = at; k < at + 2; ++k) {
      const char c = text[k];
      if (!std::isxdigit(static_cast<unsigned char>(c))) return std::nullopt;
      value = value * 16 + static_cast<unsigned>(std::isdigit(static_cast<unsigned char>(c))
                                                     ? c - '0'
                                                     : std::tolower(c) - 'a' + 10);
    }
    mac[i] = static_cast<std::uint8_t>(value);
  }
  return mac;
}

}  // namespace Arq::Monitoring
