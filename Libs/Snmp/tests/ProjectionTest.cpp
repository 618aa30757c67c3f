#include <gtest/gtest.h>
#include <net-snmp/agent/agent_callbacks.h>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arq/Monitoring/MetricConverter/LldpTlv.h"
#include "Arq/Monitoring/Model/LldpNeighbourDecoder.h"
#include "Arq/Monitoring/Model/Numbers.h"
#include "Arq/Monitoring/SwitchSnapshot.h"
#include "Arq/TestSupport/Process.h"
#include "Modules.h"
#include "Standard/StandardViews.h"

// The standard views as pure functions of a switch model, in-process and with
// no snmpd: a hand-built model is projected, and the cells of the registered
// tables are read exactly as a request reads them.
namespace {

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace Model = Arq::OrvoViaSwitch::Domain::Model;
namespace Standard = Arq::Snmp::Standard;

class ProjectionTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    init_agent("arq-projection-test");
  }

  void Project(Model::SwitchModel model) {
    numbers.Assign(model, 0);
    store.Publish(std::make_shared<Model::SwitchModel>(std::move(model)));
    views.Refresh();
  }

  // The cell "<column>.<index arcs>" of a view as snmpwalk prints it, or
  // "absent".
  std::string Cell(const std::string& view, const std::string& cell) const {
    const auto* registered = views.Find(view);
    if (registered == nullptr) return "no view " + view;
    for (unsigned column = registered->firstColumn; column <= registered->lastColumn; ++column) {
      for (std::size_t row = 0; row < registered->table->Rows(); ++row) {
        std::string name = std::to_string(column);
        for (const oid arc : registered->table->Index(row)) name += "." + std::to_string(arc);
        if (name != cell) continue;
        netsnmp_variable_list var{};
        if (!registered->table->Answer(row, column, &var)) return "absent";
        const std::string text = Render(var);
        snmp_free_var_internals(&var);
        return text;
      }
    }
    return "absent";
  }

  using Views = std::map<std::string, std::map<std::string, std::string>>;
  void ExpectCells(const Views& expected) const {
    for (const auto& [view, cells] : expected) {
      for (const auto& [cell, value] : cells) EXPECT_EQ(Cell(view, cell), value) << view << cell;
    }
  }

  static std::string Render(const netsnmp_variable_list& var) {
    char text[1024];
    const oid name[] = {0};
    snprint_value(text, sizeof text, name, 1, &var);
    return text;
  }

  Arq::Monitoring::Numbers numbers{""};
  Model::SwitchModelStore store;
  Standard::StandardViews views{store};
};

Model::Port Port(const std::string& name, Dto::EthSpeed speed, Model::LinkState link,
                 std::uint64_t octets) {
  Model::Port port;
  port.name = name;
  port.speed = speed;
  port.link = link;
  port.counters[Dto::EthCounterIndex::NbOfGoodOctetsReceived] = octets;
  port.counters[Dto::EthCounterIndex::NbOfCrcErrorEvents] = 1;
  port.hasInfo = port.hasCounters = port.hasRates = true;
  return port;
}

Model::Interface Interface(const std::string& name, Dto::IfType type,
                           std::vector<std::size_t> members, Model::LinkState link,
                           Dto::IfStatus status = Dto::IfStatus::Enabled) {
  Model::Interface interface;
  interface.name = name;
  interface.type = type;
  interface.status = status;
  interface.members = std::move(members);
  interface.consistent = true;
  interface.link = link;
  interface.description = name + " described";
  interface.mac = Model::MacAddress{0x02, 0xa0, 0xc9, 0, 0, static_cast<std::uint8_t>(name.size())};
  return interface;
}

