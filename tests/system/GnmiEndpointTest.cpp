#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <thread>
#include <tuple>
#include <vector>

#include "Arq/Gnmi/Encode.h"
#include "Arq/TestSupport/Certificates.h"
#include "Daemon.h"
#include "gnmi.grpc.pb.h"

#ifdef ARQ_SIMULATOR_PATH

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

// bcrypt (cost 4) of "secret".
constexpr const char* kHash = "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqkIUcWuZGjByxq";
const std::string kScenario = std::string(ARQ_SOURCE_DIR) + "/etc/simulator/ports-128.json";

gnmi::Path WirePath(const std::string& text) {
  gnmi::Path wire;
  Arq::Gnmi::ToProto(*Arq::Gnmi::ParsePath(text), &wire);
  return wire;
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
    stub = gnmi::gNMI::NewStub(Channel("client"));
    ASSERT_TRUE(WaitUntil([&] { return InOctets().size() == expected.size(); }, 30s))
        << setup.Stdout();
  }

  Arq::TestSupport::TempDir& Dir() { return setup.Dir(); }

  // A channel of its own (no connection shared with another channel), with
  // the certificate `client` (client, rogue) or none ("").
  std::shared_ptr<grpc::Channel> Channel(const std::string& client) {
    grpc::SslCredentialsOptions tls;
    tls.pem_root_certs = ReadFile(Dir().File("ca.pem"));
    if (!client.empty()) {
      tls.pem_private_key = ReadFile(Dir().File(client + ".key"));
      tls.pem_cert_chain = ReadFile(Dir().File(client + ".pem"));
    }
    grpc::ChannelArguments arguments;
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    arguments.SetInt(GRPC_ARG_MAX_RECEIVE_MESSAGE_LENGTH, 64 * 1024 * 1024);
    return grpc::CreateCustomChannel(address, grpc::SslCredentials(tls), arguments);
  }
  static std::unique_ptr<grpc::ClientContext> Context(const std::string& password = "secret",
                                                      std::chrono::seconds deadline = 20s) {
    auto context = std::make_unique<grpc::ClientContext>();
    context->set_deadline(std::chrono::system_clock::now() + deadline);
    context->AddMetadata("username", "telemetry");
    context->AddMetadata("password", password);
    return context;
  }
  grpc::Status Get(gnmi::gNMI::Stub& client, const std::string& path, gnmi::GetResponse& answer,
                   const std::string& password = "secret") {
    gnmi::GetRequest request;
    *request.add_path() = WirePath(path);
    request.set_encoding(gnmi::PROTO);
    answer.Clear();
    return client.Get(Context(password).get(), request, &answer);
  }
  // Every interface's in-octets by interface name; empty when the Get failed.
  std::multimap<std::string, std::uint64_t> InOctets() {
    gnmi::GetResponse answer;
    std::multimap<std::string, std::uint64_t> values;
    if (!Get(*stub, "/interfaces/interface[name=*]/state/counters/in-octets", answer).ok()) {
      return values;
    }
    // One notification per interface, the interface's list entry its prefix.
    for (const auto& notification : answer.notification()) {
      const std::string name = notification.prefix().elem(1).key().at("name");
      for (const auto& update : notification.update())
        values.emplace(name, update.val().uint_val());
    }
    return values;
  }
  // A STREAM of (path, mode, sample interval in ns) subscriptions.
  using Wanted = std::tuple<std::string, gnmi::SubscriptionMode, std::uint64_t>;
  static auto Subscribe(gnmi::gNMI::Stub& client, grpc::ClientContext& context,
                        gnmi::Encoding encoding, const std::vector<Wanted>& wanted) {
    gnmi::SubscribeRequest request;
    request.mutable_subscribe()->set_encoding(encoding);
    for (const auto& [path, mode, interval] : wanted) {
      auto* subscription = request.mutable_subscribe()->add_subscription();
      *subscription->mutable_path() = WirePath(path);
      subscription->set_mode(mode);
      subscription->set_sample_interval(interval);
    }
    auto stream = client.Subscribe(&context);
    EXPECT_TRUE(stream->Write(request));
    return stream;
  }

  DaemonSetup setup;
  std::unique_ptr<Arq::TestSupport::ChildProcess> simulator;
  int controlPort = 0;
  std::string address = "127.0.0.1:" + std::to_string(Arq::TestSupport::FreeTcpPort());
  std::unique_ptr<gnmi::gNMI::Stub> stub;
  const std::set<std::string> expected = ScenarioInterfaces();
};

