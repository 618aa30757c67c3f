#include "Arq/Exposition/SwitchExposition.h"

#include <arpa/inet.h>

#include <algorithm>
#include <set>
#include <vector>

#include "Arq/Exposition/Families.h"

namespace Arq::Exposition {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;
namespace Model = OrvoViaSwitch::Domain::Model;

constexpr std::uint64_t kBytesPerSecondPerMbit = 1000000 / 8;
constexpr double kBitsPerByte = 8;

// A port as IF-MIB serves it, with its labels written once.
struct ServedPort {
  const Model::Port* port;
  const Model::Interface* owner;
  std::string labels;
};

// An ifIndex label: the number the collection gave, or empty for none.
std::string IfIndexText(std::uint32_t ifIndex) {
  return ifIndex > 0 ? std::to_string(ifIndex) : std::string();
}

// The ports the interface views serve, in ifIndex order, each under the
// interface it is served under.
std::vector<ServedPort> ServedPorts(const Model::SwitchModel& model) {
  std::vector<ServedPort> served;
  served.reserve(model.servedPorts.size());
  for (const auto& entry : model.servedPorts) {
    const Model::Port& port = model.ports[entry.port];
    const Model::Interface& owner = model.interfaces[entry.owner];
    // ifAlias: the Ethernet interface's description; none for a member port.
    const std::string& alias =
        owner.type == Dto::IfType::Ethernet ? owner.description : std::string();
    served.push_back({&port, &owner,
                      Labels()
                          .Add("ifIndex", IfIndexText(port.ifIndex))
                          .Add("ifName", port.name)
                          .Add("ifAlias", alias)
                          .Text()});
  }
  return served;
}

void Build(ExpositionWriter& out, const BuildInfo& build) {
  out.Begin(Families::kBuildInfo);
  out.Sample(Labels().Add("version", build.version).Text(), std::uint64_t{1});
}

std::uint64_t Count(std::int64_t value) {
  return value > 0 ? static_cast<std::uint64_t>(value) : 0;
}

void Collector(ExpositionWriter& out, const Model::Collection& collection) {
  const Metrics::CollectorHealthMetric& health = collection.health;
  static constexpr std::pair<Metrics::CollectorState, const char*> kStates[] = {
      {Metrics::CollectorState::Ok, "ok"},
      {Metrics::CollectorState::Partial, "partial"},
      {Metrics::CollectorState::Unreachable, "unreachable"},
      {Metrics::CollectorState::Disabled, "disabled"},
      {Metrics::CollectorState::NotYetCollected, "not_yet_collected"}};
  out.Begin(Families::kCollectorState);
  for (const auto& [state, name] : kStates) {
    out.Sample(Labels().Add("state", name).Text(), std::uint64_t{health.state == state});
  }
  out.Begin(Families::kCollectorEnabled);
  out.Sample({}, std::uint64_t{health.collectEnabled});
  out.Begin(Families::kCollectorPeriod);
  out.Sample({}, Count(health.period));
  out.Begin(Families::kCollectorCollections);
  out.Sample({}, Count(health.collections));
  out.Begin(Families::kCollectorLastCollection);
  if (health.lastCollection > 0) out.Sample({}, Count(health.lastCollection));
  out.Begin(Families::kCollectorLastSuccess);
  if (health.lastSuccess > 0) out.Sample({}, Count(health.lastSuccess));
  out.Begin(Families::kCollectorLastDuration);
  if (health.collections > 0) {
    out.Sample({}, {}, static_cast<double>(health.lastDurationMs) / 1000.0);
  }
  out.Begin(Families::kCollectorConsecutiveFailures);
  out.Sample({}, Count(health.consecutiveFailures));
  out.Begin(Families::kCollectorConsecutiveUnreachable);
  out.Sample({}, Count(health.consecutiveUnreachable));
  out.Begin(Families::kCollectorInterfacesCurrent);
  out.Sample({}, std::uint64_t{collection.interfacesCurrent});

  static constexpr std::pair<Metrics::CallOutcome, const char*> kOutcomes[] = {
      {Metrics::CallOutcome::Ok, "ok"},
      {Metrics::CallOutcome::Fault, "fault"},
      {Metrics::CallOutcome::Timeout, "timeout"},
      {Metrics::CallOutcome::ConnectionRefused, "connection_refused"},
      {Metrics::CallOutcome::TransportError, "transport_error"},
      {Metrics::CallOutcome::BadReply, "bad_reply"},
      {Metrics::CallOutcome::NotCalled, "not_called"}};
  std::vector<std::string> calls;
  calls.reserve(Metrics::kCollectorCallCount);
  for (const char* name : Metrics::kCollectorCallNames)
    calls.push_back(Labels().Add("call", name).Text());
  out.Begin(Families::kCollectorCallOutcome);
  for (std::size_t call = 0; call < calls.size(); ++call) {
    for (const auto& [outcome, name] : kOutcomes) {
      out.Sample(calls[call], Labels().Add("outcome", name).Text(),
                 std::uint64_t{collection.calls[call].outcome == outcome});
    }
  }
  out.Begin(Families::kCollectorCallFailures);
  for (std::size_t call = 0; call < calls.size(); ++call) {
    out.Sample(calls[call], Count(collection.calls[call].failures));
  }
  out.Begin(Families::kCollectorCallDuration);
  for (std::size_t call = 0; call < calls.size(); ++call) {
    const auto& record = collection.calls[call];
    if (record.outcome == Metrics::CallOutcome::NotCalled) continue;
    out.Sample(calls[call], {}, static_cast<double>(record.durationUs) / 1e6);
  }
}

void PortStates(ExpositionWriter& out, const std::vector<ServedPort>& ports) {
  out.Begin(Families::kPortAdminStatus);
  for (const auto& served : ports) {
    out.Sample(served.labels, std::uint64_t{Model::IfMibAdminStatus(*served.owner)});
  }
  out.Begin(Families::kPortOperStatus);
  for (const auto& served : ports)
    out.Sample(served.labels, std::uint64_t{Model::IfMibOperStatus(served.port->link)});
  out.Begin(Families::kPortSpeed);
  for (const auto& served : ports) {
    const std::uint64_t mbps = Model::SpeedMbps(served.port->speed);
    if (mbps > 0) out.Sample(served.labels, mbps * kBytesPerSecondPerMbit);
  }
  out.Begin(Families::kPortReceiveRate);
  for (const auto& served : ports) {
    out.Sample(served.labels, {}, static_cast<double>(Count(served.port->rxRate)) / kBitsPerByte);
  }
  out.Begin(Families::kPortTransmitRate);
  for (const auto& served : ports) {
    out.Sample(served.labels, {}, static_cast<double>(Count(served.port->txRate)) / kBitsPerByte);
  }
}

// The facts of each counter family, in the order PortCounterFacts.def lists them.
const std::array<std::vector<PortCounterFact>, kPortCounterFamilies.size()>& FactsByFamily() {
  static const auto byFamily = [] {
    std::array<std::vector<PortCounterFact>, kPortCounterFamilies.size()> facts;
    for (const auto& fact : kPortCounterFacts) facts[fact.family].push_back(fact);
    return facts;
  }();
  return byFamily;
}

void PortCounters(ExpositionWriter& out, const std::vector<ServedPort>& ports) {
  const auto& byFamily = FactsByFamily();
  for (std::size_t f = 0; f < kPortCounterFamilies.size(); ++f) {
    const PortCounterFamily& family = kPortCounterFamilies[f];
    std::vector<std::string> values;
    for (const auto& fact : byFamily[f]) {
      values.push_back(family.label.empty() ? std::string()
                                            : Labels().Add(family.label, fact.value).Text());
    }
    out.Begin(family.family);
    for (const auto& served : ports) {
      for (std::size_t v = 0; v < values.size(); ++v) {
        out.Sample(served.labels, values[v], served.port->counters[byFamily[f][v].counter]);
      }
    }
  }
}

void Lags(ExpositionWriter& out, const Model::SwitchModel& model) {
  std::vector<const Model::Interface*> lags;
  for (const auto& interface : model.interfaces) {
    if (interface.type == Dto::IfType::BasicLag && interface.consistent) lags.push_back(&interface);
  }
  out.Begin(Families::kLagMember);
  for (const auto* lag : lags) {
    for (const std::size_t member : lag->members) {
      const Model::Port& port = model.ports[member];
      out.Sample(Labels()
                     .Add("lag", lag->name)
                     .Add("ifIndex", IfIndexText(port.ifIndex))
                     .Add("ifName", port.name)
                     .Text(),
                 std::uint64_t{1});
    }
  }
  out.Begin(Families::kLagOperStatus);
  for (const auto* lag : lags)
    out.Sample(Labels().Add("lag", lag->name).Text(),
               std::uint64_t{Model::IfMibOperStatus(lag->link)});
  out.Begin(Families::kLagSpeed);
  for (const auto* lag : lags) {
    std::uint64_t mbps = 0;
    for (const std::size_t member : lag->members) {
      const auto& port = model.ports[member];
      if (port.link == Model::LinkState::Up) mbps += Model::SpeedMbps(port.speed);
    }
    out.Sample(Labels().Add("lag", lag->name).Text(), mbps * kBytesPerSecondPerMbit);
  }
}

std::string MacText(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ':';
    text += kHex[byte >> 4];
    text += kHex[byte & 15];
  }
  return text;
}

