// Every leaf the gNMI server serves, declared once: its OpenConfig path, config
// or state, how TARGET_DEFINED streams it, and its value read from the view of
// one switch model. The counters are computed as the IF-MIB, EtherLike-MIB and
// RMON-MIB objects of the same port are, so that both protocols give the same
// numbers for the same collection.
#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "Arq/Gnmi/Schema.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitch/Domain/Model/PortCounterFacts.def"

namespace Arq::Gnmi {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Metrics = Dto::Metrics;
using Index = Dto::EthCounterIndex;
using Entry = View::InterfaceEntry;
using Result = std::optional<Value>;

const Entry& If(const Instance& i) {
  return *static_cast<const Entry*>(i.source);
}
const Model::LldpNeighbour& Nb(const Instance& i) {
  return *static_cast<const View::NeighbourEntry*>(i.source)->neighbour;
}
const View::ComponentEntry& Comp(const Instance& i) {
  return *static_cast<const View::ComponentEntry*>(i.source);
}

std::uint64_t Count(const Entry& e, std::size_t counter) {
  return e.counters[counter];
}

// ifInErrors: undersize, fragments, oversize, jabber, MAC and CRC errors.
std::uint64_t InErrors(const Entry& e) {
  std::uint64_t sum = 0;
  for (std::size_t c = Index::NbOfPacketsSizeLess64BytesReceived; c <= Index::NbOfCrcErrorEvents;
       ++c) {
    sum += e.counters[c];
  }
  return sum;
}

// One of the port's counters as a counter64 leaf.
template <std::size_t counter>
Result Counter(const View&, const Instance& i) {
  return Value::U64(Count(If(i), counter));
}
// An Ethernet counter: ports only.
template <std::size_t counter>
Result PortCounter(const View&, const Instance& i) {
  if (If(i).port == nullptr) return std::nullopt;
  return Value::U64(Count(If(i), counter));
}

std::string MacText(const Model::MacAddress& mac) {
  char text[18];
  (void)std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2],
                      mac[3], mac[4], mac[5]);
  return text;
}

std::string Ipv4Text(const std::uint8_t* a) {
  char text[16];
  (void)std::snprintf(text, sizeof text, "%u.%u.%u.%u", a[0], a[1], a[2], a[3]);
  return text;
}

std::string Hex(const std::string& bytes) {
  std::string text;
  char octet[4];
  for (const char c : bytes) {
    (void)std::snprintf(octet, sizeof octet, text.empty() ? "%02x" : ":%02x",
                        static_cast<unsigned char>(c));
    text += octet;
  }
  return text;
}

bool Printable(const std::string& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != 0x7f; });
}

// An LLDP identifier as text: a MAC address as such, a network address
// (IPv4) dotted, printable text as it is, other bytes in hex.
std::string IdText(const Model::LldpId& id, std::uint8_t macSubtype, std::uint8_t netSubtype) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(id.id.data());
  if (id.subtype == macSubtype && id.id.size() == 6) {
    Model::MacAddress mac{};
    std::copy(bytes, bytes + 6, mac.begin());
    return MacText(mac);
  }
  if (id.subtype == netSubtype && id.id.size() == 5 && bytes[0] == 1) return Ipv4Text(bytes + 1);
  return Printable(id.id) ? id.id : Hex(id.id);
}

// openconfig-lldp-types ChassisIdType and PortIdType: the 802.1AB subtypes in
// order, LOCAL for subtype 7.
Result ChassisIdType(std::uint8_t subtype) {
  static const char* const names[] = {
      "CHASSIS_COMPONENT", "INTERFACE_ALIAS", "PORT_COMPONENT", "MAC_ADDRESS",
      "NETWORK_ADDRESS",   "INTERFACE_NAME",  "LOCAL"};
  if (subtype < 1 || subtype > 7) return std::nullopt;
  return Value::Enumeration(names[subtype - 1]);
}
Result PortIdType(std::uint8_t subtype) {
  static const char* const names[] = {
      "INTERFACE_ALIAS", "PORT_COMPONENT",   "MAC_ADDRESS", "NETWORK_ADDRESS",
      "INTERFACE_NAME",  "AGENT_CIRCUIT_ID", "LOCAL"};
  if (subtype < 1 || subtype > 7) return std::nullopt;
  return Value::Enumeration(names[subtype - 1]);
}

