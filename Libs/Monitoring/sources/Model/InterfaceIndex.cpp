#include "Arq/Monitoring/Model/InterfaceIndex.h"

#include <cctype>
#include <utility>

namespace Arq::Monitoring {
namespace {

// A decimal number from `low` to `high` without leading zeros, or 0.
long Number(const std::string& text, long low, long high) {
  if (text.empty() || text.size() > 6 || text[0] == '0') return 0;
  long value = 0;
  for (const char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return 0;
    value = value * 10 + (c - '0');
  }
  return value >= low && value <= high ? value : 0;
}

long Prefixed(const std::string& name, const char* prefix, long base) {
  const std::string head = name.substr(0, 3);
  std::string lower;
  for (const char c : head) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lower != prefix) return 0;
  const long n = Number(name.substr(3), 1, 999);
  return n == 0 ? 0 : base + n;
}

}  // namespace

InterfaceIndex::InterfaceIndex(std::string path)
    : fallbacks(kSpace, std::move(path),
                [](const std::string& name) { return FromRule(name) != 0; }) {}

long InterfaceIndex::FromRule(const std::string& name) {
  const auto slash = name.find('/');
  if (slash != std::string::npos) {
    const long slot = Number(name.substr(0, slash), 1, 99);
    const long port = Number(name.substr(slash + 1), 1, 999);
    return slot != 0 && port != 0 ? slot * 1000 + port : 0;
  }
  if (const long lag = Prefixed(name, "lag", 100000)) return lag;
  return Prefixed(name, "prs", 200000);
}

long InterfaceIndex::Of(const std::string& name) {
  if (const long index = FromRule(name)) return index;
  return fallbacks.Of(name);
}

void InterfaceIndex::EndRound(std::int64_t nowUnixSeconds) {
  fallbacks.EndRound(nowUnixSeconds);
}

}  // namespace Arq::Monitoring
