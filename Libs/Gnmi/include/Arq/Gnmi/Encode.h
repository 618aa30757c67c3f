#pragma once

#include <grpcpp/support/status.h>

#include <optional>
#include <string>
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
void SetValue(const Value& value, gnmi::Encoding encoding, gnmi::TypedValue* out);

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

// Notifications of the items, one per instance (its list entry as the
// prefix), each stamped with `timestamp`, appended to `out` (made on its
// arena, if it has one).
void Notifications(const Snapshot& snapshot, const std::vector<Item>& items,
                   gnmi::Encoding encoding, std::int64_t timestamp,
                   google::protobuf::RepeatedPtrField<gnmi::Notification>& out);

// A Get answer: the selected values as the streams send them, one
// notification per instance (its list entry as the prefix, the leaves'
// paths below it), all stamped with the snapshot's collection time. Far
// fewer and smaller path messages than a full path per leaf: a Get of every
// interface of a 128-port switch builds and sends less than half as much.
void GetAnswer(const Snapshot& snapshot, const Selection& selection, KindFilter filter,
               gnmi::Encoding encoding, gnmi::GetResponse& response);

}  // namespace Arq::Gnmi
