#include "Arq/Monitoring/Model/Numbers.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <vector>

namespace Arq::Monitoring {
namespace {

std::string In(const std::string& folder, const char* file) {
  return folder.empty() ? std::string() : folder + "/" + file;
}

// Bridge ports were once kept in a file of ifIndex form, their names prefixed
// "bridge port " and numbered from the ifIndex fallbacks' first value: such a
// file is read once and written again in the space's own form.
const std::string& IfIndexHeader() {
  static const std::string header = Numbering::Header(InterfaceIndex::kSpace.tag);
  return header;
}

// A port number that the ifIndex rule may give a port: slot * 1000 + port.
bool RuledPortNumber(long number) {
  return number > 1000 && number % 1000 != 0;
}

long PortRule(const std::string& name) {
  const long ifIndex = InterfaceIndex::FromRule(name);
  return ifIndex <= Numbers::kPortNumbers.last ? ifIndex : 0;
}

}  // namespace

const Numbering::Space Numbers::kBridgePorts{
    "bridge-ports", "bridge port", 1, 65535,
    Numbering::Legacy{IfIndexHeader(), "bridge port ", InterfaceIndex::kFirstFallback}};
const Numbering::Space Numbers::kPortNumbers{"port-numbers", "port number", 1, 65535, {},
                                             RuledPortNumber};

Numbers::Numbers(const std::string& folder)
    : ifIndex(In(folder, "orvovia-ifindex.conf")),
      bridgePorts(kBridgePorts, In(folder, "orvovia-bridge-ports.conf")),
      portNumbers(kPortNumbers, In(folder, "orvovia-port-numbers.conf"),
                  [](const std::string& name) { return PortRule(name) != 0; }) {}

long Numbers::PortNumber(const std::string& name) {
  const long ruled = PortRule(name);
  return ruled != 0 ? ruled : portNumbers.Of(name);
}

void Numbers::EndRound(std::int64_t nowUnixSeconds) {
  ifIndex.EndRound(nowUnixSeconds);
  bridgePorts.EndRound(nowUnixSeconds);
  portNumbers.EndRound(nowUnixSeconds);
}

void Numbers::Assign(OrvoViaSwitch::Domain::Model::SwitchModel& model,
                     std::int64_t nowUnixSeconds) {
  namespace Model = OrvoViaSwitch::Domain::Model;
  using OrvoViaSwitch::Domain::Dto::IfType;
  const auto number = [](long value) { return static_cast<std::uint32_t>(value > 0 ? value : 0); };
  // Names take their numbers at first sight, in this order: the served
  // interfaces as listed below, the neighbours' local ports, then every other
  // port (ENTITY-MIB lists them all).
  for (auto& port : model.ports) {
    port.ifIndex = 0;
    port.portNumber = 0;
    port.bridgePort = 0;
  }
  for (auto& interface : model.interfaces) {
    interface.ifIndex = 0;
    interface.bridgePort = 0;
  }
  model.servedPorts.clear();
  model.servedAggregates.clear();
  std::set<std::uint32_t> seen;
  const auto addPort = [&](std::size_t member, std::size_t owner) {
    Model::Port& port = model.ports[member];
    port.ifIndex = number(ifIndex.Of(port.name));
    const std::uint32_t index = port.ifIndex;
    if (index == 0) return false;
    if (seen.insert(index).second) model.servedPorts.push_back({member, owner});
    return true;
  };
  // Ethernet interfaces first, then PRS, then LAGs: a port listed twice keeps
  // the row of its first listing in that order.
  for (const auto type : {IfType::Ethernet, IfType::BasicPrs, IfType::BasicLag}) {
    for (std::size_t i = 0; i < model.interfaces.size(); ++i) {
      Model::Interface& interface = model.interfaces[i];
      if (interface.type != type || !interface.consistent) continue;
      if (type == IfType::Ethernet) {
        if (!interface.members.empty()) addPort(interface.members.front(), i);
        continue;
      }
      interface.ifIndex = number(ifIndex.Of(interface.name));
      Model::ServedAggregate aggregate{i, {}};
      for (const std::size_t member : interface.members) {
        if (addPort(member, i)) aggregate.members.push_back(member);
      }
      if (interface.ifIndex != 0 && seen.insert(interface.ifIndex).second) {
        model.servedAggregates.push_back(std::move(aggregate));
      }
    }
  }
  std::sort(model.servedPorts.begin(), model.servedPorts.end(),
            [&](const Model::ServedPort& a, const Model::ServedPort& b) {
              return model.ports[a.port].ifIndex < model.ports[b.port].ifIndex;
            });
  std::sort(model.servedAggregates.begin(), model.servedAggregates.end(),
            [&](const Model::ServedAggregate& a, const Model::ServedAggregate& b) {
              return model.interfaces[a.interface].ifIndex < model.interfaces[b.interface].ifIndex;
            });
  // Port numbers, and bridge ports (the port of each Ethernet interface, each
  // LAG and PRS interface), in ifIndex order, which numbers them at first sight.
  std::vector<std::tuple<std::uint32_t, const std::string*, std::uint32_t*>> bridged;
  for (const auto& served : model.servedPorts) {
    Model::Port& port = model.ports[served.port];
    port.portNumber = number(PortNumber(port.name));
    if (model.interfaces[served.owner].type == IfType::Ethernet) {
      bridged.emplace_back(port.ifIndex, &port.name, &port.bridgePort);
    }
  }
  for (const auto& served : model.servedAggregates) {
    Model::Interface& interface = model.interfaces[served.interface];
    bridged.emplace_back(interface.ifIndex, &interface.name, &interface.bridgePort);
  }
  std::sort(bridged.begin(), bridged.end());
  for (const auto& [index, name, bridgePort] : bridged) *bridgePort = number(bridgePorts.Of(*name));
  for (auto& neighbour : model.neighbours) {
    neighbour.localIfIndex = number(ifIndex.Of(neighbour.localPort));
  }
  for (auto& port : model.ports) port.ifIndex = number(ifIndex.Of(port.name));
  EndRound(nowUnixSeconds);
}

}  // namespace Arq::Monitoring
