#include "Arq/Monitoring/FakeMonitoringCollector.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"
#include "Arq/Monitoring/MetricConverter/LldpTlv.h"

namespace Arq::Monitoring {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Tlv = MetricConverter::LldpTlv;

constexpr int kPorts = 24;

std::string PortName(int port) {
  return "eth" + std::to_string(port);
}

// Advertised rates in bits per second: busy uplinks on the LAG and PRS ports,
// lighter access ports, an idle disabled port.
std::int64_t RxRate(int port) {
  if (port == 7) return 0;
  if (port >= 21) return 3200000000LL + port * 1000000LL;
  if (port >= 17) return 1500000000LL + port * 2500000LL;
  return 40000000LL + port * 7300000LL;
}

std::int64_t TxRate(int port) {
  return port == 7 ? 0 : RxRate(port) / 3 + 1250000LL * port;
}

Dto::EthSpeed PortSpeed(int port) {
  if (port >= 21) return Dto::EthSpeed::S25G;
  if (port >= 17) return Dto::EthSpeed::S10G;
  return port <= 4 ? Dto::EthSpeed::S10G : Dto::EthSpeed::S1G;
}

constexpr double kPi = 3.14159265358979323846;
// Rates swing by a quarter around their mean, each port on its own period
// and phase (from the seed); counters are the exact integral of the rate, so
// they never go back and always agree with the rates.
constexpr double kSwing = 0.25;
// One port (from the seed, among eth9 to eth15) loses its link 20 s in every
// 300 s: no traffic, counters still, state LinkDown.
constexpr double kFlapEvery = 300.0;
constexpr double kFlapStart = 150.0;
constexpr double kFlapLength = 20.0;

struct PortMotion {
  double period;
  double phase;
};

PortMotion Motion(int port, unsigned seed) {
  const double golden = 0.6180339887498949;
  double fraction = (seed + 1) * golden * port;
  fraction -= std::trunc(fraction);
  return {120.0 + static_cast<double>((seed * 7919u + port * 104729u) % 481u), 2 * kPi * fraction};
}

int FlappingPort(unsigned seed) {
  return 9 + static_cast<int>(seed % 7);
}

bool LinkDown(int port, unsigned seed, double t) {
  if (port != FlappingPort(seed)) return false;
  const double inPeriod = t - kFlapEvery * std::trunc(t / kFlapEvery);
  return inPeriod >= kFlapStart && inPeriod < kFlapStart + kFlapLength;
}

// Seconds of link up since start-up.
double UpTime(int port, unsigned seed, double t) {
  if (port != FlappingPort(seed)) return t;
  const double periods = std::trunc(t / kFlapEvery);
  const double inPeriod = t - kFlapEvery * periods;
  const double downNow = std::min(std::max(inPeriod - kFlapStart, 0.0), kFlapLength);
  return t - periods * kFlapLength - downNow;
}

// The rate at `t` seconds, in bits per second, for a port of mean `mean`.
std::int64_t RateAt(std::int64_t mean, int port, unsigned seed, double t) {
  if (LinkDown(port, seed, t)) return 0;
  if (port == FlappingPort(seed)) return mean;
  const auto motion = Motion(port, seed);
  return static_cast<std::int64_t>(
      static_cast<double>(mean) *
      (1 + kSwing * std::sin(2 * kPi * t / motion.period + motion.phase)));
}

// Octets sent at that rate since start-up: the integral of RateAt / 8.
std::int64_t Octets(std::int64_t mean, int port, unsigned seed, double t) {
  if (port == FlappingPort(seed)) {
    return static_cast<std::int64_t>(static_cast<double>(mean) / 8.0 * UpTime(port, seed, t));
  }
  const auto motion = Motion(port, seed);
  const double w = 2 * kPi / motion.period;
  const double bits = static_cast<double>(mean) *
                      (t + kSwing / w * (std::cos(motion.phase) - std::cos(w * t + motion.phase)));
  return static_cast<std::int64_t>(bits / 8);
}

Dto::EthCnt Counters(int port, unsigned seed, double t) {
  Dto::EthCnt c;
  c.EthName = PortName(port);
  const std::int64_t rx = Octets(RxRate(port), port, seed, t) + port * 1000003LL;
  const std::int64_t tx = Octets(TxRate(port), port, seed, t) + port * 700001LL;
  const std::int64_t rxPackets = rx / 740;
  const std::int64_t txPackets = tx / 810;
  c.NbOfGoodOctetsReceived = rx;
  c.NbOfBadOctetsReceived = port == 5 ? rx / 200000 : 0;
  c.NbOfGoodPacketsBroadcast = rxPackets / 97;
  c.NbOfGoodPacketsMulticast = rxPackets / 41;
  c.NbOfGoodPackets64Bytes = rxPackets * 31 / 100;
  c.NbOfGoodPackets65to127Bytes = rxPackets * 22 / 100;
  c.NbOfGoodPackets128to255Bytes = rxPackets * 9 / 100;
  c.NbOfGoodPackets256to511Bytes = rxPackets * 6 / 100;
  c.NbOfGoodPackets512to1023Bytes = rxPackets * 7 / 100;
  c.NbOfGoodPackets1024toMaxBytes = rxPackets * 25 / 100;
  c.NbOfGoodOctectsSent = tx;
  c.NbOfGoodMulticastPacketsSent = txPackets / 53;
  c.NbOfGoodBroadcastPacketsSent = txPackets / 211;
  c.NbOfInternalDropPacketsBW = port >= 21 ? rxPackets / 1000000 : 0;
  c.NbOfPacketsSizeLess64BytesReceived = port == 5 ? rxPackets / 500000 : 0;
  c.NbOfCrcErrorEvents = port == 5 ? rxPackets / 250000 : 0;
  c.NbOfReceivedErrorFromMac = port == 5 ? rxPackets / 750000 : 0;
  c.NbOfGoodUnicastFrameReceived =
      rxPackets - c.NbOfGoodPacketsBroadcast - c.NbOfGoodPacketsMulticast;
  c.NbOfGoodUnicastFrameSent =
      txPackets - c.NbOfGoodMulticastPacketsSent - c.NbOfGoodBroadcastPacketsSent;
  return c;
}

Dto::EthInfo PortInfo(int port, unsigned seed, double t) {
  Dto::EthInfo info;
  info.EthName = PortName(port);
  info.Mode = port >= 17 ? Dto::EthMode::KR : Dto::EthMode::SGMII;
  info.Speed = PortSpeed(port);
  info.IsMainPhys = true;
  info.NbPhys = 1;
  info.State =
      port == 7 || LinkDown(port, seed, t) ? Dto::EthState::LinkDown : Dto::EthState::LinkUp;
  info.FailureSts = Dto::EthFailureSts::NoFailure;
  info.FecType = port >= 21 ? Dto::EthFecType::RS_FEC : Dto::EthFecType::Disable;
  info.FecTypeState = info.FecType;
  return info;
}

void AddInterface(SwitchSnapshot& s, const std::string& name, Dto::IfType type,
                  std::vector<std::string> members, std::int16_t vid,
                  std::vector<std::int16_t> vlans, Dto::IfStatus status = Dto::IfStatus::Enabled) {
  Dto::IfInfo info;
  info.Type = type;
  info.Status = status;
  info.Vid = vid;
  info.Description = name;
  info.MacAddr = "02:a0:c9:00:01:" + std::string(name.size() > 9 ? "ff" : "10");
  info.Vlan = std::move(vlans);
  info.IfList = std::move(members);
  s.interfaceNames.push_back(name);
  s.interfaces[name] = std::move(info);
}

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (int v : values) bytes += static_cast<char>(v);
  return bytes;
}

