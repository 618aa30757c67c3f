#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/Dto/EthCounters.h"
#include "Arq/OrvoViaSwitchService/Simulator/ServerData.h"

namespace Arq::OrvoViaSwitchService::Simulator {

// A scenario that cannot be used. what() names the file, the place in it
// ("interfaces[2].type") and the problem.
class ScenarioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A switch described by a JSON scenario file: interfaces of each type with
// their member ports; ports with their settings, counters (initial values)
// and rates (bits/s); the LLDP configuration and neighbours (served as
// 802.1AB TLV bytes); PTP records; the current configuration and the
// configuration files; the main MAC address; the hardware descriptions; the
// management service's answers. A port's counters grow at its rates between
// calls: the octet counters by rate / 8 per second, the unicast frame
// counters by that divided by the port's average frame size, any counter by
// its own "growth" per second where one is given. Anything a scenario marks
// "missing" is left out of the answer it names, to play an inconsistent
// switch. The file format is described in doc/DEVELOPMENT.md.
class Scenario {
 public:
  static constexpr std::size_t kCounters = OrvoViaSwitch::Domain::Dto::kEthCounterCount;

  // Throws ScenarioError.
  static Scenario Load(const std::string& path);
  // `origin` names the text in error messages.
  static Scenario Parse(const std::string& text, const std::string& origin);

  // The switch's answers `elapsed` after the start: every counter is its
  // initial value plus its growth per second times the elapsed time, in
  // whole units (rounded down). The same elapsed time gives the same answers.
  ServerData At(std::chrono::milliseconds elapsed) const;

 private:
  // The growth per second of the counters of one record of the counters
  // answer (interface name, place in its list), in the record's order.
  struct RecordGrowth {
    std::string interfaceName;
    std::size_t index = 0;
    std::array<std::int64_t, kCounters> perSecond{};
  };

  ServerData start;
  std::vector<RecordGrowth> growth;

  friend class ScenarioReader;
};

}  // namespace Arq::OrvoViaSwitchService::Simulator
