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

void SetValue(const Value& value, gnmi::Encoding encoding, gnmi::TypedValue* out) {
  if (encoding == gnmi::JSON_IETF) {
    out->set_json_ietf_val(value.JsonIetf());
    return;
  }
  switch (value.type) {
    case Value::Type::Uint64:
    case Value::Type::Uint32:
      out->set_uint_val(value.number);
      break;
    case Value::Type::Int64:
      out->set_int_val(static_cast<std::int64_t>(value.number));
      break;
    case Value::Type::Bool:
      out->set_bool_val(value.number != 0);
      break;
    case Value::Type::StringList:
      for (const auto& item : value.items) {
        out->mutable_leaflist_val()->add_element()->set_string_val(item);
      }
      break;
    default:
      out->set_string_val(value.text);
      break;
  }
}

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
                   gnmi::Encoding encoding, std::int64_t timestamp,
                   google::protobuf::RepeatedPtrField<gnmi::Notification>& out) {
  const Tree& tree = Tree::Instance();
  const Instance* current = nullptr;
  for (const Item& item : items) {
    const Snapshot& owner = item.owner != nullptr ? *item.owner : snapshot;
    if (item.gone != nullptr) {
      gnmi::Notification* n = out.Add();
      n->set_timestamp(timestamp);
      ToProto(tree.InstancePath(item.gone->scope, item.gone->keys), n->add_delete_());
      current = nullptr;
      continue;
    }
    const Snapshot::Entry& entry = item.entry != nullptr ? *item.entry : *item.removed;
    const Instance* instance = owner.instances[entry.instance];
    if (current == nullptr || current->scope != instance->scope ||
        current->keys != instance->keys) {
      gnmi::Notification* n = out.Add();
      n->set_timestamp(timestamp);
      const Path prefix = tree.Prefix(entry.leaf, instance->keys);
      if (!prefix.elems.empty()) ToProto(prefix, n->mutable_prefix());
      current = instance;
    }
    if (item.entry != nullptr) {
      auto* update = out.Mutable(out.size() - 1)->add_update();
      ToProto(tree.Relative(entry.leaf), update->mutable_path());
      SetValue(entry.value, encoding, update->mutable_val());
    } else {
      ToProto(tree.Relative(entry.leaf), out.Mutable(out.size() - 1)->add_delete_());
    }
  }
}

void GetAnswer(const Snapshot& snapshot, const Selection& selection, KindFilter filter,
               gnmi::Encoding encoding, gnmi::GetResponse& response) {
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
  Notifications(snapshot, items, encoding, snapshot.timestamp, *response.mutable_notification());
}

}  // namespace Arq::Gnmi
