#pragma once

#include <string>

namespace Arq::OrvoViaSwitchMonitoring {

// Where the metrics come from: the switch's management service, or synthetic data.
struct MonitoringProcessorMode {
  enum Type { Thrift = 0, Fake = 1 };

  // Exactly "Fake" (case-sensitive); every other text means Thrift.
  static bool IsFakeMode(const std::string& text) { return text == "Fake"; }
};

}  // namespace Arq::OrvoViaSwitchMonitoring
