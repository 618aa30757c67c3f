#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <map>

#include "Arq/Gnmi/Encode.h"
#include "Arq/Gnmi/Path.h"
#include "Arq/Gnmi/Subscription.h"
#include "Arq/Gnmi/Users.h"
#include "Arq/Monitoring/Model/Numbers.h"

namespace {

using namespace Arq::Gnmi;
namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
using Index = Dto::EthCounterIndex;
using namespace std::chrono_literals;

// Four ports: eth1 over 1/1 (up), eth2 over 1/2 (down, disabled), lag1 over
// 1/3 and 1/4; port p's counter c is 1000 * (p + 1) + c. Two neighbours on 1/1
// (bridges and routers, bridging); a PTP clock and a domain PTPBASE-MIB skips.
std::shared_ptr<Model::SwitchModel> Fixture(std::uint64_t generation = 1) {
  auto model = std::make_shared<Model::SwitchModel>();
  model->generation = generation;
  for (std::size_t p = 0; p < 4; ++p) {
    Model::Port port;
    port.name = "1/" + std::to_string(p + 1);
    port.speed = Dto::EthSpeed::S10G;
    port.mode = Dto::EthMode::KR;
    port.link = p == 1 ? Model::LinkState::Down : Model::LinkState::Up;
    for (std::size_t c = 0; c < port.counters.size(); ++c) port.counters[c] = 1000 * (p + 1) + c;
    model->ports.push_back(port);
  }
  const auto add = [&](const char* name, Dto::IfType type, std::vector<std::size_t> members) {
    Model::Interface interface;
    interface.name = name;
    interface.type = type;
    interface.status = Dto::IfStatus::Enabled;
    interface.description = std::string(name) + " desc";
    interface.mac =
        Model::MacAddress{0x02, 0xa0, 0xc9, 0, 0, static_cast<std::uint8_t>(members[0])};
    interface.members = std::move(members);
    interface.consistent = true;
    interface.link = Model::LinkState::Up;
    model->interfaces.push_back(interface);
  };
  add("eth1", Dto::IfType::Ethernet, {0});
  add("eth2", Dto::IfType::Ethernet, {1});
  model->interfaces.back().status = Dto::IfStatus::Disabled;
  add("lag1", Dto::IfType::BasicLag, {2, 3});
  for (int n = 0; n < 2; ++n) {
    Model::LldpNeighbour neighbour;
    neighbour.localPort = "1/1";
    neighbour.chassisId = Model::LldpId{4, std::string("\x00\x1b\x21\x3a\x4f\x5e", 6)};
    neighbour.portId = Model::LldpId{5, "Ethernet" + std::to_string(n)};
    neighbour.systemName = "peer" + std::to_string(n);
    neighbour.ttl = 120;
    neighbour.capabilitiesSupported = 0x14;
    neighbour.capabilitiesEnabled = 0x04;
    neighbour.managementAddress =
        Model::LldpManagementAddress{1, std::string("\x0a\x00\x00\x01", 4)};
    model->neighbours.push_back(neighbour);
  }
  model->ptpDomains = {{0,
                        Dto::PTPPacketType::UDP,
                        Dto::PTPClockMode::Boundary,
                        Dto::PTPProfile::SMPTE_2059,
                        {"1/1", "1/2", "1/1", ""},
                        {"1/1"}},
                       {1,
                        Dto::PTPPacketType::Disabled,
                        Dto::PTPClockMode::Master,
                        Dto::PTPProfile::SMPTE_2059,
                        {"1/3"},
                        {}}};
  model->collection.collectedAtWall =
      std::chrono::system_clock::time_point(std::chrono::seconds(1700000000));
  Arq::Monitoring::Numbers("").Assign(*model, 0);
  return model;
}

std::shared_ptr<const Snapshot> Snap(std::shared_ptr<Model::SwitchModel> model) {
  return MakeSnapshot(std::move(model));
}

// path text -> JSON_IETF value text, of every update of a Get or a stream.
using Values = std::map<std::string, std::string>;

std::string Text(const gnmi::Path& prefix, const gnmi::Path& path) {
  std::string error;
  return ToText(Join(*FromProto(prefix, &error), *FromProto(path, &error)));
}

void Collect(const gnmi::Notification& n, Values& values, std::vector<std::string>* deletes) {
  for (const auto& u : n.update()) values[Text(n.prefix(), u.path())] = u.val().json_ietf_val();
  if (deletes != nullptr) {
    for (const auto& d : n.delete_()) deletes->push_back(Text(n.prefix(), d));
  }
}

Values Get(const Snapshot& snapshot, const std::string& path, KindFilter filter = KindFilter::All) {
  gnmi::Path wire;
  ToProto(*ParsePath(path), &wire);
  Selection selection;
  EXPECT_TRUE(Select(gnmi::Path(), {&wire}, selection).ok()) << path;
  Values values;
  gnmi::GetResponse answer;
  EXPECT_TRUE(answer.ParseFromString(GetAnswer(snapshot, selection, filter, gnmi::JSON_IETF)));
  for (const auto& notification : answer.notification()) Collect(notification, values, nullptr);
  return values;
}

TEST(GnmiPathTest, ParsesAndPrintsPaths) {
  struct Case {
    const char* text;
    bool ok;
    const char* printed;
  };
  const Case cases[] = {
      {"/interfaces/interface[name=1/1]/state", true, "/interfaces/interface[name=1\\/1]/state"},
      {"interfaces/interface[name=*]", true, "/interfaces/interface[name=*]"},
      {"/a[x=1][y=\\]]", true, "/a[x=1][y=\\]]"},
      {"/", true, "/"},
      {"\\=", true, "/\\="},
      {"/a//b", false, ""},
      {"/a/", false, ""},
      {"/a[x]", false, ""},
      {"/a[x=]", false, ""},
      {"/a[=1]", false, ""},
      {"/a[x=1][x=2]", false, ""},
      {"/a[x=1", false, ""},
      {"/a\\", false, ""},
      {"/a]b", false, ""},
  };
  for (const auto& c : cases) {
    const auto path = ParsePath(c.text);
    ASSERT_EQ(path.has_value(), c.ok) << c.text;
    if (c.ok) {
      EXPECT_EQ(ToText(*path), c.printed) << c.text;
      EXPECT_EQ(ParsePath(ToText(*path)), path) << c.text;
      std::string wire;
      Wire::PathMessage(wire, *path);
      gnmi::Path message;
      ASSERT_TRUE(message.ParseFromString(wire)) << c.text;
      EXPECT_EQ(FromProto(message, nullptr), path) << c.text;
    }
  }
}

// Each kind of value as protobuf reads the wire form, in both encodings.
TEST(GnmiEncodeTest, ValuesReadBackInEachEncoding) {
  struct Case {
    Value value;
    const char* proto;
    const char* json;
  };
  const Case cases[] = {
      {Value::U64(18446744073709551615ULL), "uint_val: 18446744073709551615",
       R"(json_ietf_val: "\"18446744073709551615\"")"},
      {Value::U32(0), "uint_val: 0", R"(json_ietf_val: "0")"},
      {Value::I64(-5), "int_val: -5", R"(json_ietf_val: "\"-5\"")"},
      {Value::Boolean(true), "bool_val: true", R"(json_ietf_val: "true")"},
      {Value::Enumeration("UP"), R"(string_val: "UP")", R"(json_ietf_val: "\"UP\"")"},
      {Value::List({"a\"", ""}),
       R"(leaflist_val { element { string_val: "a\"" } element { string_val: "" } })",
       R"(json_ietf_val: "[\"a\\\"\",\"\"]")"},
  };
  for (const auto& c : cases) {
    for (const auto encoding : {gnmi::PROTO, gnmi::JSON_IETF}) {
      std::string wire;
      Wire::TypedValue(wire, c.value, encoding);
      gnmi::TypedValue message;
      ASSERT_TRUE(message.ParseFromString(wire));
      EXPECT_EQ(message.ShortDebugString(), encoding == gnmi::PROTO ? c.proto : c.json);
    }
  }
}

