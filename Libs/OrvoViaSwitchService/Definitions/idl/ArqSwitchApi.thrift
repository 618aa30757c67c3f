// Interface of the switch's management service, as it is served on the wire.
// Field ids and types are what the switch's server expects: never renumber.
// Every method takes a Header_t first and may throw Fault_t. `i8` is the
// current spelling of Thrift's `byte` (same wire type).

namespace cpp ArqSwitchApi

enum Status_t {
  Failed = -1,
  Success = 0
}

enum ErrorCode_t {
  NoError = 0,
  UnknownError = 1,
  SystemError = 2,
  InvalidArgument = 3,
  RuntimeError = 4,
  TimeOut = 5,
  NotFound = 6,
  NotConfigured = 7,
  NotImplemented = 8,
  OutOfRange = 9,
  AlreadyInUse = 10,
  __LAST__ = 11
}

enum ConfigType_t {
  Unknown = -1,
  All = 0,
  Default = 1,
  Release = 2,
  Debug = 3,
  __LAST__ = 4
}

enum ConfigState_t {
  Unknown = -1,
  clean = 0,
  altered = 1,
  __LAST__ = 2
}

enum EthMode_t {
  Unknown = 0,
  KR = 1,
  KR2 = 2,
  KR4 = 3,
  SGMII = 4,
  _1000BASE_X = 5,
  __LAST__ = 6
}

enum EthSpeed_t {
  Unknown = 0,
  S1G = 1,
  S10G = 2,
  S12_5G = 3,
  S20G = 4,
  S25G = 5,
  S40G = 6,
  S50G = 7,
  S100G = 8,
  __LAST__ = 9
}

enum EthFecType_t {
  Unknown = 0,
  FC_FEC = 1,
  Disable = 2,
  RS_FEC = 3,
  __LAST__ = 4
}

enum EthState_t {
  Unknown = -1,
  NotConfigured = 0,
  InReset = 1,
  LinkDown = 2,
  InitIntProgress = 3,
  LinkUp = 4,
  MacLinkDown = 5,
  Failure = 6,
  __LAST__ = 7
}

enum EthFailureSts_t {
  Unknown = -1,
  NoFailure = 0,
  SignalStabilityFailed = 1,
  TrainingFailed = 2,
  AlignmentTimerExpired = 3,
  ConfidenceIntervalTimerExpired = 4,
  CreatePortFailed = 5,
  __LAST__ = 6
}

enum IfType_t {
  Unknown = 0,
  Ethernet = 1,
  BasicPrs = 2,
  BasicLag = 3,
  Virtual = 4,
  __LAST__ = 5
}

enum IfStatus_t {
  Unknown = -1,
  Disabled = 0,
  Enabled = 1,
  __LAST__ = 2
}

enum PTPPacketType_t {
  Unknown = -1,
  Disabled = 0,
  IEEE = 1,
  UDP = 2,
  __LAST__ = 3
}

enum PTPClockMode_t {
  Unknown = -1,
  Transparent = 0,
  Boundary = 1,
  Master = 2,
  Slave = 3,
  __LAST__ = 4
}

enum PTPProfile_t {
  IEEE_1588_2008 = 0,
  AES67_2015 = 1,
  SMPTE_2059 = 2,
  INTEROP_DEFAULT_AES_SMPTE = 3,
  INTEROP_AES_SMPTE = 4
}

enum lldpTlvType_t {
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
}

enum lldpChassisIdTlvType_t {
  AliasChassis = 1,
  AliasInterface = 2,
  AliasPort = 3,
  MacAddress = 4,
  NetworkAddress = 5,
  InterfaceName = 6,
  __LAST__ = 7
}

enum lldpPortIdTlvType_t {
  AliasInterface = 1,
  AliasPhysicalPort = 2,
  MacAddress = 3,
  NetworkAddress = 4,
  InterfaceName = 5,
  __LAST__ = 6
}

// Enums of the services that the monitor reaches but never calls.

enum PrsState_t {
  Unknown = -1,
  NotConfigured = 0,
  InReset = 1,
  PathADown = 2,
  PathBDown = 3,
  BothPathsDown = 4,
  Running = 5,
  Failure = 6,
  __LAST__ = 7
}

