#pragma once

#include <string>
#include <vector>

namespace Arq::Monitoring::Testing {

// Collects every snmp_log line written while it lives (Net-SNMP callback log).
class SnmpLogCapture {
 public:
  SnmpLogCapture();
  ~SnmpLogCapture();
  std::vector<std::string> Lines() const;
  // The lines of one priority, without it.
  std::vector<std::string> Lines(int priority) const;
};

}  // namespace Arq::Monitoring::Testing
