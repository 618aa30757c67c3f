#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::OrvoViaSwitch::Domain::Model {

// The latest switch model, replaced whole by the collection thread and read
// by every view: a reader holds one model for as long as it needs it, so one
// request never sees two collections. Generation() is a lock-free check for
// "has anything new been published". Consumers that act on each new model
// (streams of changes) subscribe instead of polling.
class SwitchModelStore {
 public:
  // Called on the publishing thread after each publication with the model it
  // replaced and the new one; it must be quick (hand the work to a thread of
  // its own) and must not subscribe or unsubscribe.
  using Observer = std::function<void(const std::shared_ptr<const SwitchModel>& before,
                                      const std::shared_ptr<const SwitchModel>& after)>;

  // Unsubscribes when destroyed: after that no call of its observer is under
  // way or to come. Must not outlive its store.
  class Subscription {
   public:
    Subscription() = default;
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription();

   private:
    friend class SwitchModelStore;
    Subscription(SwitchModelStore* store, std::list<Observer>::iterator observer)
        : store(store), observer(observer) {}
    void Release();
    SwitchModelStore* store = nullptr;
    std::list<Observer>::iterator observer;
  };

  SwitchModelStore() : current(std::make_shared<const SwitchModel>()) {}

  // Publishes `model` with the next generation number, then tells the
  // observers.
  void Publish(std::shared_ptr<SwitchModel> model);

  std::shared_ptr<const SwitchModel> Current() const {
    std::lock_guard<std::mutex> lock(mutex);
    return current;
  }

  std::uint64_t Generation() const { return generation.load(std::memory_order_acquire); }

  [[nodiscard]] Subscription Subscribe(Observer observer);

 private:
  mutable std::mutex mutex;
  std::shared_ptr<const SwitchModel> current;
  std::atomic<std::uint64_t> generation{0};
  // Held while the observers are called, so that an unsubscription waits for
  // a call under way; publications are told in order.
  std::mutex observersMutex;
  std::list<Observer> observers;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Model