Result Name(const View&, const Instance& i) {
  return Value::Str(i.keys.back());
}

Result Type(const View&, const Instance& i) {
  const Entry& e = If(i);
  if (e.aggregate == nullptr) return Value::Ident("iana-if-type:ethernetCsmacd");
  return Value::Ident(e.aggregate->type == Dto::IfType::BasicLag ? "iana-if-type:ieee8023adLag"
                                                                 : "iana-if-type:propVirtual");
}

// ifAlias: the Ethernet interface's or the LAG/PRS interface's description;
// a member port has none of its own.
Result Description(const View&, const Instance& i) {
  const Entry& e = If(i);
  if (e.aggregate != nullptr || e.owner->type == Dto::IfType::Ethernet) {
    return Value::Str(e.owner->description);
  }
  return Value::Str("");
}

Result Enabled(const View&, const Instance& i) {
  return Value::Boolean(If(i).owner->status != Dto::IfStatus::Disabled);
}

Model::LinkState Link(const Entry& e) {
  return e.aggregate != nullptr ? e.aggregate->link : e.port->link;
}

Result OperStatus(const View&, const Instance& i) {
  switch (Link(If(i))) {
    case Model::LinkState::Up:
      return Value::Enumeration("UP");
    case Model::LinkState::Down:
      return Value::Enumeration("DOWN");
    default:
      return Value::Enumeration("UNKNOWN");
  }
}

Result LastChange(const View& v, const Instance& i) {
  const Entry& e = If(i);
  return Value::U64(
      v.WallNs(e.aggregate != nullptr ? e.aggregate->linkChanged : e.port->linkChanged));
}

Result LastClear(const View& v, const Instance& i) {
  const Entry& e = If(i);
  Model::Clock::time_point when{};
  if (e.port != nullptr) {
    when = e.port->counterDiscontinuity;
  } else {
    for (const std::size_t m : e.aggregate->members) {
      when = std::max(when, v.model().ports[m].counterDiscontinuity);
    }
  }
  const std::uint64_t ns = v.WallNs(when);
  return ns == 0 ? std::nullopt : Result(Value::U64(ns));
}

// dot3StatsDuplexStatus, by the port's mode: known only while the link is up.
Result Duplex(const View&, const Instance& i) {
  const Model::Port* port = If(i).port;
  if (port == nullptr || port->link != Model::LinkState::Up) return std::nullopt;
  switch (port->mode) {
    case Dto::EthMode::KR:
    case Dto::EthMode::KR2:
    case Dto::EthMode::KR4:
    case Dto::EthMode::_1000BASE_X:
      return Value::Enumeration("FULL");
    case Dto::EthMode::SGMII:
      return Value::Enumeration(
          port->counters[Index::NbOfValidFrameSentHalfDupWithCollision] +
                      port->counters[Index::NbOfValidFrameSentHalfDupWithOutCollision] >
                  0
              ? "HALF"
              : "FULL");
    default:
      return std::nullopt;
  }
}

Result PortSpeed(const View&, const Instance& i) {
  const Model::Port* port = If(i).port;
  if (port == nullptr) return std::nullopt;
  const char* name = "SPEED_UNKNOWN";
  switch (port->speed) {
    case Dto::EthSpeed::S1G:
      name = "SPEED_1GB";
      break;
    case Dto::EthSpeed::S10G:
      name = "SPEED_10GB";
      break;
    case Dto::EthSpeed::S25G:
      name = "SPEED_25GB";
      break;
    case Dto::EthSpeed::S40G:
      name = "SPEED_40GB";
      break;
    case Dto::EthSpeed::S50G:
      name = "SPEED_50GB";
      break;
    case Dto::EthSpeed::S100G:
      name = "SPEED_100GB";
      break;
    default:  // 12.5G and 20G have no OpenConfig identity
      break;
  }
  return Value::Ident(std::string("openconfig-if-ethernet:") + name);
}

// ifPhysAddress: the Ethernet interface's (or LAG's) address.
Result MacAddress(const View&, const Instance& i) {
  const Entry& e = If(i);
  const bool own = e.aggregate != nullptr || e.owner->type == Dto::IfType::Ethernet;
  if (!own || !e.owner->mac) return std::nullopt;
  return Value::Str(MacText(*e.owner->mac));
}

Result AggregateId(const View&, const Instance& i) {
  const Entry& e = If(i);
  if (e.port == nullptr || e.lag.empty()) return std::nullopt;
  return Value::Str(e.lag);
}