TEST(GnmiTreeTest, ResolvesWildcardsAndRefusesBadPaths) {
  struct Case {
    const char* path;
    const char* origin;
    grpc::StatusCode code;
  };
  const Case cases[] = {
      {"/interfaces/interface[name=1/1]/state/oper-status", "", grpc::StatusCode::OK},
      {"/interfaces/*/state", "openconfig", grpc::StatusCode::OK},
      {"/.../counters/in-octets", "", grpc::StatusCode::OK},
      {"/interfaces/interface[name=1/1]/state/no-such-leaf", "", grpc::StatusCode::NOT_FOUND},
      {"/interfaces/interface/state/oper-status", "other", grpc::StatusCode::NOT_FOUND},
      {"/interfaces[name=x]", "", grpc::StatusCode::INVALID_ARGUMENT},
      {"/interfaces/interface[id=1/1]", "", grpc::StatusCode::INVALID_ARGUMENT},
      {"/interfaces/interface[name=1/1][id=2]", "", grpc::StatusCode::INVALID_ARGUMENT},
      {"/.../.../.../state", "", grpc::StatusCode::INVALID_ARGUMENT},
      {"/interfaces/interface/state/name/extra", "", grpc::StatusCode::NOT_FOUND},
  };
  for (const auto& c : cases) {
    gnmi::Path wire;
    ToProto(*ParsePath(c.path), &wire);
    wire.set_origin(c.origin);
    Selection selection;
    EXPECT_EQ(Select(gnmi::Path(), {&wire}, selection).error_code(), c.code) << c.path;
  }
  gnmi::Path legacy;
  legacy.add_element("interfaces");
  Selection selection;
  EXPECT_EQ(Select(gnmi::Path(), {&legacy}, selection).error_code(),
            grpc::StatusCode::INVALID_ARGUMENT);
}