struct Neighbour {
  int port;
  const char* systemName;
  const char* description;
  std::array<int, 6> chassisMac;
  const char* portId;  // interface-name subtype, or empty for the MAC subtype
  const char* portDescription;
  std::array<int, 4> address;
};

const Neighbour kNeighbours[] = {
    {21,
     "core-sw-01",
     "Arq OrvoVia-48X aggregation switch; SN OV48X-2210457; 5.4.1",
     {0x00, 0x1b, 0x21, 0x3a, 0x4f, 0x5e},
     "Ethernet1/49",
     "uplink to access rack 3",
     {10, 20, 0, 1}},
    {22,
     "core-sw-01",
     "Arq OrvoVia-48X aggregation switch; SN OV48X-2210457; 5.4.1",
     {0x00, 0x1b, 0x21, 0x3a, 0x4f, 0x5e},
     "Ethernet1/50",
     "uplink to access rack 3",
     {10, 20, 0, 1}},
    {17,
     "prs-peer-a",
     "Arq OrvoVia-24 redundancy box; SN OV24-0001182; 2.2.23",
     {0x02, 0xa0, 0xc9, 0x10, 0x00, 0x2a},
     "eth17",
     "",
     {10, 20, 1, 12}},
    {1,
     "cam-studio-4",
     "Broadcast camera head CH-9; SN CH9-77301; fw 3.1.0",
     {0x8c, 0x1f, 0x64, 0x52, 0x0b, 0x03},
     "",
     "",
     {10, 30, 4, 21}},
    {2,
     "ptp-grandmaster",
     "Timing appliance GM-2; SN GM2-000119; 4.0.7",
     {0x00, 0x0e, 0xfe, 0x01, 0x9a, 0x44},
     "port1",
     "PTP port 1",
     {10, 30, 0, 2}},
    {9,
     "audio-node-12",
     "Audio gateway AG-16; SN AG16-5520; 1.9.4",
     {0x00, 0x1d, 0xc1, 0x7e, 0x33, 0x10},
     "",
     "Dante primary",
     {10, 30, 5, 12}},
};

