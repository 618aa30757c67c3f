#include "Standard/Engine/Projection.h"

#include <algorithm>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

InterfaceLayout LayoutOf(const Model::SwitchModel& model) {
  InterfaceLayout layout;
  layout.ports.reserve(model.servedPorts.size());
  for (const auto& served : model.servedPorts) {
    const Model::Port& port = model.ports[served.port];
    layout.ports.push_back(
        {port.ifIndex, &port, &model.interfaces[served.owner], port.portNumber, port.bridgePort});
  }
  for (const auto& served : model.servedAggregates) {
    const Model::Interface& interface = model.interfaces[served.interface];
    ServedAggregate aggregate{interface.ifIndex, &interface, {}, interface.bridgePort};
    for (const std::size_t member : served.members) {
      aggregate.members.push_back(model.ports[member].ifIndex);
    }
    layout.aggregates.push_back(std::move(aggregate));
  }
  return layout;
}

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

std::string Truncate(const std::string& text, std::size_t size) {
  if (text.size() <= size) return text;
  std::size_t end = size;
  // Back off continuation bytes (10xxxxxx) to the start of their character.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  if (end == 0) end = size;  // no character boundary: not UTF-8, cut at the size
  return text.substr(0, end);
}

std::vector<oid> IfEntryCell(oid column, long ifIndex) {
  std::vector<oid> cell = Mib::ifEntry.id;
  cell.push_back(column);
  cell.push_back(static_cast<oid>(ifIndex));
  return cell;
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
