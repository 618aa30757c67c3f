#pragma once

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <string>
#include <vector>

#include "SnmpLogCapture.h"

namespace Arq::Monitoring::Testing {

// The error-priority (3) lines of the SNMP library's log written while it
// lives, without their priority.
class SnmpErrorLog {
 public:
  std::vector<std::string> Lines() const {
    const std::string prefix = std::to_string(LOG_ERR) + " ";
    std::vector<std::string> errors;
    for (const auto& line : capture.Lines()) {
      if (line.rfind(prefix, 0) == 0) {
        errors.push_back(line.substr(prefix.size()));
      }
    }
    return errors;
  }

 private:
  SnmpLogCapture capture;
};

}  // namespace Arq::Monitoring::Testing
