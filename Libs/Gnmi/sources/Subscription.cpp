#include "Arq/Gnmi/Subscription.h"

#include <algorithm>

namespace Arq::Gnmi {

bool BoundedQueue::Push(std::string response) {
  if (bytes_ + response.size() > maxBytes_) return false;
  bytes_ += response.size();
  items_.push_back(std::move(response));
  return true;
}

std::string BoundedQueue::Pop() {
  std::string response = std::move(items_.front());
  items_.pop_front();
  bytes_ -= response.size();
  return response;
}

void BoundedQueue::Clear() {
  items_.clear();
  bytes_ = 0;
}

grpc::Status SubscriptionCore::Start(const gnmi::SubscriptionList& list,
                                     SteadyClock::time_point now) {
  mode_ = list.mode();
  encoding_ = list.encoding();
  updatesOnly_ = list.updates_only();
  if (!Served(encoding_)) {
    return {grpc::StatusCode::UNIMPLEMENTED, "encodings served: JSON_IETF, PROTO"};
  }
  if (list.subscription_size() == 0) {
    return {grpc::StatusCode::INVALID_ARGUMENT, "no subscription in the list"};
  }
  if (list.subscription_size() > 64) {
    return {grpc::StatusCode::INVALID_ARGUMENT, "more than 64 subscriptions in one list"};
  }
  const auto& leaves = Leaves();
  for (const auto& subscription : list.subscription()) {
    Selection selection;
    grpc::Status status = Select(list.prefix(), {&subscription.path()}, selection);
    if (!status.ok()) return status;
    all_.Merge(selection);
    if (mode_ != gnmi::SubscriptionList::STREAM) continue;
    const auto sample = std::max<std::chrono::nanoseconds>(
        kMinSample, subscription.sample_interval() == 0
                        ? std::chrono::nanoseconds(kDefaultSample)
                        : std::chrono::nanoseconds(std::min<std::uint64_t>(
                              subscription.sample_interval(), 86400ULL * 1000000000ULL)));
    const auto heartbeat = std::chrono::nanoseconds(
        std::min<std::uint64_t>(subscription.heartbeat_interval(), 86400ULL * 1000000000ULL));
    Entry entry;
    entry.heartbeat = heartbeat.count() == 0
                          ? heartbeat
                          : std::max<std::chrono::nanoseconds>(kMinSample, heartbeat);
    switch (subscription.mode()) {
      case gnmi::ON_CHANGE:
        entry.selection = std::move(selection);
        entry.onChange = true;
        entries_.push_back(std::move(entry));
        break;
      case gnmi::SAMPLE:
        entry.selection = std::move(selection);
        entry.interval = sample;
        entry.suppressRedundant = subscription.suppress_redundant();
        entries_.push_back(std::move(entry));
        break;
      default: {
        // TARGET_DEFINED: states and neighbours on change, counters sampled.
        Entry changes = entry;
        Entry samples = entry;
        samples.interval = kTargetDefinedSample;
        changes.onChange = true;
        // Split the selection by each leaf's cadence.
        Selection onChange;
        Selection sampled;
        for (std::uint32_t leaf = 0; leaf < leaves.size(); ++leaf) {
          Selection& target = leaves[leaf].cadence == Cadence::OnChange ? onChange : sampled;
          target.MergeLeaf(selection, leaf);
        }
        changes.selection = std::move(onChange);
        samples.selection = std::move(sampled);
        if (!changes.selection.Empty()) entries_.push_back(std::move(changes));
        if (!samples.selection.Empty()) entries_.push_back(std::move(samples));
        break;
      }
    }
  }
  for (auto& entry : entries_) {
    entry.nextSample = now + entry.interval;
    if (entry.heartbeat.count() > 0) entry.nextHeartbeat = now + entry.heartbeat;
  }
  return grpc::Status::OK;
}

void SubscriptionCore::SelectedItems(const Snapshot& snapshot, const Selection& selection,
                                     std::vector<Item>& items) {
  for (const auto& entry : snapshot.entries) {
    if (selection.Matches(entry.leaf, snapshot.instances[entry.instance]->keys)) {
      items.push_back({&entry, nullptr, nullptr, nullptr});
    }
  }
}

bool SubscriptionCore::Send(const Snapshot& snapshot, const std::vector<Item>& items,
                            const Sink& sink) {
  bool delivered = true;
  Notifications(snapshot, items, encoding_, snapshot.timestamp,
                [&](const std::string& notification) {
                  if (!delivered) return;
                  std::string response;
                  response.reserve(notification.size() + 8);
                  Wire::Field(response, gnmi::SubscribeResponse::kUpdateFieldNumber, notification);
                  delivered = sink(std::move(response));
                });
  return delivered;
}

std::vector<Item> SubscriptionCore::Ordered(std::vector<Item> items) {
  // Deletes of instances first, then values and leaf deletes in snapshot
  // order, each once (two subscriptions of one list may select the same leaf).
  const auto rank = [](const Item& item) {
    return item.gone != nullptr ? 0 : item.removed != nullptr ? 1 : 2;
  };
  const auto key = [](const Item& item) -> const void* {
    return item.gone != nullptr      ? static_cast<const void*>(item.gone)
           : item.removed != nullptr ? static_cast<const void*>(item.removed)
                                     : static_cast<const void*>(item.entry);
  };
  const auto before = [&](const Item& a, const Item& b) {
    return rank(a) != rank(b) ? rank(a) < rank(b) : std::less<>()(key(a), key(b));
  };
  // The items of one selection over one snapshot come in order already.
  if (!std::is_sorted(items.begin(), items.end(), before)) {
    std::stable_sort(items.begin(), items.end(), before);
  }
  items.erase(std::unique(items.begin(), items.end(),
                          [&](const Item& a, const Item& b) { return key(a) == key(b); }),
              items.end());
  return items;
}

bool SubscriptionCore::Initial(const std::shared_ptr<const Snapshot>& snapshot, const Sink& sink) {
  if (!updatesOnly_) {
    std::vector<Item> items;
    SelectedItems(*snapshot, all_, items);
    if (!Send(*snapshot, items, sink)) return false;
  }
  for (auto& entry : entries_) entry.lastSent = snapshot;
  std::string sync;
  Wire::Field(sync, gnmi::SubscribeResponse::kSyncResponseFieldNumber, std::uint64_t{1});
  return sink(std::move(sync));
}

bool SubscriptionCore::OnChanges(const Snapshot& before, const Snapshot& after,
                                 const Changes& changes, const Sink& sink) {
  std::vector<Item> items;
  for (const auto& entry : entries_) {
    if (!entry.onChange) continue;
    for (const Instance* gone : changes.gone) {
      if (entry.selection.MatchesInstance(gone->scope, gone->keys)) {
        items.push_back({nullptr, gone, nullptr, nullptr});
      }
    }
    for (const auto* removed : changes.removed) {
      if (entry.selection.Matches(removed->leaf, before.instances[removed->instance]->keys)) {
        items.push_back({nullptr, nullptr, removed, &before});
      }
    }
    for (const auto* updated : changes.updated) {
      if (entry.selection.Matches(updated->leaf, after.instances[updated->instance]->keys)) {
        items.push_back({updated, nullptr, nullptr, nullptr});
      }
    }
  }
  if (items.empty()) return true;
  return Send(after, Ordered(std::move(items)), sink);
}

bool SubscriptionCore::Tick(const std::shared_ptr<const Snapshot>& snapshot,
                            SteadyClock::time_point now, const Sink& sink) {
  std::vector<Item> items;
  // The snapshots last sent and their differences, alive until sent.
  std::vector<std::shared_ptr<const Snapshot>> earlier;
  std::deque<Changes> diffs;
  for (auto& entry : entries_) {
    const bool heartbeat = entry.heartbeat.count() > 0 && now >= entry.nextHeartbeat;
    if (heartbeat) entry.nextHeartbeat = now + entry.heartbeat;
    if (entry.onChange) {
      if (heartbeat) SelectedItems(*snapshot, entry.selection, items);
      continue;
    }
    if (now < entry.nextSample) continue;
    entry.nextSample += entry.interval;
    if (entry.nextSample <= now) entry.nextSample = now + entry.interval;
    const bool all = !entry.suppressRedundant || heartbeat || entry.lastSent == nullptr;
    if (entry.lastSent != nullptr && entry.lastSent != snapshot) {
      earlier.push_back(entry.lastSent);
      diffs.push_back(Diff(*entry.lastSent, *snapshot));
      for (const Instance* gone : diffs.back().gone) {
        if (entry.selection.MatchesInstance(gone->scope, gone->keys)) {
          items.push_back({nullptr, gone, nullptr, nullptr});
        }
      }
      if (!all) {
        for (const auto* updated : diffs.back().updated) {
          if (entry.selection.Matches(updated->leaf,
                                      snapshot->instances[updated->instance]->keys)) {
            items.push_back({updated, nullptr, nullptr, nullptr});
          }
        }
      }
    }
    if (all) SelectedItems(*snapshot, entry.selection, items);
    entry.lastSent = snapshot;
  }
  if (items.empty()) return true;
  return Send(*snapshot, Ordered(std::move(items)), sink);
}

SteadyClock::time_point SubscriptionCore::NextDue() const {
  auto due = SteadyClock::time_point::max();
  for (const auto& entry : entries_) {
    if (entry.heartbeat.count() > 0) due = std::min(due, entry.nextHeartbeat);
    if (!entry.onChange) due = std::min(due, entry.nextSample);
  }
  return due;
}

}  // namespace Arq::Gnmi
