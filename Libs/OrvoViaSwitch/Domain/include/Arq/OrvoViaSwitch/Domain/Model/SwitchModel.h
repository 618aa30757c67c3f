#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"

namespace Arq::OrvoViaSwitch::Domain::Model {

// The switch as one collection saw it, typed: what every standard view of the
// daemon is projected from. Built once per collection on the collection
// thread and then never changed, so that readers share it without locks. It
// holds whatever the switch reports, within the bounds below; no text is
// left to parse again and no fixed row capacity applies.

// Bounds on what one collection keeps: a reply beyond them is cut, with one
// warning line per collection and kind.
inline constexpr std::size_t kMaxInterfaces = 1024;
inline constexpr std::size_t kMaxPorts = 1024;
inline constexpr std::size_t kMaxMembers = 64;  // ports of one LAG or PRS interface
inline constexpr std::size_t kMaxVlans = 4094;  // VLAN ids of one interface
inline constexpr std::size_t kMaxNeighbours = 512;
inline constexpr std::size_t kMaxPtpDomains = 256;

using Clock = std::chrono::steady_clock;
using MacAddress = std::array<std::uint8_t, 6>;
using PortCounters = std::array<std::uint64_t, Dto::kEthCounterCount>;

// The operational state of a port or an interface: up, down, or unknown when
// the switch did not say (or could not be reached).
enum class LinkState { Unknown, Up, Down };

// One Ethernet port of the switch, whichever interfaces list it.
struct Port {
  std::string name;  // "1/1"
  Dto::EthMode mode = Dto::EthMode::Unknown;
  Dto::EthSpeed speed = Dto::EthSpeed::Unknown;
  Dto::EthState state = Dto::EthState::Unknown;
  Dto::EthFailureSts failure = Dto::EthFailureSts::Unknown;
  Dto::EthFecType fecType = Dto::EthFecType::Unknown;
  Dto::EthFecType fecTypeState = Dto::EthFecType::Unknown;
  bool isMainPhys = false;  // the first sub-port of a hardware port
  int nbPhys = 0;           // sub-ports of its hardware port
  // The switch's counters (EthCounters.h order) and rates in bit/s.
  PortCounters counters{};
  std::int64_t txRate = 0;
  std::int64_t rxRate = 0;
  // Which of the calls gave this port's data: a port without all three is
  // left out of the interface views, as it is out of the private MIB.
  bool hasInfo = false;
  bool hasCounters = false;
  bool hasRates = false;
  // The link state as the port reports it, and when it last changed
  // (Clock::time_point{} when it has not changed since the daemon started).
  LinkState link = LinkState::Unknown;
  Clock::time_point linkChanged{};
  // When a counter last went backwards (the switch restarted or cleared it).
  Clock::time_point counterDiscontinuity{};
  // Its numbers in every view (0: none), given by the interface numbering
  // before the model is published: its ifIndex; its port number (RMON row,
  // LAG actor port); its bridge port, when it is an Ethernet interface's.
  std::uint32_t ifIndex = 0;
  std::uint32_t portNumber = 0;
  std::uint32_t bridgePort = 0;
};

// One interface of the switch (an Ethernet interface over one port, a PRS
// pair, a LAG, or another kind), with its member ports.
struct Interface {
  std::string name;  // "eth1", "prs1", "lag1"
  Dto::IfType type = Dto::IfType::Unknown;
  Dto::IfStatus status = Dto::IfStatus::Unknown;
  std::int16_t vid = 0;
  std::vector<std::int16_t> vlans;
  std::string description;
  std::optional<MacAddress> mac;
  std::optional<std::array<std::uint8_t, 4>> ipv4;
  // Indexes into SwitchModel::ports, in the switch's member order.
  std::vector<std::size_t> members;
  // False when the switch's data for it does not hold together (wrong member
  // count, a duplicate member, a member without data): such an interface is
  // kept for the record and served by no interface view.
  bool consistent = false;
  // Up when enabled and one member port is up, down when disabled or when
  // every member is down, else unknown; when it last changed.
  LinkState link = LinkState::Unknown;
  Clock::time_point linkChanged{};
  // A LAG or PRS interface's own ifIndex and bridge port (0: none; an
  // Ethernet interface is served as its port).
  std::uint32_t ifIndex = 0;
  std::uint32_t bridgePort = 0;
};

// A port as the interface views serve it (IF-MIB, gNMI, Prometheus): the
// ports of the consistent Ethernet, PRS and LAG interfaces, in that order of
// kinds, a port listed twice keeping its first listing; indexes into
// SwitchModel::ports and SwitchModel::interfaces.
struct ServedPort {
  std::size_t port = 0;
  std::size_t owner = 0;
};

// A consistent LAG or PRS interface as the interface views serve it, with
// its members that are served (indexes into SwitchModel::ports).
struct ServedAggregate {
  std::size_t interface = 0;
  std::vector<std::size_t> members;
};

// An LLDP identifier with its subtype (Chassis ID and Port ID TLVs).
struct LldpId {
  std::uint8_t subtype = 0;
  std::string id;  // the bytes after the subtype
};

// The switch's own LLDP identity.
struct LldpLocal {
  std::string systemName;
  std::string systemDescription;
  // Its description's "<device type>; <serial number>; <version>" parts,
  // read once (empty where the description has none).
  std::string deviceType;
  std::string serialNumber;
  std::string version;
  std::string chassisIdText;             // as configured, or else the main MAC's text
  std::optional<MacAddress> chassisMac;  // that text, when it is a MAC address
  std::optional<MacAddress> mainMac;     // the switch's main MAC address
  std::optional<std::array<std::uint8_t, 4>> managementIpv4;
  std::int32_t ttl = 0;
};

// A neighbour's Management Address TLV, decoded and checked.
struct LldpManagementAddress {
  std::uint8_t subtype = 0;  // IANA address family
  std::string address;       // 1 to 31 bytes
  std::uint8_t interfaceSubtype = 1;
  std::uint32_t interfaceNumber = 0;
  // The object identifier it names: empty when none was sent; nothing when it
  // was malformed or SNMP cannot carry it (over 128 arcs, an arc over 32 bits).
  std::optional<std::vector<std::uint32_t>> objectId = std::vector<std::uint32_t>{};
};

// What one neighbour announced on a local port. A field is empty when its
// TLV was missing or malformed.
struct LldpNeighbour {
  std::string localPort;     // the local port's name
  std::size_t position = 0;  // 1-based position in the switch's list
  std::optional<LldpId> chassisId;
  std::optional<LldpId> portId;
  std::optional<std::string> portDescription;
  std::optional<std::string> systemName;
  std::optional<std::string> systemDescription;
  std::optional<std::uint16_t> capabilitiesSupported;  // 802.1AB bit 0 = other
  std::optional<std::uint16_t> capabilitiesEnabled;
  std::optional<LldpManagementAddress> managementAddress;
  std::optional<std::uint16_t> ttl;
  std::uint32_t localIfIndex = 0;  // the local port's ifIndex (0: none)
};

// How the neighbour list changed since the daemon started, counted from one
// collection to the next: a neighbour is one local port and the chassis and
// port identifiers it announces; one whose other fields change is modified.
struct LldpStatistics {
  std::uint64_t inserts = 0;  // neighbours that appeared
  std::uint64_t deletes = 0;  // neighbours that disappeared
  std::uint64_t drops = 0;    // neighbours newly cut by kMaxNeighbours
  // When a neighbour last appeared, disappeared or changed (Clock::time_point{}
  // when none has since the daemon started).
  Clock::time_point lastChange{};
};

// One PTP domain, as the switch reports it (numbers unchecked: the views
// decide what they can serve).
struct PtpDomain {
  std::int32_t domain = 0;
  Dto::PTPPacketType packetType = Dto::PTPPacketType::Unknown;
  Dto::PTPClockMode clockMode = Dto::PTPClockMode::Unknown;
  Dto::PTPProfile profile = Dto::PTPProfile::Unknown;
  std::vector<std::string> ports;       // the interfaces it runs on
  std::vector<std::string> slavePorts;  // those in the slave role
};

// The collection itself: how each call went and the loop's health.
struct Collection {
  std::array<Dto::Metrics::CollectorCallMetric, Dto::Metrics::kCollectorCallCount> calls{};
  Dto::Metrics::CollectorHealthMetric health;
  Dto::Metrics::DaemonMetric daemon;
  // False when the interface or port data is not this collection's own: the
  // switch gave none, and the ports and interfaces are the last ones it gave,
  // with their link states unknown and their counters frozen.
  bool interfacesCurrent = true;
  Clock::time_point collectedAt{};
  // The same moment on the wall clock (the epoch before the first
  // collection): the time stamp of what the streaming views send.
  std::chrono::system_clock::time_point collectedAtWall{};
};

struct SwitchModel {
  // Moves by one with each published model; 0 is the empty model served
  // before the first collection.
  std::uint64_t generation = 0;
  std::vector<Port> ports;            // in the order the interfaces list them
  std::vector<Interface> interfaces;  // in the switch's list order
  // The interfaces every interface view serves, each list by ifIndex; filled
  // with the numbers above before the model is published.
  std::vector<ServedPort> servedPorts;
  std::vector<ServedAggregate> servedAggregates;
  LldpLocal lldpLocal;
  std::vector<LldpNeighbour> neighbours;  // in the switch's order
  LldpStatistics lldpStatistics;
  std::size_t neighboursCut = 0;  // beyond kMaxNeighbours in the last LLDP answer
  std::vector<PtpDomain> ptpDomains;
  Dto::ConfigFile configuration;
  Collection collection;

  // The port or interface of that name, or nullptr.
  const Port* FindPort(const std::string& name) const;
  const Interface* FindInterface(const std::string& name) const;
};

// The IF-MIB codes of a state, which every view that shows one as a number
// uses: ifAdminStatus (up 1, down 2: a disabled interface is down) and
// ifOperStatus (up 1, down 2, unknown 4).
inline std::uint32_t IfMibAdminStatus(const Interface& interface) {
  return interface.status == Dto::IfStatus::Disabled ? 2 : 1;
}
inline std::uint32_t IfMibOperStatus(LinkState link) {
  switch (link) {
    case LinkState::Up:
      return 1;
    case LinkState::Down:
      return 2;
    default:
      return 4;
  }
}

// Port speed codes in Mbit/s: 1G ... 100G; 0 when unknown.
std::uint64_t SpeedMbps(Dto::EthSpeed speed);

}  // namespace Arq::OrvoViaSwitch::Domain::Model
