#include <gtest/gtest.h>
#include <syslog.h>

#include "Arq/Snmp/LogFilter.h"

namespace {

using Arq::Snmp::LogFilter;
using Line = LogFilter::Line;

const std::string kRefused =
    "Warning: Failed to connect to the agentx master agent (/run/agentx/master): Unknown host\n";
const std::string kDisconnected = "AgentX master disconnected us, reconnecting in 2\n";
const std::string kConnected = "NET-SNMP version 5.9.3 AgentX subagent connected\n";
const std::string kDuplicate = "registering pdu failed: 263!\n";
const std::string kChanged = "ethernetInterfaceMetrics has changed on row: 3.\n";
const std::string kUp = "orvovia-snmpd is up and running.\n";
const std::string kDown = "orvovia-snmpd is shutdowning.\n";
const std::string kScalar = "arqSwitchOrvoViaNbPTPs Done initializing.\n";
const std::string kTable = "initialize_table_arqSwitchOrvoViaPTPsTable Initializing Done.\n";

// A day of the library's log, at the threshold of the step: what is written.
// The agent's start-up and shutdown lines pass at every level.
TEST(LogFilterTest, AppliesTheLevelAndReportsAnAbsentMasterOnceAPeriod) {
  int threshold = LOG_WARNING;
  LogFilter filter([&threshold] { return threshold; });
  struct Step {
    long second;
    int threshold;
    int priority;
    std::string text;
    std::vector<Line> written;
  };
  const std::string still =
      "orvovia-snmpd: AgentX master still unavailable after 300 s: 3 more failed connection "
      "attempts\n";
  const std::string back =
      "orvovia-snmpd: AgentX master back after 304 s (4 failed connection attempts)\n";
  const std::string backSoon =
      "orvovia-snmpd: AgentX master back after 1 s (0 failed connection attempts)\n";
  // clang-format off
  const std::vector<Step> steps{
      {0, -1, LOG_INFO, kScalar, {{LOG_INFO, kScalar}}},
      {0, LOG_WARNING, LOG_INFO, kTable, {{LOG_INFO, kTable}}},
      {0, LOG_ERR, LOG_INFO, kUp, {{LOG_INFO, kUp}}},
      {0, LOG_WARNING, LOG_INFO, kChanged, {}},
      {0, LOG_WARNING, LOG_INFO, "x Done initializing.\n" + kChanged, {}},
      {0, LOG_INFO, LOG_INFO, kChanged, {{LOG_INFO, kChanged}}},
      {0, LOG_WARNING, LOG_INFO, kConnected, {}},
      {1, LOG_WARNING, LOG_ERR, kDuplicate, {{LOG_ERR, kDuplicate}}},  // not after a loss
      {2, LOG_WARNING, LOG_ERR, kRefused, {{LOG_ERR, kRefused}}},
      {4, LOG_WARNING, LOG_ERR, kRefused, {}},
      {4, -1, LOG_INFO, kDown, {{LOG_INFO, kDown}}},
      {300, LOG_WARNING, LOG_ERR, kRefused, {}},
      {302, LOG_WARNING, LOG_ERR, kRefused, {{LOG_ERR, still}}},
      {304, LOG_WARNING, LOG_ERR, kRefused, {}},
      {306, LOG_WARNING, LOG_INFO, kConnected, {{LOG_ERR, back}}},
      {307, LOG_WARNING, LOG_ERR, kDuplicate, {}},
      {307, LOG_DEBUG, LOG_ERR, kDuplicate, {{LOG_DEBUG, kDuplicate}}},
      {320, LOG_WARNING, LOG_ERR, kDuplicate, {{LOG_ERR, kDuplicate}}},
      {330, LOG_WARNING, LOG_INFO, kDisconnected, {{LOG_WARNING, kDisconnected}}},
      {331, LOG_WARNING, LOG_INFO, kConnected, {{LOG_WARNING, backSoon}}},
      {400, -1, LOG_ERR, kRefused, {}},
      {401, -1, LOG_INFO, kConnected, {}},
      {402, LOG_ERR, LOG_ERR, kRefused, {{LOG_ERR, kRefused}}},
  };
  // clang-format on
  const auto start = LogFilter::Clock::now();
  for (const auto& step : steps) {
    SCOPED_TRACE(step.second);
    threshold = step.threshold;
    EXPECT_EQ(filter.Filter(step.priority, step.text, start + std::chrono::seconds(step.second)),
              step.written);
  }
}

}  // namespace
