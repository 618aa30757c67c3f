// The inventory, VLAN and PTP views in-process: a hand-built switch model in,
// the rows of every table out, cell by cell in their SNMP types.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "Arq/Monitoring/Model/Numbers.h"
#include "Arq/TestSupport/TempDir.h"
#include "Standard/StandardViews.h"

namespace {

namespace Standard = Arq::Snmp::Standard;
namespace Model = Arq::OrvoViaSwitch::Domain::Model;
namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
using Rows = std::vector<std::string>;

struct Switch {
  Model::SwitchModel model;

  // Ports "<slot>/<first>" to "<slot>/<last>", main ports of `nbPhys`
  // sub-ports, or sub-ports after a main port when `nbPhys` is 0.
  Switch& Ports(int slot, int first, int last, int nbPhys = 1) {
    for (int n = first; n <= last; ++n) {
      Model::Port port;
      port.name = std::to_string(slot) + "/" + std::to_string(n);
      port.hasInfo = port.hasCounters = port.hasRates = true;
      port.isMainPhys = nbPhys != 0;
      port.nbPhys = nbPhys;
      model.ports.push_back(port);
    }
    return *this;
  }
  Switch& Interface(const std::string& name, Dto::IfType type, std::int16_t vid,
                    std::vector<std::int16_t> vlans, std::vector<std::string> members) {
    Model::Interface interface;
    interface.name = name, interface.type = type, interface.vid = vid;
    interface.vlans = std::move(vlans);
    interface.consistent = true;
    for (const auto& member : members) {
      for (std::size_t i = 0; i < model.ports.size(); ++i) {
        if (model.ports[i].name == member) interface.members.push_back(i);
      }
    }
    model.interfaces.push_back(interface);
    return *this;
  }
  Switch& Ptp(std::int32_t domain, Dto::PTPClockMode mode, std::vector<std::string> ports,
              std::vector<std::string> slaves, Dto::PTPPacketType type = Dto::PTPPacketType::UDP) {
    model.ptpDomains.push_back(
        {domain, type, mode, Dto::PTPProfile::SMPTE_2059, std::move(ports), std::move(slaves)});
    return *this;
  }
};

// A cell as "<type letter>:<value>": i INTEGER, u Unsigned32/Gauge32, c
// Counter32, t TimeTicks (0 or >0), o OBJECT IDENTIFIER, s text, x octets in
// hex (a PortList's one octet, a DateAndTime, anything not printable).
std::string Cell(const netsnmp_variable_list& var) {
  const std::map<u_char, std::string> numbers = {
      {ASN_INTEGER, "i:"}, {ASN_UNSIGNED, "u:"}, {ASN_COUNTER, "c:"}};
  if (numbers.count(var.type)) return numbers.at(var.type) + std::to_string(*var.val.integer);
  if (var.type == ASN_TIMETICKS) return *var.val.integer == 0 ? "t:0" : "t:>0";
  std::string text;
  for (std::size_t i = 0; var.type == ASN_OBJECT_ID && i < var.val_len / sizeof(oid); ++i) {
    text += (i ? "." : "") + std::to_string(var.val.objid[i]);
  }
  if (var.type == ASN_OBJECT_ID) return "o:" + text;
  const std::string octets(reinterpret_cast<const char*>(var.val.string), var.val_len);
  const bool binary = octets.size() == 1 || std::any_of(octets.begin(), octets.end(), [](char c) {
                        return c < 0x20 || c > 0x7e;
                      });
  for (const unsigned char c : octets) {
    char hex[3];
    std::snprintf(hex, sizeof hex, "%02x", c);
    text += binary ? hex : std::string(1, static_cast<char>(c));
  }
  return (binary ? "x:" : "s:") + text;
}

// Every view's rows as "<index> <column>=<cell> ...", by view name.
std::map<std::string, Rows> Walk(const Standard::StandardViews& views) {
  std::map<std::string, Rows> walked;
  for (const auto& view : views.Views()) {
    auto& rows = walked[view.name];
    for (std::size_t row = 0; row < view.table->Rows(); ++row) {
      std::string text;
      for (const oid arc : view.table->Index(row)) {
        text += (text.empty() ? "" : ".") + std::to_string(arc);
      }
      for (unsigned column = view.firstColumn; column <= view.lastColumn; ++column) {
        netsnmp_variable_list var{};
        if (!view.table->Answer(row, column, &var)) continue;
        text += " " + std::to_string(column) + "=" + Cell(var);
        snmp_free_var_internals(&var);
      }
      rows.push_back(text);
    }
  }
  return walked;
}

class EntityBridgePtpViewsTest : public testing::Test {
 protected:
  std::map<std::string, Rows> Project(const Switch& built) {
    auto model = std::make_shared<Model::SwitchModel>(built.model);
    numbers.Assign(*model, 0);
    store.Publish(model);
    views.Refresh();
    return Walk(views);
  }

