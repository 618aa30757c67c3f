#include "Arq/Monitoring/Model/SwitchModelBuilder.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/Monitoring/Model/LldpNeighbourDecoder.h"
#include "Arq/Monitoring/SwitchSnapshot.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IPAddress.h"

namespace Arq::Monitoring {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Model = OrvoViaSwitch::Domain::Model;
using Model::LinkState;

using Call = Dto::Metrics::CollectorCall;

// How many of `reported` items a bound keeps, with one warning when it cuts.
std::size_t Kept(std::size_t reported, std::size_t bound, const char* what) {
  if (reported <= bound) return reported;
  snmp_log(LOG_WARNING, "switch model: %zu %s reported, the first %zu kept\n", reported, what,
           bound);
  return bound;
}

// Items by their name, for lookups in collections of any size.
template <typename Item, typename Name>
std::unordered_map<std::string_view, const Item*> ByName(const std::vector<Item>& items,
                                                         Name name) {
  std::unordered_map<std::string_view, const Item*> index;
  index.reserve(items.size());
  for (const auto& item : items) index.emplace(name(item), &item);
  return index;
}

template <typename Index>
auto Lookup(const Index& index, const std::string& name) -> decltype(index.begin()->second) {
  const auto found = index.find(name);
  return found == index.end() ? nullptr : found->second;
}

// A port's record in one interface's short list.
template <typename Items>
const typename Items::value_type* FindByName(const Items& items, const std::string& name) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&name](const auto& item) { return item.EthName == name; });
  return found == items.end() ? nullptr : &*found;
}

template <typename Items>
const typename Items::mapped_type::value_type* FindListed(const Items& lists,
                                                          const std::string& interfaceName,
                                                          const std::string& portName) {
  const auto list = lists.find(interfaceName);
  return list == lists.end() ? nullptr : FindByName(list->second, portName);
}

// The member-count rule of each kind of interface: one port for an Ethernet
// interface, two distinct ports for a PRS pair, distinct ports for a LAG.
bool MembersHoldTogether(const Dto::IfInfo& info) {
  const auto& members = info.IfList;
  const std::set<std::string> distinct(members.begin(), members.end());
  switch (info.Type) {
    case Dto::IfType::Ethernet:
      return members.size() == 1;
    case Dto::IfType::BasicPrs:
      return members.size() == 2 && distinct.size() == 2;
    case Dto::IfType::BasicLag:
      return members.size() <= Model::kMaxMembers && distinct.size() == members.size();
    default:
      return distinct.size() == members.size();
  }
}

// The order in which interfaces give their ports' data and rows: Ethernet
// interfaces, then PRS pairs, then LAGs, then the rest.
int KindOrder(Dto::IfType type) {
  switch (type) {
    case Dto::IfType::Ethernet:
      return 0;
    case Dto::IfType::BasicPrs:
      return 1;
    case Dto::IfType::BasicLag:
      return 2;
    default:
      return 3;
  }
}

LinkState PortLink(Dto::EthState state) {
  if (state == Dto::EthState::Unknown) return LinkState::Unknown;
  return state == Dto::EthState::LinkUp ? LinkState::Up : LinkState::Down;
}

// An interface is down when disabled; else up when a member port is up, down
// when it has no port or one is down, unknown otherwise.
LinkState InterfaceLink(const Model::SwitchModel& model, const Model::Interface& interface) {
  if (interface.status == Dto::IfStatus::Disabled) return LinkState::Down;
  bool anyDown = interface.members.empty();
  for (const std::size_t member : interface.members) {
    const LinkState link = PortLink(model.ports[member].state);
    if (link == LinkState::Up) return LinkState::Up;
    anyDown |= link == LinkState::Down;
  }
  return anyDown ? LinkState::Down : LinkState::Unknown;
}

