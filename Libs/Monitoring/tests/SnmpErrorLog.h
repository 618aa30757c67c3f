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
  std::vector<std::string> Lines() const { return capture.Lines(LOG_ERR); }

 private:
  SnmpLogCapture capture;
};

}  // namespace Arq::Monitoring::Testing
