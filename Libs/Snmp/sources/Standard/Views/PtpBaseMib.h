#pragma once

// PTPBASE-MIB: one clock per PTP domain the switch reports, with its ports
// and their roles.
#include <optional>
#include <string>
#include <vector>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace PtpBase {

constexpr long kMaster = 1;  // PtpClockRoleType master(1)
constexpr long kFalse = 2;   // TruthValue

struct ClockRow {
  std::vector<oid> index;  // domain, (clock type,) instance
  long count = 0;          // ports, or domains of a clock type
  long slaveOnly = kFalse;
};

struct PortRow {
  std::vector<oid> index;  // domain, clock type, instance, port number
  std::string name;
  long role = kMaster;
  long ifIndex = 0;
  std::vector<oid> transport;
};

struct ScalarRow {
  std::vector<oid> index{0};
  std::optional<long> profile;
};

}  // namespace PtpBase

class PtpBaseView {
 public:
  PtpBaseView();
  PtpBaseView(const PtpBaseView&) = delete;
  PtpBaseView& operator=(const PtpBaseView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  ProjectedTable<PtpBase::ClockRow> systemTable;
  ProjectedTable<PtpBase::ClockRow> systemDomainTable;
  ProjectedTable<PtpBase::ScalarRow> profileGroup;
  ProjectedTable<PtpBase::ClockRow> defaultTable;
  ProjectedTable<PtpBase::ClockRow> transparentTable;
  ProjectedTable<PtpBase::PortRow> portTable;
  ProjectedTable<PtpBase::PortRow> runningTable;
};

}  // namespace Arq::Snmp::Standard