// Link states and their change times against the previous model, by name.
template <typename Item>
void TrackLinks(std::vector<Item>& items, const std::vector<Item>& before,
                Model::Clock::time_point now) {
  const auto byName =
      ByName(before, [](const Item& item) -> std::string_view { return item.name; });
  for (auto& item : items) {
    const Item* old = Lookup(byName, item.name);
    if (old == nullptr) continue;
    item.linkChanged = old->link == item.link ? old->linkChanged : now;
  }
}

void BuildInterfaces(const SwitchSnapshot& s, Model::SwitchModel& model) {
  std::vector<const std::string*> names;
  for (const auto& name : s.interfaceNames) {
    if (s.interfaces.count(name) != 0) names.push_back(&name);
  }
  names.resize(Kept(names.size(), Model::kMaxInterfaces, "interfaces"));
  std::map<std::string, std::size_t> portIndex;
  std::size_t portsCut = 0;
  for (const std::string* name : names) {
    const Dto::IfInfo& info = s.interfaces.at(*name);
    Model::Interface& interface = model.interfaces.emplace_back();
    interface.name = *name;
    interface.type = info.Type;
    interface.status = info.Status;
    interface.vid = info.Vid;
    interface.vlans.assign(info.Vlan.begin(),
                           info.Vlan.begin() + static_cast<std::ptrdiff_t>(
                                                   std::min(info.Vlan.size(), Model::kMaxVlans)));
    interface.description = info.Description;
    interface.mac = ParseMac(info.MacAddr);
    if (!info.IpConfig.Ip.bIpv6) interface.ipv4 = Dto::ParseIpv4(info.IpConfig.Ip.Address);
    interface.consistent = MembersHoldTogether(info);
    for (const auto& member : info.IfList) {
      auto [entry, added] = portIndex.try_emplace(member, model.ports.size());
      if (added) {
        if (model.ports.size() == Model::kMaxPorts) {
          portIndex.erase(entry);
          ++portsCut;
          interface.consistent = false;
          continue;
        }
        model.ports.emplace_back().name = member;
      }
      if (interface.members.size() < Model::kMaxMembers) interface.members.push_back(entry->second);
    }
  }
  (void)Kept(model.ports.size() + portsCut, Model::kMaxPorts, "ports");
}

// Each port's data from the first interface, by kind, whose lists carry it;
// an interface one of whose ports lacks data in its own lists does not hold
// together.
void FillPorts(const SwitchSnapshot& s, Model::SwitchModel& model) {
  std::vector<std::size_t> order(model.interfaces.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&model](std::size_t a, std::size_t b) {
    return KindOrder(model.interfaces[a].type) < KindOrder(model.interfaces[b].type);
  });
  const auto infos =
      ByName(s.ethInfos, [](const Dto::EthInfo& info) -> std::string_view { return info.EthName; });
  for (const std::size_t i : order) {
    Model::Interface& interface = model.interfaces[i];
    for (const std::size_t member : interface.members) {
      Model::Port& port = model.ports[member];
      const auto* info = Lookup(infos, port.name);
      const auto* counters = FindListed(s.ethCounters, interface.name, port.name);
      const auto* stats = FindListed(s.ethStats, interface.name, port.name);
      interface.consistent &= info != nullptr && counters != nullptr && stats != nullptr;
      if (info != nullptr && !port.hasInfo) {
        port.hasInfo = true;
        port.mode = info->Mode;
        port.speed = info->Speed;
        port.state = info->State;
        port.failure = info->FailureSts;
        port.fecType = info->FecType;
        port.fecTypeState = info->FecTypeState;
        port.isMainPhys = info->IsMainPhys;
        // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a signed byte count
        port.nbPhys = static_cast<int>(info->NbPhys);
      }
      if (counters != nullptr && !port.hasCounters) {
        port.hasCounters = true;
        std::size_t c = 0;
        std::apply(
            [&port, &c](const std::string&, const auto&... value) {
              ((port.counters[c++] = static_cast<std::uint64_t>(value)), ...);
            },
            counters->Tie());
      }
      if (stats != nullptr && !port.hasRates) {
        port.hasRates = true;
        port.txRate = stats->TxSpeed;
        port.rxRate = stats->RxSpeed;
      }
    }
  }
}

