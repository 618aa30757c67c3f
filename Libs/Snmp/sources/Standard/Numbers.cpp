#include "Numbers.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

namespace Arq::Snmp::Standard {
namespace {

std::string In(const std::string& folder, const char* file) {
  return folder.empty() ? std::string() : folder + "/" + file;
}

// Bridge ports were once kept in a file of ifIndex form, their names prefixed
// "bridge port " and numbered from the ifIndex fallbacks' first value: such a
// file is read once and written again in the space's own form.
const std::string& IfIndexHeader() {
  static const std::string header = Numbering::Header(InterfaceIndex::kSpace.tag);
  return header;
}

// A port number that the ifIndex rule may give a port: slot * 1000 + port.
bool RuledPortNumber(long number) {
  return number > 1000 && number % 1000 != 0;
}

long PortRule(const std::string& name) {
  const long ifIndex = InterfaceIndex::FromRule(name);
  return ifIndex <= Numbers::kPortNumbers.last ? ifIndex : 0;
}

}  // namespace

const Numbering::Space Numbers::kBridgePorts{
    "bridge-ports", "bridge port", 1, 65535,
    Numbering::Legacy{IfIndexHeader(), "bridge port ", InterfaceIndex::kFirstFallback}};
const Numbering::Space Numbers::kPortNumbers{"port-numbers", "port number", 1, 65535, {},
                                             RuledPortNumber};

Numbers::Numbers(const std::string& folder)
    : ifIndex(In(folder, "orvovia-ifindex.conf")),
      bridgePorts(kBridgePorts, In(folder, "orvovia-bridge-ports.conf")),
      portNumbers(kPortNumbers, In(folder, "orvovia-port-numbers.conf"),
                  [](const std::string& name) { return PortRule(name) != 0; }) {}

long Numbers::PortNumber(const std::string& name) {
  const long ruled = PortRule(name);
  return ruled != 0 ? ruled : portNumbers.Of(name);
}

void Numbers::EndRound(std::int64_t nowUnixSeconds) {
  ifIndex.EndRound(nowUnixSeconds);
  bridgePorts.EndRound(nowUnixSeconds);
  portNumbers.EndRound(nowUnixSeconds);
}

Numbers& SharedNumbers() {
  static Numbers numbers(get_persistent_directory());
  return numbers;
}

}  // namespace Arq::Snmp::Standard
