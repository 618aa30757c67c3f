#pragma once

#include <grpcpp/support/status.h>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Arq/Gnmi/Encode.h"

namespace Arq::Gnmi {

using SteadyClock = std::chrono::steady_clock;

// The responses waiting to be written to one stream (each the bytes of a
// gnmi.SubscribeResponse), bounded in bytes: a client that stops reading fills
// it and the stream is ended, never the daemon's memory.
class BoundedQueue {
 public:
  explicit BoundedQueue(std::size_t maxBytes) : maxBytes_(maxBytes) {}
  // False (and nothing queued) when the response would pass the bound.
  bool Push(std::string response);
  bool Empty() const { return items_.empty(); }
  std::string Pop();
  std::size_t Bytes() const { return bytes_; }
  void Clear();

 private:
  std::size_t maxBytes_;
  std::size_t bytes_ = 0;
  std::deque<std::string> items_;
};

// What one Subscribe RPC asked, and what it has been sent: turns snapshots,
// their differences and the passing of time into responses. No gRPC in here:
// the stream feeds it and writes out what it gives.
class SubscriptionCore {
 public:
  // Takes the bytes of one gnmi.SubscribeResponse; false: overflow.
  using Sink = std::function<bool(std::string)>;

  // Sample intervals below this are raised to it; a SAMPLE without an
  // interval gets the default; TARGET_DEFINED samples counters this often.
  static constexpr std::chrono::milliseconds kMinSample{100};
  static constexpr std::chrono::milliseconds kDefaultSample{1000};
  static constexpr std::chrono::milliseconds kTargetDefinedSample{10000};

  // Checks and takes the list: INVALID_ARGUMENT for a malformed one,
  // NOT_FOUND for a path that selects nothing, UNIMPLEMENTED for an encoding
  // not served.
  grpc::Status Start(const gnmi::SubscriptionList& list, SteadyClock::time_point now);

  gnmi::SubscriptionList::Mode mode() const { return mode_; }

  // The first answer (every selected value unless updates_only, then
  // sync_response), and the answer to each Poll.
  bool Initial(const std::shared_ptr<const Snapshot>& snapshot, const Sink& sink);
  // A new model: ON_CHANGE values that changed, and deletes.
  bool OnChanges(const Snapshot& before, const Snapshot& after, const Changes& changes,
                 const Sink& sink);
  // SAMPLE values and heartbeats due at `now`.
  bool Tick(const std::shared_ptr<const Snapshot>& snapshot, SteadyClock::time_point now,
            const Sink& sink);
  // When the next sample or heartbeat is due (max() for none).
  SteadyClock::time_point NextDue() const;

 private:
  struct Entry {
    Selection selection;
    bool onChange = false;
    std::chrono::nanoseconds interval{0};
    std::chrono::nanoseconds heartbeat{0};
    bool suppressRedundant = false;
    SteadyClock::time_point nextSample{};
    SteadyClock::time_point nextHeartbeat{};
    std::shared_ptr<const Snapshot> lastSent;
  };
  bool Send(const Snapshot& snapshot, const std::vector<Item>& items, const Sink& sink);
  static std::vector<Item> Ordered(std::vector<Item> items);
  static void SelectedItems(const Snapshot& snapshot, const Selection& selection,
                            std::vector<Item>& items);

  gnmi::SubscriptionList::Mode mode_ = gnmi::SubscriptionList::STREAM;
  gnmi::Encoding encoding_ = gnmi::JSON_IETF;
  bool updatesOnly_ = false;
  std::vector<Entry> entries_;
  Selection all_;
};

}  // namespace Arq::Gnmi
