#include "Standard/Engine/StandardObjects.h"

#include <limits>

namespace Arq::Snmp::Standard {
namespace {

// TruthValue
constexpr long kTrue = 1;
constexpr long kFalse = 2;

}  // namespace

// A value whose kind does not fit the object's syntax gives no value rather
// than one in the wrong type.
bool Put(netsnmp_variable_list* var, const MibObject& object, long value) {
  if (object.type == ASN_INTEGER) {
    SetInteger(var, value);
    return true;
  }
  return value >= 0 && Put(var, object, static_cast<std::uint64_t>(value));
}

bool Put(netsnmp_variable_list* var, const MibObject& object, std::uint64_t value) {
  switch (object.type) {
    case ASN_INTEGER:
      if (value > static_cast<std::uint64_t>(std::numeric_limits<long>::max())) return false;
      SetInteger(var, static_cast<long>(value));
      return true;
    case ASN_UNSIGNED:
    case ASN_COUNTER:
    case ASN_TIMETICKS:
      SetUnsigned(var, object.type, value);
      return true;
    case ASN_COUNTER64:
      SetCounter64(var, value);
      return true;
    default:
      return false;
  }
}

bool Put(netsnmp_variable_list* var, const MibObject& object, bool value) {
  return Put(var, object, value ? kTrue : kFalse);
}

bool Put(netsnmp_variable_list* var, const MibObject& object, const std::string& value) {
  if (object.type != ASN_OCTET_STR) return false;
  SetOctets(var, value);
  return true;
}

bool Put(netsnmp_variable_list* var, const MibObject& object, const std::vector<oid>& value) {
  if (object.type != ASN_OBJECT_ID) return false;
  SetObjectId(var, value);
  return true;
}

std::vector<oid> Instance(const MibObject& object) {
  std::vector<oid> id = object.id;
  id.push_back(0);
  return id;
}

}  // namespace Arq::Snmp::Standard
