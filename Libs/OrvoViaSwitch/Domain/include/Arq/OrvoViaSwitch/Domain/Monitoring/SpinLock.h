#pragma once

#include <sched.h>

#include <atomic>
#include <cstdint>

namespace Arq::OrvoViaSwitch::Domain::Monitoring {

// A one-byte lock held only for one copy or compare: it never sleeps, it
// yields the processor between attempts. Usable with std::lock_guard.
class SpinLock {
 public:
  void lock() noexcept {
    while (flag.exchange(1, std::memory_order_acquire) != 0) {
      sched_yield();
    }
  }
  void unlock() noexcept { flag.store(0, std::memory_order_release); }

 private:
  std::atomic<std::uint8_t> flag{0};
};

}  // namespace Arq::OrvoViaSwitch::Domain::Monitoring
