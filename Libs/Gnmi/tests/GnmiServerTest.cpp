#include <grpcpp/grpcpp.h>
#include <grpcpp/impl/client_unary_call.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "Arq/Gnmi/Encode.h"
#include "Arq/Gnmi/GnmiServer.h"
#include "Arq/Monitoring/Model/Numbers.h"
#include "Arq/TestSupport/TempDir.h"
#include "gnmi.grpc.pb.h"

namespace {

using namespace Arq::Gnmi;
namespace Model = Arq::OrvoViaSwitch::Domain::Model;
namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
using namespace std::chrono_literals;

std::shared_ptr<Model::SwitchModel> OnePortDown() {
  auto model = std::make_shared<Model::SwitchModel>();
  Model::Port port;
  port.name = "1/1";
  port.link = Model::LinkState::Down;
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
    store.Publish(OnePortDown());
    if (settings.address.empty()) {
      settings.address = "127.0.0.1:" + std::to_string(Arq::TestSupport::FreeTcpPort());
    }
    std::string error;
    server = GnmiServer::Create(settings, store, error);
    EXPECT_NE(server, nullptr) << error;
    if (!server) return;
    stub = gnmi::gNMI::NewStub(grpc::CreateChannel("127.0.0.1:" + std::to_string(server->Port()),
                                                   grpc::InsecureChannelCredentials()));
  }
};

std::unique_ptr<grpc::ClientContext> Context() {
  auto context = std::make_unique<grpc::ClientContext>();
  context->set_deadline(std::chrono::system_clock::now() + 10s);
  return context;
}

gnmi::Path OperStatus() {
  gnmi::Path path;
  ToProto(*ParsePath("/interfaces/interface[name=1/1]/state/oper-status"), &path);
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
  const std::string free = "127.0.0.1:" + std::to_string(Arq::TestSupport::FreeTcpPort());
  const Case cases[] = {
      {with("0.0.0.0:9339", "", "", "", ""),
       "0.0.0.0:9339 is not a loopback address and no TLS is configured: plaintext is served on "
       "loopback addresses only"},
      {with("127.0.0.1", "", "", "", ""), "ORVOVIA_GNMI_ADDRESS '127.0.0.1' is not host:port"},
      {with(free, "/nonexistent/cert", "", "", ""),
       "TLS needs both ORVOVIA_GNMI_TLS_CERT and ORVOVIA_GNMI_TLS_KEY"},
      {with(free, "/nonexistent/cert", "/nonexistent/key", "", ""),
       "cert_file /nonexistent/cert: cannot open: No such file or directory"},
      {with(free, "", "", "/nonexistent/ca", ""),
       "ORVOVIA_GNMI_TLS_CLIENT_CA needs TLS (ORVOVIA_GNMI_TLS_CERT and _KEY)"},
      {with(free, "", "", "", "/nonexistent/users"),
       "/nonexistent/users: cannot open: No such file or directory"},
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

// Over gRPC on loopback what the daemon's system test does not ask: an
// encoding not served, Set, a request that does not parse, and the cap on
// subscriptions.
TEST(GnmiServerTest, RefusesWhatItDoesNotServeAndCapsSubscriptions) {
  Settings settings;
  settings.maxSubscriptions = 1;
  Served served(settings);
  ASSERT_TRUE(served.stub);
  gnmi::GetRequest get;
  *get.add_path() = OperStatus();
  get.set_encoding(gnmi::JSON);
  gnmi::GetResponse answer;
  EXPECT_EQ(served.stub->Get(Context().get(), get, &answer).error_code(),
            grpc::StatusCode::UNIMPLEMENTED);
  gnmi::SetResponse set;
  EXPECT_EQ(served.stub->Set(Context().get(), {}, &set).error_code(),
            grpc::StatusCode::UNIMPLEMENTED);
  // Bytes that are no GetRequest (a prefix cut in the middle of a varint);
  // the next Get is answered.
  gnmi::TypedValue garbage;
  garbage.set_string_val("\x80");
  const auto channel = grpc::CreateChannel("127.0.0.1:" + std::to_string(served.server->Port()),
                                           grpc::InsecureChannelCredentials());
  EXPECT_EQ(
      (grpc::internal::BlockingUnaryCall<gnmi::TypedValue, gnmi::GetResponse,
                                         grpc::protobuf::MessageLite, grpc::protobuf::MessageLite>(
           channel.get(),
           grpc::internal::RpcMethod("/gnmi.gNMI/Get", grpc::internal::RpcMethod::NORMAL_RPC),
           Context().get(), garbage, &answer)
           .error_code()),
      grpc::StatusCode::INVALID_ARGUMENT);
  get.set_encoding(gnmi::PROTO);
  ASSERT_TRUE(served.stub->Get(Context().get(), get, &answer).ok());
  EXPECT_EQ(answer.notification(0).update(0).val().string_val(), "DOWN");

  auto first = Context();
  auto open = served.stub->Subscribe(first.get());
  gnmi::SubscribeRequest request;
  *request.mutable_subscribe()->add_subscription()->mutable_path() = OperStatus();
  request.mutable_subscribe()->set_encoding(gnmi::PROTO);
  ASSERT_TRUE(open->Write(request));
  gnmi::SubscribeResponse response;
  ASSERT_TRUE(open->Read(&response));
  EXPECT_EQ(response.update().update(0).val().string_val(), "DOWN");
  auto second = Context();
  auto refused = served.stub->Subscribe(second.get());
  EXPECT_FALSE(refused->Read(&response));
  EXPECT_EQ(refused->Finish().error_code(), grpc::StatusCode::RESOURCE_EXHAUSTED);
  first->TryCancel();
}

}  // namespace