// The counters are those of IF-MIB (ifHC*, ifInErrors, ifOutErrors),
// EtherLike-MIB and RMON-MIB for the same port; a LAG's are its members' sums.
TEST(GnmiLeavesTest, ServesTheMibNumbersTypedAsOpenConfigSays) {
  const auto snapshot = Snap(Fixture());
  const auto c = [](std::size_t port, std::size_t counter) { return 1000 * (port + 1) + counter; };
  const auto q = [](std::uint64_t v) { return "\"" + std::to_string(v) + "\""; };
  std::uint64_t inErrors = 0;
  for (std::size_t k = Index::NbOfPacketsSizeLess64BytesReceived; k <= Index::NbOfCrcErrorEvents;
       ++k) {
    inErrors += c(0, k);
  }
  const std::string p = "/interfaces/interface[name=1\\/1]";
  const std::string nb = "/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]";
  const std::string ptp = "/orvovia-ptp/instances/instance[id=0.1]";
  const Values expected = {
      {p + "/state/counters/in-octets", q(c(0, Index::NbOfGoodOctetsReceived))},
      {p + "/state/counters/in-unicast-pkts", q(c(0, Index::NbOfGoodUnicastFrameReceived))},
      {p + "/state/counters/in-errors", q(inErrors)},
      {p + "/state/counters/out-errors",
       q(c(0, Index::NbOfPacketsDropDueCollision) + c(0, Index::NbOfLateMacCollision))},
      {p + "/state/counters/out-discards", q(c(0, Index::NbOfFrameNotTransmitted))},
      {p + "/state/counters/in-pkts",
       q(c(0, Index::NbOfGoodUnicastFrameReceived) + c(0, Index::NbOfGoodPacketsMulticast) +
         c(0, Index::NbOfGoodPacketsBroadcast))},
      {p + "/ethernet/state/counters/in-crc-errors", q(c(0, Index::NbOfCrcErrorEvents))},
      {p + "/ethernet/state/counters/in-distribution/in-frames-1024-1518-octets",
       q(c(0, Index::NbOfGoodPackets1024toMaxBytes))},
      {p + "/state/type", "\"iana-if-type:ethernetCsmacd\""},
      {p + "/state/oper-status", "\"UP\""},
      {p + "/state/ifindex", "1001"},
      {p + "/state/description", "\"eth1 desc\""},
      {p + "/ethernet/state/port-speed", "\"openconfig-if-ethernet:SPEED_10GB\""},
      {p + "/ethernet/state/negotiated-duplex-mode", "\"FULL\""},
      {p + "/ethernet/state/mac-address", "\"02:a0:c9:00:00:00\""},
      {"/interfaces/interface[name=1\\/2]/state/admin-status", "\"DOWN\""},
      {"/interfaces/interface[name=1\\/2]/config/enabled", "false"},
      {"/interfaces/interface[name=1\\/3]/ethernet/state/aggregate-id", "\"lag1\""},
      {"/interfaces/interface[name=1\\/3]/state/description", "\"\""},
      {"/interfaces/interface[name=lag1]/state/type", "\"iana-if-type:ieee8023adLag\""},
      {"/interfaces/interface[name=lag1]/state/counters/in-octets",
       q(c(2, Index::NbOfGoodOctetsReceived) + c(3, Index::NbOfGoodOctetsReceived))},
      {"/interfaces/interface[name=lag1]/aggregation/state/lag-speed", "20000"},
      {"/interfaces/interface[name=lag1]/aggregation/state/member", "[\"1/3\",\"1/4\"]"},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=2]/state/system-name",
       "\"peer1\""},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]/state/chassis-id",
       "\"00:1b:21:3a:4f:5e\""},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]/state/chassis-id-type",
       "\"MAC_ADDRESS\""},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]/state/port-id-type",
       "\"INTERFACE_NAME\""},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]/state/management-address",
       "\"10.0.0.1\""},
      {"/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=1]/state/ttl", "120"},
      {"/components/component[name=port-1\\/4]/state/type", "\"openconfig-platform-types:PORT\""},
      {nb + "/capabilities/capability[name=MAC_BRIDGE]/state/name",
       "\"openconfig-lldp-types:MAC_BRIDGE\""},
      {nb + "/capabilities/capability[name=MAC_BRIDGE]/state/enabled", "true"},
      {nb + "/capabilities/capability[name=ROUTER]/state/enabled", "false"},
      {ptp + "/state/domain", "0"},
      {ptp + "/state/clock-mode", "\"BOUNDARY\""},
      {ptp + "/state/profile", "\"SMPTE_2059\""},
      {ptp + "/state/transport", "\"UDP_IPV4\""},
      {ptp + "/state/interfaces", "[\"1/1\",\"1/2\"]"},
      {ptp + "/state/slave-interfaces", "[\"1/1\"]"},
  };
  const Values all = Get(*snapshot, "/");
  for (const auto& [path, value] : expected) {
    const auto found = all.find(path);
    ASSERT_NE(found, all.end()) << path;
    EXPECT_EQ(found->second, value) << path;
  }
  // No Ethernet leaf on a LAG, no aggregation leaf on a port.
  EXPECT_EQ(all.count("/interfaces/interface[name=lag1]/ethernet/state/port-speed"), 0U);
  EXPECT_EQ(all.count("/interfaces/interface[name=1\\/1]/aggregation/state/lag-speed"), 0U);
  // Only the capabilities supported; no clock for the domain that does not run.
  EXPECT_EQ(all.count(nb + "/capabilities/capability[name=OTHER]/state/enabled"), 0U);
  EXPECT_EQ(all.count("/orvovia-ptp/instances/instance[id=1.1]/state/domain"), 0U);
}