const Model::Interface* Lag(const Instance& i) {
  const Entry& e = If(i);
  return e.aggregate != nullptr && e.aggregate->type == Dto::IfType::BasicLag ? e.aggregate
                                                                              : nullptr;
}

// The sum of the up members' speeds, in Mbit/s (ifHighSpeed of the LAG).
Result LagSpeed(const View& v, const Instance& i) {
  const Model::Interface* lag = Lag(i);
  if (lag == nullptr) return std::nullopt;
  std::uint64_t speed = 0;
  for (const std::size_t m : lag->members) {
    const Model::Port& port = v.model().ports[m];
    if (port.link == Model::LinkState::Up) speed += Model::SpeedMbps(port.speed);
  }
  return Value::U32(speed);
}

Result Members(const View& v, const Instance& i) {
  const Model::Interface* lag = Lag(i);
  if (lag == nullptr) return std::nullopt;
  std::vector<std::string> names;
  for (const std::size_t m : lag->members) names.push_back(v.model().ports[m].name);
  return Value::List(std::move(names));
}

Result HardwarePort(const View&, const Instance& i) {
  const Entry& e = If(i);
  if (e.port == nullptr) return std::nullopt;
  return Value::Str("port-" + e.port->name);
}

template <std::size_t a, std::size_t b, std::size_t c>
Result Sum3(const View&, const Instance& i) {
  const Entry& e = If(i);
  return Value::U64(Count(e, a) + Count(e, b) + Count(e, c));
}

Result NeighbourId(const View&, const Instance& i) {
  return Value::Str(i.keys.back());
}

Result NbChassisId(const View&, const Instance& i) {
  const auto& id = Nb(i).chassisId;
  return id ? Result(Value::Str(IdText(*id, 4, 5))) : std::nullopt;
}
Result NbChassisIdType(const View&, const Instance& i) {
  const auto& id = Nb(i).chassisId;
  return id ? ChassisIdType(id->subtype) : std::nullopt;
}
Result NbPortId(const View&, const Instance& i) {
  const auto& id = Nb(i).portId;
  return id ? Result(Value::Str(IdText(*id, 3, 4))) : std::nullopt;
}
Result NbPortIdType(const View&, const Instance& i) {
  const auto& id = Nb(i).portId;
  return id ? PortIdType(id->subtype) : std::nullopt;
}
template <std::optional<std::string> Model::LldpNeighbour::*field>
Result NbText(const View&, const Instance& i) {
  const auto& text = Nb(i).*field;
  return text ? Result(Value::Str(*text)) : std::nullopt;
}
Result NbTtl(const View&, const Instance& i) {
  const auto& ttl = Nb(i).ttl;
  return ttl ? Result(Value::U32(*ttl)) : std::nullopt;
}
// IPv4 (family 1) and IPv6 (family 2) addresses; other families are left out.
Result NbManagementAddress(const View&, const Instance& i) {
  const auto& address = Nb(i).managementAddress;
  if (!address) return std::nullopt;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(address->address.data());
  if (address->subtype == 1 && address->address.size() == 4) return Value::Str(Ipv4Text(bytes));
  if (address->subtype == 2 && address->address.size() == 16) {
    std::string text;
    char group[6];
    for (std::size_t g = 0; g < 8; ++g) {
      (void)std::snprintf(group, sizeof group, g == 0 ? "%x" : ":%x",
                          (bytes[2 * g] << 8) | bytes[2 * g + 1]);
      text += group;
    }
    return Value::Str(text);
  }
  return std::nullopt;
}
Result NbManagementAddressType(const View& v, const Instance& i) {
  if (!NbManagementAddress(v, i)) return std::nullopt;
  return Value::Str(Nb(i).managementAddress->subtype == 1 ? "IPV4" : "IPV6");
}

Result LocalChassisId(const View& v, const Instance&) {
  const auto& local = v.model().lldpLocal;
  if (local.chassisIdText.empty()) return std::nullopt;
  return Value::Str(local.chassisMac ? MacText(*local.chassisMac) : local.chassisIdText);
}
Result LocalChassisIdType(const View& v, const Instance&) {
  const auto& local = v.model().lldpLocal;
  if (local.chassisIdText.empty()) return std::nullopt;
  return Value::Enumeration(local.chassisMac ? "MAC_ADDRESS" : "LOCAL");
}
Result LocalSystemName(const View& v, const Instance&) {
  return Value::Str(v.model().lldpLocal.systemName);
}
Result LocalSystemDescription(const View& v, const Instance&) {
  return Value::Str(v.model().lldpLocal.systemDescription);
}

