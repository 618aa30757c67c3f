#include "Collector/Notifications.h"

#include <algorithm>

#include "Modules.h"
#include "ObjectIdentifiers.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

namespace Domain = OrvoViaSwitch::Domain::Dto::Metrics;

// Collections in a row with every call failed before the unreachable
// notification goes out: a switch that misses one or two collections (a
// restart of its service, a slow answer) alerts no one.
constexpr std::int64_t kUnreachableDebounce = 3;

const std::vector<oid> kLinkDown{1, 3, 6, 1, 6, 3, 1, 1, 5, 3};
const std::vector<oid> kLinkUp{1, 3, 6, 1, 6, 3, 1, 1, 5, 4};

// A scalar's instance: its identifier followed by 0.
std::vector<oid> ScalarInstance(const std::vector<oid>& arcs) {
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
  const std::string value = Truncate(text);
  snmp_varlist_add_variable(list, name.data(), name.size(), ASN_OCTET_STR,
                            reinterpret_cast<const u_char*>(value.data()), value.size());
}

void SendCollector(const std::vector<oid>& notification, const Domain::CollectorHealthMetric& h) {
  netsnmp_variable_list* list = nullptr;
  AddOid(&list, kSnmpTrapOid, notification);
  AddInteger(&list, ScalarInstance(Oid::arqSwitchOrvoViaCollectorState),
             static_cast<long>(h.state));
  AddText(&list, ScalarInstance(Oid::arqSwitchOrvoViaCollectorLastError), h.lastError);
  send_v2trap(list);
  snmp_free_varbind(list);
}

void SendLink(bool up, long ifIndex, long adminStatus, long operStatus) {
  netsnmp_variable_list* list = nullptr;
  AddOid(&list, kSnmpTrapOid, up ? kLinkUp : kLinkDown);
  AddInteger(&list, IfEntryCell(1, ifIndex), ifIndex);
  AddInteger(&list, IfEntryCell(7, ifIndex), adminStatus);
  AddInteger(&list, IfEntryCell(8, ifIndex), operStatus);
  send_v2trap(list);
  snmp_free_varbind(list);
}

void CheckCollector(const Domain::CollectorHealthMetric& health, bool& unreachableSent) {
  if (!unreachableSent && health.state == Domain::CollectorState::Unreachable &&
      health.consecutiveUnreachable >= kUnreachableDebounce) {
    snmp_log(LOG_WARNING, "collector unreachable: %s\n", health.lastError.c_str());
    SendCollector(Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorUnreachable), health);
    unreachableSent = true;
  } else if (unreachableSent && (health.state == Domain::CollectorState::Ok ||
                                 health.state == Domain::CollectorState::Partial)) {
    snmp_log(LOG_WARNING, "collector recovered\n");
    SendCollector(Mechanism::ObjectId(Oid::arqSwitchOrvoViaCollectorRecovered), health);
    unreachableSent = false;
  }
}

}  // namespace

Notifier::~Notifier() {
  if (alarm != 0) snmp_alarm_unregister(alarm);
}

void Notifier::Start() {
  alarm = snmp_alarm_register(1, SA_REPEAT, Poll, this);
}

// The interfaces IF-MIB serves in both models whose link went to or left up,
// in ifIndex order.
void Notifier::CheckLinks(const Model::SwitchModel& previous) {
  const auto& layout = views.ProjectedLayout();
  std::vector<std::pair<long, std::pair<const Model::Interface*, const Model::Port*>>> served;
  for (const auto& port : layout.ports) served.push_back({port.ifIndex, {port.owner, port.port}});
  for (const auto& aggregate : layout.aggregates) {
    served.push_back({aggregate.ifIndex, {aggregate.interface, nullptr}});
  }
  std::sort(served.begin(), served.end());
  for (const auto& [ifIndex, item] : served) {
    const auto [owner, port] = item;
    Model::LinkState link, was;
    if (port != nullptr) {
      const Model::Port* old = previous.FindPort(port->name);
      if (old == nullptr) continue;
      link = port->link;
      was = old->link;
    } else {
      const Model::Interface* old = previous.FindInterface(owner->name);
      if (old == nullptr) continue;
      link = owner->link;
      was = old->link;
    }
    const bool isUp = link == Model::LinkState::Up;
    if ((was == Model::LinkState::Up) == isUp) continue;
    SendLink(isUp, ifIndex, Model::IfMibAdminStatus(*owner), Model::IfMibOperStatus(link));
  }
}

void Notifier::Poll(unsigned int, void* notifier) {
  static_cast<Notifier*>(notifier)->Poll();
}

void Notifier::Poll() {
  views.Refresh();
  const auto& model = views.ProjectedModel();
  const auto& health = model->collection.health;
  if (health.collections == collections) return;
  collections = health.collections;
  CheckCollector(health, unreachableSent);
  // A collection that reached no switch says nothing of its interfaces.
  if (!model->collection.interfacesCurrent) return;
  if (before) CheckLinks(*before);
  before = model;
}

}  // namespace Standard

void init_arqSwitchOrvoViaNotifications(Standard::StandardViews& views) {
  views.notifier.Start();
}

}  // namespace Arq::Snmp