// An address of IANA family 1 (IPv4) or 2 (IPv6) as text, or "".
std::string AddressText(std::uint8_t family, std::string_view address) {
  char text[INET6_ADDRSTRLEN] = {};
  if (family == 1 && address.size() == 4) {
    inet_ntop(AF_INET, address.data(), text, sizeof text);
  } else if (family == 2 && address.size() == 16) {
    inet_ntop(AF_INET6, address.data(), text, sizeof text);
  }
  return text;
}

// A chassis or port id: a MAC address (chassis subtype 4, port subtype 3) in
// colon form, a network address (chassis subtype 5, port subtype 4: an IANA
// family octet and the address) as text, anything else as the id's text.
std::string IdText(const std::optional<Model::LldpId>& id, std::uint8_t macSubtype,
                   std::uint8_t addressSubtype) {
  if (!id) return {};
  if (id->subtype == macSubtype && id->id.size() == 6) return MacText(id->id);
  if (id->subtype == addressSubtype && !id->id.empty()) {
    std::string text =
        AddressText(static_cast<std::uint8_t>(id->id[0]), std::string_view(id->id).substr(1));
    if (!text.empty()) return text;
  }
  return id->id;
}

void Neighbours(ExpositionWriter& out, const Model::SwitchModel& model) {
  out.Begin(Families::kLldpNeighbour);
  // Two neighbours that say the same on one port make one series, not a
  // duplicate that would fail the whole scrape.
  std::set<std::string> written;
  for (const auto& neighbour : model.neighbours) {
    const auto& management = neighbour.managementAddress;
    std::string labels =
        Labels()
            .Add("ifIndex", IfIndexText(neighbour.localIfIndex))
            .Add("ifName", neighbour.localPort)
            .Add("chassis_id", IdText(neighbour.chassisId, 4, 5))
            .Add("port_id", IdText(neighbour.portId, 3, 4))
            .Add("port_description", neighbour.portDescription.value_or(""))
            .Add("system_name", neighbour.systemName.value_or(""))
            .Add("system_description", neighbour.systemDescription.value_or(""))
            .Add("management_address",
                 management ? AddressText(management->subtype, management->address) : "")
            .Text();
    if (written.insert(labels).second) out.Sample(labels, std::uint64_t{1});
  }
}