Result ComponentType(const View&, const Instance& i) {
  return Value::Ident(Comp(i).port == nullptr ? "openconfig-platform-types:CHASSIS"
                                              : "openconfig-platform-types:PORT");
}
Result ComponentParent(const View&, const Instance& i) {
  return Comp(i).port == nullptr ? std::nullopt : Result(Value::Str("chassis"));
}

// A neighbour's capability by its openconfig-lldp-types name (the instance's
// last key): the identity, and whether the neighbour has it enabled.
Result CapabilityName(const View&, const Instance& i) {
  return Value::Ident("openconfig-lldp-types:" + i.keys.back());
}
Result CapabilityEnabled(const View&, const Instance& i) {
  const auto& names = LldpCapabilityNames();
  const auto found = std::find(names.begin(), names.end(), i.keys.back());
  const auto bit = static_cast<unsigned>(found - names.begin());
  return Value::Boolean((Nb(i).capabilitiesEnabled.value_or(0) >> bit & 1U) != 0);
}

const Model::PtpDomain& Ptp(const Instance& i) {
  return *static_cast<const Model::PtpDomain*>(i.source);
}
// An enumerator numbered from 0 by its name in `names`; nothing for another.
template <typename Enum, std::size_t count>
Result EnumName(Enum value, const char* const (&names)[count]) {
  const auto n = static_cast<std::int64_t>(value);
  if (n < 0 || n >= static_cast<std::int64_t>(count)) return std::nullopt;
  return Value::Enumeration(names[n]);
}
Result PtpClockMode(const View&, const Instance& i) {
  static const char* const names[] = {"TRANSPARENT", "BOUNDARY", "MASTER", "SLAVE"};
  return EnumName(Ptp(i).clockMode, names);
}
Result PtpProfile(const View&, const Instance& i) {
  static const char* const names[] = {"IEEE_1588_2008", "AES67_2015", "SMPTE_2059",
                                      "INTEROP_DEFAULT_AES_SMPTE", "INTEROP_AES_SMPTE"};
  return EnumName(Ptp(i).profile, names);
}
// The clock's ports as PTPBASE-MIB lists them (each once, none empty), or
// those of them in the slave role.
template <bool slavesOnly>
Result PtpPorts(const View&, const Instance& i) {
  const Model::PtpDomain& domain = Ptp(i);
  std::vector<std::string> names;
  for (const auto& name : domain.ports) {
    if (name.empty() || std::find(names.begin(), names.end(), name) != names.end()) continue;
    const bool slave = std::find(domain.slavePorts.begin(), domain.slavePorts.end(), name) !=
                       domain.slavePorts.end();
    if (slave || !slavesOnly) names.push_back(name);
  }
  return Value::List(std::move(names));
}

const Metrics::CollectorHealthMetric& Health(const View& v) {
  return v.model().collection.health;
}
Result CollectorState(const View& v, const Instance&) {
  switch (Health(v).state) {
    case Metrics::CollectorState::Ok:
      return Value::Enumeration("OK");
    case Metrics::CollectorState::Partial:
      return Value::Enumeration("PARTIAL");
    case Metrics::CollectorState::Unreachable:
      return Value::Enumeration("UNREACHABLE");
    case Metrics::CollectorState::Disabled:
      return Value::Enumeration("DISABLED");
    default:
      return Value::Enumeration("NOT_YET_COLLECTED");
  }
}
template <std::int64_t Metrics::CollectorHealthMetric::*field>
Result HealthNumber(const View& v, const Instance&) {
  return Value::I64(Health(v).*field);
}

#define IF "/interfaces/interface[name=*]"
#define ETH IF "/ethernet/state"
#define NB "/lldp/interfaces/interface[name=*]/neighbors/neighbor[id=*]/state"
#define IF_LEAF(leaf, kind, function) \
  { IF leaf, kind, Cadence::OnChange, Scope::Interface, function }
#define CAPABILITY \
  "/lldp/interfaces/interface[name=*]/neighbors/neighbor[id=*]/capabilities/capability[name=*]"
