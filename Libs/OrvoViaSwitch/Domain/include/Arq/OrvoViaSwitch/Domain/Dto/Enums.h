#pragma once

#include <cstdint>

// The domain's twins of the switch interface's enums. State-like and
// mode-like enums alike number `Unknown` as -1 and their members from 0, so
// the rest of the monitor never sees the interface's mixed numbering; the
// enum converter of the service client translates both ways. `__LAST__`
// bounds each range.
namespace Arq::OrvoViaSwitch::Domain::Dto {

// The interface numbers Failed as -1; like every twin, the domain keeps -1
// for Unknown and numbers the members from 0.
enum class Status : std::int32_t { Unknown = -1, Failed, Success, __LAST__ };

enum class ConfigType : std::int32_t { Unknown = -1, All, Default, Release, Debug, __LAST__ };

enum class ConfigState : std::int32_t { Unknown = -1, clean, altered, __LAST__ };

enum class EthMode : std::int32_t { Unknown = -1, KR, KR2, KR4, SGMII, _1000BASE_X, __LAST__ };

enum class EthSpeed : std::int32_t {
  Unknown = -1,
  S1G,
  S10G,
  S12_5G,
  S20G,
  S25G,
  S40G,
  S50G,
  S100G,
  __LAST__
};

// Domain order differs from the interface's (FC_FEC, Disable, RS_FEC).
enum class EthFecType : std::int32_t { Unknown = -1, Disable, FC_FEC, RS_FEC, __LAST__ };

enum class EthState : std::int32_t {
  Unknown = -1,
  NotConfigured,
  InReset,
  LinkDown,
  InitIntProgress,
  LinkUp,
  MacLinkDown,
  Failure,
  __LAST__
};

enum class EthFailureSts : std::int32_t {
  Unknown = -1,
  NoFailure,
  SignalStabilityFailed,
  TrainingFailed,
  AlignmentTimerExpired,
  ConfidenceIntervalTimerExpired,
  CreatePortFailed,
  __LAST__
};

enum class IfType : std::int32_t { Unknown = -1, Ethernet, BasicPrs, BasicLag, Virtual, __LAST__ };

enum class IfStatus : std::int32_t { Unknown = -1, Disabled, Enabled, __LAST__ };

enum class PTPPacketType : std::int32_t { Unknown = -1, Disabled, IEEE, UDP, __LAST__ };

enum class PTPClockMode : std::int32_t {
  Unknown = -1,
  Transparent,
  Boundary,
  Master,
  Slave,
  __LAST__
};

enum class PTPProfile : std::int32_t {
  Unknown = -1,
  IEEE_1588_2008,
  AES67_2015,
  SMPTE_2059,
  INTEROP_DEFAULT_AES_SMPTE,
  INTEROP_AES_SMPTE,
  __LAST__
};

// TLV types keep their IEEE 802.1AB numbers: they are the keys of the LLDP
// neighbour maps and the type field of the TLV bytes.
enum class LldpTlvType : std::int32_t {
  Unknown = -1,
  EndOfLLDPU = 0,
  ChassisId = 1,
  PortId = 2,
  TimeToLive = 3,
  PortDescription = 4,
  SystemName = 5,
  SystemDescription = 6,
  SystemCapabilities = 7,
  ManagementAddress = 8,
  CustomTlv = 127,
  CustomEEETlv = 128,
  __LAST__ = 129
};
using lldpTlvType = LldpTlvType;

// Chassis ID and Port ID subtypes, numbered as on the wire.
enum class LldpChassisIdTlvType : std::int32_t {
  Unknown = -1,
  AliasChassis = 1,
  AliasInterface = 2,
  AliasPort = 3,
  MacAddress = 4,
  NetworkAddress = 5,
  InterfaceName = 6,
  __LAST__ = 7
};

enum class LldpPortIdTlvType : std::int32_t {
  Unknown = -1,
  AliasInterface = 1,
  AliasPhysicalPort = 2,
  MacAddress = 3,
  NetworkAddress = 4,
  InterfaceName = 5,
  __LAST__ = 6
};

enum class PrsState : std::int32_t {
  Unknown = -1,
  NotConfigured,
  InReset,
  PathADown,
  PathBDown,
  BothPathsDown,
  Running,
  Failure,
  __LAST__
};

// The redundancy path choice has no unknown value: Auto is the default.
enum class PrsPath : std::int32_t { Auto = 0, PathA, PathB, __LAST__ };

enum class PrsClock : std::int32_t { Unknown = -1, Internal, External, __LAST__ };

enum class LagState : std::int32_t { Unknown = -1, Disabled, Down, Degraded, Up, __LAST__ };

enum class LacpMode : std::int32_t { Unknown = -1, Static, Active, Passive, __LAST__ };

enum class McFloodPolicy : std::int32_t { Unknown = -1, Flood, Drop, __LAST__ };

enum class MirroringMode : std::int32_t { Unknown = -1, Ingress, Egress, Both, __LAST__ };

enum class CageType : std::int32_t { Unknown = -1, SFP, QSFP, __LAST__ };

enum class FlowDirection : std::int32_t { Unknown = -1, In, Out, __LAST__ };

enum class NatFlowStatus : std::int32_t { Unknown = -1, Inactive, Active, __LAST__ };

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