enum PrsPath_t {
  Auto = 0,
  PathA = 1,
  PathB = 2,
  __LAST__ = 3
}

enum PrsClock_t {
  Unknown = -1,
  Internal = 0,
  External = 1,
  __LAST__ = 2
}

enum LagState_t {
  Unknown = -1,
  Disabled = 0,
  Down = 1,
  Degraded = 2,
  Up = 3,
  __LAST__ = 4
}

enum LacpMode_t {
  Unknown = -1,
  Static = 0,
  Active = 1,
  Passive = 2,
  __LAST__ = 3
}

enum McFloodPolicy_t {
  Unknown = -1,
  Flood = 0,
  Drop = 1,
  __LAST__ = 2
}

enum MirroringMode_t {
  Unknown = -1,
  Ingress = 0,
  Egress = 1,
  Both = 2,
  __LAST__ = 3
}

enum CageType_t {
  Unknown = -1,
  SFP = 0,
  QSFP = 1,
  __LAST__ = 2
}

enum FlowDirection_t {
  Unknown = -1,
  In = 0,
  Out = 1,
  __LAST__ = 2
}

enum NatFlowStatus_t {
  Unknown = -1,
  Inactive = 0,
  Active = 1,
  __LAST__ = 2
}

// Token is optional so that a caller without one sends no Token field at all.
struct Header_t {
  1: optional string Token
}

exception Fault_t {
  1: ErrorCode_t ErrCode,
  2: string What
}

struct IPAddress_t {
  1: bool bIpv6,
  2: string Address
}

struct IfIpConfig_t {
  1: IPAddress_t Ip,
  2: IPAddress_t Mask,
  3: IPAddress_t Gateway,
  4: bool Dhcp
}

struct IfInfo_t {
  1: IfType_t Type,
  2: IfStatus_t Status,
  3: i16 Vid,
  4: string Description,
  5: string MacAddr,
  6: list<i16> Vlan,
  7: list<string> IfList,
  8: IfIpConfig_t IpConfig
}

struct EthConfig_t {
  1: EthMode_t Mode,
  2: EthSpeed_t Speed,
  3: EthFecType_t FecType
}

struct EthInfo_t {
  1: string EthName,
  2: EthMode_t Mode,
  3: EthSpeed_t Speed,
  4: bool IsMainPhys,
  5: i8 NbPhys,
  6: EthState_t State,
  7: EthFailureSts_t FailureSts,
  8: EthFecType_t FecType,
  9: EthFecType_t FecTypeState
}

struct EthCnt_t {
  1: string EthName,
  2: i64 NbOfGoodOctetsReceived,
  3: i64 NbOfBadOctetsReceived,
  4: i64 NbOfFrameNotTransmitted,
  5: i64 NbOfGoodPacketsBroadcast,
  6: i64 NbOfGoodPacketsMulticast,
  7: i64 NbOfGoodPackets64Bytes,
  8: i64 NbOfGoodPackets65to127Bytes,
  9: i64 NbOfGoodPackets128to255Bytes,
  10: i64 NbOfGoodPackets256to511Bytes,
  11: i64 NbOfGoodPackets512to1023Bytes,
  12: i64 NbOfGoodPackets1024toMaxBytes,
  13: i64 NbOfGoodOctectsSent,
  14: i64 NbOfPacketsDropDueCollision,
  15: i64 NbOfGoodMulticastPacketsSent,
  16: i64 NbOfGoodBroadcastPacketsSent,
  17: i64 NbOfGoodFlowControlFrameSent,
  18: i64 NbOfGoodFlowControlFrameReceived,
  19: i64 NbOfInternalDropPacketsBW,
  20: i64 NbOfPacketsSizeLess64BytesReceived,
  21: i64 NbOfFragmentedPacketsReceived,
  22: i64 NbOfOversizedPacketsReceived,
  23: i64 NbOfJabberPacketsReceived,
  24: i64 NbOfReceivedErrorFromMac,
  25: i64 NbOfCrcErrorEvents,
  26: i64 NbOfMacCollision,
  27: i64 NbOfLateMacCollision,
  28: i64 NbOfGoodUnicastFrameReceived,
  29: i64 NbOfGoodUnicastFrameSent,
  30: i64 NbOfValidFrameSentHalfDupWithCollision,
  31: i64 NbOfValidFrameSentHalfDupWithOutCollision
}

