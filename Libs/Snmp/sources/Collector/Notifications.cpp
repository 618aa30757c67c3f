// Notifications, sent through the master agent to its trap sinks: the
// collector becoming unreachable and recovering, and IF-MIB linkUp/linkDown
// when a port's operational state changes between two collections. Net-SNMP
// is not thread-safe, so they are sent from the SNMP thread: an alarm of the
// agent's loop polls the published health once a second and acts on each new
// collection it sees.
#include <map>

#include "../Modules.h"
#include "../ObjectIdentifiers.h"
#include "../Standard/InterfaceRows.h"
#include "../Standard/SortedTable.h"

namespace Arq::Snmp {
namespace {

namespace Domain = OrvoViaSwitch::Domain::Dto::Metrics;

// Collections in a row with every call failed before the unreachable
// notification goes out: a switch that misses one or two collections (a
// restart of its service, a slow answer) alerts no one.
constexpr std::int64_t kUnreachableDebounce = 3;

const std::vector<oid> kSnmpTrapOid{1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
const std::vector<oid> kLinkDown{1, 3, 6, 1, 6, 3, 1, 1, 5, 3};
const std::vector<oid> kLinkUp{1, 3, 6, 1, 6, 3, 1, 1, 5, 4};
const std::vector<oid> kIfEntry{1, 3, 6, 1, 2, 1, 2, 2, 1};

struct Notifier {
  std::int64_t collections = 0;
  bool unreachableSent = false;
  bool havePorts = false;
  std::map<long, long> operStatus;  // by ifIndex, after the last collection seen
};
Notifier notifier;

// A scalar's instance: its identifier followed by 0.
std::vector<oid> Instance(const std::vector<oid>& arcs) {
  auto id = Mechanism::ObjectId(arcs);
  id.push_back(0);
  return id;
}

void AddOid(netsnmp_variable_list** list, const std::vector<oid>& name,
            const std::vector<oid>& value) {
  snmp_varlist_add_variable(list, name.data(), name.size(), ASN_OBJECT_ID,
                            reinterpret_cast<const u_char*>(value.data()),
                            value.size() * sizeof(oid));
}
void AddInteger(netsnmp_variable_list** list, const std::vector<oid>& name, long value) {
  snmp_varlist_add_variable(list, name.data(), name.size(), ASN_INTEGER,
                            reinterpret_cast<const u_char*>(&value), sizeof value);
}
void AddText(netsnmp_variable_list** list, const std::vector<oid>& name, const std::string& text) {
  const std::string value = text.substr(0, 255);
  snmp_varlist_add_variable(list, name.data(), name.size(), ASN_OCTET_STR,
                            reinterpret_cast<const u_char*>(value.data()), value.size());
}

void SendCollector(const std::vector<oid>& notification, const Domain::CollectorHealthMetric& h) {
  netsnmp_variable_list* list = nullptr;
  AddOid(&list, kSnmpTrapOid, notification);
  AddInteger(&list, Instance(Oid::arqSwitchOrvoViaCollectorState), static_cast<long>(h.state));
  AddText(&list, Instance(Oid::arqSwitchOrvoViaCollectorLastError), h.lastError);
  send_v2trap(list);
  snmp_free_varbind(list);
}

void SendLink(bool up, const Standard::InterfaceRow& row) {
  const auto column = [&row](oid arc) {
    std::vector<oid> name = kIfEntry;
    name.push_back(arc);
    name.push_back(static_cast<oid>(row.IfIndex()));
    return name;
  };
  netsnmp_variable_list* list = nullptr;
  AddOid(&list, kSnmpTrapOid, up ? kLinkUp : kLinkDown);
  AddInteger(&list, column(1), row.IfIndex());
  AddInteger(&list, column(7), row.adminStatus);
  AddInteger(&list, column(8), row.operStatus);
  send_v2trap(list);
  snmp_free_varbind(list);
}

void CheckCollector(const Domain::CollectorHealthMetric& health) {
  if (!notifier.unreachableSent && health.state == Domain::CollectorState::Unreachable &&
      health.consecutiveUnreachable >= kUnreachableDebounce) {
    snmp_log(LOG_WARNING, "collector unreachable: %s\n", health.lastError.c_str());
    SendCollector(Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorUnreachable), health);
    notifier.unreachableSent = true;
  } else if (notifier.unreachableSent && (health.state == Domain::CollectorState::Ok ||
                                          health.state == Domain::CollectorState::Partial)) {
    snmp_log(LOG_WARNING, "collector recovered\n");
    SendCollector(Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorRecovered), health);
    notifier.unreachableSent = false;
  }
}

// Ports present at both collections whose operational state went to or left up(1).
void CheckLinks() {
  auto& rows = Standard::SharedRows();
  rows.Refresh();
  std::map<long, long> now;
  for (const Standard::InterfaceRow* row : rows.Rows()) {
    now[row->IfIndex()] = row->operStatus;
    const auto before = notifier.operStatus.find(row->IfIndex());
    if (!notifier.havePorts || before == notifier.operStatus.end()) continue;
    const bool wasUp = before->second == 1;
    const bool isUp = row->operStatus == 1;
    if (wasUp != isUp) SendLink(isUp, *row);
  }
  notifier.operStatus = std::move(now);
  notifier.havePorts = true;
}

void Poll(unsigned int, void*) {
  const auto health = Monitoring::MonitoringProcessor::monitoringValues.collectorHealth.Value();
  if (health.collections == notifier.collections) return;
  notifier.collections = health.collections;
  CheckCollector(health);
  // A collection that reached no switch says nothing of its ports.
  if (health.state != Domain::CollectorState::Unreachable) CheckLinks();
}

}  // namespace

void init_arqSwitchOrvoViaNotifications() {
  snmp_alarm_register(1, SA_REPEAT, Poll, nullptr);
}

}  // namespace Arq::Snmp
