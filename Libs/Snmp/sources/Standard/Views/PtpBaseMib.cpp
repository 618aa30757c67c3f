// PTPBASE-MIB: one clock per PTP domain the switch reports, with its ports
// and their roles. A domain whose number, clock mode or packet type the MIB
// cannot express gives no row anywhere.
#include "Standard/Views/PtpBaseMib.h"

#include <algorithm>
#include <map>
#include <set>

#include "Modules.h"
#include "Standard/StandardViews.h"

namespace Arq::Snmp {
namespace Standard {
namespace {

using namespace PtpBase;

namespace Dto = OrvoViaSwitch::Domain::Dto;

enum ClockType : long { kOrdinary = 1, kBoundary = 2, kTransparent = 3 };
constexpr long kSlave = 2;  // PtpClockRoleType slave(2)
enum Profile : long { kDefaultProfile = 1, kVendorSpecific = 3 };
constexpr long kTrue = 1;
constexpr long kMaxDomain = 255;

std::optional<long> TypeOf(Dto::PTPClockMode mode) {
  switch (mode) {
    case Dto::PTPClockMode::Transparent:
      return kTransparent;
    case Dto::PTPClockMode::Boundary:
      return kBoundary;
    case Dto::PTPClockMode::Master:
    case Dto::PTPClockMode::Slave:
      return kOrdinary;
    default:
      return std::nullopt;
  }
}

std::optional<long> ProfileOf(Dto::PTPProfile profile) {
  switch (profile) {
    case Dto::PTPProfile::IEEE_1588_2008:
      return kDefaultProfile;
    case Dto::PTPProfile::AES67_2015:
    case Dto::PTPProfile::SMPTE_2059:
    case Dto::PTPProfile::INTEROP_DEFAULT_AES_SMPTE:
    case Dto::PTPProfile::INTEROP_AES_SMPTE:
      return kVendorSpecific;
    default:
      return std::nullopt;
  }
}

std::optional<std::vector<oid>> TransportOf(Dto::PTPPacketType type) {
  switch (type) {
    case Dto::PTPPacketType::IEEE:
      return Mib::ptpbaseTransportTypeEthernet.id;
    case Dto::PTPPacketType::UDP:
      return Mib::ptpbaseTransportTypeIPversion4.id;
    default:
      return std::nullopt;
  }
}

}  // namespace

PtpBaseView::PtpBaseView()
    : systemTable({Field<ClockRow, Mib::ptpDomainClockPortsTotal, &ClockRow::count>()}),
      systemDomainTable({Field<ClockRow, Mib::ptpbaseSystemDomainTotals, &ClockRow::count>()}),
      profileGroup({Field<ScalarRow, Mib::ptpbaseSystemProfile, &ScalarRow::profile>()}),
      defaultTable({Field<ClockRow, Mib::ptpbaseClockDefaultDSSlaveOnly, &ClockRow::slaveOnly>()}),
      transparentTable(
          {Field<ClockRow, Mib::ptpbaseClockTransDefaultDSNumOfPorts, &ClockRow::count>()}),
      portTable({
          Field<PortRow, Mib::ptpbaseClockPortName, &PortRow::name>(),
          Field<PortRow, Mib::ptpbaseClockPortRole, &PortRow::role>(),
      }),
      runningTable({
          Field<PortRow, Mib::ptpbaseClockPortRunningName, &PortRow::name>(),
          Field<PortRow, Mib::ptpbaseClockPortRunningRole, &PortRow::role>(),
          Field<PortRow, Mib::ptpbaseClockPortRunningInterfaceIndex, &PortRow::ifIndex>(),
          Field<PortRow, Mib::ptpbaseClockPortRunningTransport, &PortRow::transport>(),
      }) {}

void PtpBaseView::Project(const ProjectionContext& context) {
  // The ifIndex of every port and LAG or PRS interface IF-MIB serves, by name.
  std::map<std::string, long> served;
  for (const auto& port : context.layout.ports) served.emplace(port.port->name, port.ifIndex);
  for (const auto& aggregate : context.layout.aggregates) {
    served.emplace(aggregate.interface->name, aggregate.ifIndex);
  }
  std::vector<ClockRow> system, defaults, transparent, domainTotals;
  std::vector<PortRow> ports;
  std::map<long, int> instances;                 // clocks so far, by domain
  std::map<long, std::set<long>> domainsOfType;  // by clock type
  std::set<std::optional<long>> profiles;
  for (const auto& domain : context.model.ptpDomains) {
    // The switch interface's unknown clock modes arrive as 0 (transparent),
    // as every unknown enumerator does: a domain whose packet type is not
    // known to run (IEEE 802.3 or UDP) is no clock to serve either.
    const auto type = TypeOf(domain.clockMode);
    const auto transport = TransportOf(domain.packetType);
    if (domain.domain < 0 || domain.domain > kMaxDomain || !type || !transport) continue;
    const auto number = static_cast<oid>(domain.domain);
    const auto instance = static_cast<oid>(++instances[domain.domain]);
    domainsOfType[*type].insert(domain.domain);
    profiles.insert(ProfileOf(domain.profile));
    std::set<std::string> listed;
    for (const auto& name : domain.ports) {
      if (name.empty() || !listed.insert(name).second) continue;
      const auto found = served.find(name);
      const bool slave = std::find(domain.slavePorts.begin(), domain.slavePorts.end(), name) !=
                         domain.slavePorts.end();
      ports.push_back({{number, static_cast<oid>(*type), instance, static_cast<oid>(listed.size())},
                       Truncate(name, kPtpbaseClockPortNameSize),
                       slave ? kSlave : kMaster,
                       found == served.end() ? 0 : found->second,
                       *transport});
    }
    const auto count = static_cast<long>(listed.size());
    system.push_back({{number, instance}, count, kFalse});
    if (*type == kTransparent) {
      transparent.push_back({{number, instance}, count, kFalse});
    } else {
      const bool slaveOnly = domain.clockMode == Dto::PTPClockMode::Slave;
      defaults.push_back(
          {{number, static_cast<oid>(*type), instance}, 0, slaveOnly ? kTrue : kFalse});
    }
  }
  for (const auto& [type, domains] : domainsOfType) {
    domainTotals.push_back({{static_cast<oid>(type)}, static_cast<long>(domains.size()), kFalse});
  }
  ScalarRow profile;
  if (profiles.size() == 1) profile.profile = *profiles.begin();
  profileGroup.Replace({profile});
  systemTable.Replace(std::move(system));
  systemDomainTable.Replace(std::move(domainTotals));
  defaultTable.Replace(std::move(defaults));
  transparentTable.Replace(std::move(transparent));
  portTable.Replace(ports);
  runningTable.Replace(std::move(ports));
}

std::vector<View> PtpBaseView::Views() {
  return {
      TableView("ptpbaseSystemTable", Mib::ptpbaseSystemTable, systemTable),
      TableView("ptpbaseSystemDomainTable", Mib::ptpbaseSystemDomainTable, systemDomainTable),
      GroupView("ptpbaseSystemProfile", Mib::ptpbaseSystemProfile, Mib::ptpbaseSystemProfile,
                profileGroup),
      TableView("ptpbaseClockDefaultDSTable", Mib::ptpbaseClockDefaultDSTable, defaultTable),
      TableView("ptpbaseClockTransDefaultDSTable", Mib::ptpbaseClockTransDefaultDSTable,
                transparentTable),
      TableView("ptpbaseClockPortTable", Mib::ptpbaseClockPortTable, portTable),
      TableView("ptpbaseClockPortRunningTable", Mib::ptpbaseClockPortRunningTable, runningTable)};
}

}  // namespace Standard

void init_ptpBaseMib(Standard::StandardViews& views) {
  views.Register(Standard::Module::PtpBase);
}

}  // namespace Arq::Snmp