struct EthStat_t {
  1: string EthName,
  2: i64 TxSpeed,
  3: i64 RxSpeed
}

struct HwDesc_t {
  1: i8 Port,
  2: i8 NbSubPort
}

struct ConfigFile_t {
  1: string Name,
  2: ConfigType_t Type,
  3: string Comment,
  4: ConfigState_t State,
  5: string BaseName,
  6: ConfigType_t BaseType
}

struct lldpConfig_t {
  1: string SystemName,
  2: string SystemDescr,
  3: string ManagementIP,
  4: string ChassisId,
  5: i32 TTL
}

// Tlv keys are lldpTlvType_t values narrowed to a signed byte.
struct lldpInfo_t {
  1: string IfName,
  2: map<i8, string> Tlv
}

struct PTPConfig_t {
  1: i8 Domain,
  2: PTPPacketType_t PacketType,
  3: PTPClockMode_t ClockMode,
  4: list<string> IfList,
  5: list<string> SlaveIfList,
  6: PTPProfile_t Profile
}

struct PTPTimeStamp_t {
  1: i32 NanoSec,
  2: i64 Sec,
  3: i32 FracNs
}

// Structs of the services that the monitor reaches but never calls.

struct PrsParam_t {
  1: PrsPath_t Path,
  2: PrsClock_t Clock,
  3: i32 TimeOut
}

struct PrsStatus_t {
  1: PrsState_t State,
  2: PrsPath_t ActivePath
}

struct LagConfig_t {
  1: LacpMode_t Mode,
  2: list<string> IfList
}

struct CageInfo_t {
  1: i8 Cage,
  2: CageType_t Type,
  3: bool Present,
  4: string Vendor,
  5: string PartNumber
}

struct Voltages_t {
  1: map<string, double> Voltages
}

struct SystemTemperatures_t {
  1: map<string, double> Temperatures
}

struct HwInfo_t {
  1: string BoardName,
  2: string SerialNumber,
  3: string Revision
}

struct VlanDesc_t {
  1: i16 Vid,
  2: string Description,
  3: list<string> IfList
}

struct VlanProp_t {
  1: i16 Vid,
  2: McFloodPolicy_t FloodPolicy
}

struct McRouteKey_t {
  1: IPAddress_t Group,
  2: IPAddress_t Source,
  3: i16 Vid
}

struct McRoute_t {
  1: McRouteKey_t Key,
  2: list<string> IfList,
  3: string Description,
  4: i32 UserId
}

struct InFlow_t {
  1: IPAddress_t Address,
  2: i32 Port
}

struct OutFlow_t {
  1: IPAddress_t Address,
  2: i32 Port
}

struct NatFlow_t {
  1: InFlow_t In,
  2: OutFlow_t Out,
  3: FlowDirection_t Direction
}

struct Nat_t {
  1: string IfName,
  2: IPAddress_t Inner,
  3: IPAddress_t Outer,
  4: i32 UserId
}

struct NattingInfo_t {
  1: Nat_t Nat,
  2: list<NatFlow_t> Flows,
  3: NatFlowStatus_t Status
}

struct MirroringSession_t {
  1: i32 Id,
  2: MirroringMode_t Mode,
  3: list<string> Sources,
  4: string Destination
}

service Config {
  list<ConfigFile_t> ListConfigFile(1: Header_t header, 2: ConfigType_t type) throws (1: Fault_t exp),
  void Reset(1: Header_t header) throws (1: Fault_t exp),
  void LoadConfig(1: Header_t header, 2: ConfigFile_t file) throws (1: Fault_t exp),
  void LoadFactoryDefault(1: Header_t header) throws (1: Fault_t exp),
  void SaveRunningConfig2StartUpConfig(1: Header_t header) throws (1: Fault_t exp),
  void BackupRunningConfig(1: Header_t header, 2: ConfigFile_t file) throws (1: Fault_t exp),
  void SetConfigComment(1: Header_t header, 2: ConfigFile_t file) throws (1: Fault_t exp),
  string GetConfigComment(1: Header_t header, 2: ConfigFile_t file) throws (1: Fault_t exp),
  ConfigFile_t GetCurrentConfig(1: Header_t header) throws (1: Fault_t exp),
  void Copy(1: Header_t header, 2: ConfigFile_t src, 3: ConfigFile_t dst) throws (1: Fault_t exp),
  void Delete(1: Header_t header, 2: ConfigFile_t file) throws (1: Fault_t exp),
  void Rename(1: Header_t header, 2: ConfigFile_t src, 3: ConfigFile_t dst) throws (1: Fault_t exp)
}