std::unordered_map<std::string_view, const Model::Port*> PortsByName(
    const Model::SwitchModel& model) {
  return ByName(model.ports, [](const Model::Port& port) -> std::string_view { return port.name; });
}

// For the data of a call that failed, each port keeps what the previous
// model had for it: its counters frozen, its state unknown.
void CarryFailedPortData(const SwitchSnapshot& s, const Model::SwitchModel& before,
                         Model::SwitchModel& model) {
  const bool info = !s.answered[Call::Ethernet_GetEthInfo];
  const bool counters = !s.answered[Call::Interfaces_GetCnt];
  const bool rates = !s.answered[Call::Interfaces_GetStats];
  if (!info && !counters && !rates) return;
  const auto oldPorts = PortsByName(before);
  for (auto& port : model.ports) {
    const Model::Port* old = Lookup(oldPorts, port.name);
    if (old == nullptr) continue;
    if (info && old->hasInfo) {
      const std::string name = port.name;
      const bool hasCounters = port.hasCounters;
      const auto portCounters = port.counters;
      const bool hasRates = port.hasRates;
      const auto tx = port.txRate, rx = port.rxRate;
      port = *old;
      port.name = name;
      port.state = Dto::EthState::Unknown;
      port.hasCounters = hasCounters;
      port.counters = portCounters;
      port.hasRates = hasRates;
      port.txRate = tx;
      port.rxRate = rx;
    }
    if (counters && old->hasCounters) {
      port.hasCounters = true;
      port.counters = old->counters;
    }
    if (rates && old->hasRates) {
      port.hasRates = true;
      port.txRate = old->txRate;
      port.rxRate = old->rxRate;
    }
  }
  // The interfaces' consistency was judged on the lists of this collection:
  // judge it again on the data carried over.
  for (auto& interface : model.interfaces) {
    if (!interface.consistent && !interface.members.empty()) {
      bool whole = true;
      for (const std::size_t member : interface.members) {
        const auto& port = model.ports[member];
        whole &= port.hasInfo && port.hasCounters && port.hasRates;
      }
      const auto* old = before.FindInterface(interface.name);
      interface.consistent = whole && old != nullptr && old->consistent;
    }
  }
}

void Discontinuities(Model::SwitchModel& model, const Model::SwitchModel& before,
                     Model::Clock::time_point now) {
  const auto oldPorts = PortsByName(before);
  for (auto& port : model.ports) {
    const Model::Port* old = Lookup(oldPorts, port.name);
    if (old == nullptr) continue;
    port.counterDiscontinuity = old->counterDiscontinuity;
    if (!port.hasCounters || !old->hasCounters) continue;
    for (std::size_t c = 0; c < port.counters.size(); ++c) {
      if (port.counters[c] < old->counters[c]) {
        port.counterDiscontinuity = now;
        break;
      }
    }
  }
}

void Links(Model::SwitchModel& model, const Model::SwitchModel& before,
           Model::Clock::time_point now) {
  // A port's served state: down when the interface it is served under (its
  // first listing by kind) is disabled.
  std::vector<int> servedUnder(model.ports.size(), -1);
  std::vector<std::size_t> order(model.interfaces.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&model](std::size_t a, std::size_t b) {
    return KindOrder(model.interfaces[a].type) < KindOrder(model.interfaces[b].type);
  });
  for (const std::size_t i : order) {
    for (const std::size_t member : model.interfaces[i].members) {
      if (servedUnder[member] < 0) servedUnder[member] = static_cast<int>(i);
    }
  }
  for (std::size_t p = 0; p < model.ports.size(); ++p) {
    auto& port = model.ports[p];
    const bool disabled =
        servedUnder[p] >= 0 && model.interfaces[static_cast<std::size_t>(servedUnder[p])].status ==
                                   Dto::IfStatus::Disabled;
    port.link = disabled ? LinkState::Down : PortLink(port.state);
  }
  for (auto& interface : model.interfaces) interface.link = InterfaceLink(model, interface);
  TrackLinks(model.ports, before.ports, now);
  TrackLinks(model.interfaces, before.interfaces, now);
}

