#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Arq/Monitoring/IMonitoringCollector.h"
#include "Arq/Monitoring/SwitchSnapshot.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ConfigFile.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthCnt.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthStat.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpConfig.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/LldpInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/PTPConfig.h"

namespace Arq::Monitoring {

// A synthetic 24-port switch for Fake mode: 16 Ethernet interfaces (eth1 to
// eth16), two PRS pairs (prs1: eth17+eth18, prs2: eth19+eth20), two LAGs
// (lag1: eth21+eth22, lag2: eth23+eth24), a management VLAN interface, six
// LLDP neighbours announced as real TLV bytes, two PTP domains and a current
// configuration. Port rates swing around their means and one access port
// loses its link now and then; every counter is the exact integral of its
// port's rate since start-up, so successive reads are monotonic and agree with
// the rate columns.
class FakeMonitoringCollector : public IMonitoringCollector {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  FakeMonitoringCollector();
  // The same seed gives the same switch: rate swings and link flaps.
  explicit FakeMonitoringCollector(Clock clock, unsigned seed = 1);

  void Collect(OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s* values) override;
  std::shared_ptr<OrvoViaSwitch::Domain::Model::SwitchModel> TakeModel() override {
    return std::move(conversion_.model);
  }

  // The switch as seen `elapsed` after start-up.
  static SwitchSnapshot Snapshot(std::chrono::nanoseconds elapsed, unsigned seed = 1);

 private:
  Clock clock_;
  std::chrono::steady_clock::time_point start_;
  unsigned seed_ = 1;
  ConversionState conversion_;
};

}  // namespace Arq::Monitoring
