#pragma once

// The objects of the standard MIBs that the views serve (IfMibObjects.def,
// LldpObjects.def, EntityObjects.def, BridgeObjects.def, PtpBaseObjects.def,
// and the tables and columns of PortCounterObjects.def): each one constant
// named after its object, with its identifier and the ASN.1 type its syntax
// is encoded as. A view declares each column of a table by its object
// (Field, Fixed, Empty) and answers it through Put, so that its value always
// goes out in the MIB's syntax.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "Standard/Engine/Projection.h"
#include "Standard/Objects/PortCounterObjects.def"

namespace Arq::Snmp::Standard {

struct MibObject {
  u_char type;  // 0 for tables, entries, notifications and identities
  std::vector<oid> id;

  unsigned Arc() const { return static_cast<unsigned>(id.back()); }
  // The identifier one arc shorter: a column's entry, an entry's table.
  std::vector<oid> Parent() const { return {id.begin(), id.end() - 1}; }
};

// The ASN.1 type of each syntax the definition files name.
namespace Syntax {
inline constexpr u_char Table = 0, Entry = 0, Notification = 0, ObjectIdentity = 0;
inline constexpr u_char Integer = ASN_INTEGER, Integer32 = ASN_INTEGER, IANAifType = ASN_INTEGER,
                        InterfaceIndex = ASN_INTEGER, InterfaceIndexOrZero = ASN_INTEGER,
                        PhysicalIndex = ASN_INTEGER, PhysicalIndexOrZero = ASN_INTEGER,
                        PhysicalClass = ASN_INTEGER, TruthValue = ASN_INTEGER,
                        RowStatus = ASN_INTEGER, VlanId = ASN_INTEGER, PtpClockType = ASN_INTEGER,
                        PtpClockProfileType = ASN_INTEGER, PtpClockRoleType = ASN_INTEGER,
                        LldpChassisIdSubtype = ASN_INTEGER, LldpPortIdSubtype = ASN_INTEGER,
                        LldpPortNumber = ASN_INTEGER, AddressFamilyNumbers = ASN_INTEGER,
                        EntryStatus = ASN_INTEGER, LacpKey = ASN_INTEGER;
// ZeroBasedCounter32 (RMON2-MIB) is a Gauge32 that wraps as a counter does.
inline constexpr u_char Unsigned32 = ASN_UNSIGNED, Gauge32 = ASN_GAUGE, VlanIndex = ASN_UNSIGNED,
                        ZeroBasedCounter32 = ASN_GAUGE, PtpClockDomainType = ASN_UNSIGNED,
                        PtpClockInstanceType = ASN_UNSIGNED, PtpClockPortNumber = ASN_UNSIGNED,
                        Counter32 = ASN_COUNTER;
inline constexpr u_char Counter64 = ASN_COUNTER64;
inline constexpr u_char TimeTicks = ASN_TIMETICKS, TimeStamp = ASN_TIMETICKS,
                        TimeFilter = ASN_TIMETICKS;
inline constexpr u_char SnmpAdminString = ASN_OCTET_STR, DisplayString = ASN_OCTET_STR,
                        OctetString = ASN_OCTET_STR, DateAndTime = ASN_OCTET_STR,
                        PortList = ASN_OCTET_STR, PhysAddress = ASN_OCTET_STR,
                        LldpChassisId = ASN_OCTET_STR, LldpPortId = ASN_OCTET_STR,
                        LldpManAddress = ASN_OCTET_STR, LldpPortList = ASN_OCTET_STR,
                        MacAddress = ASN_OCTET_STR, OwnerString = ASN_OCTET_STR,
                        LldpSystemCapabilitiesMap = ASN_OCTET_STR;  // BITS
inline constexpr u_char ObjectIdentifier = ASN_OBJECT_ID, AutonomousType = ASN_OBJECT_ID,
                        RowPointer = ASN_OBJECT_ID;
}  // namespace Syntax

namespace Mib {
#define ARQ_STD_OBJECT(name, syntax, ...) \
  inline const MibObject name{Syntax::syntax, {__VA_ARGS__}};
#include "Standard/Objects/BridgeObjects.def"
#include "Standard/Objects/EntityObjects.def"
#include "Standard/Objects/IfMibObjects.def"
#include "Standard/Objects/LldpObjects.def"
#include "Standard/Objects/PtpBaseObjects.def"
#undef ARQ_STD_OBJECT

// A column of a table: its entry's identifier (the table's, then 1) and its
// number.
inline MibObject ColumnOf(const MibObject& table, u_char type, oid number) {
  MibObject column{type, table.id};
  column.id.push_back(1);
  column.id.push_back(number);
  return column;
}
// Each table of PortCounterObjects.def and its columns, served or not. The
// columns sit in an inline namespace of their table's, so that they are
// named Mib::<column> as every other object is.
#define ARQ_UNPACK(...) __VA_ARGS__
#define ARQ_COLUMN_OBJECT(name, number, syntax, ...) \
  inline const MibObject name = ColumnOf(kTable, Syntax::syntax, number);
#define ARQ_TABLE_OBJECTS(name, mib, arcs, row, rows, columns)   \
  inline const MibObject name{Syntax::Table, {ARQ_UNPACK arcs}}; \
  inline namespace name##Columns {                               \
    inline const MibObject& kTable = name;                       \
    columns(ARQ_COLUMN_OBJECT)                                   \
  }
ARQ_PORT_COUNTER_TABLES(ARQ_TABLE_OBJECTS)
#undef ARQ_TABLE_OBJECTS
#undef ARQ_COLUMN_OBJECT
#undef ARQ_UNPACK

#define ARQ_STD_SUBTREE(name, role, ...) \
  inline const MibObject name{Syntax::ObjectIdentity, {__VA_ARGS__}};
#include "Standard/Objects/Subtrees.def"
#undef ARQ_STD_SUBTREE
}  // namespace Mib