TEST(GnmiLeavesTest, GetFiltersByKeyWildcardAndDataType) {
  const auto snapshot = Snap(Fixture());
  EXPECT_EQ(Get(*snapshot, "/interfaces/interface[name=*]/state/oper-status").size(), 5U);
  EXPECT_EQ(Get(*snapshot, "/interfaces/interface[name=1/2]/state/oper-status"),
            (Values{{"/interfaces/interface[name=1\\/2]/state/oper-status", "\"DOWN\""}}));
  EXPECT_EQ(Get(*snapshot, "/interfaces/interface[name=nope]/state").size(), 0U);
  const Values config = Get(*snapshot, "/interfaces/interface[name=1/1]", KindFilter::Config);
  EXPECT_EQ(
      config,
      (Values{{"/interfaces/interface[name=1\\/1]/name", "\"1/1\""},
              {"/interfaces/interface[name=1\\/1]/config/name", "\"1/1\""},
              {"/interfaces/interface[name=1\\/1]/config/type", "\"iana-if-type:ethernetCsmacd\""},
              {"/interfaces/interface[name=1\\/1]/config/description", "\"eth1 desc\""},
              {"/interfaces/interface[name=1\\/1]/config/enabled", "true"}}));
  const Values state = Get(*snapshot, "/interfaces/interface[name=1/1]", KindFilter::State);
  for (const auto& [path, value] : state) EXPECT_EQ(path.find("/config/"), std::string::npos);
}

