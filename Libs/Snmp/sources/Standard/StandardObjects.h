#pragma once

// The objects of the standard MIBs that the inventory, VLAN and PTP views
// serve (EntityObjects.def, BridgeObjects.def, PtpBaseObjects.def): each one
// constant named after its object, with its identifier and the ASN.1 type
// its syntax is encoded as. A view answers a column through Put with the
// column's object, so that its value always goes out in the MIB's syntax.
#include <optional>
#include <string>
#include <vector>

#include "SortedTable.h"

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
inline constexpr u_char Integer = ASN_INTEGER, Integer32 = ASN_INTEGER,
                        InterfaceIndex = ASN_INTEGER, InterfaceIndexOrZero = ASN_INTEGER,
                        PhysicalIndex = ASN_INTEGER, PhysicalIndexOrZero = ASN_INTEGER,
                        PhysicalClass = ASN_INTEGER, TruthValue = ASN_INTEGER,
                        RowStatus = ASN_INTEGER, VlanId = ASN_INTEGER, PtpClockType = ASN_INTEGER,
                        PtpClockProfileType = ASN_INTEGER, PtpClockRoleType = ASN_INTEGER;
inline constexpr u_char Unsigned32 = ASN_UNSIGNED, Gauge32 = ASN_GAUGE, VlanIndex = ASN_UNSIGNED,
                        PtpClockDomainType = ASN_UNSIGNED, PtpClockInstanceType = ASN_UNSIGNED,
                        PtpClockPortNumber = ASN_UNSIGNED, Counter32 = ASN_COUNTER;
inline constexpr u_char TimeStamp = ASN_TIMETICKS, TimeFilter = ASN_TIMETICKS;
inline constexpr u_char SnmpAdminString = ASN_OCTET_STR, DisplayString = ASN_OCTET_STR,
                        OctetString = ASN_OCTET_STR, DateAndTime = ASN_OCTET_STR,
                        PortList = ASN_OCTET_STR;
inline constexpr u_char AutonomousType = ASN_OBJECT_ID, RowPointer = ASN_OBJECT_ID;
}  // namespace Syntax

namespace Mib {
#define ARQ_STD_OBJECT(name, syntax, ...) \
  inline const MibObject name{Syntax::syntax, {__VA_ARGS__}};
#include "BridgeObjects.def"
#include "EntityObjects.def"
#include "PtpBaseObjects.def"
#undef ARQ_STD_OBJECT
}  // namespace Mib

// Sets a cell in its object's syntax; false (no value) for an empty optional.
bool Put(netsnmp_variable_list* var, const MibObject& object, long value);
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::string& value);
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::vector<oid>& value);
template <typename T>
bool Put(netsnmp_variable_list* var, const MibObject& object, const std::optional<T>& value) {
  return value && Put(var, object, *value);
}

// The instance of a scalar: its identifier followed by 0.
std::vector<oid> Instance(const MibObject& object);

}  // namespace Arq::Snmp::Standard
