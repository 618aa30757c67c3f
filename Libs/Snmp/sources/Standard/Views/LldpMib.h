#pragma once

// LLDP-MIB: the switch's own identity and ports, its neighbours with their
// management addresses, and the remote tables' statistics.
#include <optional>
#include <string>
#include <vector>

#include "Standard/Engine/StandardObjects.h"

namespace Arq::Snmp::Standard {

namespace Lldp {

// LldpChassisIdSubtype local(7): a chassis identifier that is no MAC address.
constexpr long kChassisLocal = 7;

// lldpLocalSystemData: one row of scalars.
struct LocalRow {
  std::vector<oid> index{0};
  long chassisSubtype = kChassisLocal;
  std::string chassisId, sysName, sysDesc;
};

// lldpLocPortTable: every port of IF-MIB, numbered by its ifIndex.
struct LocalPortRow {
  std::vector<oid> index;  // lldpLocPortNum
  std::string portId, portDesc;
};

// lldpRemTable: one neighbour; a column is absent when its TLV was.
struct RemoteRow {
  std::vector<oid> index;  // lldpRemTimeMark (0), lldpRemLocalPortNum, lldpRemIndex
  std::optional<long> chassisSubtype, portSubtype;
  std::optional<std::string> chassisId, portId, portDesc, sysName, sysDesc, capSupported,
      capEnabled;
};

// lldpRemManAddrTable: the neighbour's index, then its address's subtype,
// length and bytes.
struct ManagementRow {
  std::vector<oid> index;
  long interfaceSubtype = 1;
  long interfaceNumber = 0;
  std::optional<std::vector<oid>> objectId;  // none when SNMP cannot carry the one sent
};

// lldpStatistics: how the remote tables changed since the agent started.
struct StatisticsRow {
  std::vector<oid> index{0};
  std::uint64_t lastChange = 0;
  std::uint64_t inserts = 0, deletes = 0, drops = 0;
};

}  // namespace Lldp

class LldpView {
 public:
  LldpView();
  LldpView(const LldpView&) = delete;
  LldpView& operator=(const LldpView&) = delete;

  void Project(const ProjectionContext& context);
  std::vector<View> Views();

  ProjectedTable<Lldp::StatisticsRow> statistics;
  ProjectedTable<Lldp::LocalRow> localSystem;
  ProjectedTable<Lldp::LocalPortRow> localPortTable;
  ProjectedTable<Lldp::RemoteRow> remoteTable;
  ProjectedTable<Lldp::ManagementRow> remoteManagementTable;

 private:
  void ProjectRemote(const ProjectionContext& context);
};

}  // namespace Arq::Snmp::Standard