struct Recorder {
  std::vector<gnmi::SubscribeResponse> responses;
  std::size_t limit = 1000000;
  SubscriptionCore::Sink Sink() {
    return [this](const std::string& bytes) {
      if (responses.size() >= limit) return false;
      EXPECT_TRUE(responses.emplace_back().ParseFromString(bytes));
      return true;
    };
  }
  Values Updates(std::vector<std::string>* deletes = nullptr) const {
    Values values;
    for (const auto& r : responses) {
      if (r.has_update()) Collect(r.update(), values, deletes);
    }
    return values;
  }
};

gnmi::SubscriptionList List(
    gnmi::SubscriptionList::Mode mode,
    std::vector<std::tuple<std::string, gnmi::SubscriptionMode, std::uint64_t>> subscriptions) {
  gnmi::SubscriptionList list;
  list.set_mode(mode);
  list.set_encoding(gnmi::JSON_IETF);
  for (const auto& [path, mode, interval] : subscriptions) {
    auto* s = list.add_subscription();
    ToProto(*ParsePath(path), s->mutable_path());
    s->set_mode(mode);
    s->set_sample_interval(interval);
  }
  return list;
}

// One flip of a port's link is one ON_CHANGE update with the new collection's
// time stamp; the counters that moved are not sent on change.
TEST(GnmiSubscriptionTest, OnChangeSendsWhatChangedAndDeletesWhatWentAway) {
  const auto t0 = SteadyClock::now();
  SubscriptionCore core;
  ASSERT_TRUE(core.Start(List(gnmi::SubscriptionList::STREAM,
                              {{"/interfaces/interface/state/oper-status", gnmi::ON_CHANGE, 0},
                               {"/lldp/interfaces/interface/neighbors/neighbor/state/system-name",
                                gnmi::ON_CHANGE, 0}}),
                         t0)
                  .ok());
  const auto before = Snap(Fixture(1));
  Recorder initial;
  ASSERT_TRUE(core.Initial(before, initial.Sink()));
  EXPECT_EQ(initial.Updates().size(), 7U);
  EXPECT_TRUE(initial.responses.back().sync_response());

  auto changed = Fixture(2);
  changed->ports[1].link = Model::LinkState::Up;
  changed->ports[0].counters[0] += 1;
  changed->neighbours.pop_back();
  changed->collection.collectedAtWall += 5s;
  const auto after = Snap(changed);
  Recorder recorder;
  ASSERT_TRUE(core.OnChanges(*before, *after, Diff(*before, *after), recorder.Sink()));
  std::vector<std::string> deletes;
  EXPECT_EQ(recorder.Updates(&deletes),
            (Values{{"/interfaces/interface[name=1\\/2]/state/oper-status", "\"UP\""}}));
  EXPECT_EQ(deletes, std::vector<std::string>{
                         "/lldp/interfaces/interface[name=1\\/1]/neighbors/neighbor[id=2]"});
  for (const auto& r : recorder.responses) {
    EXPECT_EQ(r.update().timestamp(), 1700000005LL * 1000000000LL);
  }
}

// SAMPLE sends every selected value at each due tick and nothing between;
// suppress_redundant sends only what changed; TARGET_DEFINED streams states
// on change and samples counters.
TEST(GnmiSubscriptionTest, SampleTicksAtTheIntervalAndSuppressesRedundantValues) {
  const auto t0 = SteadyClock::now();
  const std::string octets = "/interfaces/interface[name=1/1]/state/counters/in-octets";
  auto list =
      List(gnmi::SubscriptionList::STREAM,
           {{octets, gnmi::SAMPLE, 500000000},
            {"/interfaces/interface[name=1/1]/state/counters/in-errors", gnmi::SAMPLE, 500000000}});
  list.mutable_subscription(1)->set_suppress_redundant(true);
  SubscriptionCore core;
  ASSERT_TRUE(core.Start(list, t0).ok());
  const auto first = Snap(Fixture(1));
  Recorder initial;
  ASSERT_TRUE(core.Initial(first, initial.Sink()));
  EXPECT_EQ(core.NextDue(), t0 + 500ms);

  auto next = Fixture(2);
  next->ports[0].counters[Index::NbOfGoodOctetsReceived] = 7;
  const auto second = Snap(next);
  struct Tick {
    std::chrono::milliseconds at;
    std::shared_ptr<const Snapshot> snapshot;
    std::size_t updates;
  };
  const Tick ticks[] = {{100ms, second, 0},
                        {500ms, second, 1},
                        {900ms, second, 0},
                        {1000ms, second, 1},
                        {1500ms, second, 1}};
  for (const auto& tick : ticks) {
    Recorder recorder;
    ASSERT_TRUE(core.Tick(tick.snapshot, t0 + tick.at, recorder.Sink()));
    EXPECT_EQ(recorder.Updates().size(), tick.updates) << tick.at.count();
  }

  SubscriptionCore defined;
  ASSERT_TRUE(defined
                  .Start(List(gnmi::SubscriptionList::STREAM,
                              {{"/interfaces/interface[name=1/2]/state", gnmi::TARGET_DEFINED, 0}}),
                         t0)
                  .ok());
  ASSERT_TRUE(defined.Initial(first, Recorder().Sink()));
  auto flipped = Fixture(2);
  flipped->ports[1].link = Model::LinkState::Up;
  flipped->ports[1].counters[0] = 1;
  const auto third = Snap(flipped);
  Recorder onChange;
  ASSERT_TRUE(defined.OnChanges(*first, *third, Diff(*first, *third), onChange.Sink()));
  EXPECT_EQ(onChange.Updates(),
            (Values{{"/interfaces/interface[name=1\\/2]/state/oper-status", "\"UP\""}}));
  EXPECT_EQ(defined.NextDue(), t0 + SubscriptionCore::kTargetDefinedSample);
}

