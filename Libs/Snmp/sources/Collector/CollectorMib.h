#pragma once

// The collector's health group (arc 8 of the private MIB): the state of the
// collection loop, the options in force, the daemon, and one row per switch
// call.
#include <cstdint>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace Collector {

// The group's one row {0}, in its MIB encoding.
struct GroupRow {
  std::vector<oid> index{0};
  long state = 0;
  std::uint64_t lastCollection = 0, lastSuccess = 0, lastDuration = 0;
  std::uint64_t collections = 0;
  std::uint64_t consecutiveFailures = 0;
  bool enabled = true;
  long period = 0;
  long logLevel = 0;
  std::string lastError;
  std::string version;
  std::uint64_t startTime = 0;
};

// One row per switch call, numbered from 1 in the order of the calls.
struct CallRow {
  std::vector<oid> index;
  std::string name;
  long outcome = 0;
  std::uint64_t failures = 0;
  std::string lastError;
};

}  // namespace Collector

class CollectorView {
 public:
  CollectorView();
  CollectorView(const CollectorView&) = delete;
  CollectorView& operator=(const CollectorView&) = delete;

  // The call table.
  void Project(const ProjectionContext& context);
  // The group's row, for each request batch: the health of `model` and the
  // daemon's record as it is now (its log level changes without a new
  // collection).
  void RefreshGroup(const Model::SwitchModel& model);
  std::vector<View> Views();

  ProjectedTable<Collector::GroupRow> group;
  ProjectedTable<Collector::CallRow> callTable;

 private:
  OrvoViaSwitch::Domain::Dto::Metrics::DaemonMetric daemon;
};

}  // namespace Arq::Snmp::Standard
