#include "Projection.h"

#include <algorithm>
#include <ctime>
#include <set>
#include <tuple>

#include "Arq/Monitoring/MonitoringProcessor.h"

namespace Arq::Snmp::Standard {
namespace {

struct State {
  std::vector<Projector> projectors;
  std::uint64_t generation = ~std::uint64_t{0};
  std::shared_ptr<const Model::SwitchModel> model = std::make_shared<const Model::SwitchModel>();
  InterfaceLayout layout;
};

State& Projections() {
  static State state;
  return state;
}

InterfaceLayout Layout(const Model::SwitchModel& model, Numbers& numbers) {
  InterfaceIndex& indexes = numbers.ifIndex;
  InterfaceLayout layout;
  std::set<long> seen;
  const auto addPort = [&](std::size_t member, const Model::Interface& owner) -> long {
    const Model::Port& port = model.ports[member];
    const long ifIndex = indexes.Of(port.name);
    if (ifIndex > 0 && seen.insert(ifIndex).second) {
      layout.ports.push_back({ifIndex, &port, &owner});
    }
    return ifIndex;
  };
  // Ethernet interfaces first, then PRS, then LAGs: a port listed twice keeps
  // the row of its first listing in that order.
  for (const auto type :
       {OrvoViaSwitch::Domain::Dto::IfType::Ethernet, OrvoViaSwitch::Domain::Dto::IfType::BasicPrs,
        OrvoViaSwitch::Domain::Dto::IfType::BasicLag}) {
    for (const auto& interface : model.interfaces) {
      if (interface.type != type || !interface.consistent) continue;
      if (type == OrvoViaSwitch::Domain::Dto::IfType::Ethernet) {
        addPort(interface.members.front(), interface);
        continue;
      }
      ServedAggregate aggregate{indexes.Of(interface.name), &interface, {}};
      for (const std::size_t member : interface.members) {
        const long ifIndex = addPort(member, interface);
        if (ifIndex > 0) aggregate.members.push_back(ifIndex);
      }
      if (aggregate.ifIndex > 0 && seen.insert(aggregate.ifIndex).second) {
        layout.aggregates.push_back(std::move(aggregate));
      }
    }
  }
  const auto byIndex = [](const auto& a, const auto& b) { return a.ifIndex < b.ifIndex; };
  std::sort(layout.ports.begin(), layout.ports.end(), byIndex);
  std::sort(layout.aggregates.begin(), layout.aggregates.end(), byIndex);
  // Port numbers, and bridge ports (the port of each Ethernet interface, each
  // LAG and PRS interface), in ifIndex order, which numbers them at first sight.
  std::vector<std::tuple<long, const std::string*, long*>> bridged;
  for (auto& served : layout.ports) {
    served.portNumber = numbers.PortNumber(served.port->name);
    if (served.owner->type == OrvoViaSwitch::Domain::Dto::IfType::Ethernet) {
      bridged.emplace_back(served.ifIndex, &served.port->name, &served.bridgePort);
    }
  }
  for (auto& aggregate : layout.aggregates) {
    bridged.emplace_back(aggregate.ifIndex, &aggregate.interface->name, &aggregate.bridgePort);
  }
  std::sort(bridged.begin(), bridged.end());
  for (const auto& [ifIndex, name, bridgePort] : bridged) {
    *bridgePort = numbers.bridgePorts.Of(*name);
  }
  return layout;
}

}  // namespace

const ServedPort* InterfaceLayout::FindPort(long ifIndex) const {
  const auto found =
      std::lower_bound(ports.begin(), ports.end(), ifIndex,
                       [](const ServedPort& port, long wanted) { return port.ifIndex < wanted; });
  return found != ports.end() && found->ifIndex == ifIndex ? &*found : nullptr;
}

std::string IfDescr(const ServedPort& served) {
  if (served.owner->type == OrvoViaSwitch::Domain::Dto::IfType::Ethernet) return served.owner->name;
  return served.owner->name + " port " + served.port->name;
}

std::string IfAlias(const ServedPort& served) {
  if (served.owner->type == OrvoViaSwitch::Domain::Dto::IfType::Ethernet) {
    return served.owner->description;
  }
  return {};
}

std::uint64_t ProjectionContext::TicksAt(Model::Clock::time_point when) const {
  if (when == Model::Clock::time_point{}) return 0;
  const auto age = std::chrono::duration_cast<std::chrono::milliseconds>(now - when).count();
  const std::uint64_t ageTicks = age > 0 ? static_cast<std::uint64_t>(age) / 10 : 0;
  return ageTicks >= uptimeNow ? 0 : uptimeNow - ageTicks;
}

void AddProjector(Projector projector) {
  Projections().projectors.push_back(projector);
}

void ProjectAll(std::shared_ptr<const Model::SwitchModel> model, Numbers& numbers) {
  State& state = Projections();
  state.model = std::move(model);
  state.generation = state.model->generation;
  state.layout = Layout(*state.model, numbers);
  // Every other name the views number (the neighbours' local ports, and every
  // port ENTITY-MIB lists, served in IF-MIB or not), before the round ends,
  // so that the files record (and keep) every number a view uses and forget
  // only what has long been gone.
  for (const auto& neighbour : state.model->neighbours) numbers.ifIndex.Of(neighbour.localPort);
  for (const auto& port : state.model->ports) numbers.ifIndex.Of(port.name);
  numbers.EndRound(static_cast<std::int64_t>(std::time(nullptr)));
  const ProjectionContext context{*state.model, state.layout, numbers, Model::Clock::now(),
                                  UptimeTicks()};
  for (const Projector projector : state.projectors) projector(context);
}

void RefreshProjections() {
  const auto& store = Monitoring::MonitoringProcessor::switchModel;
  if (store.Generation() == Projections().generation) return;
  ProjectAll(store.Current(), SharedNumbers());
}

const std::shared_ptr<const Model::SwitchModel>& ProjectedModel() {
  return Projections().model;
}

const InterfaceLayout& ProjectedLayout() {
  return Projections().layout;
}

// Where the fallback ifIndex values live: Net-SNMP's persistent directory
// (/var/lib/snmp, or persistentDir / SNMP_PERSISTENT_DIR), the place an agent
// keeps what must survive restarts.
std::string Truncate(const std::string& text, std::size_t size) {
  if (text.size() <= size) return text;
  std::size_t end = size;
  // Back off continuation bytes (10xxxxxx) to the start of their character.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  if (end == 0) end = size;  // no character boundary: not UTF-8, cut at the size
  return text.substr(0, end);
}

std::vector<oid> IfEntryCell(oid column, long ifIndex) {
  std::vector<oid> cell = kIfEntry;
  cell.push_back(column);
  cell.push_back(static_cast<oid>(ifIndex));
  return cell;
}

long IfAdminStatus(const Model::Interface& interface) {
  return interface.status == OrvoViaSwitch::Domain::Dto::IfStatus::Disabled ? 2 : 1;
}

long IfOperStatus(Model::LinkState link) {
  switch (link) {
    case Model::LinkState::Up:
      return 1;
    case Model::LinkState::Down:
      return 2;
    default:
      return 4;
  }
}

void SetPortListBit(std::string& list, long port) {
  const auto octet = static_cast<std::size_t>(port - 1) / 8;
  if (list.size() <= octet) list.resize(octet + 1, '\0');
  list[octet] = static_cast<char>(list[octet] | (0x80 >> ((port - 1) % 8)));
}

std::string PortList(const std::vector<long>& ports, long largest) {
  std::string list;
  for (const long port : ports) {
    if (port >= 1 && port <= largest) SetPortListBit(list, port);
  }
  return list;
}

std::string MacOctets(const Model::MacAddress& mac) {
  return {mac.begin(), mac.end()};
}

}  // namespace Arq::Snmp::Standard
