#include <algorithm>
#include <set>

#include "Arq/Gnmi/Schema.h"

namespace Arq::Gnmi {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;

// A decimal number from `low` to `high` without leading zeros, or 0.
std::uint32_t Number(const std::string& text, std::uint32_t low, std::uint32_t high) {
  if (text.empty() || text.size() > 6 || text[0] == '0') return 0;
  std::uint32_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return 0;
    value = value * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return value >= low && value <= high ? value : 0;
}

std::uint32_t Prefixed(const std::string& name, const char* prefix, std::uint32_t base) {
  if (name.size() < 4) return 0;
  for (std::size_t i = 0; i < 3; ++i) {
    if ((name[i] | 0x20) != prefix[i]) return 0;
  }
  const std::uint32_t n = Number(name.substr(3), 1, 999);
  return n == 0 ? 0 : base + n;
}

}  // namespace

std::uint32_t IfIndexFromName(const std::string& name) {
  const auto slash = name.find('/');
  if (slash != std::string::npos) {
    const std::uint32_t slot = Number(name.substr(0, slash), 1, 99);
    const std::uint32_t port = Number(name.substr(slash + 1), 1, 999);
    return slot != 0 && port != 0 ? slot * 1000 + port : 0;
  }
  if (const std::uint32_t lag = Prefixed(name, "lag", 100000)) return lag;
  return Prefixed(name, "prs", 200000);
}

View::View(std::shared_ptr<const Model::SwitchModel> model) : model_(std::move(model)) {
  const Model::SwitchModel& m = *model_;
  timestamp_ = std::chrono::duration_cast<std::chrono::nanoseconds>(
                   m.collection.collectedAtWall.time_since_epoch())
                   .count();
  // The ports of the consistent Ethernet, PRS and LAG interfaces (a port
  // listed twice keeps its first listing, in that order of kinds, as IF-MIB
  // serves it), then the consistent LAG and PRS interfaces themselves.
  std::set<const Model::Port*> seen;
  std::set<std::string> names;
  for (const auto type : {Dto::IfType::Ethernet, Dto::IfType::BasicPrs, Dto::IfType::BasicLag}) {
    for (const auto& interface : m.interfaces) {
      if (interface.type != type || !interface.consistent) continue;
      const std::size_t count = type == Dto::IfType::Ethernet ? 1 : interface.members.size();
      for (std::size_t i = 0; i < count && i < interface.members.size(); ++i) {
        const Model::Port& port = m.ports[interface.members[i]];
        if (!seen.insert(&port).second || !names.insert(port.name).second) continue;
        InterfaceEntry entry;
        entry.port = &port;
        entry.owner = &interface;
        entry.name = port.name;
        entry.ifIndex = IfIndexFromName(port.name);
        entry.counters = port.counters;
        interfaces_.push_back(std::move(entry));
      }
    }
  }
  for (const auto& interface : m.interfaces) {
    if (!interface.consistent ||
        (interface.type != Dto::IfType::BasicLag && interface.type != Dto::IfType::BasicPrs)) {
      continue;
    }
    if (!names.insert(interface.name).second) continue;
    InterfaceEntry entry;
    entry.owner = &interface;
    entry.aggregate = &interface;
    entry.name = interface.name;
    entry.ifIndex = IfIndexFromName(interface.name);
    for (const std::size_t member : interface.members) {
      const Model::Port& port = m.ports[member];
      for (std::size_t c = 0; c < entry.counters.size(); ++c) entry.counters[c] += port.counters[c];
    }
    interfaces_.push_back(std::move(entry));
  }
  // A LAG member names its LAG (the first one listing it).
  for (auto& entry : interfaces_) {
    if (entry.port == nullptr) continue;
    for (const auto& interface : m.interfaces) {
      if (interface.type != Dto::IfType::BasicLag || !interface.consistent) continue;
      const bool member = std::any_of(interface.members.begin(), interface.members.end(),
                                      [&](std::size_t p) { return &m.ports[p] == entry.port; });
      if (member) {
        entry.lag = interface.name;
        break;
      }
    }
  }
  // Neighbours by local port, numbered from 1 in the switch's order.
  std::map<std::string, std::size_t> perPort;
  for (const auto& neighbour : m.neighbours) {
    if (perPort.emplace(neighbour.localPort, 0).second) lldpPorts_.push_back(neighbour.localPort);
    neighbours_.push_back({&neighbour});
  }
  components_.push_back({"chassis", nullptr});
  for (const auto& port : m.ports) components_.push_back({"port-" + port.name, &port});

  auto& root = instances_[static_cast<std::size_t>(Scope::Root)];
  root.push_back({Scope::Root, {}, nullptr});
  for (const auto& entry : interfaces_) {
    instances_[static_cast<std::size_t>(Scope::Interface)].push_back(
        {Scope::Interface, {entry.name}, &entry});
  }
  for (const auto& port : lldpPorts_) {
    instances_[static_cast<std::size_t>(Scope::LldpInterface)].push_back(
        {Scope::LldpInterface, {port}, &port});
  }
  for (const auto& entry : neighbours_) {
    const std::size_t id = ++perPort[entry.neighbour->localPort];
    instances_[static_cast<std::size_t>(Scope::Neighbour)].push_back(
        {Scope::Neighbour, {entry.neighbour->localPort, std::to_string(id)}, &entry});
    // One capability entry per supported capability.
    const auto& names = LldpCapabilityNames();
    for (std::size_t bit = 0; bit < names.size(); ++bit) {
      if ((entry.neighbour->capabilitiesSupported.value_or(0) >> bit & 1U) == 0) continue;
      instances_[static_cast<std::size_t>(Scope::Capability)].push_back(
          {Scope::Capability,
           {entry.neighbour->localPort, std::to_string(id), names[bit]},
           &entry});
    }
  }
  for (const auto& entry : components_) {
    instances_[static_cast<std::size_t>(Scope::Component)].push_back(
        {Scope::Component, {entry.name}, &entry});
  }
  // PTP clocks as PTPBASE-MIB numbers them: "<domain>.<instance in the domain>".
  std::map<std::int32_t, int> clocks;
  for (const auto& domain : m.ptpDomains) {
    if (!IsServedPtpClock(domain)) continue;
    const std::string id =
        std::to_string(domain.domain) + "." + std::to_string(++clocks[domain.domain]);
    instances_[static_cast<std::size_t>(Scope::PtpInstance)].push_back(
        {Scope::PtpInstance, {id}, &domain});
  }
  for (auto& list : instances_) {
    std::sort(list.begin(), list.end(),
              [](const Instance& a, const Instance& b) { return a.keys < b.keys; });
  }
}

std::uint64_t View::WallNs(Model::Clock::time_point when) const {
  if (when == Model::Clock::time_point{} || timestamp_ == 0) return 0;
  const auto age = model_->collection.collectedAt - when;
  const auto ns = timestamp_ - std::chrono::duration_cast<std::chrono::nanoseconds>(age).count();
  return ns > 0 ? static_cast<std::uint64_t>(ns) : 0;
}

}  // namespace Arq::Gnmi
