#pragma once

#include <cstdint>
#include <string>

#include "Arq/Monitoring/Model/InterfaceIndex.h"
#include "Arq/Monitoring/Model/Numbering.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Monitoring {

// Every number space of the views, each in a file of its own in one folder:
// the collection thread numbers each model once before it is published
// (Assign), so that every view (SNMP, gNMI, Prometheus) reads the same
// numbers from the model and none numbers a name of its own.
struct Numbers {
  // Bridge ports (dot1dBasePort): one per Ethernet interface's port and per
  // LAG and PRS interface, small since a PortList holds one bit per port.
  static const Numbering::Space kBridgePorts;
  // Port numbers: one per port served in IF-MIB, the RMON row of the port
  // (etherStatsIndex) and its LAG actor port (dot3adAggPortActorPort), both
  // 1..65535. A port whose ifIndex is by rule and fits is numbered by it, as
  // RMON rows are on most agents; any other port takes a number that no rule
  // gives (1 to 1000, then the thousands), kept in the space's file. Those are
  // 1,065 numbers, more than the ports a model holds; a port that finds none
  // (only after more than that many others were seen within the pruning
  // period) has no RMON row and no actor port.
  static const Numbering::Space kPortNumbers;

  // `folder` holds the files; empty keeps every number in memory only.
  explicit Numbers(const std::string& folder);

  // The port number of a port's name.
  long PortNumber(const std::string& name);

  // Ends the round of every space.
  void EndRound(std::int64_t nowUnixSeconds);

  // Numbers a model whole, as one round: the interfaces the interface views
  // serve (SwitchModel::servedPorts and servedAggregates), the ifIndex of
  // every port, LAG and PRS interface and neighbour's local port, the port
  // numbers of the served ports and the bridge ports of the Ethernet
  // interfaces' ports and of the LAG and PRS interfaces.
  void Assign(OrvoViaSwitch::Domain::Model::SwitchModel& model, std::int64_t nowUnixSeconds);

  InterfaceIndex ifIndex;
  Numbering bridgePorts;
  Numbering portNumbers;
};

}  // namespace Arq::Monitoring