void Ptp(ExpositionWriter& out, const Model::SwitchModel& model) {
  // The first domain of a number counts, as in PTPBASE-MIB; a port once in it.
  struct Domain {
    std::string labels;
    std::vector<std::pair<std::string, bool>> ports;  // labels, slave
    std::uint64_t slaves = 0;
  };
  std::vector<Domain> domains;
  std::set<std::int32_t> numbers;
  for (const auto& domain : model.ptpDomains) {
    if (!numbers.insert(domain.domain).second) continue;
    Domain& entry = domains.emplace_back();
    const std::string number = std::to_string(domain.domain);
    entry.labels = Labels().Add("domain", number).Text();
    std::set<std::string> seen;
    for (const auto& port : domain.ports) {
      if (!seen.insert(port).second) continue;
      const bool slave = std::find(domain.slavePorts.begin(), domain.slavePorts.end(), port) !=
                         domain.slavePorts.end();
      entry.ports.emplace_back(Labels().Add("domain", number).Add("ifName", port).Text(), slave);
      entry.slaves += slave ? 1 : 0;
    }
  }
  out.Begin(Families::kPtpPortRole);
  for (const auto& domain : domains) {
    for (const auto& [labels, slave] : domain.ports)
      out.Sample(labels, std::uint64_t{slave ? 2u : 1u});
  }
  out.Begin(Families::kPtpSlavePorts);
  for (const auto& domain : domains) out.Sample(domain.labels, domain.slaves);
}

}  // namespace

std::string Render(const Model::SwitchModel& model, const BuildInfo& build, Format format) {
  const std::vector<ServedPort> ports = ServedPorts(model);
  std::string text;
  // About 140 bytes a sample, 45 samples a port, plus the rest.
  text.reserve(16384 + ports.size() * 45 * 140);
  ExpositionWriter out(format, text);
  Build(out, build);
  Collector(out, model.collection);
  PortStates(out, ports);
  PortCounters(out, ports);
  Lags(out, model);
  Neighbours(out, model);
  Ptp(out, model);
  out.Finish();
  return text;
}

}  // namespace Arq::Exposition