Dto::LldpInfo NeighbourInfo(const Neighbour& n) {
  Dto::LldpInfo info;
  info.IfName = PortName(n.port);
  const std::string mac = Bytes({n.chassisMac[0], n.chassisMac[1], n.chassisMac[2], n.chassisMac[3],
                                 n.chassisMac[4], n.chassisMac[5]});
  info.Tlv[Dto::LldpTlvType::ChassisId] = Tlv::Encode(1, Bytes({4}) + mac);
  const std::string portId =
      *n.portId ? Bytes({5}) + n.portId
                : Bytes({3}) + mac.substr(0, 5) + static_cast<char>(n.chassisMac[5] + n.port);
  info.Tlv[Dto::LldpTlvType::PortId] = Tlv::Encode(2, portId);
  info.Tlv[Dto::LldpTlvType::TimeToLive] = Tlv::Encode(3, Bytes({0, 120}));
  if (*n.portDescription) {
    info.Tlv[Dto::LldpTlvType::PortDescription] = Tlv::Encode(4, n.portDescription);
  }
  info.Tlv[Dto::LldpTlvType::SystemName] = Tlv::Encode(5, n.systemName);
  info.Tlv[Dto::LldpTlvType::SystemDescription] = Tlv::Encode(6, n.description);
  info.Tlv[Dto::LldpTlvType::ManagementAddress] = Tlv::Encode(
      8, Bytes({5, 1, n.address[0], n.address[1], n.address[2], n.address[3], 2, 0, 0, 0, 1, 0}));
  return info;
}

}  // namespace

FakeMonitoringCollector::FakeMonitoringCollector()
    : FakeMonitoringCollector([] { return std::chrono::steady_clock::now(); }) {}

FakeMonitoringCollector::FakeMonitoringCollector(Clock clock, unsigned seed)
    : clock_(std::move(clock)), start_(clock_()), seed_(seed) {}

void FakeMonitoringCollector::Collect(
    OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) {
  PublishSnapshot(Snapshot(clock_() - start_, seed_), values, conversion_);
}

