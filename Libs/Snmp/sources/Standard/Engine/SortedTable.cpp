#include "Standard/Engine/SortedTable.h"

#include <algorithm>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {
namespace {

struct Registered {
  ISortedTable* table;
  std::vector<oid> entry;  // tableId + 1, or the group of a range of scalars
  unsigned firstColumn;
  unsigned lastColumn;
  std::function<void()> refresh;
};

}  // namespace

// The tables and scalar ranges behind one Net-SNMP registration, in
// ascending order of their identifiers (their spans never overlap), and the
// registration.
struct SortedHandler {
  std::vector<Registered> members;
  netsnmp_handler_registration* registration = nullptr;
};

namespace {

// The subtree whose one registration serves `root` (Subtrees.def), or none.
const Subtree* SharedSubtreeOf(const std::vector<oid>& root) {
  for (const Subtree& subtree : Subtrees()) {
    const auto& id = subtree.object.id;
    if (subtree.role == SubtreeRole::Shared && root.size() > id.size() &&
        std::equal(id.begin(), id.end(), root.begin())) {
      return &subtree;
    }
  }
  return nullptr;
}

int Compare(const oid* a, std::size_t aLength, const std::vector<oid>& b) {
  return snmp_oid_compare(a, aLength, b.data(), b.size());
}

// The first row whose index is greater than (or, `orEqual`, equal to) the arcs.
std::size_t FirstRowAfter(const ISortedTable& table, const oid* arcs, std::size_t length,
                          bool orEqual) {
  std::size_t low = 0, high = table.Rows();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    const int order = -Compare(arcs, length, table.Index(middle));  // index vs arcs
    if (order > 0 || (orEqual && order == 0)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

// The member whose columns hold the requested name, if any.
const Registered* Holder(const SortedHandler& shared, const netsnmp_variable_list* var) {
  for (const Registered& r : shared.members) {
    const std::size_t base = r.entry.size();
    if (var->name_length <= base + 1 ||
        snmp_oid_compare(var->name, base, r.entry.data(), base) != 0) {
      continue;
    }
    const auto column = static_cast<unsigned>(var->name[base]);
    if (column >= r.firstColumn && column <= r.lastColumn) return &r;
  }
  return nullptr;
}

void AnswerGet(const SortedHandler& shared, netsnmp_agent_request_info* reqinfo,
               netsnmp_request_info* request) {
  netsnmp_variable_list* var = request->requestvb;
  const Registered* holder = Holder(shared, var);
  if (holder == nullptr) {
    netsnmp_set_request_error(reqinfo, request, SNMP_NOSUCHOBJECT);
    return;
  }
  const Registered& r = *holder;
  const std::size_t base = r.entry.size();
  const auto column = static_cast<unsigned>(var->name[base]);
  const oid* arcs = var->name + base + 1;
  const std::size_t length = var->name_length - base - 1;
  const std::size_t row = FirstRowAfter(*r.table, arcs, length, true);
  if (row >= r.table->Rows() || Compare(arcs, length, r.table->Index(row)) != 0 ||
      !r.table->Answer(row, column, var)) {
    netsnmp_set_request_error(reqinfo, request, SNMP_NOSUCHINSTANCE);
  }
}

// Sets the first cell of `r` after the requested name; false when it has none.
bool AnswerGetNext(const Registered& r, netsnmp_request_info* request) {
  netsnmp_variable_list* var = request->requestvb;
  const std::size_t base = r.entry.size();
  unsigned column = r.firstColumn;
  const oid* arcs = nullptr;
  std::size_t length = 0;
  const int order = snmp_oid_compare(var->name, std::min<std::size_t>(var->name_length, base),
                                     r.entry.data(), base);
  if (order > 0) return false;
  if (order == 0 && var->name_length > base) {
    if (var->name[base] > r.lastColumn) return false;
    if (var->name[base] >= r.firstColumn) {
      column = static_cast<unsigned>(var->name[base]);
      arcs = var->name + base + 1;
      length = var->name_length - base - 1;
    }
  }
  std::vector<oid> name;
  for (; column <= r.lastColumn; ++column, arcs = nullptr, length = 0) {
    std::size_t row = arcs == nullptr ? 0 : FirstRowAfter(*r.table, arcs, length, false);
    for (; row < r.table->Rows(); ++row) {
      if (!r.table->Answer(row, column, var)) continue;
      const auto& index = r.table->Index(row);
      name.assign(r.entry.begin(), r.entry.end());
      name.push_back(column);
      name.insert(name.end(), index.begin(), index.end());
      snmp_set_var_objid(var, name.data(), name.size());
      return true;
    }
  }
  return false;
}

int Handle(netsnmp_mib_handler* handler, netsnmp_handler_registration*,
           netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  const auto& shared = *static_cast<const SortedHandler*>(handler->myvoid);
  if (reqinfo->mode != MODE_GET && reqinfo->mode != MODE_GETNEXT) return SNMP_ERR_NOERROR;
  for (const Registered& r : shared.members) r.refresh();
  for (netsnmp_request_info* request = requests; request != nullptr; request = request->next) {
    if (request->processed) continue;
    if (reqinfo->mode == MODE_GET) {
      AnswerGet(shared, reqinfo, request);
    } else {
      for (const Registered& r : shared.members) {
        if (AnswerGetNext(r, request)) break;
      }
    }
  }
  return SNMP_ERR_NOERROR;
}

}  // namespace

SortedRegistrations::SortedRegistrations() = default;
SortedRegistrations::~SortedRegistrations() = default;

namespace {

netsnmp_handler_registration* CreateRegistration(const char* name, const std::vector<oid>& root,
                                                 int rangeSubid, unsigned rangeUpperBound,
                                                 SortedHandler* shared) {
  netsnmp_handler_registration* registration = netsnmp_create_handler_registration(
      name, Handle, root.data(), root.size(), HANDLER_CAN_RONLY);
  registration->handler->myvoid = shared;
  registration->priority = kStandardViewPriority;
  if (rangeSubid != 0) {
    registration->range_subid = rangeSubid;
    registration->range_ubound = rangeUpperBound;
  }
  netsnmp_register_handler(registration);
  return registration;
}

netsnmp_handler_registration* Register(SortedRegistrations& registrations, const char* name,
                                       std::vector<oid> entry, const std::vector<oid>& root,
                                       unsigned firstColumn, unsigned lastColumn, bool range,
                                       ISortedTable* table, std::function<void()> refresh) {
  const Subtree* subtree = SharedSubtreeOf(root);
  Registered member{table, std::move(entry), firstColumn, lastColumn, std::move(refresh)};
  SortedHandler* shared = nullptr;
  if (subtree == nullptr) {
    shared = registrations.handlers.emplace_back(std::make_unique<SortedHandler>()).get();
    shared->members.push_back(std::move(member));
    shared->registration = CreateRegistration(name, root, range ? static_cast<int>(root.size()) : 0,
                                              lastColumn, shared);
  } else {
    SortedHandler*& found = registrations.bySubtree[subtree->name];
    if (found == nullptr) {
      found = registrations.handlers.emplace_back(std::make_unique<SortedHandler>()).get();
      found->registration = CreateRegistration(subtree->name, subtree->object.id, 0, 0, found);
    }
    shared = found;
    // Kept in the order of the members' first identifiers.
    const auto start = [](const Registered& r) {
      std::vector<oid> id = r.entry;
      id.push_back(r.firstColumn);
      return id;
    };
    auto& members = shared->members;
    const std::vector<oid> at = start(member);
    members.insert(std::find_if(members.begin(), members.end(),
                                [&](const Registered& r) { return start(r) > at; }),
                   std::move(member));
  }
  snmp_log(LOG_INFO, "%s Done initializing.\n", name);
  return shared->registration;
}

}  // namespace

netsnmp_handler_registration* RegisterSortedTable(SortedRegistrations& registrations,
                                                  const char* name, const std::vector<oid>& tableId,
                                                  unsigned firstColumn, unsigned lastColumn,
                                                  ISortedTable* table,
                                                  std::function<void()> refresh) {
  std::vector<oid> entry = tableId;
  entry.push_back(1);
  return Register(registrations, name, entry, tableId, firstColumn, lastColumn, false, table,
                  std::move(refresh));
}

netsnmp_handler_registration* RegisterSortedRange(SortedRegistrations& registrations,
                                                  const char* name, const std::vector<oid>& group,
                                                  unsigned firstArc, unsigned lastArc,
                                                  ISortedTable* table,
                                                  std::function<void()> refresh) {
  std::vector<oid> root = group;
  root.push_back(firstArc);
  return Register(registrations, name, group, root, firstArc, lastArc, true, table,
                  std::move(refresh));
}

void SetInteger(netsnmp_variable_list* var, long value) {
  snmp_set_var_typed_value(var, ASN_INTEGER, reinterpret_cast<const u_char*>(&value), sizeof value);
}

void SetUnsigned(netsnmp_variable_list* var, u_char type, std::uint64_t value) {
  const auto number = static_cast<u_long>(value & 0xffffffffu);
  snmp_set_var_typed_value(var, type, reinterpret_cast<const u_char*>(&number), sizeof number);
}

void SetCounter64(netsnmp_variable_list* var, std::uint64_t value) {
  counter64 number;
  number.high = static_cast<u_long>(value >> 32);
  number.low = static_cast<u_long>(value & 0xffffffffu);
  snmp_set_var_typed_value(var, ASN_COUNTER64, reinterpret_cast<const u_char*>(&number),
                           sizeof number);
}

void SetOctets(netsnmp_variable_list* var, const std::string& value) {
  snmp_set_var_typed_value(var, ASN_OCTET_STR, reinterpret_cast<const u_char*>(value.data()),
                           value.size());
}

void SetObjectId(netsnmp_variable_list* var, const std::vector<oid>& value) {
  snmp_set_var_typed_value(var, ASN_OBJECT_ID, reinterpret_cast<const u_char*>(value.data()),
                           value.size() * sizeof(oid));
}

std::uint64_t UptimeTicks() {
  return netsnmp_get_agent_uptime();
}

}  // namespace Arq::Snmp::Standard
