#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Arq::Snmp {

// Decides which lines of the SNMP library's log (snmp_log) reach the daemon's
// output:
// - the agent's own start-up and shutdown lines (each module's "... Done
//   initializing." or "initialize_table_... Initializing Done.", "orvovia-snmpd
//   is up and running.", "orvovia-snmpd is shutdowning.", the collection
//   thread's "MonitoringProcessor Closing" and "... Closed") always pass,
//   whatever the level: operators and scripts wait for them;
// - any other line passes when its syslog priority is at least as urgent as
//   the threshold, read at each line (the daemon's log level, which the
//   options file may change at run time);
// - a lost or refused AgentX master is one line when it happens; the library's
//   retries (one every ping interval) are then counted and reported in one line
//   at most once per kRepeatPeriod, and one line says when the master is back;
// - "registering pdu failed: 263!" (a duplicate registration) right after a
//   reconnection is the library re-registering a subtree that the master
//   already holds for this session: demoted to LOG_DEBUG.
class LogFilter {
 public:
  using Clock = std::chrono::steady_clock;
  struct Line {
    int priority;
    std::string text;
    bool operator==(const Line& other) const {
      return priority == other.priority && text == other.text;
    }
  };
  static constexpr std::chrono::seconds kRepeatPeriod{300};
  static constexpr std::chrono::seconds kReregistrationPeriod{10};

  // `threshold`: the least urgent priority that passes (LOG_DEBUG: every
  // line; -1: none). Null: every line.
  explicit LogFilter(std::function<int()> threshold);

  // True for the agent's start-up and shutdown lines.
  static bool IsLifecycleLine(const std::string& text);

  // The lines to write for one line of the library, received at `now`.
  std::vector<Line> Filter(int priority, const std::string& text, Clock::time_point now);

 private:
  bool Passes(int priority) const;

  std::function<int()> threshold_;
  bool lost_ = false;
  int lostPriority_ = 0;
  long attempts_ = 0;
  long unreported_ = 0;
  Clock::time_point lostAt_{};
  Clock::time_point reportedAt_{};
  Clock::time_point reconnectedAt_{};
  bool reconnected_ = false;
};

// Puts `filter` in front of the library's log output(s) enabled so far: every
// line of snmp_log goes through it. The daemon enables exactly one output.
void InstallLogFilter(std::shared_ptr<LogFilter> filter);

}  // namespace Arq::Snmp