  Arq::TestSupport::TempDir dir;
  Arq::Monitoring::Numbers numbers{dir.Path()};
  Model::SwitchModelStore store;
  Standard::StandardViews views{store};
};

// The small scenario's switch: two Ethernet interfaces, a PRS pair, a LAG of
// three, a hardware port of four sub-ports whose first is listed, one PTP
// boundary clock; every table cell by cell.
TEST_F(EntityBridgePtpViewsTest, SmallSwitchGivesItsWholeInventoryVlansAndClock) {
  Switch small;
  small.Ports(1, 1, 1, 4).Ports(1, 2, 2).Ports(2, 1, 2).Ports(3, 1, 3);
  small.Interface("eth1", Dto::IfType::Ethernet, 100, {100, 110}, {"1/1"})
      .Interface("eth2", Dto::IfType::Ethernet, 200, {200}, {"1/2"})
      .Interface("prs1", Dto::IfType::BasicPrs, 300, {300}, {"2/1", "2/2"})
      .Interface("lag1", Dto::IfType::BasicLag, 400, {10, 20, 400}, {"3/1", "3/2", "3/3"})
      .Ptp(0, Dto::PTPClockMode::Boundary, {"1/1", "2/1"}, {"1/1"});
  small.model.lldpLocal.systemName = "orvo-sim-small";
  auto& local = small.model.lldpLocal;
  local.systemDescription = "OrvoVia Switch; SIM-0001; 4.1.0";
  local.deviceType = "OrvoVia Switch", local.serialNumber = "SIM-0001", local.version = "4.1.0";
  auto walked = Project(small);

  const std::string unknown = " 8=s: 9=s: ";
  const std::string tail = " 14=s: 15=s: 16=i:2 17=x:0000000000000000 18=s:";
  const auto port = [&](const std::string& index, const std::string& in, const std::string& pos,
                        const std::string& name) {
    return index + " 2=s:Ethernet port " + name + " 3=o:0.0 4=i:" + in + " 5=i:10 6=i:" + pos +
           " 7=s:" + name + unknown + "10=s: 11=s: 12=s: 13=s:" + tail;
  };
  EXPECT_EQ(walked["entPhysicalTable"],
            (Rows{"1 2=s:OrvoVia Switch; SIM-0001; 4.1.0 3=o:0.0 4=i:0 5=i:3 6=i:-1 "
                  "7=s:orvo-sim-small" +
                      unknown +
                      "10=s:4.1.0 11=s:SIM-0001 12=s:OrvoVia Switch "
                      "13=s:OrvoVia Switch" +
                      tail,
                  port("1001", "1000001001", "1", "1/1"), port("1002", "1", "1002", "1/2"),
                  port("2001", "1", "2001", "2/1"), port("2002", "1", "2002", "2/2"),
                  port("3001", "1", "3001", "3/1"), port("3002", "1", "3002", "3/2"),
                  port("3003", "1", "3003", "3/3"),
                  "1000001001 2=s:Hardware port of 4 sub-ports 3=o:0.0 4=i:1 5=i:5 6=i:1001 "
                  "7=s:1/1 hardware port" +
                      unknown + "10=s: 11=s: 12=s: 13=s:" + tail}));
  Rows aliases, contains;
  for (const std::string n : {"1001", "1002", "2001", "2002", "3001", "3002", "3003"}) {
    aliases.push_back(n + ".0 2=o:1.3.6.1.2.1.2.2.1.1." + n);
    if (n != "1001") contains.push_back("1." + n + " 1=i:" + n);
  }
  contains.insert(contains.end(), {"1.1000001001 1=i:1000001001", "1000001001.1001 1=i:1001"});
  EXPECT_EQ(walked["entAliasMappingTable"], aliases);
  EXPECT_EQ(walked["entPhysicalContainsTable"], contains);
  EXPECT_EQ(walked["entLastChangeTime"], Rows{"0 1=t:0"});

  // Bridge ports 1 to 4 in ifIndex order: 1/1, 1/2, lag1, prs1.
  EXPECT_EQ(walked["dot1dBaseNumPorts"], Rows{"0 2=i:4"});
  EXPECT_EQ(walked["dot1dBasePortTable"], (Rows{"1 1=i:1 2=i:1001", "2 1=i:2 2=i:1002",
                                                "3 1=i:3 2=i:100001", "4 1=i:4 2=i:200001"}));
  EXPECT_EQ(walked["dot1qPortVlanTable"],
            (Rows{"1 1=u:100", "2 1=u:200", "3 1=u:400", "4 1=u:300"}));
  EXPECT_EQ(walked["dot1qBase"], Rows{"0 1=i:1 2=i:4094 4=u:7"});
  EXPECT_EQ(
      walked["dot1qVlanCurrentTable"],
      (Rows{"0.10 4=x:20 5=x:00 6=i:2", "0.20 4=x:20 5=x:00 6=i:2", "0.100 4=x:80 5=x:80 6=i:2",
            "0.110 4=x:80 5=x:00 6=i:2", "0.200 4=x:40 5=x:40 6=i:2", "0.300 4=x:10 5=x:10 6=i:2",
            "0.400 4=x:20 5=x:20 6=i:2"}));
  EXPECT_EQ(walked["dot1qVlanStaticTable"][2], "100 2=x:80 4=x:80 5=i:1");

  // One boundary clock (type 2, instance 1) of two ports, 1/1 its slave.
  EXPECT_EQ(walked["ptpbaseSystemTable"], Rows{"0.1 3=u:2"});
  EXPECT_EQ(walked["ptpbaseSystemDomainTable"], Rows{"2 2=u:1"});
  EXPECT_EQ(walked["ptpbaseSystemProfile"], Rows{"0 3=i:3"});
  EXPECT_EQ(walked["ptpbaseClockDefaultDSTable"], Rows{"0.2.1 8=i:2"});
  EXPECT_EQ(walked["ptpbaseClockTransDefaultDSTable"], Rows{});
  EXPECT_EQ(walked["ptpbaseClockPortTable"],
            (Rows{"0.2.1.1 5=s:1/1 6=i:2", "0.2.1.2 5=s:2/1 6=i:1"}));
  EXPECT_EQ(walked["ptpbaseClockPortRunningTable"],
            (Rows{"0.2.1.1 5=s:1/1 7=i:2 8=i:1001 9=o:1.3.6.1.2.1.241.1.2.12.1",
                  "0.2.1.2 5=s:2/1 7=i:1 8=i:2001 9=o:1.3.6.1.2.1.241.1.2.12.1"}));
}

// Sub-ports after their main port, one too many in the chassis; PTP domains
// of every clock mode, two in one domain, and those the MIB cannot express
// (numbers beyond 0-255, unknown modes, packet types not known to run).
TEST_F(EntityBridgePtpViewsTest, SubPortsAndPtpDomainsOfEveryKind) {
  using Mode = Dto::PTPClockMode;
  Switch built;
  built.Ports(4, 1, 1, 2).Ports(4, 2, 3, 0);
  // A port no interface lists, named outside the ifIndex rule.
  built.model.ports.emplace_back().name = "xe-9";
  built.Ptp(0, Mode::Boundary, {"4/1", "4/2"}, {"4/1"})
      .Ptp(1, Mode::Transparent, {"1/5", "1/6", "1/7"}, {"1/5"}, Dto::PTPPacketType::IEEE)
      .Ptp(3, Mode::Slave, {"1/13"}, {"1/13"})
      .Ptp(0, Mode::Master, {"1/18"}, {})
      .Ptp(256, Mode::Slave, {"1/20"}, {"1/20"})
      .Ptp(-1, Mode::Master, {"1/21"}, {})
      .Ptp(5, Mode::Boundary, {"1/22"}, {}, Dto::PTPPacketType::Disabled)
      .Ptp(127, Mode::Transparent, {"9/99"}, {}, Dto::PTPPacketType::Unknown);
  auto walked = Project(built);
  Rows tree;
  static const std::regex cells(R"(^(\d+) .* 4=i:(\d+) 5=i:(\d+) 6=i:(-?\d+) )");
  for (const auto& row : walked["entPhysicalTable"]) {
    std::smatch m;
    ASSERT_TRUE(std::regex_search(row, m, cells)) << row;
    tree.push_back(m[1].str() + " in " + m[2].str() + " class " + m[3].str() + " at " + m[4].str());
  }
  EXPECT_EQ(tree, (Rows{"1 in 0 class 3 at -1", "4001 in 1000004001 class 10 at 1",
                        "4002 in 1000004001 class 10 at 2", "4003 in 1 class 10 at 4003",
                        "1000000 in 1 class 10 at 1000000", "1000004001 in 1 class 5 at 4001"}));
  // Numbered within the round, before the views: the file has it already.
  EXPECT_NE(Arq::TestSupport::ReadFile(dir.File("orvovia-ifindex.conf")).find("\n1000000 xe-9 "),
            std::string::npos);
  EXPECT_EQ(walked["entAliasMappingTable"], Rows{});  // no interface: IF-MIB serves none
  EXPECT_EQ(walked["ptpbaseSystemTable"],
            (Rows{"0.1 3=u:2", "0.2 3=u:1", "1.1 3=u:3", "3.1 3=u:1"}));
  EXPECT_EQ(walked["ptpbaseSystemDomainTable"], (Rows{"1 2=u:2", "2 2=u:1", "3 2=u:1"}));
  EXPECT_EQ(walked["ptpbaseClockDefaultDSTable"],
            (Rows{"0.1.2 8=i:2", "0.2.1 8=i:2", "3.1.1 8=i:1"}));
  EXPECT_EQ(walked["ptpbaseClockTransDefaultDSTable"], Rows{"1.1 4=c:3"});
  EXPECT_EQ(walked["ptpbaseClockPortRunningTable"],
            (Rows{"0.1.2.1 5=s:1/18 7=i:1 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.1",
                  "0.2.1.1 5=s:4/1 7=i:2 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.1",
                  "0.2.1.2 5=s:4/2 7=i:1 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.1",
                  "1.3.1.1 5=s:1/5 7=i:2 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.3",
                  "1.3.1.2 5=s:1/6 7=i:1 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.3",
                  "1.3.1.3 5=s:1/7 7=i:1 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.3",
                  "3.1.1.1 5=s:1/13 7=i:2 8=i:0 9=o:1.3.6.1.2.1.241.1.2.12.1"}));
  EXPECT_EQ(walked["ptpbaseClockPortTable"].size(), 7u);

  Switch none;
  none.Ptp(300, Mode::Slave, {"1/1"}, {})
      .Ptp(127, Mode::Transparent, {"9/99"}, {}, Dto::PTPPacketType::Unknown);
  walked = Project(none);
  for (const auto& view : views.ptpBase.Views()) {
    EXPECT_EQ(walked[view.name], view.group ? Rows{"0"} : Rows{}) << view.name;
  }
}

}  // namespace
