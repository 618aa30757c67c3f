#pragma once

// The standard views (IF-MIB, LLDP-MIB, the collector's health group, ...) as
// projections of the switch model: each view is a set of sorted row vectors
// that its Project rebuilds from one model, once per published generation,
// on the SNMP thread (StandardViews). A request then reads one cell of one row: no text is
// parsed and nothing is converted per request, and every row of one answer
// comes from one collection.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"
#include "Standard/Engine/SortedTable.h"

namespace Arq::Snmp::Standard {

namespace Model = OrvoViaSwitch::Domain::Model;

// IANAifType values of the interface rows.
enum IfType : long { kEthernetCsmacd = 6, kPropVirtual = 53, kIeee8023adLag = 161 };

// A port served in IF-MIB, with the interface it is served under (its
// Ethernet interface, or the PRS interface or LAG it belongs to).
struct ServedPort {
  long ifIndex = 0;
  const Model::Port* port = nullptr;
  const Model::Interface* owner = nullptr;
  long portNumber = 0;  // its RMON row and LAG actor port
  long bridgePort = 0;  // the port of an Ethernet interface; 0 for a member
};

// A LAG or PRS interface served in IF-MIB.
struct ServedAggregate {
  long ifIndex = 0;
  const Model::Interface* interface = nullptr;
  std::vector<long> members;  // the ifIndex of each member port served
  long bridgePort = 0;
};

// What IF-MIB serves of a model, in ifIndex order, for every view to share:
// the ports of the consistent Ethernet, PRS and LAG interfaces (a port
// listed twice keeps its first listing, in that order of kinds) and the
// consistent LAG and PRS interfaces.
struct InterfaceLayout {
  std::vector<ServedPort> ports;
  std::vector<ServedAggregate> aggregates;

  const ServedPort* FindPort(long ifIndex) const;
};

// The SIZE of the texts the views serve, by the MIBs' syntaxes.
inline constexpr std::size_t kDisplayStringSize = 255;  // DisplayString, SnmpAdminString
inline constexpr std::size_t kIfAliasSize = 64;
inline constexpr std::size_t kEntPhysicalSerialNumSize = 32;
inline constexpr std::size_t kPtpbaseClockPortNameSize = 64;

// Identifiers that several views and notifications use.
inline const std::vector<oid> kSnmpTrapOid{1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
// ifEntry.<column>.<ifIndex>; column 1 (ifIndex.<n>) names an interface.
std::vector<oid> IfEntryCell(oid column, long ifIndex);

// A PortList (Q-BRIDGE-MIB, IEEE8023-LAG-MIB, LLDP-MIB): one bit per port,
// port 1 the first octet's high bit. SetPortListBit grows the list to the
// port's octet; PortList is the shortest list of the ports from 1 to
// `largest` (others left out).
void SetPortListBit(std::string& list, long port);
std::string PortList(const std::vector<long>& ports, long largest);
// A served port's ifDescr: its Ethernet interface's name, or "<interface>
// port <port>" for a port of a LAG or PRS interface.
std::string IfDescr(const ServedPort& served);
// Its ifAlias: its Ethernet interface's description; empty for a member port.
std::string IfAlias(const ServedPort& served);

// Everything a projector reads: the model, the interfaces as IF-MIB serves
// them, and the clock conversions.
struct ProjectionContext {
  const Model::SwitchModel& model;
  const InterfaceLayout& layout;
  // The agent's sysUpTime at a steady-clock time (0 for the epoch of the
  // clock, "never", and for times before the agent started).
  std::uint64_t TicksAt(Model::Clock::time_point when) const;
  Model::Clock::time_point now;
  std::uint64_t uptimeNow = 0;
};

// The served interfaces of a model, with their numbers, as the views read
// them (pointers into the model).
InterfaceLayout LayoutOf(const Model::SwitchModel& model);

// A column of a projected table: its number and how a row answers it.
template <typename Row>
struct Column {
  unsigned number;
  // Sets the row's value; false when the row has no value in this column.
  bool (*answer)(const Row& row, netsnmp_variable_list* var);
};

// A standard table served from a vector of rows that its view's projection
// replaces. Row has a member `std::vector<oid> index`; rows are kept sorted by
// it. Tables with the same index (ifTable and ifXTable) may share one table's
// rows: `source`, which must not move while this table serves.
template <typename Row>
class ProjectedTable final : public ISortedTable {
 public:
  explicit ProjectedTable(std::vector<Column<Row>> columns, const ProjectedTable* source = nullptr)
      : source(source), columns(std::move(columns)) {
    for (const auto& column : this->columns) {
      if (byNumber.size() <= column.number) byNumber.resize(column.number + 1, nullptr);
      byNumber[column.number] = column.answer;
    }
  }

  std::size_t Rows() const override { return Served().size(); }
  const std::vector<oid>& Index(std::size_t row) const override { return Served()[row].index; }
  bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const override {
    return column < byNumber.size() && byNumber[column] != nullptr &&
           byNumber[column](Served()[row], var);
  }

  unsigned FirstColumn() const { return columns.front().number; }
  unsigned LastColumn() const { return columns.back().number; }

  // Replaces the rows, sorting them by index.
  void Replace(std::vector<Row> newRows);

  std::vector<Row> rows;

 private:
  const std::vector<Row>& Served() const { return source == nullptr ? rows : source->rows; }

  const ProjectedTable* source;
  std::vector<Column<Row>> columns;
  std::vector<bool (*)(const Row&, netsnmp_variable_list*)> byNumber;
};

template <typename Row>
void ProjectedTable<Row>::Replace(std::vector<Row> newRows) {
  std::stable_sort(newRows.begin(), newRows.end(),
                   [](const Row& a, const Row& b) { return a.index < b.index; });
  rows = std::move(newRows);
}

// DisplayString and SnmpAdminString: at most `size` octets, cut where a
// UTF-8 character starts so that no character is split.
std::string Truncate(const std::string& text, std::size_t size = kDisplayStringSize);

// A MAC address as six octets.
std::string MacOctets(const Model::MacAddress& mac);

}  // namespace Arq::Snmp::Standard
