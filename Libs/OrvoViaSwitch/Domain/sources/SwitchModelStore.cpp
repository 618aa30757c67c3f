#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModelStore.h"

#include <utility>

namespace Arq::OrvoViaSwitch::Domain::Model {

void SwitchModelStore::Publish(std::shared_ptr<SwitchModel> model) {
  const std::lock_guard<std::mutex> told(observersMutex);
  std::shared_ptr<const SwitchModel> before;
  std::shared_ptr<const SwitchModel> after;
  {
    const std::lock_guard<std::mutex> lock(mutex);
    model->generation = current->generation + 1;
    before = std::exchange(current, std::move(model));
    after = current;
    generation.store(current->generation, std::memory_order_release);
  }
  for (const auto& observer : observers) observer(before, after);
}

SwitchModelStore::Subscription SwitchModelStore::Subscribe(Observer observer) {
  const std::lock_guard<std::mutex> lock(observersMutex);
  return {this, observers.insert(observers.end(), std::move(observer))};
}

SwitchModelStore::Subscription::Subscription(Subscription&& other) noexcept
    : store(std::exchange(other.store, nullptr)), observer(other.observer) {}

SwitchModelStore::Subscription& SwitchModelStore::Subscription::operator=(
    Subscription&& other) noexcept {
  if (this != &other) {
    Release();
    store = std::exchange(other.store, nullptr);
    observer = other.observer;
  }
  return *this;
}

SwitchModelStore::Subscription::~Subscription() {
  Release();
}

void SwitchModelStore::Subscription::Release() {
  if (store == nullptr) return;
  const std::lock_guard<std::mutex> lock(store->observersMutex);
  store->observers.erase(observer);
  store = nullptr;
}

}  // namespace Arq::OrvoViaSwitch::Domain::Model
