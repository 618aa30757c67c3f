#pragma once

#include <map>
#include <utility>
#include <vector>

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

// A fixed two-way table between a domain enum and a generated (wire) enum.
// A value that the table does not hold converts to 0 of the other enum.
template <typename DomainEnum, typename GeneratedEnum>
class EnumAssociation {
 public:
  using Pair = std::pair<DomainEnum, GeneratedEnum>;

  explicit EnumAssociation(const std::vector<Pair>& pairs) {
    for (const auto& [domain, generated] : pairs) {
      toGenerated.emplace(domain, generated);
      fromGenerated.emplace(generated, domain);
    }
  }

  // Pairs of equal numbers for every value of first..last, both included.
  static std::vector<Pair> EqualRange(int first, int last) {
    std::vector<Pair> pairs;
    for (int value = first; value <= last; ++value) {
      pairs.emplace_back(static_cast<DomainEnum>(value), static_cast<GeneratedEnum>(value));
    }
    return pairs;
  }

  GeneratedEnum ToGenerated(DomainEnum value) const {
    const auto found = toGenerated.find(value);
    return found == toGenerated.end() ? static_cast<GeneratedEnum>(0) : found->second;
  }

  // Whether the table holds the wire value.
  bool Defines(GeneratedEnum value) const { return fromGenerated.count(value) != 0; }

  DomainEnum FromGenerated(GeneratedEnum value) const {
    const auto found = fromGenerated.find(value);
    return found == fromGenerated.end() ? static_cast<DomainEnum>(0) : found->second;
  }

 private:
  std::map<DomainEnum, GeneratedEnum> toGenerated;
  std::map<GeneratedEnum, DomainEnum> fromGenerated;
};

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
