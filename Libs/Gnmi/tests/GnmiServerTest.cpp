#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>

#include "Arq/Gnmi/GnmiServer.h"
#include "Arq/Monitoring/Model/Numbers.h"
#include "gnmi.grpc.pb.h"

namespace {

using namespace Arq::Gnmi;
namespace Model = Arq::OrvoViaSwitch::Domain::Model;
namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
using namespace std::chrono_literals;

std::shared_ptr<Model::SwitchModel> OnePort(Model::LinkState link) {
  auto model = std::make_shared<Model::SwitchModel>();
  Model::Port port;
  port.name = "1/1";
  port.link = link;
  model->ports.push_back(port);
  Model::Interface eth;
  eth.name = "eth1";
  eth.type = Dto::IfType::Ethernet;
  eth.members = {0};
  eth.consistent = true;
  model->interfaces.push_back(eth);
  model->collection.collectedAtWall = std::chrono::system_clock::now();
  Arq::Monitoring::Numbers("").Assign(*model, 0);
  return model;
}

struct Served {
  Model::SwitchModelStore store;
  std::unique_ptr<GnmiServer> server;
  std::unique_ptr<gnmi::gNMI::Stub> stub;
  explicit Served(Settings settings = {}) {
    store.Publish(OnePort(Model::LinkState::Down));
    if (settings.address.empty()) settings.address = "127.0.0.1:0";
    std::string error;
    server = GnmiServer::Create(settings, store, error);
    EXPECT_NE(server, nullptr) << error;
    if (!server) return;
    stub = gnmi::gNMI::NewStub(grpc::CreateChannel("127.0.0.1:" + std::to_string(server->Port()),
                                                   grpc::InsecureChannelCredentials()));
  }
};

std::unique_ptr<grpc::ClientContext> Context(const char* user = nullptr,
                                             const char* password = nullptr) {
  auto context = std::make_unique<grpc::ClientContext>();
  context->set_deadline(std::chrono::system_clock::now() + 10s);
  if (user != nullptr) context->AddMetadata("username", user);
  if (password != nullptr) context->AddMetadata("password", password);
  return context;
}

gnmi::Path OperStatus() {
  gnmi::Path path;
  path.add_elem()->set_name("interfaces");
  auto* list = path.add_elem();
  list->set_name("interface");
  (*list->mutable_key())["name"] = "1/1";
  path.add_elem()->set_name("state");
  path.add_elem()->set_name("oper-status");
  return path;
}

TEST(GnmiServerTest, RefusesSettingsThatCannotWork) {
  const int busy = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ASSERT_EQ(bind(busy, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(busy, 1), 0);
  ASSERT_EQ(getsockname(busy, reinterpret_cast<sockaddr*>(&address), &length), 0);
  const std::string inUse = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  struct Case {
    Settings settings;
    std::string error;
  };
  const auto with = [](std::string address, std::string cert, std::string key, std::string ca,
                       std::string users) {
    Settings s;
    s.address = std::move(address);
    s.certFile = std::move(cert);
    s.keyFile = std::move(key);
    s.clientCaFile = std::move(ca);
    s.usersFile = std::move(users);
    return s;
  };
  const Case cases[] = {
      {with("0.0.0.0:0", "", "", "", ""),
       "plaintext gNMI only on a loopback address; set ORVOVIA_GNMI_TLS_CERT and "
       "ORVOVIA_GNMI_TLS_KEY to listen on 0.0.0.0"},
      {with("127.0.0.1", "", "", "", ""), "ORVOVIA_GNMI_ADDRESS '127.0.0.1' is not host:port"},
      {with("127.0.0.1:0", "/nonexistent/cert", "", "", ""),
       "TLS needs both ORVOVIA_GNMI_TLS_CERT and ORVOVIA_GNMI_TLS_KEY"},
      {with("127.0.0.1:0", "/nonexistent/cert", "/nonexistent/key", "", ""),
       "/nonexistent/key: No such file or directory"},
      {with("127.0.0.1:0", "", "", "/nonexistent/ca", ""),
       "ORVOVIA_GNMI_TLS_CLIENT_CA needs TLS (ORVOVIA_GNMI_TLS_CERT and _KEY)"},
      {with("127.0.0.1:0", "", "", "", "/nonexistent/users"),
       "/nonexistent/users: No such file or directory"},
      {with(inUse, "", "", "", ""), "cannot listen on " + inUse + " (address in use or not local)"},
  };
  Model::SwitchModelStore store;
  for (const auto& c : cases) {
    std::string error;
    EXPECT_EQ(GnmiServer::Create(c.settings, store, error), nullptr) << c.settings.address;
    EXPECT_EQ(error, c.error);
  }
  close(busy);
}

TEST(GnmiServerTest, AnswersCapabilitiesGetAndRefusesSet) {
  Served served;
  ASSERT_TRUE(served.stub);
  gnmi::CapabilityResponse capabilities;
  ASSERT_TRUE(served.stub->Capabilities(Context().get(), {}, &capabilities).ok());
  EXPECT_EQ(capabilities.gnmi_version(), "0.10.0");
  EXPECT_EQ(capabilities.supported_encodings_size(), 2);

  gnmi::GetRequest get;
  *get.add_path() = OperStatus();
  get.set_encoding(gnmi::PROTO);
  gnmi::GetResponse answer;
  ASSERT_TRUE(served.stub->Get(Context().get(), get, &answer).ok());
  ASSERT_EQ(answer.notification_size(), 1);
  ASSERT_EQ(answer.notification(0).update_size(), 1);
  EXPECT_EQ(answer.notification(0).update(0).val().string_val(), "DOWN");

  get.set_encoding(gnmi::JSON);
  EXPECT_EQ(served.stub->Get(Context().get(), get, &answer).error_code(),
            grpc::StatusCode::UNIMPLEMENTED);
  gnmi::SetResponse set;
  EXPECT_EQ(served.stub->Set(Context().get(), {}, &set).error_code(),
            grpc::StatusCode::UNIMPLEMENTED);
}

TEST(GnmiServerTest, StreamsAnOperStatusFlipOnChange) {
  Served served;
  ASSERT_TRUE(served.stub);
  auto context = Context();
  auto stream = served.stub->Subscribe(context.get());
  gnmi::SubscribeRequest request;
  auto* list = request.mutable_subscribe();
  list->set_encoding(gnmi::JSON_IETF);
  auto* subscription = list->add_subscription();
  *subscription->mutable_path() = OperStatus();
  subscription->set_mode(gnmi::ON_CHANGE);
  ASSERT_TRUE(stream->Write(request));
  gnmi::SubscribeResponse response;
  ASSERT_TRUE(stream->Read(&response));
  EXPECT_EQ(response.update().update(0).val().json_ietf_val(), "\"DOWN\"");
  ASSERT_TRUE(stream->Read(&response));
  EXPECT_TRUE(response.sync_response());
  auto up = OnePort(Model::LinkState::Up);
  served.store.Publish(up);
  ASSERT_TRUE(stream->Read(&response));
  EXPECT_EQ(response.update().update(0).val().json_ietf_val(), "\"UP\"");
  EXPECT_EQ(response.update().timestamp(), std::chrono::duration_cast<std::chrono::nanoseconds>(
                                               up->collection.collectedAtWall.time_since_epoch())
                                               .count());
  context->TryCancel();
}

TEST(GnmiServerTest, ChecksUsersAndCapsSubscriptions) {
  char folder[] = "/tmp/gnmi-users-XXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string file = std::string(folder) + "/users";
  std::ofstream(file) << "alice:$6$saltsalt$TVLlQcbpFVof5W3Yz4DTP6gRstiNuHwwTt6GLc1E5n0U0aDehy0S5"
                         "knV8wiOQSpT0Y77vwPZN.Pq.H91p5hVO1\n";
  Settings settings;
  settings.usersFile = file;
  settings.maxSubscriptions = 1;
  Served served(settings);
  std::remove(file.c_str());
  rmdir(folder);
  ASSERT_TRUE(served.stub);
  gnmi::CapabilityResponse capabilities;
  EXPECT_TRUE(served.stub->Capabilities(Context("alice", "secret").get(), {}, &capabilities).ok());
  EXPECT_EQ(
      served.stub->Capabilities(Context("alice", "wrong").get(), {}, &capabilities).error_code(),
      grpc::StatusCode::UNAUTHENTICATED);
  EXPECT_EQ(served.stub->Capabilities(Context().get(), {}, &capabilities).error_code(),
            grpc::StatusCode::UNAUTHENTICATED);

  auto first = Context("alice", "secret");
  auto open = served.stub->Subscribe(first.get());
  gnmi::SubscribeRequest request;
  request.mutable_subscribe()->add_subscription()->mutable_path()->add_elem()->set_name(
      "interfaces");
  request.mutable_subscribe()->set_encoding(gnmi::PROTO);
  ASSERT_TRUE(open->Write(request));
  gnmi::SubscribeResponse response;
  ASSERT_TRUE(open->Read(&response));
  auto second = Context("alice", "secret");
  auto refused = served.stub->Subscribe(second.get());
  EXPECT_FALSE(refused->Read(&response));
  EXPECT_EQ(refused->Finish().error_code(), grpc::StatusCode::RESOURCE_EXHAUSTED);
  first->TryCancel();
}

}  // namespace
