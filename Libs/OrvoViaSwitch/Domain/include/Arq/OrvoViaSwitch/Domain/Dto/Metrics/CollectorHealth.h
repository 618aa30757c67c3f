#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics {

// The collector's own health, published next to the switch's metrics so that
// a manager tells a dead switch service from an empty switch. The numbers of
// the enumerations are those of the MIB.
enum class CollectorState : std::int32_t {
  Ok = 1,               // every call of the last collection answered
  Partial = 2,          // some calls of the last collection failed
  Unreachable = 3,      // every call of the last collection failed
  Disabled = 4,         // collection switched off by the options file
  NotYetCollected = 5,  // no collection since start
};

enum class CallOutcome : std::int32_t {
  Ok = 1,
  Fault = 2,              // the service answered with its Fault_t
  Timeout = 3,            // connect or receive time-out
  ConnectionRefused = 4,  // nothing listens on the switch's port
  TransportError = 5,     // any other transport failure (peer closed, ...)
  BadReply = 6,           // a reply that is no proper answer to the call
  NotCalled = 7,          // not made yet (or skipped by a stop)
};

// The ten switch calls of a collection, in the order they are made, as
// X(Service, Method): the call "Service:Method" made through the service's
// proxy client. This list is the one place that names them: the collector's
// call records (CollectorCall), the MIB's call table, the tests and the soak
// run (scripts/mib_facts.py) are made from it. One call per line.
#define ARQ_COLLECTOR_CALLS(X)  \
  X(Interfaces, GetIfList)      \
  X(Interfaces, GetInfo)        \
  X(Ethernet, GetEthInfo)       \
  X(Interfaces, GetCnt)         \
  X(Interfaces, GetStats)       \
  X(Interfaces, GetMainMacAddr) \
  X(LLDP, GetConfig)            \
  X(LLDP, GetInfo)              \
  X(PTP, GetConfig)             \
  X(Config, GetCurrentConfig)

// The position of each call in the list: CollectorCall::Interfaces_GetIfList is 0.
struct CollectorCall {
#define ARQ_COLLECTOR_CALL_INDEX(service, method) service##_##method,
  enum : std::size_t { ARQ_COLLECTOR_CALLS(ARQ_COLLECTOR_CALL_INDEX) };
#undef ARQ_COLLECTOR_CALL_INDEX
};

#define ARQ_COLLECTOR_CALL_NAME(service, method) #service ":" #method,
inline constexpr std::array kCollectorCallNames{ARQ_COLLECTOR_CALLS(ARQ_COLLECTOR_CALL_NAME)};
#undef ARQ_COLLECTOR_CALL_NAME
inline constexpr std::size_t kCollectorCallCount = kCollectorCallNames.size();

// One switch call: how it went last time, how often it failed, the last error.
struct CollectorCallMetric {
  CallOutcome outcome = CallOutcome::NotCalled;
  std::int64_t failures = 0;
  std::string lastError;
  // How long the call last took, connection included, in microseconds (0:
  // not called). It moves with every call, so equality leaves it out:
  // two records are equal when the calls said the same.
  std::int64_t durationUs = 0;

  bool operator==(const CollectorCallMetric& other) const {
    return outcome == other.outcome && failures == other.failures && lastError == other.lastError;
  }
};

// The collection loop. Times are seconds since the Unix epoch, 0 for never.
struct CollectorHealthMetric {
  CollectorState state = CollectorState::NotYetCollected;
  std::int64_t lastCollection = 0;
  std::int64_t lastSuccess = 0;
  std::int64_t lastDurationMs = 0;
  std::int64_t collections = 0;
  std::int64_t consecutiveFailures = 0;     // collections in a row with a failed call
  std::int64_t consecutiveUnreachable = 0;  // collections in a row with every call failed
  bool collectEnabled = true;
  std::int32_t period = 0;  // seconds
  std::string lastError;    // the last failed call's error text, kept after recovery

  bool operator==(const CollectorHealthMetric& other) const {
    return state == other.state && lastCollection == other.lastCollection &&
           lastSuccess == other.lastSuccess && lastDurationMs == other.lastDurationMs &&
           collections == other.collections && consecutiveFailures == other.consecutiveFailures &&
           consecutiveUnreachable == other.consecutiveUnreachable &&
           collectEnabled == other.collectEnabled && period == other.period &&
           lastError == other.lastError;
  }
};

// The daemon itself: written at start-up, and the log level each time the
// options file applies one.
struct DaemonMetric {
  std::string version;
  std::int64_t startTime = 0;  // seconds since the Unix epoch
  std::int32_t logLevel = 0;   // the logger levels: 10 Trace ... 60 Fatal, 100 NoLog

  bool operator==(const DaemonMetric& other) const {
    return version == other.version && startTime == other.startTime && logLevel == other.logLevel;
  }
};

// The outcome that a failed call's exception stands for: the service's own
// Fault_t (a DomainException with a code other than SystemError), then the
// transport's texts.
CallOutcome ClassifyCallFailure(const std::exception& failure);

}  // namespace Arq::OrvoViaSwitch::Domain::Dto::Metrics
