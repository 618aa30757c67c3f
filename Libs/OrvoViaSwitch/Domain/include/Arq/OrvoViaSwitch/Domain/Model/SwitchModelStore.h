#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::OrvoViaSwitch::Domain::Model {

// The latest switch model, replaced whole by the collection thread and read
// by the SNMP thread: a reader holds one model for as long as it needs it,
// so one request never sees two collections. Generation() is a lock-free
// check for "has anything new been published".
class SwitchModelStore {
 public:
  SwitchModelStore() : current(std::make_shared<const SwitchModel>()) {}

  // Publishes `model` with the next generation number.
  void Publish(std::shared_ptr<SwitchModel> model) {
    std::lock_guard<std::mutex> lock(mutex);
    model->generation = current->generation + 1;
    current = std::move(model);
    generation.store(current->generation, std::memory_order_release);
  }

  std::shared_ptr<const SwitchModel> Current() const {
    std::lock_guard<std::mutex> lock(mutex);
    return current;
  }

  std::uint64_t Generation() const { return generation.load(std::memory_order_acquire); }

 private:
  mutable std::mutex mutex;
  std::shared_ptr<const SwitchModel> current;
  std::atomic<std::uint64_t> generation{0};
};

}  // namespace Arq::OrvoViaSwitch::Domain::Model