// A neighbour's identity: its local port and the chassis and port ids it
// announces (the LLDP agent's MSAP).
using NeighbourKey = std::tuple<std::string_view, int, std::string_view, int, std::string_view>;
NeighbourKey KeyOf(const Model::LldpNeighbour& n) {
  const auto id = [](const std::optional<Model::LldpId>& value) {
    return value ? std::pair<int, std::string_view>(value->subtype, value->id)
                 : std::pair<int, std::string_view>(-1, {});
  };
  const auto [chassisType, chassis] = id(n.chassisId);
  const auto [portType, port] = id(n.portId);
  return {n.localPort, chassisType, chassis, portType, port};
}

bool SameContent(const Model::LldpNeighbour& a, const Model::LldpNeighbour& b) {
  const auto address = [](const std::optional<Model::LldpManagementAddress>& m) {
    return m ? std::make_tuple(true, m->subtype, std::string_view(m->address), m->interfaceSubtype,
                               m->interfaceNumber, m->objectId)
             : std::make_tuple(false, std::uint8_t{0}, std::string_view(), std::uint8_t{0},
                               std::uint32_t{0}, std::optional<std::vector<std::uint32_t>>());
  };
  return std::tie(a.portDescription, a.systemName, a.systemDescription, a.capabilitiesSupported,
                  a.capabilitiesEnabled,
                  a.ttl) == std::tie(b.portDescription, b.systemName, b.systemDescription,
                                     b.capabilitiesSupported, b.capabilitiesEnabled, b.ttl) &&
         address(a.managementAddress) == address(b.managementAddress);
}

// The neighbours that appeared, disappeared or changed since `before`.
void CountLldpChanges(const Model::SwitchModel& before, Model::SwitchModel& model,
                      Model::Clock::time_point now) {
  Model::LldpStatistics& statistics = model.lldpStatistics;
  statistics = before.lldpStatistics;
  std::map<NeighbourKey, const Model::LldpNeighbour*> was, is;
  for (const auto& neighbour : before.neighbours) was.emplace(KeyOf(neighbour), &neighbour);
  for (const auto& neighbour : model.neighbours) is.emplace(KeyOf(neighbour), &neighbour);
  bool changed = false;
  for (const auto& [key, neighbour] : is) {
    const auto old = was.find(key);
    if (old == was.end()) {
      ++statistics.inserts;
      changed = true;
    } else if (!SameContent(*old->second, *neighbour)) {
      changed = true;
    }
  }
  for (const auto& [key, neighbour] : was) {
    if (is.count(key) == 0) {
      ++statistics.deletes;
      changed = true;
    }
  }
  if (model.neighboursCut > before.neighboursCut) {
    statistics.drops += model.neighboursCut - before.neighboursCut;
  }
  if (changed) statistics.lastChange = now;
}

