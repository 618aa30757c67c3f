#include "InterfaceIndex.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <cctype>
#include <cstdio>
#include <fstream>
#include <set>

namespace Arq::Snmp::Standard {
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

InterfaceIndex::InterfaceIndex(std::string path) : path(std::move(path)) {}

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
  if (!loaded) Load();
  const auto found = fallbacks.find(name);
  if (found != fallbacks.end()) return found->second;
  std::set<long> used;
  for (const auto& entry : fallbacks) used.insert(entry.second);
  long index = kFirstFallback;
  while (used.count(index) != 0) ++index;
  fallbacks.emplace(name, index);
  Save();
  return index;
}

void InterfaceIndex::Load() {
  loaded = true;
  if (path.empty()) return;
  std::ifstream file(path);
  long index = 0;
  std::string name;
  while (file >> index && file.get() == ' ' && std::getline(file, name)) {
    if (index >= kFirstFallback && !name.empty()) fallbacks.emplace(name, index);
  }
}

void InterfaceIndex::Save() const {
  if (path.empty()) return;
  // Written aside and renamed, so that a crash never leaves half a file.
  const std::string temporary = path + ".new";
  {
    std::ofstream file(temporary, std::ios::trunc);
    for (const auto& entry : fallbacks) file << entry.second << ' ' << entry.first << '\n';
    if (!file.flush()) {
      snmp_log(LOG_WARNING, "cannot write the ifIndex file %s\n", temporary.c_str());
      return;
    }
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    snmp_log(LOG_WARNING, "cannot write the ifIndex file %s\n", path.c_str());
  }
}

}  // namespace Arq::Snmp::Standard
