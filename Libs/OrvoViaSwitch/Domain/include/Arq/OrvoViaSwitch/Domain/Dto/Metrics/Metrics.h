#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"

namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics {

// Flat, SNMP-ready records derived from the switch records. The MIB columns
// are taken from the fields in their declared order: do not reorder them.

inline constexpr std::size_t kEthernetCounterCount = kEthCounterCount;

// One Ethernet port.
struct EthernetMetric {
  std::string ethName;
  std::int32_t mode = -1;   // domain EthMode, -1 unknown
  std::int32_t speed = -1;  // domain EthSpeed, -1 unknown
  std::int32_t state = -1;  // -1 unknown, 1 link up, 0 any other state
  // The port's counters in the order of ARQ_ETH_COUNTERS.
  std::array<std::int64_t, kEthernetCounterCount> counters{};
  std::int64_t txSpeed = 0;  // bits per second
  std::int64_t rxSpeed = 0;  // bits per second

  bool operator==(const EthernetMetric& other) const {
    return ethName == other.ethName && mode == other.mode && speed == other.speed &&
           state == other.state && counters == other.counters && txSpeed == other.txSpeed &&
           rxSpeed == other.rxSpeed;
  }
  bool operator!=(const EthernetMetric& other) const { return !(*this == other); }
};

// An interface of type Ethernet: exactly one port.
struct EthernetInterfaceMetric {
  std::string name;
  std::int32_t status = -1;  // domain IfStatus
  std::int16_t vid = 0;
  std::string vlanIds;  // VLAN ids separated by single spaces
  EthernetMetric ethernet;

  bool operator==(const EthernetInterfaceMetric& other) const {
    return name == other.name && status == other.status && vid == other.vid &&
           vlanIds == other.vlanIds && ethernet == other.ethernet;
  }
  bool operator!=(const EthernetInterfaceMetric& other) const { return !(*this == other); }
};

inline constexpr std::size_t kPRSEthernetPorts = 2;

// A PRS interface: exactly two ports, in the interface's member order.
struct PRSInterfaceMetric {
  std::string name;
  std::int32_t status = -1;
  std::int16_t vid = 0;
  std::string vlanIds;
  std::array<EthernetMetric, kPRSEthernetPorts> ethernets{};

  bool operator==(const PRSInterfaceMetric& other) const {
    return name == other.name && status == other.status && vid == other.vid &&
           vlanIds == other.vlanIds && ethernets == other.ethernets;
  }
  bool operator!=(const PRSInterfaceMetric& other) const { return !(*this == other); }
};

inline constexpr std::size_t kLAGMaxEthernetPorts = 6;

// A LAG interface: up to six ports, members first, unused places default.
struct LAGInterfaceMetric {
  std::string name;
  std::int32_t status = -1;
  std::int16_t vlanId = 0;
  std::string vlanIds;
  std::int64_t nbEthernetPorts = 0;
  std::array<EthernetMetric, kLAGMaxEthernetPorts> ethernets{};

  bool operator==(const LAGInterfaceMetric& other) const {
    return name == other.name && status == other.status && vlanId == other.vlanId &&
           vlanIds == other.vlanIds && nbEthernetPorts == other.nbEthernetPorts &&
           ethernets == other.ethernets;
  }
  bool operator!=(const LAGInterfaceMetric& other) const { return !(*this == other); }
};

// One PTP domain.
struct PTPMetric {
  std::int8_t domain = 0;
  std::int32_t packetType = -1;  // domain PTPPacketType
  std::int32_t clockMode = -1;   // domain PTPClockMode
  std::string interfaces;        // member interfaces separated by single spaces

  bool operator==(const PTPMetric& other) const {
    return domain == other.domain && packetType == other.packetType &&
           clockMode == other.clockMode && interfaces == other.interfaces;
  }
  bool operator!=(const PTPMetric& other) const { return !(*this == other); }
};

// The current configuration file.
struct ConfigMetric {
  std::string name;
  std::int32_t state = -1;  // -1 unknown, 0 clean, 1 altered

  bool operator==(const ConfigMetric& other) const {
    return name == other.name && state == other.state;
  }
  bool operator!=(const ConfigMetric& other) const { return !(*this == other); }
};

// The switch's own LLDP identity.
struct LLDPMetric {
  std::string chassisId;
  std::string deviceName;
  std::string deviceVersion;
  std::string ipManagementAddress;  // dotted IPv4 text
  std::string manufacturer;
  std::string serialNumber;

  bool operator==(const LLDPMetric& other) const {
    return chassisId == other.chassisId && deviceName == other.deviceName &&
           deviceVersion == other.deviceVersion &&
           ipManagementAddress == other.ipManagementAddress && manufacturer == other.manufacturer &&
           serialNumber == other.serialNumber;
  }
  bool operator!=(const LLDPMetric& other) const { return !(*this == other); }
};

// One LLDP neighbour, one row of the hardware infos table.
struct LLDPInfoMetric {
  std::string localInterface;
  std::string version;
  std::string deviceType;
  std::string deviceName;
  std::string chassisId;
  std::string ipAddress;  // dotted IPv4 text
  std::string macAddress;
  std::string interfaceName;
  std::int32_t timeToLive = -1;  // seconds; -1 when no TTL TLV was received
  std::string serialNumber;

  bool operator==(const LLDPInfoMetric& other) const {
    return localInterface == other.localInterface && version == other.version &&
           deviceType == other.deviceType && deviceName == other.deviceName &&
           chassisId == other.chassisId && ipAddress == other.ipAddress &&
           macAddress == other.macAddress && interfaceName == other.interfaceName &&
           timeToLive == other.timeToLive && serialNumber == other.serialNumber;
  }
  bool operator!=(const LLDPInfoMetric& other) const { return !(*this == other); }
};

}  // namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics
