#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <chrono>
#include <cstdint>
#include <fstream>
#include <future>
#include <set>
#include <sstream>
#include <thread>

#include "Arq/TestSupport/Certificates.h"
#include "Daemon.h"

#ifdef ARQ_SIMULATOR_PATH

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::SystemTests::IfMibScalar;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

// bcrypt (cost 4) of "secret".
constexpr const char* kHash = "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqkIUcWuZGjByxq";
const std::string kScenario = std::string(ARQ_SOURCE_DIR) + "/etc/simulator/ports-128.json";

// `text` as JSON; a failure that shows it when it is not.
Json::Value Parse(const std::string& text) {
  Json::Value value;
  std::istringstream in(text);
  std::string errors;
  EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), in, &value, &errors)) << text;
  return value;
}

// The interfaces an IF-MIB manager sees in the scenario: every member port of
// its interfaces, and each PRS and LAG interface itself.
std::set<std::string> ScenarioInterfaces() {
  Json::Value scenario;
  std::ifstream file(kScenario);
  file >> scenario;
  std::set<std::string> names;
  for (const auto& interface : scenario["interfaces"]) {
    for (const auto& member : interface["members"]) names.insert(member.asString());
    const std::string type = interface["type"].asString();
    if (type == "BasicPrs" || type == "BasicLag") names.insert(interface["name"].asString());
  }
  return names;
}

// The daemon in Thrift mode on the simulator's 128-port switch (one collection
// a second), its gNMI listener on TLS with client certificates and a users
// file; the test's client holds the CA's client certificate.
class GnmiEndpointTest : public testing::Test {
 protected:
  void SetUp() override {
    Arq::TestSupport::MakeTestCertificates(Dir().Path());
    Arq::TestSupport::WriteFile(Dir().File("users"), "# gNMI\ntelemetry:" + std::string(kHash));
    auto started = Arq::TestSupport::StartSimulator({ARQ_SIMULATOR_PATH, "--scenario", kScenario},
                                                    Dir().File("simulator.out"));
    simulator = std::move(started.process);
    controlPort = started.controlPort;
    ASSERT_NE(started.port, 0);
    setup.StartDaemon(
        {"monitoring_processor_mode:Thrift", "remote_ip_address:127.0.0.1",
         "remote_port_number:" + std::to_string(started.port), "remote_ms_connection_timeout:2000",
         "remote_ms_receive_timeout:5000", "collect_metrics_period:1", "log_level:Warning"},
        {{"ORVOVIA_GNMI_ADDRESS", address},
         {"ORVOVIA_GNMI_TLS_CERT", Dir().File("server.pem")},
         {"ORVOVIA_GNMI_TLS_KEY", Dir().File("server.key")},
         {"ORVOVIA_GNMI_TLS_CLIENT_CA", Dir().File("ca.pem")},
         {"ORVOVIA_GNMI_USERS", Dir().File("users")}});
    ASSERT_TRUE(WaitUntil([&] { return Run("get")["octets"].size() == expected.size(); }, 30s, 1s))
        << setup.Stdout();
  }

  Arq::TestSupport::TempDir& Dir() { return setup.Dir(); }

  // A step of the gNMI client (tests/system/gnmi_client.py, Debian's Python
  // gRPC on the messages generated from the project's gnmi.proto): its
  // JSON report, or a failure showing what it printed instead.
  Json::Value Run(const std::string& step) {
    return Parse(Arq::TestSupport::RunCommand({"/usr/bin/python3", ARQ_GNMI_CLIENT, step, address,
                                               Dir().Path(), std::to_string(controlPort)},
                                              {{"PYTHONPATH", ARQ_GNMI_PYTHON_DIR}}, 90s)
                     .output);
  }

  DaemonSetup setup;
  std::unique_ptr<Arq::TestSupport::ChildProcess> simulator;
  int controlPort = 0;
  std::string address = "127.0.0.1:" + std::to_string(Arq::TestSupport::FreeTcpPort());
  const std::set<std::string> expected = ScenarioInterfaces();
};

// Capabilities: the version, the encodings and the models served. A Get of
// every interface's in-octets: each interface of the scenario once,
// with the value IF-MIB gives for the same collection; a wrong password, no
// client certificate or one no CA of ours signed is refused. A port's link
// going down, then up, is streamed ON_CHANGE as one update each, stamped with
// the time of the collection that saw it.
TEST_F(GnmiEndpointTest, ServesTheSwitchToItsClientOnlyAndStreamsLinkChanges) {
  EXPECT_EQ(expected.size(), 221U);  // 194 ports, 24 PRS and 3 LAG interfaces
  EXPECT_EQ(setup.Master().Get(IfMibScalar("ifNumber")),
            "INTEGER: " + std::to_string(expected.size()));
  EXPECT_EQ(Run("capabilities"),
            Parse(R"(["0.10.0",["JSON_IETF","PROTO"],["openconfig-interfaces 3.0.0",)"
                  R"("openconfig-if-ethernet 2.13.0","openconfig-if-aggregate 2.4.4",)"
                  R"("openconfig-lldp 0.2.1","openconfig-platform 0.24.0",)"
                  R"("orvovia-collector 1.0.0","orvovia-ptp 1.0.0"]])"));
  // Collections paused, both views hold the same model.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 4", 10s));
  const Json::Value octets = Run("get")["octets"];
  EXPECT_EQ(octets.size(), expected.size());
  std::set<std::string> names;
  std::multiset<std::uint64_t> gnmiValues, snmpValues;
  for (const auto& pair : octets) {
    names.insert(pair[0].asString());
    gnmiValues.insert(pair[1].asUInt64());
  }
  EXPECT_EQ(names, expected);
  for (const auto& [oid, value] : setup.Master().Walk("1.3.6.1.2.1.31.1.1.1.6")) {
    snmpValues.insert(std::stoull(value.substr(value.find(' ') + 1)));
  }
  EXPECT_EQ(gnmiValues, snmpValues);
  EXPECT_GT(*gnmiValues.rbegin(), 0U);
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));

  // A wrong password; no client certificate; the rogue one.
  EXPECT_EQ(Run("refused"), Parse(R"(["UNAUTHENTICATED","UNAVAILABLE","UNAVAILABLE"])"));
  // Synced with one collection seen and the link UP; for each change the
  // simulator's "ok", the link update and 3 more collections came; the link
  // went UP, DOWN, UP, each stamped as a collection.
  EXPECT_EQ(
      Run("on-change"),
      Parse(
          R"([true,1,["UP"],"ok",true,true,"ok",true,true,["UP",true],["DOWN",true],["UP",true]])"));
}

// SAMPLE at 500 ms gives a sample each interval, repeating a collection's
// values between collections. A client that subscribes to everything every
// 100 ms and never reads costs its stream only: the daemon's other clients,
// SNMP and the collection go on, and that stream ends.
TEST_F(GnmiEndpointTest, SamplesAtTheIntervalAndEndsAStalledStreamOnly) {
  using testing::AllOf, testing::Ge, testing::Le, testing::Lt;
  const Json::Value sample = Run("sample");
  EXPECT_TRUE(sample["synced"].asBool()) << sample;
  // 10 in 5 s on a quiet machine; values never fall, and repeat within a timestamp.
  EXPECT_THAT(sample["samples"].asUInt(), AllOf(Ge(6U), Le(12U))) << sample;
  EXPECT_THAT(sample["stamps"].asUInt(), AllOf(Ge(2U), Lt(sample["samples"].asUInt()))) << sample;
  EXPECT_TRUE(sample["ordered"].asBool()) << sample;

  const std::string collections = setup.Get("8.5.0");
  auto stalled = std::async(std::launch::async, [&] { return Run("stall"); });
  for (int second = 0; second < 16; ++second) {
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(setup.Get("8.1.0"), "INTEGER: 1") << second;
  }
  EXPECT_NE(setup.Get("8.5.0"), collections);
  const Json::Value stall = stalled.get();
  EXPECT_EQ(stall["interfaces"].size(), 16U) << stall;
  for (const auto& count : stall["interfaces"]) EXPECT_EQ(count.asUInt(), expected.size());
  EXPECT_THAT(stall["status"].asString(), testing::AnyOf("RESOURCE_EXHAUSTED", "CANCELLED"))
      << stall;
  EXPECT_TRUE(setup.Daemon().IsRunning());
}

}  // namespace

#endif
