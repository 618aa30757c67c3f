#include <algorithm>
#include <map>
#include <set>

#include "Arq/Gnmi/Schema.h"

namespace Arq::Gnmi {

namespace Dto = OrvoViaSwitch::Domain::Dto;

View::View(std::shared_ptr<const Model::SwitchModel> model) : model_(std::move(model)) {
  const Model::SwitchModel& m = *model_;
  timestamp_ = std::chrono::duration_cast<std::chrono::nanoseconds>(
                   m.collection.collectedAtWall.time_since_epoch())
                   .count();
  // The interfaces the interface views serve, numbered by the collection
  // (ports first, then the LAG and PRS interfaces); a LAG's counters are its
  // members' sums.
  std::map<std::size_t, const Model::Interface*> lagOf;
  for (const auto& served : m.servedAggregates) {
    const Model::Interface& interface = m.interfaces[served.interface];
    if (interface.type != Dto::IfType::BasicLag) continue;
    for (const std::size_t member : served.members) lagOf.emplace(member, &interface);
  }
  std::set<std::string> names;
  for (const auto& served : m.servedPorts) {
    const Model::Port& port = m.ports[served.port];
    if (!names.insert(port.name).second) continue;
    InterfaceEntry entry;
    entry.port = &port;
    entry.owner = &m.interfaces[served.owner];
    entry.name = port.name;
    entry.ifIndex = port.ifIndex;
    entry.counters = port.counters;
    const auto lag = lagOf.find(served.port);
    if (lag != lagOf.end()) entry.lag = lag->second->name;
    interfaces_.push_back(std::move(entry));
  }
  for (const auto& served : m.servedAggregates) {
    const Model::Interface& interface = m.interfaces[served.interface];
    if (!names.insert(interface.name).second) continue;
    InterfaceEntry entry;
    entry.owner = &interface;
    entry.aggregate = &interface;
    entry.name = interface.name;
    entry.ifIndex = interface.ifIndex;
    for (const std::size_t member : interface.members) {
      const Model::Port& port = m.ports[member];
      for (std::size_t c = 0; c < entry.counters.size(); ++c) entry.counters[c] += port.counters[c];
    }
    interfaces_.push_back(std::move(entry));
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