// A served subtree (Subtrees.def): a MIB module's, or one registration
// shared by the views under it.
enum class SubtreeRole { Module, Shared };
struct Subtree {
  const char* name;
  SubtreeRole role;
  const MibObject& object;
};
inline const std::vector<Subtree>& Subtrees() {
  static const std::vector<Subtree> subtrees = {
#define ARQ_STD_SUBTREE(name, role, ...) {#name, SubtreeRole::role, Mib::name},
#include "Standard/Objects/Subtrees.def"
#undef ARQ_STD_SUBTREE
  };
  return subtrees;
}

// Sets a cell in its object's syntax; false (no value) for an empty optional.
// Counter32, Gauge32 and TimeTicks take the low 32 bits of a number; a bool
// is a TruthValue.
bool Put(netsnmp_variable_list* var, const MibObject& object, long value);
inline bool Put(netsnmp_variable_list* var, const MibObject& object, int value) {
  return Put(var, object, static_cast<long>(value));
}
bool Put(netsnmp_variable_list* var, const MibObject& object, std::uint64_t value);
bool Put(netsnmp_variable_list* var, const MibObject& object, bool value);
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::string& value);
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::vector<oid>& value);
template <typename T>
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::optional<T>& value) {
  return value && Put(var, object, *value);
}

// The instance of a scalar: its identifier followed by 0.
std::vector<oid> Instance(const MibObject& object);

// The value of an OBJECT IDENTIFIER that points nowhere.
inline const std::vector<oid> kZeroDotZero{0, 0};

// A column whose value is a member of the row, or what a member function or
// a function of the row returns (a value the row derives, such as a sum).
template <typename Row, const MibObject& object, auto member>
Column<Row> Field() {
  return {object.Arc(), [](const Row& row, netsnmp_variable_list* var) {
            return Put(var, object, std::invoke(member, row));
          }};
}

// A column with one value for every row: a number, or the address of a
// constant (an identifier, a text).
template <typename Row, const MibObject& object, auto value>
Column<Row> Fixed() {
  return {object.Arc(), [](const Row&, netsnmp_variable_list* var) {
            if constexpr (std::is_pointer_v<decltype(value)>) {
              return Put(var, object, *value);
            } else {
              return Put(var, object, static_cast<long>(value));
            }
          }};
}
// A zero-length string in every row.
template <typename Row, const MibObject& object>
Column<Row> Empty() {
  return {object.Arc(),
          [](const Row&, netsnmp_variable_list* var) { return Put(var, object, std::string()); }};
}

// A table or a group of scalars that a view serves, for registration and for
// the in-process tests, which read its cells.
struct View {
  const char* name;
  MibObject root;  // the table, or the group's first scalar
  ISortedTable* table;
  unsigned firstColumn, lastColumn;
  bool group;  // scalars: registered as arcs of root's parent
  // What brings its rows up to date before a request batch reads them; the
  // owner's lazy projection when empty.
  std::function<void()> refresh = nullptr;
};

template <typename Row>
View TableView(const char* name, const MibObject& table, ProjectedTable<Row>& rows) {
  return {name, table, &rows, rows.FirstColumn(), rows.LastColumn(), false};
}
// Scalars `first` to `last` of one group, as a table of one row indexed {0}.
inline View GroupView(const char* name, const MibObject& first, const MibObject& last,
                      ISortedTable& rows) {
  return {name, first, &rows, first.Arc(), last.Arc(), true};
}

}  // namespace Arq::Snmp::Standard