// eth1 over 1/1 (listed again in lag1, where its row is not repeated), lag1
// over 1/1, 1/2 (both up) and 1/3 (down), prs1 over 2/1 and 2/2, eth9
// disabled, and an interface whose data did not hold together.
Model::SwitchModel Switch() {
  using L = Model::LinkState;
  Model::SwitchModel model;
  model.ports = {Port("1/1", Dto::EthSpeed::S10G, L::Up, 100),
                 Port("1/2", Dto::EthSpeed::S25G, L::Up, 200),
                 Port("1/3", Dto::EthSpeed::S10G, L::Down, 300),
                 Port("2/1", Dto::EthSpeed::S1G, L::Up, 400),
                 Port("2/2", Dto::EthSpeed::S10G, L::Up, 500),
                 Port("1/9", Dto::EthSpeed::S10G, L::Down, 600),
                 Port("1/7", Dto::EthSpeed::S10G, L::Up, 700)};
  model.interfaces = {
      Interface("eth1", Dto::IfType::Ethernet, {0}, L::Up),
      Interface("lag1", Dto::IfType::BasicLag, {0, 1, 2}, L::Up),
      Interface("prs1", Dto::IfType::BasicPrs, {3, 4}, L::Up),
      Interface("eth9", Dto::IfType::Ethernet, {5}, L::Down, Dto::IfStatus::Disabled),
      Interface("broken", Dto::IfType::Ethernet, {6}, L::Up)};
  model.interfaces.back().consistent = false;
  return model;
}

TEST_F(ProjectionTest, InterfaceViewsServeEveryConsistentInterfaceOnce) {
  Project(Switch());
  // clang-format off
  const Views expected{
      {"ifTable",
       {{"1.1001", "INTEGER: 1001"}, {"2.1001", "STRING: \"eth1\""},
        {"2.1002", "STRING: \"lag1 port 1/2\""}, {"2.200001", "STRING: \"prs1\""},
        {"3.1001", "INTEGER: 6"}, {"3.100001", "INTEGER: 161"}, {"3.200001", "INTEGER: 53"},
        {"6.1001", "Hex-STRING: 02 A0 C9 00 00 04 "}, {"6.1002", "\"\""},
        {"7.1009", "INTEGER: 2"}, {"8.1009", "INTEGER: 2"}, {"8.1003", "INTEGER: 2"},
        {"8.100001", "INTEGER: 1"}, {"5.100001", "Gauge32: 4294967295"},
        {"10.100001", "Counter32: 600"}, {"14.1001", "Counter32: 1"},
        {"14.100001", "Counter32: 3"}, {"1.1007", "absent"}}},
      {"ifXTable",
       {{"1.1002", "STRING: \"1/2\""}, {"15.100001", "Gauge32: 35000"},
        {"15.200001", "Gauge32: 10000"}, {"6.200001", "Counter64: 900"},
        {"17.1001", "INTEGER: 1"}, {"17.100001", "INTEGER: 2"},
        {"18.1001", "STRING: \"eth1 described\""}, {"18.1002", "\"\""}}},
      {"ifStackTable",
       {{"3.100001.1001", "INTEGER: 1"}, {"3.100001.1003", "INTEGER: 1"},
        {"3.200001.2002", "INTEGER: 1"}, {"3.0.1009", "INTEGER: 1"}, {"3.1009.0", "INTEGER: 1"},
        {"3.0.100001", "INTEGER: 1"}, {"3.0.1001", "absent"}, {"3.100001.0", "absent"}}},
      {"lldpLocPortTable",
       {{"3.1002", "STRING: \"1/2\""}, {"4.1001", "STRING: \"eth1 described\""},
        {"4.2001", "STRING: \"prs1 port 2/1\""}, {"3.100001", "absent"}}}};
  // clang-format on
  ExpectCells(expected);
  EXPECT_EQ(views.ifMib.ifTable.Rows(), 8u);
}

// Texts a neighbour chooses are cut to the MIB's sizes, at the start of a
// UTF-8 character when the cut would split one (a neighbour's 511-byte texts
// and identifiers SNMP cannot carry are served through snmpd by the system
// test).
TEST(TruncateTest, CutsAtTheSizeOrAtTheStartOfTheCharacterItWouldSplit) {
  const std::string e = "\xc3\xa9";  // é, two bytes
  const std::vector<std::pair<std::string, std::string>> cases{
      {std::string(255, 'a'), std::string(255, 'a')},
      {std::string(300, 'a'), std::string(255, 'a')},
      {std::string(254, 'a') + e + "x", std::string(254, 'a')},
      {std::string(253, 'a') + e + "x", std::string(253, 'a') + e},
      {std::string(300, '\xa9'), std::string(255, '\xa9')}};  // no character start: cut as bytes
  for (const auto& [text, cut] : cases) EXPECT_EQ(Standard::Truncate(text), cut) << text.size();
}

