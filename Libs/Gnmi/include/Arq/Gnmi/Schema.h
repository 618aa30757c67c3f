#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arq/Gnmi/Path.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Gnmi {

namespace Model = OrvoViaSwitch::Domain::Model;

// A leaf's value, typed as its YANG type is: how it is written depends on the
// encoding (JSON_IETF writes 64-bit numbers as strings, an identity with its
// module prefix).
struct Value {
  enum class Type : std::uint8_t {
    Uint64,
    Uint32,
    Int64,
    Bool,
    String,
    Enum,
    Identity,
    StringList
  };
  Type type = Type::String;
  std::uint64_t number = 0;        // Uint64, Uint32, Int64 (two's complement), Bool
  std::string text;                // String, Enum, Identity ("module:name")
  std::vector<std::string> items;  // StringList (a leaf-list of strings)

  static Value U64(std::uint64_t v) { return {Type::Uint64, v, {}, {}}; }
  static Value U32(std::uint64_t v) { return {Type::Uint32, v, {}, {}}; }
  static Value I64(std::int64_t v) { return {Type::Int64, static_cast<std::uint64_t>(v), {}, {}}; }
  static Value Boolean(bool v) { return {Type::Bool, v ? 1U : 0U, {}, {}}; }
  static Value Str(std::string v) { return {Type::String, 0, std::move(v), {}}; }
  static Value Enumeration(std::string v) { return {Type::Enum, 0, std::move(v), {}}; }
  static Value Ident(std::string v) { return {Type::Identity, 0, std::move(v), {}}; }
  static Value List(std::vector<std::string> v) { return {Type::StringList, 0, {}, std::move(v)}; }

  bool operator==(const Value& o) const {
    return type == o.type && number == o.number && text == o.text && items == o.items;
  }
  bool operator!=(const Value& o) const { return !(*this == o); }

  // Appends the RFC 7951 JSON text of the value.
  void JsonIetf(std::string& out) const;
};

// The lists of the tree; a leaf lives under at most one chain of them.
enum class Scope : std::uint8_t {
  Root,
  Interface,
  LldpInterface,
  Neighbour,
  Capability,  // of a neighbour
  Component,
  PtpInstance
};
inline constexpr std::size_t kScopes = 7;

// How a TARGET_DEFINED subscription streams a leaf.
enum class Cadence : std::uint8_t { OnChange, Sample };

// config (mirrors the switch's configuration) or state.
enum class Kind : std::uint8_t { Config, State };

class View;

// One instance of a list (or the root): its scope and key values, outermost
// list first. `source` points into the View that made it.
struct Instance {
  Scope scope = Scope::Root;
  std::vector<std::string> keys;
  const void* source = nullptr;
};

// One leaf of the served tree, declared once: its path with the key names of
// its lists ("/interfaces/interface[name]/state/name"), what it is, and how it
// is read from a projection of the model. `value` returns nothing when the
// model does not know it.
struct LeafSpec {
  const char* path;
  Kind kind;
  Cadence cadence;
  Scope scope;
  std::optional<Value> (*value)(const View& view, const Instance& instance);
};

// Every leaf the daemon serves.
const std::vector<LeafSpec>& Leaves();

// The models the leaves belong to, for Capabilities.
struct ModelInfo {
  const char* name;
  const char* organization;
  const char* version;
};
const std::vector<ModelInfo>& Models();

// The per-model projection the leaves read: the model and the OpenConfig
// interfaces, neighbours and components derived from it once.
class View {
 public:
  explicit View(std::shared_ptr<const Model::SwitchModel> model);
  const Model::SwitchModel& model() const { return *model_; }
  // Wall-clock nanoseconds since the epoch of the collection.
  std::int64_t timestamp() const { return timestamp_; }
  // Wall-clock nanoseconds of a steady-clock time of that collection (0 for
  // the clock's epoch, "never").
  std::uint64_t WallNs(Model::Clock::time_point when) const;
  const std::vector<Instance>& Instances(Scope scope) const {
    return instances_[static_cast<std::size_t>(scope)];
  }

 private:
  std::shared_ptr<const Model::SwitchModel> model_;
  std::int64_t timestamp_ = 0;
  std::vector<Instance> instances_[kScopes];

 public:
  // What an OpenConfig interface is made of: a port (under its owning
  // interface) or a LAG/PRS interface with its member ports.
  struct InterfaceEntry {
    const Model::Port* port = nullptr;
    const Model::Interface* owner = nullptr;      // Ethernet, LAG or PRS interface
    const Model::Interface* aggregate = nullptr;  // set for a LAG or PRS entry
    std::string name;
    std::uint32_t ifIndex = 0;
    Model::PortCounters counters{};
    std::string lag;  // the LAG a port belongs to
  };
  struct NeighbourEntry {
    const Model::LldpNeighbour* neighbour = nullptr;
  };
  struct ComponentEntry {
    std::string name;
    const Model::Port* port = nullptr;  // nullptr for the chassis
  };

 private:
  std::vector<InterfaceEntry> interfaces_;
  std::vector<std::string> lldpPorts_;
  std::vector<NeighbourEntry> neighbours_;
  std::vector<ComponentEntry> components_;
};

// The openconfig-lldp-types system capabilities in the order of the IEEE
// 802.1AB capability bits (bit 0: OTHER).
const std::vector<const char*>& LldpCapabilityNames();

// Whether PTPBASE-MIB serves a PTP domain of the model as a clock (a domain
// number from 0 to 255, a known clock mode and an Ethernet or UDP transport):
// the gNMI PTP instances are the same clocks.
bool IsServedPtpClock(const Model::PtpDomain& domain);

}  // namespace Arq::Gnmi