SwitchSnapshot FakeMonitoringCollector::Snapshot(std::chrono::nanoseconds elapsed, unsigned seed) {
  SwitchSnapshot s;
  const double t = std::chrono::duration<double>(elapsed).count();
  for (int port = 1; port <= 16; ++port) {
    AddInterface(s, PortName(port), Dto::IfType::Ethernet, {PortName(port)},
                 static_cast<std::int16_t>(port <= 8 ? 100 : 200),
                 port <= 8 ? std::vector<std::int16_t>{100, 110} : std::vector<std::int16_t>{200},
                 port == 7 ? Dto::IfStatus::Disabled : Dto::IfStatus::Enabled);
  }
  AddInterface(s, "prs1", Dto::IfType::BasicPrs, {PortName(17), PortName(18)}, 300, {300, 301});
  AddInterface(s, "prs2", Dto::IfType::BasicPrs, {PortName(19), PortName(20)}, 310, {310});
  AddInterface(s, "lag1", Dto::IfType::BasicLag, {PortName(21), PortName(22)}, 10,
               {10, 20, 30, 100, 200});
  AddInterface(s, "lag2", Dto::IfType::BasicLag, {PortName(23), PortName(24)}, 40, {40, 41});
  AddInterface(s, "mgmt0", Dto::IfType::Virtual, {}, 1, {1});

  for (int port = 1; port <= kPorts; ++port) {
    s.ethInfos.push_back(PortInfo(port, seed, t));
    Dto::EthStat stat;
    stat.EthName = PortName(port);
    stat.TxSpeed = RateAt(TxRate(port), port, seed, t);
    stat.RxSpeed = RateAt(RxRate(port), port, seed, t);
    // Counters and rates are keyed by interface name, as the switch answers.
    for (const auto& name : s.interfaceNames) {
      const auto& members = s.interfaces[name].IfList;
      for (const auto& member : members) {
        if (member != stat.EthName) continue;
        s.ethCounters[name].push_back(Counters(port, seed, t));
        s.ethStats[name].push_back(stat);
      }
    }
  }

  s.mainMacAddress = "02:A0:C9:00:00:01";
  s.lldpConfig.SystemName = "orvovia-fake-sw";
  s.lldpConfig.SystemDescr = "Arq OrvoVia-24 media switch; SN OV24-0000001; 2.2.23";
  s.lldpConfig.ManagementIP = "192.0.2.10";
  s.lldpConfig.TTL = 120;
  for (const auto& neighbour : kNeighbours) s.lldpNeighbours.push_back(NeighbourInfo(neighbour));

  Dto::PTPConfig boundary;
  boundary.Domain = 0;
  boundary.PacketType = Dto::PTPPacketType::IEEE;
  boundary.ClockMode = Dto::PTPClockMode::Boundary;
  boundary.IfList = {PortName(1), PortName(2), PortName(3), PortName(4)};
  boundary.SlaveIfList = {PortName(2)};
  boundary.Profile = Dto::PTPProfile::SMPTE_2059;
  s.ptpConfigs.push_back(boundary);
  Dto::PTPConfig transparent;
  transparent.Domain = 127;
  transparent.PacketType = Dto::PTPPacketType::UDP;
  transparent.ClockMode = Dto::PTPClockMode::Transparent;
  transparent.IfList = {PortName(17), PortName(18), PortName(19), PortName(20)};
  transparent.Profile = Dto::PTPProfile::AES67_2015;
  s.ptpConfigs.push_back(transparent);

  s.currentConfig.Name = "studio-b-2026-11.cfg";
  s.currentConfig.Type = Dto::ConfigType::Release;
  s.currentConfig.Comment = "Studio B, November line-up";
  s.currentConfig.State = Dto::ConfigState::clean;
  s.currentConfig.BaseName = "factory-default.cfg";
  s.currentConfig.BaseType = Dto::ConfigType::Default;
  return s;
}

}  // namespace Arq::Monitoring
