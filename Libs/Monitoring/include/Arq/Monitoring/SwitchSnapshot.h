#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/Monitoring/MetricConverter/InterfaceMetricConverter.h"
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"
#include "Arq/Monitoring/Model/SwitchModelBuilder.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Monitoring {

// Everything one collection learns from a switch, as domain records.
struct SwitchSnapshot {
  std::vector<std::string> interfaceNames;
  std::map<std::string, OrvoViaSwitch::Domain::Dto::IfInfo> interfaces;
  std::vector<OrvoViaSwitch::Domain::Dto::EthInfo> ethInfos;
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthCnt>> ethCounters;
  std::map<std::string, std::vector<OrvoViaSwitch::Domain::Dto::EthStat>> ethStats;
  std::string mainMacAddress;
  OrvoViaSwitch::Domain::Dto::LldpConfig lldpConfig;
  std::vector<OrvoViaSwitch::Domain::Dto::LldpInfo> lldpNeighbours;
  std::vector<OrvoViaSwitch::Domain::Dto::PTPConfig> ptpConfigs;
  OrvoViaSwitch::Domain::Dto::ConfigFile currentConfig;
  // Which of the ten calls answered (in their order): the data of a call that
  // failed is empty above.
  std::array<bool, OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallCount> answered = Every();

 private:
  static std::array<bool, OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallCount> Every() {
    std::array<bool, OrvoViaSwitch::Domain::Dto::Metrics::kCollectorCallCount> all{};
    all.fill(true);
    return all;
  }
};

// What the metric converters carry from one cycle to the next: the port
// search cursors and the LLDP decoding memo. Each collector owns one.
struct ConversionState {
  MetricConverter::InterfaceMetricConverter::SearchCursors cursors;
  MetricConverter::LLDPMetricConverter::Memo lldpMemo;
  // The typed model of each collection, built beside the metrics and waiting
  // to be taken by the collection thread's owner.
  SwitchModelBuilder modelBuilder;
  std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> model;
};

// Runs a snapshot through the metric converters into the values set, storing
// the counts, and builds its typed model into `state.model`: the path every
// collector ends with.
void PublishSnapshot(const SwitchSnapshot& snapshot,
                     OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values,
                     ConversionState& state);

}  // namespace Arq::Monitoring