void BuildLldp(const SwitchSnapshot& s, const Model::SwitchModel& before, Model::SwitchModel& model,
               Model::Clock::time_point now) {
  Model::LldpLocal& local = model.lldpLocal;
  if (!s.answered[Call::LLDP_GetConfig]) {
    local = before.lldpLocal;
  } else {
    local.systemName = s.lldpConfig.SystemName;
    local.systemDescription = s.lldpConfig.SystemDescr;
    const auto parts = MetricConverter::LldpTlv::SplitSystemDescription(local.systemDescription);
    local.deviceType = parts.deviceType;
    local.serialNumber = parts.serialNumber;
    local.version = parts.version;
    // Without a chassis id of its own, the switch is known by its main MAC.
    local.chassisIdText =
        s.lldpConfig.ChassisId.empty() ? s.mainMacAddress : s.lldpConfig.ChassisId;
    local.managementIpv4 = Dto::ParseIpv4(s.lldpConfig.ManagementIP);
    local.ttl = s.lldpConfig.TTL;
  }
  local.mainMac = s.answered[Call::Interfaces_GetMainMacAddr] ? ParseMac(s.mainMacAddress)
                                                              : before.lldpLocal.mainMac;
  local.chassisMac = ParseMac(local.chassisIdText);

  if (!s.answered[Call::LLDP_GetInfo]) {
    model.neighbours = before.neighbours;
    model.lldpStatistics = before.lldpStatistics;
    model.neighboursCut = before.neighboursCut;
    return;
  }
  const std::size_t count = Kept(s.lldpNeighbours.size(), Model::kMaxNeighbours, "LLDP neighbours");
  model.neighboursCut = s.lldpNeighbours.size() - count;
  model.neighbours.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (s.lldpNeighbours[i].IfName.empty()) continue;
    model.neighbours.push_back(DecodeNeighbour(s.lldpNeighbours[i], i + 1));
  }
  CountLldpChanges(before, model, now);
}

void BuildPtp(const SwitchSnapshot& s, const Model::SwitchModel& before,
              Model::SwitchModel& model) {
  if (!s.answered[Call::PTP_GetConfig]) {
    model.ptpDomains = before.ptpDomains;
    return;
  }
  const std::size_t count = Kept(s.ptpConfigs.size(), Model::kMaxPtpDomains, "PTP domains");
  for (std::size_t i = 0; i < count; ++i) {
    const auto& config = s.ptpConfigs[i];
    auto& domain = model.ptpDomains.emplace_back();
    // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a signed byte number
    domain.domain = static_cast<std::int32_t>(config.Domain);
    domain.packetType = config.PacketType;
    // A mode the interface does not define is unknown here, not the 0
    // (transparent) that the conversion made of it.
    domain.clockMode = config.ClockModeDefined ? config.ClockMode : Dto::PTPClockMode::Unknown;
    domain.profile = config.Profile;
    domain.ports = config.IfList;
    domain.slavePorts = config.SlaveIfList;
  }
}

}  // namespace

std::shared_ptr<Model::SwitchModel> SwitchModelBuilder::Build(const SwitchSnapshot& s,
                                                              Model::Clock::time_point now) {
  auto model = std::make_shared<Model::SwitchModel>();
  const Model::SwitchModel& before = *previous;
  if (!s.answered[Call::Interfaces_GetIfList] || !s.answered[Call::Interfaces_GetInfo]) {
    // No interface data this time: the last ones stand, their state unknown.
    model->ports = before.ports;
    model->interfaces = before.interfaces;
    for (auto& port : model->ports) port.state = Dto::EthState::Unknown;
    model->collection.interfacesCurrent = false;
  } else {
    BuildInterfaces(s, *model);
    FillPorts(s, *model);
    CarryFailedPortData(s, before, *model);
    // Ports whose state is the last one known are not this collection's own.
    model->collection.interfacesCurrent = s.answered[Call::Ethernet_GetEthInfo];
    Discontinuities(*model, before, now);
  }
  Links(*model, before, now);
  if (!model->collection.interfacesCurrent) {
    for (auto& port : model->ports) port.link = LinkState::Unknown;
    for (auto& interface : model->interfaces) interface.link = LinkState::Unknown;
    TrackLinks(model->ports, before.ports, now);
    TrackLinks(model->interfaces, before.interfaces, now);
  }
  BuildLldp(s, before, *model, now);
  BuildPtp(s, before, *model);
  model->configuration =
      s.answered[Call::Config_GetCurrentConfig] ? s.currentConfig : before.configuration;
  model->collection.collectedAt = now;
  previous = model;
  return model;
}

std::shared_ptr<Model::SwitchModel> SwitchModelBuilder::Carry(Model::Clock::time_point now) {
  SwitchSnapshot nothing;
  nothing.answered.fill(false);
  return Build(nothing, now);
}

}  // namespace Arq::Monitoring
