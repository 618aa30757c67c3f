#pragma once

// The owner of every standard view the sub-agent serves (IF-MIB, LLDP-MIB,
// the per-port counter tables, ENTITY-MIB, BRIDGE-MIB and Q-BRIDGE-MIB,
// PTPBASE-MIB, and the private MIB's collector health group): their tables,
// the model they were last projected from, and their Net-SNMP registrations.
// Data flows one way: the model store -> Refresh -> each view's Project ->
// its tables' rows -> the registrations' handlers.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModelStore.h"
#include "Collector/CollectorMib.h"
#include "Collector/Notifications.h"
#include "Standard/Engine/SortedTable.h"
#include "Standard/Views/BridgeMib.h"
#include "Standard/Views/EntityMib.h"
#include "Standard/Views/IfMib.h"
#include "Standard/Views/LldpMib.h"
#include "Standard/Views/PortCounterViews.h"
#include "Standard/Views/PtpBaseMib.h"

namespace Arq::Snmp::Standard {

// The MIB module a view belongs to: the init_... function that registers it.
enum class Module { Collector, IfMib, Lldp, PortCounters, Entity, Bridge, PtpBase };

struct ServedView : View {
  Module module;
};

// Built on the SNMP thread and used only there. Net-SNMP's registrations and
// alarms point into it (handler myvoid, alarm client arguments), so it must
// outlive them: the sub-agent owns the one instance the daemon has
// (SnmpSubAgent::Run) and drops it only after snmp_shutdown.
class StandardViews {
 public:
  explicit StandardViews(const Model::SwitchModelStore& store);
  StandardViews(const StandardViews&) = delete;
  StandardViews& operator=(const StandardViews&) = delete;

  // Projects the store's latest model when one was published since the last
  // projection: a load of one atomic otherwise. Called by every handler.
  void Refresh();

  // The model the views were last projected from, and its interface layout.
  const std::shared_ptr<const Model::SwitchModel>& ProjectedModel() const { return model; }
  const InterfaceLayout& ProjectedLayout() const { return layout; }

  // Every table and group of scalars served, in the order they register.
  const std::vector<ServedView>& Views() const { return views; }
  // A view by its registration name; nullptr when there is none.
  const ServedView* Find(const std::string& name) const;

  // Registers the views of one module with the agent (its init_... function).
  void Register(Module module);

  // The views, projected in this order.
  CollectorView collector;
  IfMibView ifMib;
  LldpView lldp;
  PortCounterView portCounters;
  EntityView entity;
  BridgeView bridge;
  PtpBaseView ptpBase;

  Notifier notifier{*this};

 private:
  void Project(std::shared_ptr<const Model::SwitchModel> newModel);

  const Model::SwitchModelStore& store;
  std::uint64_t generation = ~std::uint64_t{0};
  std::shared_ptr<const Model::SwitchModel> model;
  InterfaceLayout layout;
  std::vector<ServedView> views;
  SortedRegistrations registrations;
};

}  // namespace Arq::Snmp::Standard
