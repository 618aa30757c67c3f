#pragma once

#include <map>
#include <utility>
#include <vector>

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

// Converts a generated value, or every element of a list or every value of a
// map (keys kept), with Converter::FromGenerated, at any nesting depth.
template <typename Converter, typename Generated>
auto FromGeneratedAll(const Generated& item) -> decltype(Converter::FromGenerated(item)) {
  return Converter::FromGenerated(item);
}

template <typename Converter, typename Generated>
auto FromGeneratedAll(const std::vector<Generated>& items) {
  std::vector<decltype(FromGeneratedAll<Converter>(std::declval<const Generated&>()))> result;
  result.reserve(items.size());
  for (const auto& item : items) {
    result.push_back(FromGeneratedAll<Converter>(item));
  }
  return result;
}

template <typename Converter, typename Key, typename Generated>
auto FromGeneratedAll(const std::map<Key, Generated>& items) {
  std::map<Key, decltype(FromGeneratedAll<Converter>(std::declval<const Generated&>()))> result;
  for (const auto& [key, item] : items) {
    result.emplace_hint(result.end(), key, FromGeneratedAll<Converter>(item));
  }
  return result;
}

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