service Ethernet {
  void Configure(1: Header_t header, 2: EthConfig_t Config, 3: list<string> EthList) throws (1: Fault_t exp),
  list<EthInfo_t> GetEthInfo(1: Header_t header, 2: list<string> EthList) throws (1: Fault_t exp),
  list<HwDesc_t> GetHardwareDesc(1: Header_t header) throws (1: Fault_t exp)
}

service Interfaces {
  list<string> GetIfList(1: Header_t header) throws (1: Fault_t exp),
  map<string, IfInfo_t> GetInfo(1: Header_t header, 2: list<string> IfList) throws (1: Fault_t exp),
  map<string, list<EthCnt_t>> GetCnt(1: Header_t header, 2: list<string> IfList) throws (1: Fault_t exp),
  map<string, list<EthStat_t>> GetStats(1: Header_t header, 2: list<string> IfList) throws (1: Fault_t exp),
  string GetMainMacAddr(1: Header_t header) throws (1: Fault_t exp),
  map<string, string> GetMacAddr(1: Header_t header, 2: list<string> IfList) throws (1: Fault_t exp),
  void SetDescription(1: Header_t header, 2: string IfName, 3: string Description) throws (1: Fault_t exp),
  void SetStatus(1: Header_t header, 2: list<string> IfList, 3: IfStatus_t status) throws (1: Fault_t exp),
  void SetVID(1: Header_t header, 2: list<string> IfList, 3: i16 vid) throws (1: Fault_t exp),
  void AddToVlan(1: Header_t header, 2: list<string> IfList, 3: i16 vid) throws (1: Fault_t exp),
  void RemoveFromVlan(1: Header_t header, 2: list<string> IfList, 3: i16 vid) throws (1: Fault_t exp),
  void Delete(1: Header_t header, 2: list<string> IfList) throws (1: Fault_t exp),
  void DeleteAll(1: Header_t header) throws (1: Fault_t exp),
  void SetIpConfig(1: Header_t header, 2: string IfName, 3: IfIpConfig_t IfIp) throws (1: Fault_t exp)
}

service LLDP {
  void SetConfig(1: Header_t header, 2: lldpConfig_t config) throws (1: Fault_t exp),
  lldpConfig_t GetConfig(1: Header_t header) throws (1: Fault_t exp),
  list<lldpInfo_t> GetInfo(1: Header_t header) throws (1: Fault_t exp)
}

service PTP {
  void SetConfig(1: Header_t header, 2: PTPConfig_t config) throws (1: Fault_t exp),
  void AddInterfaces(1: Header_t header, 2: i8 Domain, 3: list<string> IfList) throws (1: Fault_t exp),
  void RemoveInterfaces(1: Header_t header, 2: i8 Domain, 3: list<string> IfList) throws (1: Fault_t exp),
  void DelConfig(1: Header_t header, 2: i8 Domain) throws (1: Fault_t exp),
  list<PTPConfig_t> GetConfig(1: Header_t header) throws (1: Fault_t exp)
}

// Services that the monitor never calls; generated so that the clients
// fabric can hand them out.

service GeneralPurpose {
  void BoardUpdater(1: Header_t header, 2: string FilePath) throws (1: Fault_t exp),
  string DumpCurrentConfig(1: Header_t header) throws (1: Fault_t exp),
  void DumpCurrentConfigToLog(1: Header_t header) throws (1: Fault_t exp),
  string GetUniqueId(1: Header_t header) throws (1: Fault_t exp),
  i64 GetUserFlags(1: Header_t header) throws (1: Fault_t exp),
  string GetVersion(1: Header_t header) throws (1: Fault_t exp),
  void Reboot(1: Header_t header) throws (1: Fault_t exp),
  void SetUserFlags(1: Header_t header, 2: i64 Flags) throws (1: Fault_t exp)
}

