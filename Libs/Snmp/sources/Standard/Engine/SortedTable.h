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
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Arq::Snmp::Standard {

// The rows of one table in ascending order of their index arcs.
class ISortedTable {
 public:
  virtual ~ISortedTable() = default;
  virtual std::size_t Rows() const = 0;
  virtual const std::vector<oid>& Index(std::size_t row) const = 0;
  // Sets the cell's value; false when the row has no value in that column.
  virtual bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const = 0;
};

// AgentX registration priority of the standard views: lower than the 127
// that snmpd gives its own modules, so that the switch's rows win over the
// management processor's where both register the same subtree.
inline constexpr int kStandardViewPriority = 100;

struct SortedHandler;

// The registrations of one owner of tables: what each of its Net-SNMP
// registrations' handler reads (the handlers point to it, so the owner must
// outlive every request), and the handler of each shared subtree
// (Subtrees.def), made at its first member.
struct SortedRegistrations {
  SortedRegistrations();
  ~SortedRegistrations();
  SortedRegistrations(const SortedRegistrations&) = delete;
  SortedRegistrations& operator=(const SortedRegistrations&) = delete;

  std::vector<std::unique_ptr<SortedHandler>> handlers;
  std::map<std::string, SortedHandler*> bySubtree;
};

// Registers `table` read-only at `tableId` (the entry is arc 1 below it),
// serving columns `firstColumn` to `lastColumn`; `refresh` brings its rows up
// to date, once per request batch. Returns the registration: for a table of a
// subtree served whole (LLDP-MIB's and IEEE8023-LAG-MIB's objects,
// ENTITY-MIB's, PTPBASE-MIB's, Q-BRIDGE-MIB's dot1qVlan), the one
// registration of that subtree, which answers for each of its tables.
netsnmp_handler_registration* RegisterSortedTable(SortedRegistrations& registrations,
                                                  const char* name, const std::vector<oid>& tableId,
                                                  unsigned firstColumn, unsigned lastColumn,
                                                  ISortedTable* table,
                                                  std::function<void()> refresh);

// Registers the arcs `firstArc` to `lastArc` of `group` as the columns of
// `table` (a group of scalars is a table of one row indexed {0}), leaving the
// group's other arcs to other registrations.
netsnmp_handler_registration* RegisterSortedRange(SortedRegistrations& registrations,
                                                  const char* name, const std::vector<oid>& group,
                                                  unsigned firstArc, unsigned lastArc,
                                                  ISortedTable* table,
                                                  std::function<void()> refresh);

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