// The port counter, LAG and address views (PortCounterObjects.def) of the
// switch above: 1/1 KR4 with counter c at 1000 + c (CRC errors and 64-octet
// frames beyond 32 bits), 1/2 SGMII having sent half-duplex frames, 2/1 SGMII
// without, 1/3 down; a port 70/1 whose ifIndex is beyond 16 bits; the
// management address on eth1. A port's RMON row and LAG actor port are its
// ifIndex where that fits in 16 bits, else a number no ifIndex rule gives:
// 70/1 is 1.
TEST_F(ProjectionTest, PortCountersLagMembershipAndManagementAddressAreProjected) {
  using Index = Dto::EthCounterIndex;
  auto model = Switch();
  auto& counters = model.ports[0].counters;
  for (std::size_t c = 0; c < counters.size(); ++c) counters[c] = 1000 + c;
  counters[Index::NbOfCrcErrorEvents] = (std::uint64_t{1} << 32) + 5;
  counters[Index::NbOfGoodPackets64Bytes] = (std::uint64_t{3} << 32) + 9;
  model.ports[0].mode = Dto::EthMode::KR4;
  model.ports[1].mode = model.ports[3].mode = Dto::EthMode::SGMII;
  model.ports[1].counters[Index::NbOfValidFrameSentHalfDupWithCollision] = 4;
  model.ports.push_back(Port("70/1", Dto::EthSpeed::S10G, Model::LinkState::Up, 0));
  model.interfaces.push_back(Interface("eth70", Dto::IfType::Ethernet, {7}, Model::LinkState::Up));
  model.interfaces[0].ipv4 = model.lldpLocal.managementIpv4 =
      std::array<std::uint8_t, 4>{10, 0, 0, 2};
  model.lldpLocal.mainMac = Model::MacAddress{0x02, 0, 0, 0, 0, 0x01};
  Project(model);
  // clang-format off
  ExpectCells({
      {"dot3StatsTable",
       {{"1.1001", "INTEGER: 1001"}, {"2.1001", "Counter32: 0"} /* not kept */,
        {"3.1001", "Counter32: 5"} /* the low 32 bits */, {"9.1001", "Counter32: 1012"},
        {"17.1001", "absent"}, {"19.1001", "INTEGER: 3"}, {"19.1002", "INTEGER: 2"},
        {"19.2001", "INTEGER: 3"}, {"19.1003", "INTEGER: 1"}, {"1.1007", "absent"}}},
      {"dot3HCStatsTable", {{"2.1001", "Counter64: 4294967301"}}},
      {"dot3PauseTable", {{"5.1001", "Counter64: 1016"}}},
      {"etherStatsTable",
       {{"1.1001", "INTEGER: 1001"}, {"2.1001", "OID: iso.3.6.1.2.1.2.2.1.1.1001"},
        {"4.1001", "Counter32: 2001"}, {"5.1001", "Counter32: 7116"},
        {"20.1001", "STRING: \"monitor\""}, {"1.1", "INTEGER: 1"},
        {"2.1", "OID: iso.3.6.1.2.1.2.2.1.1.70001"}, {"1.70001", "absent"}}},
      {"etherStatsHighCapacityTable", {{"1.1001", "Counter32: 1"}, {"5.1001", "Counter32: 3"}}},
      {"dot3adAggTable",
       {{"2.100001", "Hex-STRING: 02 A0 C9 00 00 04 "},
        {"4.100001", "Hex-STRING: 02 00 00 00 00 01 "}, {"3.100001", "absent"}}},
      {"dot3adAggPortTable",
       {{"12.1001", "INTEGER: 100001"}, {"13.1003", "INTEGER: 0"}, {"13.1002", "INTEGER: 100001"},
        {"12.2001", "INTEGER: 0"}, {"24.2001", "INTEGER: 2"}, {"14.1002", "INTEGER: 1002"},
        {"14.70001", "INTEGER: 1"}}},
      {"lldpLocManAddrTable", {{"4.1.4.10.0.0.2", "INTEGER: 2"}, {"5.1.4.10.0.0.2", "INTEGER: 1001"}}}});
  // clang-format on
  // lag1's ports as a PortList of actor ports: bits 1001 to 1003.
  netsnmp_variable_list var{};
  ASSERT_TRUE(views.portCounters.dot3adAggPortListTable.Answer(0, 1, &var));
  EXPECT_EQ(std::string(reinterpret_cast<char*>(var.val.string), var.val_len),
            std::string(125, '\0') + "\xe0");
  snmp_free_var_internals(&var);
  EXPECT_EQ(views.portCounters.dot3StatsTable.Rows(), 7u);
  EXPECT_EQ(views.portCounters.etherStatsTable.Rows(), 7u);
}