TEST(GnmiSubscriptionTest, RefusesWhatCannotBeServed) {
  struct Case {
    gnmi::SubscriptionList list;
    grpc::StatusCode code;
  };
  auto json = List(gnmi::SubscriptionList::ONCE, {{"/interfaces", gnmi::ON_CHANGE, 0}});
  json.set_encoding(gnmi::JSON);
  const Case cases[] = {
      {List(gnmi::SubscriptionList::ONCE, {}), grpc::StatusCode::INVALID_ARGUMENT},
      {List(gnmi::SubscriptionList::ONCE, {{"/nothing", gnmi::ON_CHANGE, 0}}),
       grpc::StatusCode::NOT_FOUND},
      {List(gnmi::SubscriptionList::ONCE, {{"/interfaces[a=b]", gnmi::ON_CHANGE, 0}}),
       grpc::StatusCode::INVALID_ARGUMENT},
      {json, grpc::StatusCode::UNIMPLEMENTED},
  };
  for (const auto& c : cases) {
    SubscriptionCore core;
    EXPECT_EQ(core.Start(c.list, SteadyClock::now()).error_code(), c.code);
  }
}

// A stream whose reader stopped: the queue refuses what passes its bound and
// the producer stops there.
TEST(GnmiSubscriptionTest, QueueBoundStopsTheProducer) {
  BoundedQueue queue(4096);
  SubscriptionCore core;
  ASSERT_TRUE(
      core.Start(List(gnmi::SubscriptionList::STREAM, {{"/", gnmi::SAMPLE, 0}}), SteadyClock::now())
          .ok());
  std::size_t pushed = 0;
  const bool delivered = core.Initial(Snap(Fixture()), [&](std::string r) {
    if (!queue.Push(std::move(r))) return false;
    ++pushed;
    return true;
  });
  EXPECT_FALSE(delivered);
  EXPECT_GT(pushed, 0U);
  EXPECT_LE(queue.Bytes(), 4096U);
  while (!queue.Empty()) queue.Pop();
  EXPECT_EQ(queue.Bytes(), 0U);
}

TEST(GnmiUsersTest, ReadsUserLinesWithCryptHashes) {
  // "secret" hashed with SHA-512 crypt (salt "saltsalt").
  const std::string text =
      "# users\n"
      "alice:$6$saltsalt$TVLlQcbpFVof5W3Yz4DTP6gRstiNuHwwTt6GLc1E5n0U0aDehy0S5"
      "knV8wiOQSpT0Y77vwPZN.Pq.H91p5hVO1\r\n\n";
  std::string error;
  const auto users = ParseUsers(text, error);
  ASSERT_NE(users, nullptr) << error;
  EXPECT_TRUE(users->Check("alice", "secret"));
  EXPECT_EQ(ParseUsers("# x\nalice secret\n", error), nullptr);
  EXPECT_EQ(error, "line 2 is not \"user:hash\"");
  EXPECT_EQ(ParseUsers("alice:secret\n", error), nullptr);
  EXPECT_EQ(error, "line 1: not a crypt(3) hash");
}

}  // namespace
