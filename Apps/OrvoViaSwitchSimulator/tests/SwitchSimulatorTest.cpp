#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ArqSwitchApi/Interfaces.h>
#include <ArqSwitchApi/LLDP.h>
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/protocol/TMultiplexedProtocol.h>
#include <thrift/protocol/TProtocolException.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TSocket.h>
#include <thrift/transport/TTransportException.h>

#include <thread>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using namespace std::chrono_literals;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::TempDir;
using Arq::TestSupport::WriteFile;

// The simulator as a process; its two ports read from its first line.
class SimulatorTest : public testing::Test {
 protected:
  void SetUp() override { Start({}); }

  void Start(const std::vector<std::string>& options) {
    std::vector<std::string> argv{ARQ_SIMULATOR_PATH};
    argv.insert(argv.end(), options.begin(), options.end());
    auto started = Arq::TestSupport::StartSimulator(argv, dir.File("simulator.out"));
    simulator = std::move(started.process);
    port = started.port;
    controlPort = started.controlPort;
    ASSERT_NE(port, 0);
  }

  template <typename Client>
  std::unique_ptr<Client> Connect(const char* service) {
    using namespace apache::thrift;
    auto socket = std::make_shared<transport::TSocket>("127.0.0.1", port);
    socket->setRecvTimeout(5000);
    auto transport = std::make_shared<transport::TBufferedTransport>(socket);
    transport->open();
    transports.push_back(transport);
    auto protocol = std::make_shared<protocol::TMultiplexedProtocol>(
        std::make_shared<protocol::TBinaryProtocol>(transport), service);
    return std::make_unique<Client>(protocol);
  }

  std::string Control(const std::string& command) {
    return Arq::TestSupport::SendLine(controlPort, command);
  }

  TempDir dir;
  std::unique_ptr<ChildProcess> simulator;
  std::vector<std::shared_ptr<apache::thrift::transport::TTransport>> transports;
  int port = 0;
  int controlPort = 0;
};

TEST_F(SimulatorTest, ServesTheSyntheticSwitchWithMovingCounters) {
  EXPECT_GT(port, 32767);
  EXPECT_LT(port, 65536);
  auto interfaces = Connect<ArqSwitchApi::InterfacesClient>("Interfaces");
  std::vector<std::string> names;
  interfaces->GetIfList(names, ArqSwitchApi::Header_t());
  EXPECT_EQ(names.size(), 21u);
  std::map<std::string, ArqSwitchApi::IfInfo_t> infos;
  interfaces->GetInfo(infos, ArqSwitchApi::Header_t(), {"lag1"});
  EXPECT_EQ(infos.at("lag1").Type, ArqSwitchApi::IfType_t::BasicLag);
  EXPECT_THAT(infos.at("lag1").IfList, testing::ElementsAre("eth21", "eth22"));

  std::map<std::string, std::vector<ArqSwitchApi::EthCnt_t>> before, after;
  interfaces->GetCnt(before, ArqSwitchApi::Header_t(), {"eth3"});
  std::this_thread::sleep_for(1200ms);
  interfaces->GetCnt(after, ArqSwitchApi::Header_t(), {"eth3"});
  EXPECT_GT(after.at("eth3").at(0).NbOfGoodOctetsReceived,
            before.at("eth3").at(0).NbOfGoodOctetsReceived);

  auto lldp = Connect<ArqSwitchApi::LLDPClient>("LLDP");
  std::vector<ArqSwitchApi::lldpInfo_t> neighbours;
  lldp->GetInfo(neighbours, ArqSwitchApi::Header_t());
  ASSERT_EQ(neighbours.size(), 6u);
  EXPECT_EQ(neighbours[0].IfName, "eth21");
  // System Name TLV: type 5, length 10, "core-sw-01".
  EXPECT_EQ(neighbours[0].Tlv.at(5), std::string("\x0a\x0a", 2) + "core-sw-01");
}

// Every kind of fault through the control port, each limited or lifted as
// commanded; SIGTERM then ends the simulator with status 0.
TEST_F(SimulatorTest, FaultsAreSwitchedThroughTheControlPort) {
  using apache::thrift::protocol::TProtocolException;
  using apache::thrift::transport::TTransportException;
  auto interfaces = Connect<ArqSwitchApi::InterfacesClient>("Interfaces");
  std::string mac;
  EXPECT_EQ(Control("fault 6 no such interface"), "ok");
  try {
    interfaces->GetMainMacAddr(mac, {});
    FAIL() << "no fault";
  } catch (const ArqSwitchApi::Fault_t& fault) {
    EXPECT_EQ(fault.ErrCode, ArqSwitchApi::ErrorCode_t::NotFound);
    EXPECT_EQ(fault.What, "no such interface");
  }
  // A fault limited to one call leaves the others answering.
  EXPECT_EQ(Control("only Interfaces:GetMainMacAddr"), "ok");
  std::vector<std::string> names;
  interfaces->GetIfList(names, {});
  EXPECT_EQ(names.size(), 21u);
  EXPECT_EQ(Control("calls Interfaces:GetMainMacAddr"), "calls 1");
  EXPECT_EQ(Control("answer"), "ok");
  interfaces->GetMainMacAddr(mac, {});
  EXPECT_EQ(mac, "02:A0:C9:00:00:01");
  EXPECT_EQ(Control("calls"), "calls 3");

  EXPECT_EQ(Control("only *"), "ok");
  EXPECT_EQ(Control("close"), "ok");
  try {
    Connect<ArqSwitchApi::InterfacesClient>("Interfaces")->GetIfList(names, {});
    FAIL() << "answered";
  } catch (const TTransportException& error) {
    EXPECT_EQ(error.getType(), TTransportException::END_OF_FILE);
  }
  EXPECT_EQ(Control("garbage"), "ok");
  try {
    Connect<ArqSwitchApi::InterfacesClient>("Interfaces")->GetIfList(names, {});
    FAIL() << "answered";
  } catch (const TProtocolException& error) {
    EXPECT_EQ(error.getType(), TProtocolException::BAD_VERSION);
  }
  EXPECT_EQ(Control("bogus"), "error unknown command");
  EXPECT_EQ(Control("fault x"), "error fault needs a code");
  EXPECT_EQ(Control("fault 16 beyond the codes"), "error fault code is not in 0..15");
  EXPECT_EQ(Control("port eth1 sideways"), "error port needs a name and up or down");

  simulator->Signal(SIGTERM);
  const auto status = simulator->WaitExit(10s);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFEXITED(*status));
  EXPECT_EQ(WEXITSTATUS(*status), 0);
}

TEST(SimulatorCommandLineTest, UnusableScenarioEndsTheProcessWithTheReason) {
  TempDir dir;
  WriteFile(dir.File("bad.json"),
            R"({"ports": [{"name": "p"}], "interfaces": [{"name": "e", "type": "Ether"}]})");
  const struct {
    std::string path;
    std::string reason;
  } cases[] = {
      {dir.File("bad.json"), dir.File("bad.json") +
                                 ": interfaces[0].type: \"Ether\" is not one of Unknown, "
                                 "Ethernet, BasicPrs, BasicLag, Virtual, __LAST__ (or a number)"},
      {dir.File("absent.json"), dir.File("absent.json") + ": cannot open the scenario file"},
  };
  for (const auto& bad : cases) {
    const auto result =
        Arq::TestSupport::RunCommand({ARQ_SIMULATOR_PATH, "--scenario", bad.path}, {}, 10s, true);
    ASSERT_TRUE(WIFEXITED(result.status)) << bad.path;
    EXPECT_EQ(WEXITSTATUS(result.status), 1) << bad.path;
    EXPECT_EQ(result.output, "OrvoViaSwitchSimulator: " + bad.reason + "\n");
  }
}

// Each shipped scenario is served; SIGTERM ends the simulator promptly even
// while a client keeps its control connection open.
TEST(SimulatorCommandLineTest, ShippedScenariosAreServed) {
  for (const char* name : {"small.json", "full-capacity.json", "inconsistent.json"}) {
    TempDir dir;
    auto started = Arq::TestSupport::StartSimulator(
        {ARQ_SIMULATOR_PATH, "--scenario", std::string(ARQ_SCENARIO_DIR "/") + name},
        dir.File("simulator.out"));
    ChildProcess& simulator = *started.process;
    EXPECT_NE(started.port, 0) << name;
    const int control = started.controlPort;
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(control));
    ASSERT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0) << name;
    ASSERT_EQ(write(client, "calls\n", 6), 6);
    char reply[32] = {};
    EXPECT_GT(read(client, reply, sizeof reply - 1), 0) << name;
    simulator.Signal(SIGTERM);
    const auto status = simulator.WaitExit(2s);
    close(client);
    ASSERT_TRUE(status) << name;
    EXPECT_EQ(WEXITSTATUS(*status), 0) << name;
  }
}

TEST(SimulatorCommandLineTest, BadArgumentsAreRefused) {
  const auto result =
      Arq::TestSupport::RunCommand({ARQ_SIMULATOR_PATH, "--port", "65536"}, {}, 10s, true);
  ASSERT_TRUE(WIFEXITED(result.status));
  EXPECT_EQ(WEXITSTATUS(result.status), 2);
  EXPECT_THAT(result.output, testing::HasSubstr("usage: OrvoViaSwitchSimulator"));
}

}  // namespace