service HwMonitoring {
  HwInfo_t BoardInfo(1: Header_t header) throws (1: Fault_t exp),
  list<CageInfo_t> CageStatus(1: Header_t header) throws (1: Fault_t exp),
  map<i8, double> CageTemperatures(1: Header_t header) throws (1: Fault_t exp),
  map<string, i32> FanSpeed(1: Header_t header) throws (1: Fault_t exp),
  Voltages_t PSUVoltage(1: Header_t header) throws (1: Fault_t exp),
  string PicVersion(1: Header_t header) throws (1: Fault_t exp),
  SystemTemperatures_t SystemTemperatures(1: Header_t header) throws (1: Fault_t exp)
}

service LagIf {
  void Configure(1: Header_t header, 2: string IfName, 3: LagConfig_t Config) throws (1: Fault_t exp)
}

service McRoute {
  void Add(1: Header_t header, 2: McRoute_t Route) throws (1: Fault_t exp),
  void DeleteAll(1: Header_t header) throws (1: Fault_t exp),
  void DeleteByRoute(1: Header_t header, 2: McRouteKey_t Key) throws (1: Fault_t exp),
  void DeleteByUserId(1: Header_t header, 2: i32 UserId) throws (1: Fault_t exp),
  list<McRoute_t> GetAllRoutes(1: Header_t header) throws (1: Fault_t exp),
  void KeepAlive(1: Header_t header, 2: i32 UserId) throws (1: Fault_t exp),
  void SetDescription(1: Header_t header, 2: McRouteKey_t Key, 3: string Description) throws (1: Fault_t exp)
}

service Mirroring {
  void Add(1: Header_t header, 2: MirroringSession_t Session) throws (1: Fault_t exp),
  void Delete(1: Header_t header, 2: i32 Id) throws (1: Fault_t exp),
  void DeleteAll(1: Header_t header) throws (1: Fault_t exp),
  list<MirroringSession_t> GetAll(1: Header_t header) throws (1: Fault_t exp)
}

service Natting {
  void Add(1: Header_t header, 2: Nat_t Nat) throws (1: Fault_t exp),
  void AddFlow(1: Header_t header, 2: string IfName, 3: NatFlow_t Flow) throws (1: Fault_t exp),
  void Delete(1: Header_t header, 2: string IfName) throws (1: Fault_t exp),
  void DeleteAll(1: Header_t header) throws (1: Fault_t exp),
  void DeleteAllFlows(1: Header_t header, 2: string IfName) throws (1: Fault_t exp),
  void DeleteByFlow(1: Header_t header, 2: string IfName, 3: NatFlow_t Flow) throws (1: Fault_t exp),
  void DeleteByUserId(1: Header_t header, 2: i32 UserId) throws (1: Fault_t exp),
  list<NattingInfo_t> GetInfos(1: Header_t header) throws (1: Fault_t exp),
  void KeepAlive(1: Header_t header, 2: i32 UserId) throws (1: Fault_t exp)
}

service PrsIf {
  void Configure(1: Header_t header, 2: string IfName, 3: list<string> IfList) throws (1: Fault_t exp),
  void ForcePath(1: Header_t header, 2: string IfName, 3: PrsPath_t Path) throws (1: Fault_t exp),
  PrsParam_t GetParam(1: Header_t header, 2: string IfName) throws (1: Fault_t exp),
  PrsStatus_t GetStatus(1: Header_t header, 2: string IfName) throws (1: Fault_t exp),
  void Reset(1: Header_t header, 2: string IfName) throws (1: Fault_t exp),
  void SetParam(1: Header_t header, 2: string IfName, 3: PrsParam_t Param) throws (1: Fault_t exp)
}

service Vlan {
  void Add(1: Header_t header, 2: VlanDesc_t Vlan) throws (1: Fault_t exp),
  void Delete(1: Header_t header, 2: i16 Vid) throws (1: Fault_t exp),
  void DeleteAll(1: Header_t header) throws (1: Fault_t exp),
  list<VlanDesc_t> GetDesc(1: Header_t header) throws (1: Fault_t exp),
  void SetProperties(1: Header_t header, 2: VlanProp_t Properties) throws (1: Fault_t exp)
}

service VirtualInterfaces {
  void Configure(1: Header_t header, 2: string IfName, 3: list<string> IfList) throws (1: Fault_t exp)
}
