#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"

#include <cctype>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"

namespace Arq::Monitoring::MetricConverter {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;
namespace Values = OrvoViaSwitch::Domain::Monitoring;

const std::string* FindTlv(const Dto::LldpInfo& info, Dto::LldpTlvType type) {
  const auto found = info.Tlv.find(type);
  return found == info.Tlv.end() ? nullptr : &found->second;
}

}  // namespace

void LLDPMetricConverter::ToMetric(const Dto::LldpConfig& config, const std::string& mainMacAddress,
                                   Holder<LLDPMetric>* holder) {
  holder->Value(ToLLDPMetric(config, mainMacAddress));
}

std::uint32_t LLDPMetricConverter::ToMetric(const std::vector<Dto::LldpInfo>& infos,
                                            Holder<LLDPInfoMetric>* holders, Memo& memo) {
  for (std::size_t i = 0; i < Values::kMaxLLDPInfos; ++i) {
    if (i >= infos.size()) {
      holders[i].Value(LLDPInfoMetric());
      continue;
    }
    Decoded& slot = memo[i];
    if (!slot.valid || !(slot.info == infos[i])) {
      slot.info = infos[i];
      slot.metric = ToLLDPInfoMetric(infos[i]);
      slot.valid = true;
    }
    holders[i].Value(slot.metric);
  }
  return static_cast<std::uint32_t>(infos.size());
}

Metrics::LLDPMetric LLDPMetricConverter::ToLLDPMetric(const Dto::LldpConfig& config,
                                                      const std::string& mainMacAddress) {
  LLDPMetric metric;
  metric.chassisId =
      config.ChassisId.empty() ? NormalizeMacAddress(mainMacAddress) : config.ChassisId;
  metric.deviceName = config.SystemName;
  const auto description = LldpTlv::SplitSystemDescription(config.SystemDescr);
  metric.manufacturer = description.deviceType;
  metric.serialNumber = description.serialNumber;
  metric.deviceVersion = description.version;
  metric.ipManagementAddress = config.ManagementIP;
  return metric;
}

Metrics::LLDPInfoMetric LLDPMetricConverter::ToLLDPInfoMetric(const Dto::LldpInfo& info) {
  LLDPInfoMetric metric;
  metric.localInterface = info.IfName;
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::SystemDescription)) {
    if (const auto text = LldpTlv::Text(*tlv, 6)) {
      const auto description = LldpTlv::SplitSystemDescription(*text);
      metric.deviceType = description.deviceType;
      metric.serialNumber = description.serialNumber;
      metric.version = description.version;
    }
  }
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::SystemName)) {
    metric.deviceName = LldpTlv::Text(*tlv, 5).value_or(std::string());
  }
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::ChassisId)) {
    metric.chassisId = LldpTlv::ChassisId(*tlv).value_or(std::string());
  }
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::ManagementAddress)) {
    metric.ipAddress = LldpTlv::ManagementAddress(*tlv).value_or(std::string());
  }
  LldpTlv::PortId port;
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::PortId)) {
    port = LldpTlv::PortIdentifier(*tlv).value_or(LldpTlv::PortId());
    metric.macAddress = port.macAddress;
  }
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::PortDescription)) {
    metric.interfaceName = LldpTlv::Text(*tlv, 4).value_or(std::string());
  }
  if (metric.interfaceName.empty() && port.macAddress.empty()) {
    metric.interfaceName = port.interfaceName;
  }
  if (const auto* tlv = FindTlv(info, Dto::LldpTlvType::TimeToLive)) {
    metric.timeToLive = LldpTlv::TimeToLive(*tlv);
  }
  return metric;
}

std::string LLDPMetricConverter::NormalizeMacAddress(const std::string& text) {
  std::string digits;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (std::isxdigit(static_cast<unsigned char>(c))) {
      digits += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (!((c == ':' || c == '-') && i % 3 == 2)) {
      return text;
    }
  }
  if (digits.size() != 12) return text;
  std::string mac;
  for (std::size_t i = 0; i < 12; i += 2) {
    if (i) mac += ':';
    mac.append(digits, i, 2);
  }
  return mac;
}

std::uint32_t PTPMetricConverter::ToMetric(
    const std::vector<Dto::PTPConfig>& configs,
    Values::MonitoringValueThreadSafe<Metrics::PTPMetric>* holders) {
  for (std::size_t i = 0; i < Values::kMaxPTPs; ++i) {
    Metrics::PTPMetric metric;
    if (i < configs.size()) {
      metric.domain = configs[i].Domain;
      metric.packetType = static_cast<std::int32_t>(configs[i].PacketType);
      metric.clockMode = static_cast<std::int32_t>(configs[i].ClockMode);
      metric.interfaces = Dto::ToString(configs[i].IfList);
    }
    holders[i].Value(metric);
  }
  return static_cast<std::uint32_t>(configs.size());
}

void ConfigMetricConverter::ToMetric(
    const Dto::ConfigFile& file, Values::MonitoringValueThreadSafe<Metrics::ConfigMetric>* holder) {
  Metrics::ConfigMetric metric;
  metric.name = file.Name;
  metric.state = static_cast<std::int32_t>(file.State);
  holder->Value(metric);
}

}  // namespace Arq::Monitoring::MetricConverter
