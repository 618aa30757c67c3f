#include "StandardObjects.h"

namespace Arq::Snmp::Standard {

// A value whose kind does not fit the object's syntax gives no value rather
// than one in the wrong type.
bool Put(netsnmp_variable_list* var, const MibObject& object, long value) {
  switch (object.type) {
    case ASN_INTEGER:
      SetInteger(var, value);
      return true;
    case ASN_UNSIGNED:
    case ASN_COUNTER:
    case ASN_TIMETICKS:
      if (value < 0) return false;
      SetUnsigned(var, object.type, static_cast<std::uint64_t>(value));
      return true;
    default:
      return false;
  }
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