#define PTP(leaf, function)                                                       \
  {                                                                               \
    "/orvovia-ptp/instances/instance[id=*]" leaf, Kind::State, Cadence::OnChange, \
        Scope::PtpInstance, function                                              \
  }
#define COLLECTOR(leaf, cadence, function) \
  { "/orvovia-collector/state/" leaf, Kind::State, cadence, Scope::Root, function }

// The leaves of each port counter, as the counter facts name them: each with
// its full path, or nullptr where the counter has no such leaf.
struct CounterLeaves {
  const char* interfacePath;
  const char* ethernetPath;
  Result (*interfaceValue)(const View&, const Instance&);
  Result (*ethernetValue)(const View&, const Instance&);
};
constexpr const char* PathIf(std::string_view leaf, const char* path) {
  return leaf.empty() ? nullptr : path;
}
#define ARQ_COUNTER_LEAVES(...) ARQ_COUNTER_LEAVES_COLUMNS(__VA_ARGS__, ~)
#define ARQ_COUNTER_LEAVES_COLUMNS(counter, family, value, interfaceLeaf, ethernetLeaf, ...)  \
  CounterLeaves{PathIf(interfaceLeaf, IF "/state/counters/" interfaceLeaf),                   \
                PathIf(ethernetLeaf, ETH "/counters/" ethernetLeaf), Counter<Index::counter>, \
                PortCounter<Index::counter>},
constexpr std::array kCounterLeaves{ARQ_PORT_COUNTER_FACTS(ARQ_COUNTER_LEAVES)};
#undef ARQ_COUNTER_LEAVES_COLUMNS
#undef ARQ_COUNTER_LEAVES

