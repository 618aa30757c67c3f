#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "Arq/Exposition/ExpositionWriter.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitch/Domain/Model/PortCounterFacts.def"

namespace Arq::Exposition {

// Every family the endpoint serves, declared once: the port counters from the
// domain model's PortCounterFacts.def, the others here. The labels of a
// port's samples come first in every port family (ifIndex, ifName, ifAlias:
// ifIndex as IF-MIB numbers the port, empty when IF-MIB numbers it from its
// fallback file rather than from its name).

inline constexpr std::string_view kPortLabels = "ifIndex,ifName,ifAlias";

namespace Families {

inline constexpr Family kBuildInfo{"orvovia_build_info", MetricType::Info, "", "version",
                                   "The daemon's version (always 1)."};

inline constexpr Family kCollectorState{
    "orvovia_collector_state", MetricType::Gauge, "", "state",
    "The last collection's outcome, 1 for the current state of ok (every switch call answered), "
    "partial (some failed), unreachable (all failed), disabled (collection switched off), "
    "not_yet_collected."};
inline constexpr Family kCollectorEnabled{
    "orvovia_collector_enabled", MetricType::Gauge, "", "",
    "1 when the options file lets the daemon collect, 0 when it switched collection off."};
inline constexpr Family kCollectorPeriod{"orvovia_collector_period_seconds", MetricType::Gauge,
                                         "seconds", "", "Seconds between two collections."};
inline constexpr Family kCollectorCollections{"orvovia_collector_collections_total",
                                              MetricType::Counter, "", "",
                                              "Collections made since the daemon started."};
inline constexpr Family kCollectorLastCollection{
    "orvovia_collector_last_collection_timestamp_seconds", MetricType::Gauge, "seconds", "",
    "When the last collection ended, in seconds since the Unix epoch (absent before the first)."};
inline constexpr Family kCollectorLastSuccess{
    "orvovia_collector_last_success_timestamp_seconds", MetricType::Gauge, "seconds", "",
    "When the last collection whose every call answered ended, in seconds since the Unix epoch "
    "(absent before the first)."};
inline constexpr Family kCollectorLastDuration{
    "orvovia_collector_last_duration_seconds", MetricType::Gauge, "seconds", "",
    "How long the last collection took (absent before the first)."};
inline constexpr Family kCollectorConsecutiveFailures{
    "orvovia_collector_consecutive_failures", MetricType::Gauge, "", "",
    "Collections in a row with at least one failed switch call."};
inline constexpr Family kCollectorConsecutiveUnreachable{
    "orvovia_collector_consecutive_unreachable", MetricType::Gauge, "", "",
    "Collections in a row in which every switch call failed."};
inline constexpr Family kCollectorInterfacesCurrent{
    "orvovia_collector_interfaces_current", MetricType::Gauge, "", "",
    "1 when the port data is the last collection's own, 0 when the switch gave none and the "
    "ports keep their last data (counters frozen, states unknown)."};
inline constexpr Family kCollectorCallOutcome{
    "orvovia_collector_call_outcome", MetricType::Gauge, "", "call,outcome",
    "How each switch call of the last collection went, 1 for its outcome of ok, fault (the "
    "service's fault reply), timeout, connection_refused, transport_error, bad_reply, "
    "not_called."};
inline constexpr Family kCollectorCallFailures{
    "orvovia_collector_call_failures_total", MetricType::Counter, "", "call",
    "Times each switch call failed since the daemon started."};
inline constexpr Family kCollectorCallDuration{
    "orvovia_collector_call_duration_seconds", MetricType::Gauge, "seconds", "call",
    "How long each switch call of the last collection took, connection included (absent for a "
    "call not made)."};

inline constexpr Family kPortAdminStatus{
    "orvovia_port_admin_status", MetricType::Gauge, "", kPortLabels,
    "The port's administrative status as IF-MIB ifAdminStatus: 1 up, 2 down (its interface "
    "disabled)."};
inline constexpr Family kPortOperStatus{
    "orvovia_port_oper_status", MetricType::Gauge, "", kPortLabels,
    "The port's operational status as IF-MIB ifOperStatus: 1 up, 2 down, 4 unknown (the switch "
    "did not say, or its port data is from an earlier collection)."};
// Speeds and rates in bytes per second, Prometheus' base unit (times 8: bits
// per second, as IF-MIB and the switch give them).
inline constexpr Family kPortSpeed{
    "orvovia_port_speed_bytes_per_second", MetricType::Gauge, "bytes_per_second", kPortLabels,
    "The port's speed in bytes per second (its bits per second / 8; absent when the switch "
    "reports no known speed)."};
inline constexpr Family kPortReceiveRate{
    "orvovia_port_receive_rate_bytes_per_second", MetricType::Gauge, "bytes_per_second",
    kPortLabels, "The receive rate the switch measures, in bytes per second."};
inline constexpr Family kPortTransmitRate{
    "orvovia_port_transmit_rate_bytes_per_second", MetricType::Gauge, "bytes_per_second",
    kPortLabels, "The transmit rate the switch measures, in bytes per second."};

inline constexpr Family kLagMember{
    "orvovia_lag_member_info", MetricType::Info, "", "lag,ifIndex,ifName",
    "A port of a link aggregation group (always 1; ifIndex and ifName are the port's)."};
inline constexpr Family kLagOperStatus{
    "orvovia_lag_oper_status", MetricType::Gauge, "", "lag",
    "The group's operational status as IF-MIB ifOperStatus: 1 up (enabled and a port up), 2 "
    "down, 4 unknown."};
inline constexpr Family kLagSpeed{
    "orvovia_lag_speed_bytes_per_second", MetricType::Gauge, "bytes_per_second", "lag",
    "The group's speed in bytes per second: the sum of its up ports' speeds."};

inline constexpr Family kLldpNeighbour{
    "orvovia_lldp_neighbour_info", MetricType::Info, "",
    "ifIndex,ifName,chassis_id,port_id,port_description,system_name,system_description,"
    "management_address",
    "A neighbour announced by LLDP on a local port (always 1): its chassis and port ids (a MAC "
    "address as aa:bb:cc:dd:ee:ff, a network address as text, else the id's text), its port "
    "description, system name and description and IPv4 or IPv6 management address, empty when "
    "not announced."};

inline constexpr Family kPtpPortRole{
    "orvovia_ptp_port_role", MetricType::Gauge, "", "domain,ifName",
    "The role of a PTP domain's port as PTPBASE-MIB ptpbaseClockPortRunningRole: 1 master, 2 "
    "slave."};
inline constexpr Family kPtpSlavePorts{
    "orvovia_ptp_domain_slave_ports", MetricType::Gauge, "", "domain",
    "Ports of a PTP domain in the slave role: 0 when the domain has no time source."};

inline constexpr std::array kAll{kBuildInfo,
                                 kCollectorState,
                                 kCollectorEnabled,
                                 kCollectorPeriod,
                                 kCollectorCollections,
                                 kCollectorLastCollection,
                                 kCollectorLastSuccess,
                                 kCollectorLastDuration,
                                 kCollectorConsecutiveFailures,
                                 kCollectorConsecutiveUnreachable,
                                 kCollectorInterfacesCurrent,
                                 kCollectorCallOutcome,
                                 kCollectorCallFailures,
                                 kCollectorCallDuration,
                                 kPortAdminStatus,
                                 kPortOperStatus,
                                 kPortSpeed,
                                 kPortReceiveRate,
                                 kPortTransmitRate,
                                 kLagMember,
                                 kLagOperStatus,
                                 kLagSpeed,
                                 kLldpNeighbour,
                                 kPtpPortRole,
                                 kPtpSlavePorts};

}  // namespace Families

// The port counters: each family of PortCounterFacts.def, with the label
// that tells its counters apart, and each counter with its family and value
// of that label.

struct PortCounterFamily {
  Family family;
  std::string_view label;
};

struct PortCounterFamilyId {
#define ARQ_FAMILY_ID(id, ...) id,
  enum : std::size_t { ARQ_PORT_COUNTER_FAMILIES(ARQ_FAMILY_ID) };
#undef ARQ_FAMILY_ID
};

#define ARQ_FAMILY(id, name, unit, label, help) \
  PortCounterFamily{{name, MetricType::Counter, unit, kPortLabels, help}, label},
inline constexpr std::array kPortCounterFamilies{ARQ_PORT_COUNTER_FAMILIES(ARQ_FAMILY)};
#undef ARQ_FAMILY

struct PortCounterFact {
  std::size_t counter;  // position in the port's counters (EthCounters.h)
  std::size_t family;   // position in kPortCounterFamilies
  std::string_view value;
};

// A row read through its first three columns: the `~` stands in for columns
// that later readers add after them, so that the `...` is never empty.
#define ARQ_FACT(...) ARQ_FACT_COLUMNS(__VA_ARGS__, ~)
#define ARQ_FACT_COLUMNS(counter, family, value, ...)                   \
  PortCounterFact{OrvoViaSwitch::Domain::Dto::EthCounterIndex::counter, \
                  PortCounterFamilyId::family, value},
inline constexpr std::array kPortCounterFacts{ARQ_PORT_COUNTER_FACTS(ARQ_FACT)};
#undef ARQ_FACT_COLUMNS
#undef ARQ_FACT

namespace Checks {

constexpr bool AllWellFormed() {
  // NOLINTNEXTLINE(readability-use-anyofallof): std::all_of is constexpr from C++20 only
  for (const auto& family : Families::kAll) {
    if (!IsWellFormed(family)) return false;
  }
  // NOLINTNEXTLINE(readability-use-anyofallof): as above
  for (const auto& counters : kPortCounterFamilies) {
    if (!IsWellFormed(counters.family)) return false;
  }
  return true;
}

// Each counter of the switch once, each family with at least one counter,
// and a label value exactly where the family has a label.
constexpr bool EveryCounterOnce() {
  if (kPortCounterFacts.size() != OrvoViaSwitch::Domain::Dto::kEthCounterCount) return false;
  std::array<int, OrvoViaSwitch::Domain::Dto::kEthCounterCount> seen{};
  std::array<int, kPortCounterFamilies.size()> used{};
  for (const auto& fact : kPortCounterFacts) {
    if (++seen[fact.counter] != 1) return false;
    ++used[fact.family];
    if (fact.value.empty() != kPortCounterFamilies[fact.family].label.empty()) return false;
  }
  // NOLINTNEXTLINE(readability-use-anyofallof): as above
  for (const int count : used) {
    if (count == 0) return false;
  }
  return true;
}

static_assert(AllWellFormed(), "a family's name, suffix or unit breaks the exposition rules");
static_assert(EveryCounterOnce(), "PortCounterFacts.def must list every port counter once");

}  // namespace Checks

}  // namespace Arq::Exposition
