#include "Arq/Snmp/LogFilter.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <mutex>
#include <string_view>
#include <utility>

namespace Arq::Snmp {
namespace {

// What Net-SNMP 5.9 logs when the master goes away (its ping unanswered, the
// connection closed) and at each failed attempt to connect to it again.
constexpr const char* kLostTexts[] = {"Failed to connect to the agentx master agent",
                                      "AgentX master agent failed to respond to ping",
                                      "AgentX master disconnected us"};
constexpr const char* kConnectedText = "AgentX subagent connected";
constexpr const char* kDuplicateRegistration = "registering pdu failed: 263!";

// The agent's own lines of its start and end.
constexpr const char* kLifecycleTexts[] = {
    "orvovia-snmpd is up and running.\n", "orvovia-snmpd is shutdowning.\n",
    "MonitoringProcessor Closing\n", "MonitoringProcessor Closed\n"};
constexpr std::string_view kModuleStarted = " Done initializing.\n";
constexpr std::string_view kTablePrefix = "initialize_table_";
constexpr std::string_view kTableStarted = " Initializing Done.\n";

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool Contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

long Seconds(LogFilter::Clock::duration duration) {
  return static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(duration).count());
}

struct Installed {
  std::mutex mutex;
  std::shared_ptr<LogFilter> filter;
  std::vector<std::pair<netsnmp_log_handler*, NetsnmpLogHandler*>> outputs;
};

Installed& Installation() {
  static Installed installed;
  return installed;
}

int FilteredOutput(netsnmp_log_handler* handler, int priority, const char* text) {
  auto& installed = Installation();
  const std::lock_guard<std::mutex> lock(installed.mutex);
  const auto output = std::find_if(installed.outputs.begin(), installed.outputs.end(),
                                   [handler](const auto& entry) { return entry.first == handler; });
  if (output == installed.outputs.end()) return 1;
  for (const auto& line : installed.filter->Filter(priority, text, LogFilter::Clock::now())) {
    output->second(handler, line.priority, line.text.c_str());
  }
  return 1;
}

}  // namespace

LogFilter::LogFilter(std::function<int()> threshold) : threshold_(std::move(threshold)) {}

bool LogFilter::IsLifecycleLine(const std::string& text) {
  const std::string_view view(text);
  return std::any_of(std::begin(kLifecycleTexts), std::end(kLifecycleTexts),
                     [&view](const char* line) { return view == line; }) ||
         (EndsWith(view, kModuleStarted) && view.find('\n') == view.size() - 1) ||
         (view.substr(0, kTablePrefix.size()) == kTablePrefix && EndsWith(view, kTableStarted));
}

bool LogFilter::Passes(int priority) const {
  return !threshold_ || priority <= threshold_();
}

std::vector<LogFilter::Line> LogFilter::Filter(int priority, const std::string& text,
                                               Clock::time_point now) {
  std::vector<Line> lines;
  if (IsLifecycleLine(text)) {
    lines.push_back({priority, text});
    return lines;
  }
  const bool lost = std::any_of(std::begin(kLostTexts), std::end(kLostTexts),
                                [&text](const char* part) { return Contains(text, part); });
  if (lost && !lost_) {
    // Some of these lines are informational in the library: a lost master
    // is a warning at least.
    priority = std::min(priority, LOG_WARNING);
    lost_ = true;
    lostPriority_ = priority;
    attempts_ = 0;
    unreported_ = 0;
    lostAt_ = reportedAt_ = now;
    if (Passes(priority)) lines.push_back({priority, text});
    return lines;
  }
  if (lost) {
    ++attempts_;
    ++unreported_;
    if (now - reportedAt_ >= kRepeatPeriod && Passes(lostPriority_)) {
      lines.push_back({lostPriority_, "orvovia-snmpd: AgentX master still unavailable after " +
                                          std::to_string(Seconds(now - lostAt_)) +
                                          " s: " + std::to_string(unreported_) +
                                          " more failed connection attempts\n"});
      reportedAt_ = now;
      unreported_ = 0;
    }
    return lines;
  }
  if (Contains(text, kConnectedText) && lost_) {
    lost_ = false;
    reconnected_ = true;
    reconnectedAt_ = now;
    if (Passes(lostPriority_)) {
      lines.push_back({lostPriority_, "orvovia-snmpd: AgentX master back after " +
                                          std::to_string(Seconds(now - lostAt_)) + " s (" +
                                          std::to_string(attempts_) +
                                          " failed connection attempts)\n"});
    }
  }
  if (reconnected_ && Contains(text, kDuplicateRegistration) &&
      now - reconnectedAt_ < kReregistrationPeriod) {
    priority = LOG_DEBUG;
  }
  if (Passes(priority)) lines.push_back({priority, text});
  return lines;
}

void InstallLogFilter(std::shared_ptr<LogFilter> filter) {
  auto& installed = Installation();
  const std::lock_guard<std::mutex> lock(installed.mutex);
  installed.filter = std::move(filter);
  for (netsnmp_log_handler* handler = get_logh_head(); handler != nullptr;
       handler = handler->next) {
    if (handler->handler == FilteredOutput) continue;
    installed.outputs.emplace_back(handler, handler->handler);
    handler->handler = FilteredOutput;
  }
}

}  // namespace Arq::Snmp