// The notifications in-process, as the sub-agent hands them to the master:
// the third unreachable collection in a row sends one unreachable
// notification, its error text cut to 255 octets at the start of the
// character the cut would split; a success sends one recovered.
std::vector<std::vector<std::string>> sentNotifications;

int CaptureNotification(int, int, void* pdu, void*) {
  auto& sent = sentNotifications.emplace_back();
  for (auto* var = static_cast<netsnmp_pdu*>(pdu)->variables; var; var = var->next_variable) {
    char text[1024];
    snprint_value(text, sizeof text, var->name, var->name_length, var);
    sent.push_back(text);
  }
  return SNMP_ERR_NOERROR;
}

TEST_F(ProjectionTest, CollectorNotificationsFollowTheHealthOfEachCollection) {
  using State = Arq::OrvoViaSwitch::Domain::Dto::Metrics::CollectorState;
  snmp_register_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_SEND_TRAP2, CaptureNotification,
                         nullptr);
  Arq::Snmp::init_arqSwitchOrvoViaNotifications(views);
  const std::string e = "\xc3\xa9";  // é, two bytes: the 255th and 256th
  const State states[] = {State::Unreachable, State::Unreachable, State::Unreachable,
                          State::Unreachable, State::Ok};
  std::int64_t unreachable = 0;
  for (std::size_t n = 0; n < std::size(states); ++n) {
    auto model = std::make_shared<Model::SwitchModel>();
    auto& health = model->collection.health;
    health.state = states[n];
    health.collections = static_cast<std::int64_t>(n) + 1;
    health.consecutiveUnreachable = unreachable = states[n] == State::Ok ? 0 : unreachable + 1;
    health.lastError = std::string(254, 'a') + e + "x";
    store.Publish(model);
    const auto before = sentNotifications.size();
    // The agent's alarm looks for a new model once a second.
    Arq::TestSupport::WaitUntil(
        [&] {
          run_alarms();
          return sentNotifications.size() != before;
        },
        std::chrono::milliseconds(1500));
  }
  snmp_unregister_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_SEND_TRAP2,
                           CaptureNotification, nullptr, 0);
  // sysUpTime.0, snmpTrapOID.0, the collector's state and its last error.
  const std::string trap =
      "OID: iso.3.6.1.4.1." + std::to_string(ARQ_ENTERPRISE_NUMBER) + ".3.5.1.8.0.";
  const std::string cut = "STRING: \"" + std::string(254, 'a') + "\"";
  ASSERT_EQ(sentNotifications.size(), 2u);
  EXPECT_EQ(std::vector<std::string>(sentNotifications[0].begin() + 1, sentNotifications[0].end()),
            (std::vector<std::string>{trap + "1", "INTEGER: 3", cut}));
  EXPECT_EQ(std::vector<std::string>(sentNotifications[1].begin() + 1, sentNotifications[1].end()),
            (std::vector<std::string>{trap + "2", "INTEGER: 1", cut}));
}

