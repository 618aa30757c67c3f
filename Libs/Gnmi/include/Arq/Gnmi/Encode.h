#pragma once

#include <grpcpp/support/status.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Arq/Gnmi/Path.h"
#include "Arq/Gnmi/Snapshot.h"
#include "Arq/Gnmi/Tree.h"
#include "gnmi.pb.h"

namespace Arq::Gnmi {

// A wire path as a Path; nothing (with the reason) for the deprecated string
// form or a path beyond the bounds.
std::optional<Path> FromProto(const gnmi::Path& path, std::string* error);
void ToProto(const Path& path, gnmi::Path* out);

// JSON_IETF and PROTO (scalar TypedValue fields) are served.
bool Served(gnmi::Encoding encoding);

// The answers are written in protobuf's wire form straight from the
// snapshot's values, one buffer per message, with no message objects: a
// subscription of every interface leaf sends ten thousand values a second,
// and as messages each was an allocation per path element, string and value,
// sized once for the queue's bound and again by gRPC. The field numbers are
// those of the generated classes.
namespace Wire {
// A length-delimited field (a string, bytes or a nested message).
void Field(std::string& out, int number, std::string_view bytes);
// A varint field (integers, enumerations, bool).
void Field(std::string& out, int number, std::uint64_t value);
// A gnmi.Path message.
void PathMessage(std::string& out, const Path& path);
// A gnmi.TypedValue message in the encoding.
void TypedValue(std::string& out, const Value& value, gnmi::Encoding encoding);
}  // namespace Wire

// The leaves a request selects: the prefix joined with each path, resolved.
// INVALID_ARGUMENT for a malformed path, NOT_FOUND for one that selects
// nothing the daemon serves.
grpc::Status Select(const gnmi::Path& prefix, const std::vector<const gnmi::Path*>& paths,
                    Selection& selection);

// Which leaves a Get or a subscription sends: config, state or both.
enum class KindFilter { All, Config, State };

// One item to send: a value (`entry`) or the deletion of an instance
// (`gone`) or of one leaf that became unknown (`removed`).
struct Item {
  const Snapshot::Entry* entry = nullptr;
  const Instance* gone = nullptr;
  const Snapshot::Entry* removed = nullptr;
  const Snapshot* owner = nullptr;  // the snapshot `removed` belongs to
};

// The notifications of the items, one per instance (its list entry as the
// prefix, the leaves' paths below it), each stamped with `timestamp` and
// handed to `emit` as the bytes of a gnmi.Notification.
using NotificationSink = std::function<void(const std::string& notification)>;
void Notifications(const Snapshot& snapshot, const std::vector<Item>& items,
                   gnmi::Encoding encoding, std::int64_t timestamp, const NotificationSink& emit);

// A Get answer (the bytes of a gnmi.GetResponse): the selected values as the
// streams send them, all stamped with the snapshot's collection time. One
// notification per instance rather than a full path per leaf: a Get of every
// interface of a 128-port switch sends less than half as much.
std::string GetAnswer(const Snapshot& snapshot, const Selection& selection, KindFilter filter,
                      gnmi::Encoding encoding);

}  // namespace Arq::Gnmi
