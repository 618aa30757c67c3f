#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModelStore.h"

namespace {

using Arq::OrvoViaSwitch::Domain::Model::SwitchModel;
using Arq::OrvoViaSwitch::Domain::Model::SwitchModelStore;

// Each observer is told every publication, in order, with the model replaced
// and the new one, until its subscription ends; an unsubscription from
// another thread never races a call under way.
TEST(SwitchModelStoreTest, ObserversGetEachPublicationUntilTheyUnsubscribe) {
  SwitchModelStore store;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> first, second;
  auto one = store.Subscribe([&](const auto& before, const auto& after) {
    first.emplace_back(before->generation, after->generation);
  });
  {
    auto two = store.Subscribe([&](const auto& before, const auto& after) {
      second.emplace_back(before->generation, after->generation);
    });
    store.Publish(std::make_shared<SwitchModel>());
    store.Publish(std::make_shared<SwitchModel>());
  }
  auto moved = std::move(one);
  store.Publish(std::make_shared<SwitchModel>());
  moved = SwitchModelStore::Subscription();
  store.Publish(std::make_shared<SwitchModel>());
  using Pairs = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
  EXPECT_EQ(first, (Pairs{{0, 1}, {1, 2}, {2, 3}}));
  EXPECT_EQ(second, (Pairs{{0, 1}, {1, 2}}));
  EXPECT_EQ(store.Generation(), 4u);

  std::atomic<int> calls{0};
  std::atomic<bool> alive{true};
  std::thread publisher([&] {
    for (int n = 0; n < 2000; ++n) store.Publish(std::make_shared<SwitchModel>());
  });
  for (int n = 0; n < 200; ++n) {
    auto subscription = store.Subscribe([&](const auto&, const auto&) {
      EXPECT_TRUE(alive.load());
      ++calls;
    });
    std::this_thread::yield();
  }
  alive = false;  // every subscription has ended
  publisher.join();
  EXPECT_EQ(store.Generation(), 2004u);
}

}  // namespace