// lldpStatistics over a run of collections, as the model builder counts the
// neighbours (local port, chassis id, port id) that appear and disappear, and
// those the model's bound cuts; a changed neighbour moves the last change.
TEST_F(ProjectionTest, LldpStatisticsCountTheNeighboursThatComeGoAndAreCut) {
  namespace Tlv = Arq::Monitoring::MetricConverter::LldpTlv;
  using Type = Dto::LldpTlvType;
  const auto neighbour = [](const std::string& port, int chassis, const std::string& name) {
    Dto::LldpInfo info;
    info.IfName = port;
    info.Tlv[Type::ChassisId] =
        Tlv::Encode(1, std::string("\x04\x00\x1b\x21\x00\x00", 6) + static_cast<char>(chassis));
    info.Tlv[Type::PortId] = Tlv::Encode(2, "\x05" + port);
    info.Tlv[Type::SystemName] = Tlv::Encode(5, name);
    return info;
  };
  std::vector<Dto::LldpInfo> many;
  for (int n = 0; n < 514; ++n) many.push_back(neighbour("p" + std::to_string(n), 9, "x"));
  struct Step {
    const char* what;
    std::vector<Dto::LldpInfo> neighbours;  // nothing: the LLDP call failed
    bool answered;
    std::vector<std::string> cells;  // inserts, deletes, drops, ageouts
    bool changed;                    // the last change moved
  };
  const std::vector<Step> steps{
      {"two appear",
       {neighbour("1/1", 1, "a"), neighbour("1/2", 2, "b")},
       true,
       {"Gauge32: 2", "Gauge32: 0", "Gauge32: 0", "Gauge32: 0"},
       true},
      {"nothing new",
       {neighbour("1/1", 1, "a"), neighbour("1/2", 2, "b")},
       true,
       {"Gauge32: 2", "Gauge32: 0", "Gauge32: 0", "Gauge32: 0"},
       false},
      {"one renamed",
       {neighbour("1/1", 1, "A"), neighbour("1/2", 2, "b")},
       true,
       {"Gauge32: 2", "Gauge32: 0", "Gauge32: 0", "Gauge32: 0"},
       true},
      {"one replaced on its port",
       {neighbour("1/1", 1, "A"), neighbour("1/2", 3, "c")},
       true,
       {"Gauge32: 3", "Gauge32: 1", "Gauge32: 0", "Gauge32: 0"},
       true},
      {"call failed", {}, false, {"Gauge32: 3", "Gauge32: 1", "Gauge32: 0", "Gauge32: 0"}, false},
      {"514 reported, 512 kept",
       many,
       true,
       {"Gauge32: 515", "Gauge32: 3", "Gauge32: 2", "Gauge32: 0"},
       true},
      {"the same again",
       many,
       true,
       {"Gauge32: 515", "Gauge32: 3", "Gauge32: 2", "Gauge32: 0"},
       false},
  };
  Arq::Monitoring::SwitchModelBuilder builder;
  auto now = Model::Clock::now();
  for (const auto& step : steps) {
    SCOPED_TRACE(step.what);
    Arq::Monitoring::SwitchSnapshot snapshot;
    snapshot.lldpNeighbours = step.neighbours;
    snapshot.answered[Arq::OrvoViaSwitch::Domain::Dto::Metrics::CollectorCall::LLDP_GetInfo] =
        step.answered;
    now += std::chrono::minutes(1);
    auto model = builder.Build(snapshot, now);
    Project(*model);
    std::vector<std::string> cells;
    for (const char* cell : {"2.0", "3.0", "4.0", "5.0"})
      cells.push_back(Cell("lldpStatistics", cell));
    EXPECT_EQ(cells, step.cells);
    EXPECT_EQ(model->lldpStatistics.lastChange == now, step.changed);
    EXPECT_EQ(Cell("lldpStatistics", "1.0").rfind("Timeticks: ", 0), 0u);
  }
}

TEST(LldpNeighbourDecoderTest, ObjectIdentifiersSnmpCannotCarryAreRefused) {
  using Arcs = std::optional<std::vector<std::uint32_t>>;
  const auto ones = [](std::size_t count) { return "\x2b" + std::string(count, '\x01'); };
  const std::vector<std::pair<std::string, Arcs>> cases{
      {"\x2b\x06\x01", std::vector<std::uint32_t>{1, 3, 6, 1}},
      {"\x2b\x8f\xff\xff\xff\x7f", std::vector<std::uint32_t>{1, 3, 0xffffffffu}},
      {"\x2b\x9f\xff\xff\xff\x7f", std::nullopt},  // an arc over 32 bits
      {"\x2b\x86", std::nullopt},                  // cut inside an arc
      {"\x2b\x80\x01", std::nullopt},              // a leading zero group
      {ones(126), std::vector<std::uint32_t>(128, 1)},
      {ones(127), std::nullopt},  // 129 arcs
      {"", std::nullopt}};
  for (const auto& [ber, arcs] : cases) {
    auto expected = arcs;
    if (expected && expected->size() == 128) (*expected)[1] = 3;
    EXPECT_EQ(Arq::Monitoring::DecodeObjectId(ber), expected) << ber.size();
  }
}

}  // namespace
