#pragma once

// Tables of the standard MIBs (IF-MIB, LLDP-MIB): unlike the private MIB's
// fixed rows, their rows come and go with what the switch reports and are
// indexed by values (ifIndex, neighbour keys), so they are served by one
// handler that answers GET and GET-NEXT straight from a sorted row view.
// Nothing is stored in Net-SNMP's own row structures: a request converts only
// the one cell it asks for.
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// The agent headers need the two above first.
#include <net-snmp/agent/net-snmp-agent-includes.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Arq::Snmp::Standard {

// The rows of one table in ascending order of their index arcs.
class ISortedTable {
 public:
  virtual ~ISortedTable() = default;
  // Brings the rows up to date (change-time checks); once per request batch.
  virtual void Refresh() = 0;
  virtual std::size_t Rows() const = 0;
  virtual const std::vector<oid>& Index(std::size_t row) const = 0;
  // Sets the cell's value; false when the row has no value in that column.
  virtual bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const = 0;
};

// AgentX registration priority of the standard views: lower than the 127
// that snmpd gives its own modules, so that the switch's rows win over the
// management processor's where both register the same subtree.
inline constexpr int kStandardViewPriority = 100;

// Registers `table` read-only at `tableId` (the entry is arc 1 below it),
// serving columns `firstColumn` to `lastColumn`. Returns the registration:
// for a table of a subtree served whole (LLDP-MIB's and IEEE8023-LAG-MIB's
// objects, ENTITY-MIB's, PTPBASE-MIB's, Q-BRIDGE-MIB's dot1qVlan), the one
// registration of that subtree, which answers for each of its tables.
netsnmp_handler_registration* RegisterSortedTable(const char* name, const std::vector<oid>& tableId,
                                                  unsigned firstColumn, unsigned lastColumn,
                                                  ISortedTable* table);

// Registers the arcs `firstArc` to `lastArc` of `group` as the columns of
// `table` (a group of scalars is a table of one row indexed {0}), leaving the
// group's other arcs to other registrations.
netsnmp_handler_registration* RegisterSortedRange(const char* name, const std::vector<oid>& group,
                                                  unsigned firstArc, unsigned lastArc,
                                                  ISortedTable* table);

// A registered table by its registration name, with its served columns
// (nullptr table when there is none): how the in-process tests reach a view.
struct RegisteredView {
  ISortedTable* table = nullptr;
  unsigned firstColumn = 0;
  unsigned lastColumn = 0;
};
RegisteredView FindRegistered(const std::string& name);

// Value setters for the syntaxes of the standard tables.
void SetInteger(netsnmp_variable_list* var, long value);
void SetUnsigned(netsnmp_variable_list* var, u_char type,
                 std::uint64_t value);  // Counter32, Gauge32, TimeTicks
void SetCounter64(netsnmp_variable_list* var, std::uint64_t value);
void SetOctets(netsnmp_variable_list* var, const std::string& value);
void SetObjectId(netsnmp_variable_list* var, const std::vector<oid>& value);

// The agent's sysUpTime in hundredths of a second, and a steady-clock time
// point expressed on that scale (0 for a time before the agent started).
std::uint64_t UptimeTicks();

}  // namespace Arq::Snmp::Standard
