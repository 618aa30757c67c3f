#include "Arq/Gnmi/Encode.h"

namespace Arq::Gnmi {

std::optional<Path> FromProto(const gnmi::Path& path, std::string* error) {
  if (path.element_size() > 0) {
    if (error != nullptr) *error = "the string form of paths (element) is not served";
    return std::nullopt;
  }
  if (path.elem_size() > static_cast<int>(kMaxPathElems)) {
    if (error != nullptr) *error = "path too deep";
    return std::nullopt;
  }
  Path out;
  out.origin = path.origin();
  for (const auto& elem : path.elem()) {
    if (elem.key_size() > static_cast<int>(kMaxKeysPerElem)) {
      if (error != nullptr) *error = "too many keys";
      return std::nullopt;
    }
    PathElem e;
    e.name = elem.name();
    for (const auto& [key, value] : elem.key()) e.keys.emplace(key, value);
    out.elems.push_back(std::move(e));
  }
  return out;
}

void ToProto(const Path& path, gnmi::Path* out) {
  if (!path.origin.empty()) out->set_origin(path.origin);
  for (const auto& elem : path.elems) {
    auto* e = out->add_elem();
    e->set_name(elem.name);
    for (const auto& [key, value] : elem.keys) (*e->mutable_key())[key] = value;
  }
}

bool Served(gnmi::Encoding encoding) {
  return encoding == gnmi::JSON_IETF || encoding == gnmi::PROTO;
}

namespace Wire {
namespace {

constexpr int kVarint = 0;
constexpr int kLengthDelimited = 2;
// The field numbers of a map entry (PathElem's keys).
constexpr int kMapKey = 1;
constexpr int kMapValue = 2;

void Varint(std::string& out, std::uint64_t value) {
  while (value >= 0x80) {
    out += static_cast<char>((value & 0x7f) | 0x80);
    value >>= 7;
  }
  out += static_cast<char>(value);
}

void Tag(std::string& out, int number, int type) {
  Varint(out, (static_cast<std::uint64_t>(number) << 3) | static_cast<std::uint64_t>(type));
}

}  // namespace

void Field(std::string& out, int number, std::string_view bytes) {
  Tag(out, number, kLengthDelimited);
  Varint(out, bytes.size());
  out.append(bytes.data(), bytes.size());
}

void Field(std::string& out, int number, std::uint64_t value) {
  Tag(out, number, kVarint);
  Varint(out, value);
}

void PathMessage(std::string& out, const Path& path) {
  if (!path.origin.empty()) Field(out, gnmi::Path::kOriginFieldNumber, path.origin);
  std::string elem;
  std::string entry;
  for (const auto& e : path.elems) {
    elem.clear();
    Field(elem, gnmi::PathElem::kNameFieldNumber, e.name);
    for (const auto& [key, value] : e.keys) {
      entry.clear();
      Field(entry, kMapKey, key);
      Field(entry, kMapValue, value);
      Field(elem, gnmi::PathElem::kKeyFieldNumber, entry);
    }
    Field(out, gnmi::Path::kElemFieldNumber, elem);
  }
}

void TypedValue(std::string& out, const Value& value, gnmi::Encoding encoding) {
  if (encoding == gnmi::JSON_IETF) {
    std::string json;
    value.JsonIetf(json);
    Field(out, gnmi::TypedValue::kJsonIetfValFieldNumber, json);
    return;
  }
  switch (value.type) {
    case Value::Type::Uint64:
    case Value::Type::Uint32:
      Field(out, gnmi::TypedValue::kUintValFieldNumber, value.number);
      break;
    case Value::Type::Int64:  // two's complement, as protobuf's int64
      Field(out, gnmi::TypedValue::kIntValFieldNumber, value.number);
      break;
    case Value::Type::Bool:
      Field(out, gnmi::TypedValue::kBoolValFieldNumber, std::uint64_t{value.number != 0});
      break;
    case Value::Type::StringList: {
      std::string array;
      std::string element;
      for (const auto& item : value.items) {
        element.clear();
        Field(element, gnmi::TypedValue::kStringValFieldNumber, item);
        Field(array, gnmi::ScalarArray::kElementFieldNumber, element);
      }
      Field(out, gnmi::TypedValue::kLeaflistValFieldNumber, array);
      break;
    }
    default:
      Field(out, gnmi::TypedValue::kStringValFieldNumber, value.text);
      break;
  }
}

}  // namespace Wire

namespace {

// Each leaf's path below its instance in wire form, made once.
const std::string& RelativeWire(std::uint32_t leaf) {
  static const std::vector<std::string> wires = [] {
    const Tree& tree = Tree::Instance();
    std::vector<std::string> out(Leaves().size());
    for (std::uint32_t i = 0; i < out.size(); ++i) Wire::PathMessage(out[i], tree.Relative(i));
    return out;
  }();
  return wires[leaf];
}

}  // namespace

grpc::Status Select(const gnmi::Path& prefix, const std::vector<const gnmi::Path*>& paths,
                    Selection& selection) {
  std::string error;
  const auto head = FromProto(prefix, &error);
  if (!head) return {grpc::StatusCode::INVALID_ARGUMENT, "prefix: " + error};
  const gnmi::Path root;
  // No path at all asks for everything under the prefix.
  const std::size_t count = paths.empty() ? 1 : paths.size();
  for (std::size_t i = 0; i < count; ++i) {
    const auto tail = FromProto(paths.empty() ? root : *paths[i], &error);
    if (!tail) return {grpc::StatusCode::INVALID_ARGUMENT, error};
    const Path path = Join(*head, *tail);
    Selection one;
    switch (Tree::Instance().Resolve(path, one, &error)) {
      case Tree::Outcome::Malformed:
        return {grpc::StatusCode::INVALID_ARGUMENT, ToText(path) + ": " + error};
      case Tree::Outcome::NotFound:
        return {grpc::StatusCode::NOT_FOUND, error};
      case Tree::Outcome::Found:
        selection.Merge(one);
        break;
    }
  }
  return grpc::Status::OK;
}

void Notifications(const Snapshot& snapshot, const std::vector<Item>& items,
                   gnmi::Encoding encoding, std::int64_t timestamp, const NotificationSink& emit) {
  const Tree& tree = Tree::Instance();
  // One buffer per nesting level, reused from notification to notification.
  std::string notification;
  std::string update;
  std::string value;
  std::string path;
  const Instance* current = nullptr;
  const auto start = [&] {
    if (!notification.empty()) emit(notification);
    notification.clear();
    Wire::Field(notification, gnmi::Notification::kTimestampFieldNumber,
                static_cast<std::uint64_t>(timestamp));
  };
  for (const Item& item : items) {
    const Snapshot& owner = item.owner != nullptr ? *item.owner : snapshot;
    if (item.gone != nullptr) {
      start();
      path.clear();
      Wire::PathMessage(path, tree.InstancePath(item.gone->scope, item.gone->keys));
      Wire::Field(notification, gnmi::Notification::kDeleteFieldNumber, path);
      current = nullptr;
      continue;
    }
    const Snapshot::Entry& entry = item.entry != nullptr ? *item.entry : *item.removed;
    const Instance* instance = owner.instances[entry.instance];
    if (current == nullptr || current->scope != instance->scope ||
        current->keys != instance->keys) {
      start();
      const Path prefix = tree.Prefix(entry.leaf, instance->keys);
      if (!prefix.elems.empty()) {
        path.clear();
        Wire::PathMessage(path, prefix);
        Wire::Field(notification, gnmi::Notification::kPrefixFieldNumber, path);
      }
      current = instance;
    }
    if (item.entry == nullptr) {
      Wire::Field(notification, gnmi::Notification::kDeleteFieldNumber, RelativeWire(entry.leaf));
      continue;
    }
    value.clear();
    Wire::TypedValue(value, entry.value, encoding);
    update.clear();
    Wire::Field(update, gnmi::Update::kPathFieldNumber, RelativeWire(entry.leaf));
    Wire::Field(update, gnmi::Update::kValFieldNumber, value);
    Wire::Field(notification, gnmi::Notification::kUpdateFieldNumber, update);
  }
  if (!notification.empty()) emit(notification);
}

std::string GetAnswer(const Snapshot& snapshot, const Selection& selection, KindFilter filter,
                      gnmi::Encoding encoding) {
  const auto& leaves = Leaves();
  std::vector<Item> items;
  for (const auto& entry : snapshot.entries) {
    const Kind kind = leaves[entry.leaf].kind;
    if ((filter == KindFilter::Config && kind != Kind::Config) ||
        (filter == KindFilter::State && kind != Kind::State)) {
      continue;
    }
    if (selection.Matches(entry.leaf, snapshot.instances[entry.instance]->keys)) {
      items.push_back({&entry, nullptr, nullptr, nullptr});
    }
  }
  std::string answer;
  Notifications(snapshot, items, encoding, snapshot.timestamp,
                [&](const std::string& notification) {
                  Wire::Field(answer, gnmi::GetResponse::kNotificationFieldNumber, notification);
                });
  return answer;
}

}  // namespace Arq::Gnmi
