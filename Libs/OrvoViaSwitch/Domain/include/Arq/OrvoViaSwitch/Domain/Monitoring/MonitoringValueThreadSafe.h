#pragma once

#include <chrono>
#include <mutex>

#include "Arq/OrvoViaSwitch/Domain/Monitoring/SpinLock.h"

namespace Arq::OrvoViaSwitch::Domain::Monitoring {

// One published value shared by the collection thread (the writer) and the
// SNMP thread (the reader). A write that does not change the value keeps the
// change time, so a reader tells a change from a rewrite by comparing change
// times only, and copies the value only when it moved.
template <typename T>
class MonitoringValueThreadSafe {
 public:
  using Clock = std::chrono::steady_clock;
  using TimePoint = Clock::time_point;

  MonitoringValueThreadSafe() : value(), creationTime(Clock::now()), changeTime(Clock::now()) {}

  MonitoringValueThreadSafe(const MonitoringValueThreadSafe&) = delete;
  MonitoringValueThreadSafe& operator=(const MonitoringValueThreadSafe&) = delete;

  // Stores `newValue` and stamps the change time, only when it differs.
  void Value(const T& newValue) {
    std::lock_guard<SpinLock> guard(lock);
    if (!(newValue == value)) {
      value = newValue;
      changeTime = Clock::now();
    }
  }

  // A copy of the value, taken under the lock.
  T Value() const {
    std::lock_guard<SpinLock> guard(lock);
    return value;
  }

  // Copies the value into `out` under the lock (reuses out's storage).
  void CopyValue(T& out) const {
    std::lock_guard<SpinLock> guard(lock);
    out = value;
  }

  TimePoint ChangeTime() const {
    std::lock_guard<SpinLock> guard(lock);
    return changeTime;
  }

  TimePoint CreationTime() const {
    std::lock_guard<SpinLock> guard(lock);
    return creationTime;
  }

 private:
  T value;
  TimePoint creationTime;
  TimePoint changeTime;
  mutable SpinLock lock;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Monitoring