const std::vector<LeafSpec> kFixedLeaves = {
    IF_LEAF("/name", Kind::Config, Name),
    IF_LEAF("/config/name", Kind::Config, Name),
    IF_LEAF("/config/type", Kind::Config, Type),
    IF_LEAF("/config/description", Kind::Config, Description),
    IF_LEAF("/config/enabled", Kind::Config, Enabled),
    IF_LEAF("/state/name", Kind::State, Name),
    IF_LEAF("/state/type", Kind::State, Type),
    IF_LEAF("/state/description", Kind::State, Description),
    IF_LEAF("/state/enabled", Kind::State, Enabled),
    IF_LEAF("/state/ifindex", Kind::State,
            [](const View&, const Instance& i) -> Result {
              return If(i).ifIndex == 0 ? std::nullopt : Result(Value::U32(If(i).ifIndex));
            }),
    IF_LEAF("/state/admin-status", Kind::State,
            [](const View&, const Instance& i) -> Result {
              return Value::Enumeration(If(i).owner->status == Dto::IfStatus::Disabled ? "DOWN"
                                                                                       : "UP");
            }),
    IF_LEAF("/state/oper-status", Kind::State, OperStatus),
    IF_LEAF("/state/last-change", Kind::State, LastChange),
    IF_LEAF("/state/hardware-port", Kind::State, HardwarePort),
    {IF "/state/counters/in-pkts", Kind::State, Cadence::Sample, Scope::Interface,
     Sum3<Index::NbOfGoodUnicastFrameReceived, Index::NbOfGoodPacketsMulticast,
          Index::NbOfGoodPacketsBroadcast>},
    {IF "/state/counters/in-errors", Kind::State, Cadence::Sample, Scope::Interface,
     [](const View&, const Instance& i) -> Result { return Value::U64(InErrors(If(i))); }},
    {IF "/state/counters/out-pkts", Kind::State, Cadence::Sample, Scope::Interface,
     Sum3<Index::NbOfGoodUnicastFrameSent, Index::NbOfGoodMulticastPacketsSent,
          Index::NbOfGoodBroadcastPacketsSent>},
    {IF "/state/counters/out-errors", Kind::State, Cadence::Sample, Scope::Interface,
     [](const View&, const Instance& i) -> Result {
       return Value::U64(Count(If(i), Index::NbOfPacketsDropDueCollision) +
                         Count(If(i), Index::NbOfLateMacCollision));
     }},
    {IF "/state/counters/last-clear", Kind::State, Cadence::OnChange, Scope::Interface, LastClear},
    {ETH "/port-speed", Kind::State, Cadence::OnChange, Scope::Interface, PortSpeed},
    {ETH "/negotiated-duplex-mode", Kind::State, Cadence::OnChange, Scope::Interface, Duplex},
    {ETH "/mac-address", Kind::State, Cadence::OnChange, Scope::Interface, MacAddress},
    {ETH "/aggregate-id", Kind::State, Cadence::OnChange, Scope::Interface, AggregateId},
    {IF "/aggregation/state/lag-speed", Kind::State, Cadence::OnChange, Scope::Interface, LagSpeed},
    {IF "/aggregation/state/member", Kind::State, Cadence::OnChange, Scope::Interface, Members},
    {"/lldp/state/chassis-id", Kind::State, Cadence::OnChange, Scope::Root, LocalChassisId},
    {"/lldp/state/chassis-id-type", Kind::State, Cadence::OnChange, Scope::Root,
     LocalChassisIdType},
    {"/lldp/state/system-name", Kind::State, Cadence::OnChange, Scope::Root, LocalSystemName},
    {"/lldp/state/system-description", Kind::State, Cadence::OnChange, Scope::Root,
     LocalSystemDescription},
    {"/lldp/interfaces/interface[name=*]/name", Kind::Config, Cadence::OnChange,
     Scope::LldpInterface, Name},
    {"/lldp/interfaces/interface[name=*]/state/name", Kind::State, Cadence::OnChange,
     Scope::LldpInterface, Name},
    {"/lldp/interfaces/interface[name=*]/neighbors/neighbor[id=*]/id", Kind::State,
     Cadence::OnChange, Scope::Neighbour, NeighbourId},
    {NB "/id", Kind::State, Cadence::OnChange, Scope::Neighbour, NeighbourId},
    {NB "/chassis-id", Kind::State, Cadence::OnChange, Scope::Neighbour, NbChassisId},
    {NB "/chassis-id-type", Kind::State, Cadence::OnChange, Scope::Neighbour, NbChassisIdType},
    {NB "/port-id", Kind::State, Cadence::OnChange, Scope::Neighbour, NbPortId},
    {NB "/port-id-type", Kind::State, Cadence::OnChange, Scope::Neighbour, NbPortIdType},
    {NB "/port-description", Kind::State, Cadence::OnChange, Scope::Neighbour,
     NbText<&Model::LldpNeighbour::portDescription>},
    {NB "/system-name", Kind::State, Cadence::OnChange, Scope::Neighbour,
     NbText<&Model::LldpNeighbour::systemName>},
    {NB "/system-description", Kind::State, Cadence::OnChange, Scope::Neighbour,
     NbText<&Model::LldpNeighbour::systemDescription>},
    {NB "/management-address", Kind::State, Cadence::OnChange, Scope::Neighbour,
     NbManagementAddress},
    {NB "/management-address-type", Kind::State, Cadence::OnChange, Scope::Neighbour,
     NbManagementAddressType},
    {NB "/ttl", Kind::State, Cadence::OnChange, Scope::Neighbour, NbTtl},
    {CAPABILITY "/name", Kind::State, Cadence::OnChange, Scope::Capability, CapabilityName},
    {CAPABILITY "/state/name", Kind::State, Cadence::OnChange, Scope::Capability, CapabilityName},
    {CAPABILITY "/state/enabled", Kind::State, Cadence::OnChange, Scope::Capability,
     CapabilityEnabled},
    {"/components/component[name=*]/name", Kind::Config, Cadence::OnChange, Scope::Component, Name},
    {"/components/component[name=*]/state/name", Kind::State, Cadence::OnChange, Scope::Component,
     Name},
    {"/components/component[name=*]/state/type", Kind::State, Cadence::OnChange, Scope::Component,
     ComponentType},
    {"/components/component[name=*]/state/parent", Kind::State, Cadence::OnChange, Scope::Component,
     ComponentParent},
    PTP("/id", Name),
    PTP("/state/id", Name),
    PTP("/state/domain",
        [](const View&, const Instance& i) -> Result {
          return Value::U32(static_cast<std::uint32_t>(Ptp(i).domain));
        }),
    PTP("/state/clock-mode", PtpClockMode),
    PTP("/state/profile", PtpProfile),
    PTP("/state/transport",
        [](const View&, const Instance& i) -> Result {
          return Value::Enumeration(Ptp(i).packetType == Dto::PTPPacketType::IEEE ? "ETHERNET"
                                                                                  : "UDP_IPV4");
        }),
    PTP("/state/interfaces", PtpPorts<false>),
    PTP("/state/slave-interfaces", PtpPorts<true>),
    COLLECTOR("state", Cadence::OnChange, CollectorState),
    COLLECTOR("last-collection", Cadence::Sample,
              HealthNumber<&Metrics::CollectorHealthMetric::lastCollection>),
    COLLECTOR("last-success", Cadence::Sample,
              HealthNumber<&Metrics::CollectorHealthMetric::lastSuccess>),
    COLLECTOR("last-duration-ms", Cadence::Sample,
              HealthNumber<&Metrics::CollectorHealthMetric::lastDurationMs>),
    COLLECTOR("collections", Cadence::Sample,
              HealthNumber<&Metrics::CollectorHealthMetric::collections>),
    COLLECTOR("consecutive-failures", Cadence::OnChange,
              HealthNumber<&Metrics::CollectorHealthMetric::consecutiveFailures>),
    COLLECTOR("consecutive-unreachable", Cadence::OnChange,
              HealthNumber<&Metrics::CollectorHealthMetric::consecutiveUnreachable>),
    COLLECTOR("collect-enabled", Cadence::OnChange,
              [](const View& v, const Instance&) -> Result {
                return Value::Boolean(Health(v).collectEnabled);
              }),
    COLLECTOR("period", Cadence::OnChange,
              [](const View& v, const Instance&) -> Result {
                return Value::U32(static_cast<std::uint32_t>(std::max(0, Health(v).period)));
              }),
    COLLECTOR(
        "last-error", Cadence::OnChange,
        [](const View& v, const Instance&) -> Result { return Value::Str(Health(v).lastError); }),
    COLLECTOR("interfaces-current", Cadence::OnChange,
              [](const View& v, const Instance&) -> Result {
                return Value::Boolean(v.model().collection.interfacesCurrent);
              }),
};