// A Get of every interface's in-octets: each interface of the scenario once,
// with the value IF-MIB gives for the same collection; a wrong password, no
// client certificate or one no CA of ours signed is refused. A port's link
// going down, then up, is streamed ON_CHANGE as one update each, stamped with
// the time of the collection that saw it.
TEST_F(GnmiEndpointTest, ServesTheSwitchToItsClientOnlyAndStreamsLinkChanges) {
  EXPECT_EQ(expected.size(), 221U);  // 194 ports, 24 PRS and 3 LAG interfaces
  EXPECT_EQ(setup.Master().Get("1.3.6.1.2.1.2.1.0"), "INTEGER: " + std::to_string(expected.size()));
  // Collections paused, both views hold the same model.
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":false}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 4", 10s));
  const auto octets = InOctets();
  EXPECT_EQ(octets.size(), expected.size());
  std::set<std::string> names;
  std::multiset<std::uint64_t> gnmiValues, snmpValues;
  for (const auto& [name, value] : octets) {
    names.insert(name);
    gnmiValues.insert(value);
  }
  EXPECT_EQ(names, expected);
  for (const auto& [oid, value] : setup.Master().Walk("1.3.6.1.2.1.31.1.1.1.6")) {
    snmpValues.insert(std::stoull(value.substr(value.find(' ') + 1)));
  }
  EXPECT_EQ(gnmiValues, snmpValues);
  EXPECT_GT(*gnmiValues.rbegin(), 0U);
  setup.WriteOptions(R"({"SwitchMonitoringControl":{"CollectMetrics":true}})");
  ASSERT_TRUE(setup.WaitForGet("8.1.0", "INTEGER: 1", 10s));

  gnmi::GetResponse answer;
  const std::string path = "/interfaces/interface[name=1/1]/state/oper-status";
  EXPECT_EQ(Get(*stub, path, answer, "wrong").error_code(), grpc::StatusCode::UNAUTHENTICATED);
  for (const char* client : {"", "rogue"}) {
    auto other = gnmi::gNMI::NewStub(Channel(client));
    EXPECT_EQ(Get(*other, path, answer).error_code(), grpc::StatusCode::UNAVAILABLE) << client;
  }

  // The port's link and the collection count, on change.
  auto context = Context("secret", 60s);
  auto stream = Subscribe(
      *stub, *context, gnmi::PROTO,
      {{path, gnmi::ON_CHANGE, 0}, {"/orvovia-collector/state/collections", gnmi::ON_CHANGE, 0}});
  std::vector<std::pair<std::string, std::int64_t>> links;  // value, timestamp
  std::set<std::int64_t> collections;
  bool synced = false;
  // Reads until `done` holds (the stream's end or 100 responses at most).
  const auto readUntil = [&](const std::function<bool()>& done) {
    gnmi::SubscribeResponse response;
    for (int reads = 0; reads < 100 && !done() && stream->Read(&response); ++reads) {
      synced = synced || response.sync_response();
      for (const auto& update : response.update().update()) {
        const std::string leaf = update.path().elem().rbegin()->name();
        if (leaf == "collections") collections.insert(response.update().timestamp());
        if (leaf == "oper-status") {
          links.emplace_back(update.val().string_val(), response.update().timestamp());
        }
      }
    }
    return done();
  };
  // Then `count` more collections.
  const auto readCollections = [&](std::size_t count) {
    const std::size_t until = collections.size() + count;
    return readUntil([&] { return collections.size() >= until; });
  };
  ASSERT_TRUE(readUntil([&] { return synced; }));
  ASSERT_EQ(collections.size(), 1U);
  ASSERT_EQ(links.size(), 1U);
  EXPECT_EQ(links[0].first, "UP");
  EXPECT_EQ(Arq::TestSupport::SendLine(controlPort, "port 1/1 down"), "ok");
  ASSERT_TRUE(readUntil([&] { return links.size() > 1; }));
  ASSERT_TRUE(readCollections(3));
  EXPECT_EQ(Arq::TestSupport::SendLine(controlPort, "port 1/1 up"), "ok");
  ASSERT_TRUE(readUntil([&] { return links.size() > 2; }));
  ASSERT_TRUE(readCollections(3));
  context->TryCancel();
  ASSERT_EQ(links.size(), 3U);
  EXPECT_EQ(links[1].first, "DOWN");
  EXPECT_EQ(links[2].first, "UP");
  for (const auto& [state, timestamp] : links) EXPECT_EQ(collections.count(timestamp), 1U) << state;
}

