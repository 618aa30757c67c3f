#pragma once

// The switch counter each standard MIB column shows, as the counter
// declaration names them (the "MIB objects" of PortCounterFacts.def), looked
// up by the column's name when the view is compiled: a column declared to
// show a counter that no fact names does not build.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitch/Domain/Model/PortCounterFacts.def"

namespace Arq::Snmp::Standard {

namespace ShownCounters {

struct Fact {
  std::size_t counter;
  std::string_view columns;  // blank-separated
};

// The facts read through their first six columns; `~` stands in for later
// ones.
#define ARQ_SHOWN_FACT(...) ARQ_SHOWN_FACT_COLUMNS(__VA_ARGS__, ~)
#define ARQ_SHOWN_FACT_COLUMNS(counter, family, value, interfaceLeaf, ethernetLeaf, columns, ...) \
  Fact{OrvoViaSwitch::Domain::Dto::EthCounterIndex::counter, columns},
inline constexpr Fact kFacts[] = {ARQ_PORT_COUNTER_FACTS(ARQ_SHOWN_FACT)};
#undef ARQ_SHOWN_FACT_COLUMNS
#undef ARQ_SHOWN_FACT

constexpr bool Names(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(' '), list.size());
    if (list.substr(0, end) == word) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

}  // namespace ShownCounters

// The position of the counter the column shows in the port's counters, or
// kEthCounterCount for a column that shows none.
constexpr std::size_t CounterShownBy(std::string_view column) {
  for (const auto& fact : ShownCounters::kFacts) {
    if (ShownCounters::Names(fact.columns, column)) return fact.counter;
  }
  return OrvoViaSwitch::Domain::Dto::kEthCounterCount;
}

// The counter a row's column shows, from the row's counters.
template <typename Row, std::size_t counter>
std::uint64_t ShownCounter(const Row& row) {
  static_assert(counter < OrvoViaSwitch::Domain::Dto::kEthCounterCount,
                "the column shows no counter: name it in PortCounterFacts.def");
  return row.counters[counter];
}

// A column that shows one of its row's counters as it stands (a Field of
// StandardObjects.h).
#define ARQ_SHOWN_FIELD(Row, column) \
  Field<Row, Mib::column, &ShownCounter<Row, CounterShownBy(#column)>>()

}  // namespace Arq::Snmp::Standard
