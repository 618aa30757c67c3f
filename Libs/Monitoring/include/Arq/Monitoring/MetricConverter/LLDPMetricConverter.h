#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/Metrics.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/MonitoringValueThreadSafe.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Monitoring::MetricConverter {

// The switch's own LLDP identity and its LLDP neighbours as metrics.
//
// Local identity, from the LLDP configuration and the main MAC address:
//   chassis identifier  the configured ChassisId; when empty, the main MAC
//                       address in lower-case colon form;
//   device name         the configured SystemName;
//   manufacturer, serial number, device version
//                       the configured SystemDescr split at its first two ';'
//                       ("<manufacturer and model>; <serial>; <version>");
//   management address  the configured ManagementIP as written.
//
// Neighbours, one metric per LldpInfo (60 holders), from whole TLVs:
//   Chassis ID (1), Port ID (2: MAC subtype → MAC address, other subtypes →
//   interface name when no Port Description), TTL (3), Port Description (4),
//   System Name (5), System Description (6, split as above into device type,
//   serial number, version), Management Address (8, IPv4 → dotted text).
//   A missing or malformed TLV leaves its field at the default.
class LLDPMetricConverter {
 public:
  template <typename T>
  using Holder = OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<T>;
  using LLDPMetric = OrvoViaSwitch::Domain::Dto::Metrics::LLDPMetric;
  using LLDPInfoMetric = OrvoViaSwitch::Domain::Dto::Metrics::LLDPInfoMetric;

  // Neighbours rarely change between cycles: per slot, the record decoded last
  // and its metric, so that a slot whose TLVs did not change is not parsed
  // again. The collector keeps it from one cycle to the next.
  struct Decoded {
    bool valid = false;
    OrvoViaSwitch::Domain::Dto::LldpInfo info;
    LLDPInfoMetric metric;
  };
  using Memo = std::array<Decoded, OrvoViaSwitch::Domain::Monitoring::kMaxLLDPInfos>;

  static void ToMetric(const OrvoViaSwitch::Domain::Dto::LldpConfig& config,
                       const std::string& mainMacAddress, Holder<LLDPMetric>* holder);
  // Writes all 60 holders; returns the number of neighbour records.
  static std::uint32_t ToMetric(const std::vector<OrvoViaSwitch::Domain::Dto::LldpInfo>& infos,
                                Holder<LLDPInfoMetric>* holders, Memo& memo);

  static LLDPMetric ToLLDPMetric(const OrvoViaSwitch::Domain::Dto::LldpConfig& config,
                                 const std::string& mainMacAddress);
  static LLDPInfoMetric ToLLDPInfoMetric(const OrvoViaSwitch::Domain::Dto::LldpInfo& info);
  // "00:1B:21:3A:4F:5E", "001b213a4f5e" or "00-1b-21-3a-4f-5e" → "00:1b:21:3a:4f:5e";
  // anything else is returned as written.
  static std::string NormalizeMacAddress(const std::string& text);
};

// Up to 5 PTP domains; the interface list joined by single blanks.
class PTPMetricConverter {
 public:
  static std::uint32_t ToMetric(const std::vector<OrvoViaSwitch::Domain::Dto::PTPConfig>& configs,
                                OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<
                                    OrvoViaSwitch::Domain::Dto::Metrics::PTPMetric>* holders);
};

// The current configuration file: its name and state.
class ConfigMetricConverter {
 public:
  static void ToMetric(const OrvoViaSwitch::Domain::Dto::ConfigFile& file,
                       OrvoViaSwitch::Domain::Monitoring::MonitoringValueThreadSafe<
                           OrvoViaSwitch::Domain::Dto::Metrics::ConfigMetric>* holder);
};

}  // namespace Arq::Monitoring::MetricConverter