#undef IF
#undef ETH
#undef NB
#undef IF_LEAF
#undef CAPABILITY
#undef PTP
#undef COLLECTOR

}  // namespace

const std::vector<LeafSpec>& Leaves() {
  static const std::vector<LeafSpec> leaves = [] {
    std::vector<LeafSpec> all = kFixedLeaves;
    for (const auto& counter : kCounterLeaves) {
      if (counter.interfacePath != nullptr) {
        all.push_back({counter.interfacePath, Kind::State, Cadence::Sample, Scope::Interface,
                       counter.interfaceValue});
      }
      if (counter.ethernetPath != nullptr) {
        all.push_back({counter.ethernetPath, Kind::State, Cadence::Sample, Scope::Interface,
                       counter.ethernetValue});
      }
    }
    return all;
  }();
  return leaves;
}

const std::vector<const char*>& LldpCapabilityNames() {
  static const std::vector<const char*> names = {
      "OTHER",  "REPEATER",  "MAC_BRIDGE",          "WLAN_ACCESS_POINT",
      "ROUTER", "TELEPHONE", "DOCSIS_CABLE_DEVICE", "STATION_ONLY",
      "C_VLAN", "S_VLAN",    "TWO_PORT_MAC_RELAY"};
  return names;
}

bool IsServedPtpClock(const Model::PtpDomain& domain) {
  const auto mode = domain.clockMode;
  return domain.domain >= 0 && domain.domain <= 255 &&
         (mode == Dto::PTPClockMode::Transparent || mode == Dto::PTPClockMode::Boundary ||
          mode == Dto::PTPClockMode::Master || mode == Dto::PTPClockMode::Slave) &&
         (domain.packetType == Dto::PTPPacketType::IEEE ||
          domain.packetType == Dto::PTPPacketType::UDP);
}

const std::vector<ModelInfo>& Models() {
  static const std::vector<ModelInfo> models = {
      {"openconfig-interfaces", "OpenConfig working group", "3.0.0"},
      {"openconfig-if-ethernet", "OpenConfig working group", "2.13.0"},
      {"openconfig-if-aggregate", "OpenConfig working group", "2.4.4"},
      {"openconfig-lldp", "OpenConfig working group", "0.2.1"},
      {"openconfig-platform", "OpenConfig working group", "0.24.0"},
      {"orvovia-collector", "OrvoVia", "1.0.0"},
      {"orvovia-ptp", "OrvoVia", "1.0.0"},
  };
  return models;
}

}  // namespace Arq::Gnmi