// SAMPLE at 500 ms gives a sample each interval, repeating a collection's
// values between collections. A client that subscribes to everything every
// 100 ms and never reads costs its stream only: the daemon's other clients,
// SNMP and the collection go on, and that stream ends.
TEST_F(GnmiEndpointTest, SamplesAtTheIntervalAndEndsAStalledStreamOnly) {
  auto context = Context("secret", 60s);
  auto stream = Subscribe(
      *stub, *context, gnmi::PROTO,
      {{"/interfaces/interface[name=1/1]/state/counters/in-octets", gnmi::SAMPLE, 500000000}});
  gnmi::SubscribeResponse response;
  for (int reads = 0; reads < 3 && stream->Read(&response) && !response.sync_response(); ++reads) {
  }
  ASSERT_TRUE(response.sync_response());
  std::vector<std::pair<std::int64_t, std::uint64_t>> samples;  // timestamp, value
  const auto start = std::chrono::steady_clock::now();
  while (std::chrono::steady_clock::now() - start < 5s && samples.size() < 100 &&
         stream->Read(&response)) {
    samples.emplace_back(response.update().timestamp(),
                         response.update().update(0).val().uint_val());
  }
  context->TryCancel();
  // 10 in 5 s on a quiet machine.
  EXPECT_GE(samples.size(), 6U);
  EXPECT_LE(samples.size(), 12U);
  std::set<std::int64_t> stamps;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    stamps.insert(samples[i].first);
    if (i == 0) continue;
    EXPECT_GE(samples[i].second, samples[i - 1].second);
    if (samples[i].first == samples[i - 1].first) {
      EXPECT_EQ(samples[i].second, samples[i - 1].second);
    }
  }
  EXPECT_LT(stamps.size(), samples.size());
  EXPECT_GE(stamps.size(), 2U);

  auto stalledStub = gnmi::gNMI::NewStub(Channel("client"));
  auto stalledContext = Context("secret", 60s);
  auto stalled =
      Subscribe(*stalledStub, *stalledContext, gnmi::JSON_IETF, {{"/", gnmi::SAMPLE, 100000000}});
  const std::string collections = setup.Get("8.5.0");
  for (int second = 0; second < 16; ++second) {
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(InOctets().size(), expected.size()) << second;
    EXPECT_EQ(setup.Get("8.1.0"), "INTEGER: 1") << second;
  }
  EXPECT_NE(setup.Get("8.5.0"), collections);
  int drained = 0;
  while (drained < 1000000 && stalled->Read(&response)) ++drained;
  const grpc::Status status = stalled->Finish();
  EXPECT_TRUE(status.error_code() == grpc::StatusCode::RESOURCE_EXHAUSTED ||
              status.error_code() == grpc::StatusCode::CANCELLED)
      << status.error_code() << " " << status.error_message() << " after " << drained;
  EXPECT_TRUE(setup.Daemon().IsRunning());
}

}  // namespace

#endif
