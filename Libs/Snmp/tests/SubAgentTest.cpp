#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/SnmpMaster.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::SnmpMaster;
using Arq::TestSupport::TempDir;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

const std::string B = "1.3.6.1.4.1." + std::to_string(ARQ_ENTERPRISE_NUMBER) + ".3.5.1";
std::string MibFact(const std::string& fact) {
  return Arq::TestSupport::RunCommand({"python3", ARQ_SOURCE_DIR "/scripts/mib_facts.py", fact}, {},
                                      10s)
      .output;
}
// A private snmpd and the test sub-agent serving its first set of values.
struct Deployment {
  TempDir dir{"arq-snmp"};
  SnmpMaster master{dir.Path()};
  std::unique_ptr<ChildProcess> agent;
  bool serving = false;

  Deployment() {
    if (!master.Start()) return;
    agent = std::make_unique<ChildProcess>(
        std::vector<std::string>{ARQ_TEST_SUBAGENT, dir.File("agent.log")}, master.Environment(),
        dir.File("agent.out"));
    serving = WaitUntil([&] { return master.Get(B + ".1.1.0") == "Counter32: 2"; }, 20s);
  }
  std::string Get(const std::string& arcs) const { return master.Get(B + "." + arcs); }
  std::string Why() const {
    return ReadFile(dir.File("snmpd.log")) + ReadFile(dir.File("agent.log"));
  }
};

// One deployment for the read-only tests. A deployment that does not serve
// fails every test (a failure in SetUpTestSuite would only skip them).
class SubAgentTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { deployment = new Deployment(); }
  static void TearDownTestSuite() {
    delete deployment;
    deployment = nullptr;
  }
  void SetUp() override { ASSERT_TRUE(deployment->serving) << deployment->Why(); }
  static std::string Get(const std::string& arcs) { return deployment->Get(arcs); }

  static Deployment* deployment;
};
Deployment* SubAgentTest::deployment = nullptr;

// Every syntax of scalar and column, the column rules (+1 on the mode and
// speed, counters as text, rates rounded half up to Mbit/s, texts cut to
// their width), defaults of unwritten holders and rows, unknown columns.
TEST_F(SubAgentTest, CellsFollowTheirColumnRules) {
  struct Cell {
    const char* arcs;
    const char* value;
  };
  for (const auto& cell : std::vector<Cell>{
           {"2.1.0", "Counter32: 1"},
           {"4.1.0", "STRING: \"0123456789abcdefghij\""},
           {"4.2.0", "STRING: \"Arq OrvoVia-24\""},
           {"4.4.0", "IpAddress: 10.0.0.1"},
           {"6.1.0", "STRING: \"studio.cfg\""},
           {"6.2.0", "INTEGER: 0"},
           {"7.2.1.0", "\"\""},  // LAG 1 has no data: the holder's default
           {"7.2.2.0", "INTEGER: -1"},
           {"7.3.1.0", "STRING: \"lag-with-a-very-long\""},
           {"7.3.3.0", "INTEGER: 10"},
           {"7.3.4.0", "STRING: \"10 20 30\""},
           {"7.3.5.0", "INTEGER: 2"},
           {"1.2.1.2.0", "STRING: \"eth1\""},
           {"1.2.1.4.0", "INTEGER: 100"},
           {"1.2.1.7.0", "INTEGER: 1"},  // mode 0 served +1
           {"1.2.1.7.1", "INTEGER: 0"},  // unknown -1 served as 0
           {"1.2.1.8.0", "INTEGER: 5"},
           {"1.2.1.9.0", "INTEGER: 1"},
           {"1.2.1.10.0", "STRING: \"1000\""},
           {"1.2.1.38.0", "STRING: \"1234567890123456789\""},
           {"1.2.1.39.0", "STRING: \"-7\""},
           {"1.2.1.40.0", "INTEGER: 1"},  // 1 499 999 bit/s
           {"1.2.1.41.0", "INTEGER: 2"},  // 1 500 000 bit/s
           {"1.2.1.2.47", "\"\""},
           {"1.2.1.3.47", "INTEGER: -1"},
           {"2.2.1.42.0", "STRING: \"eth18\""},
           {"2.2.1.43.0", "INTEGER: 1"},
           {"2.2.1.77.0", "INTEGER: 2"},
           {"3.2.1.2.0", "INTEGER: -3"},
           {"3.2.1.5.0", "STRING: \"eth1 eth2\""},
           {"5.2.1.3.0", "STRING: \"5.4.1\""},
           {"5.2.1.7.0", "IpAddress: 10.20.0.1"},
           {"5.2.1.7.1", "IpAddress: 0.0.0.0"},
           {"5.2.1.10.0", "INTEGER: 120"},
           {"5.2.1.11.0", "STRING: \"OV48X-2210457\""},
           {"7.3.6.1.2.1", "STRING: \"eth22\""},
           {"7.3.6.1.37.0", "INTEGER: 2"},
           {"7.3.6.1.2.2", "STRING: \" \""},  // past the LAG's two ports: creation content
           {"7.3.6.1.3.5", "INTEGER: -1"}}) {
    EXPECT_EQ(Get(cell.arcs), cell.value) << cell.arcs;
  }
  for (const char* arcs : {"1.2.1.42.0", "1.2.1.1.0"}) {
    EXPECT_THAT(Get(arcs), testing::HasSubstr("No Such Object")) << arcs;
  }
  EXPECT_THAT(Get("1.2.1.2.48"), testing::HasSubstr("No Such Instance"));
}

// Every table has its fixed rows whatever the data: the walk's size counts them.
TEST_F(SubAgentTest, WalksReturnEveryFixedRowOfEveryTable) {
  // The row's own index: a walk never serves row i with row i-1's data.
  const auto names = deployment->master.Walk(B + ".1.2.1.2");
  EXPECT_EQ(names.at(B + ".1.2.1.2.0"), "STRING: \"eth1\"");
  EXPECT_EQ(names.at(B + ".1.2.1.2.1"), "STRING: \"eth2\"");
  EXPECT_EQ(names.at(B + ".1.2.1.2.2"), "\"\"");
  // The whole subtree: arcs 1 to 7, their scalars and every cell of the seven
  // tables; then the collector's scalars and call table, each as many as the
  // sources declare (scripts/mib_facts.py reads the shapes and the calls).
  std::size_t first = 0;
  std::size_t collector = 0;
  for (const auto& [name, value] : deployment->master.Walk(B)) {
    (name.rfind(B + ".8.", 0) == 0 ? collector : first) += 1;
  }
  EXPECT_EQ(std::to_string(first) + "\n", MibFact("data-objects"));
  EXPECT_EQ(std::to_string(collector) + "\n", MibFact("health-objects"));
}

// A value read once is served from the cache afterwards: a second read of an
// unchanged scalar, row or LAG port row writes nothing to the log.
TEST_F(SubAgentTest, RereadingUnchangedValuesLogsNothing) {
  const std::vector<std::string> objects{"1.1.0",     "4.2.0",       "1.2.1.2.0", "1.2.1.41.0",
                                         "5.2.1.7.0", "7.3.6.1.2.1", "7.3.1.0"};
  auto readAll = [&] {
    for (const auto& arcs : objects) Get(arcs);
    deployment->master.Walk(B + ".7.3");
  };
  readAll();
  const std::string logged = ReadFile(deployment->dir.File("agent.log"));
  EXPECT_THAT(logged, testing::HasSubstr("ethernetInterfaceMetrics has changed on row: 0.\n"));
  EXPECT_THAT(logged, testing::HasSubstr("lAGInterfaceMetrics[1] has changed (InterfaceName).\n"));
  readAll();
  EXPECT_EQ(ReadFile(deployment->dir.File("agent.log")), logged);
}

// Each kind of object refuses a SET and keeps its value: scalars of every
// syntax, a LAG scalar, and a column of a table (an existing row and a row
// that does not exist).
TEST_F(SubAgentTest, SetsAreRefusedEverywhere) {
  struct Case {
    const char* arcs;
    const char* type;
    const char* value;
    const char* error;
  };
  for (const auto& c : std::vector<Case>{{"1.1.0", "u", "9", "notWritable"},
                                         {"4.2.0", "s", "x", "notWritable"},
                                         {"4.4.0", "a", "192.0.2.1", "notWritable"},
                                         {"6.2.0", "i", "1", "notWritable"},
                                         {"7.3.5.0", "u", "1", "notWritable"},
                                         {"1.2.1.3.0", "i", "5", "notWritable"},
                                         {"1.2.1.3.99", "i", "5", "noCreation"},
                                         {"7.4.6.1.3.0", "i", "5", "notWritable"},
                                         {"5.2.1.10.99", "i", "5", "noCreation"}}) {
    SCOPED_TRACE(c.arcs);
    const std::string before = Get(c.arcs);
    const auto result =
        deployment->master.Tool("snmpset", {"-c", "private"}, {B + "." + c.arcs, c.type, c.value});
    EXPECT_THAT(result.output, testing::HasSubstr(c.error));
    EXPECT_EQ(Get(c.arcs), before);
  }
}

// Its own deployment: changes the values, then stops the agent.
TEST(SubAgentLifecycleTest, ChangesAreServedAndSigtermEndsCleanly) {
  Deployment d;
  ASSERT_TRUE(d.serving) << d.Why();
  auto Get = [&](const std::string& arcs) { return d.Get(arcs); };
  d.agent->Signal(SIGUSR1);
  EXPECT_TRUE(WaitUntil([&] { return Get("1.1.0") == "Counter32: 3"; }, 10s));
  EXPECT_EQ(Get("4.4.0"), "IpAddress: 0.0.0.0");  // 10.0.0.256
  EXPECT_EQ(Get("6.2.0"), "INTEGER: 1");
  EXPECT_EQ(Get("1.2.1.2.0"), "STRING: \"eth1-renamed\"");
  EXPECT_EQ(Get("7.3.6.1.2.1"), "STRING: \"eth22\"");
  const std::string log = ReadFile(d.dir.File("agent.log"));
  EXPECT_THAT(log, testing::HasSubstr("nbEthernetInterfaces has changed.\n"));
  EXPECT_THAT(log, testing::HasSubstr("ethernetInterfaceMetrics has changed on row: 0.\n"));
  EXPECT_THAT(log,
              testing::HasSubstr(
                  "lAGInterfaceMetrics[1] has changed (InterfaceEthernetMetrics) on row: 1.\n"));

  d.agent->Signal(SIGTERM);
  const auto status = d.agent->WaitExit(10s);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFEXITED(*status));
  EXPECT_EQ(WEXITSTATUS(*status), 0);
  const std::string finalLog = ReadFile(d.dir.File("agent.log"));
  const auto up = finalLog.find("orvovia-snmpd is up and running.\n");
  ASSERT_NE(up, std::string::npos);
  EXPECT_LT(up, finalLog.find("orvovia-snmpd is shutdowning.\n"));
  EXPECT_LT(
      finalLog.find(
          "initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable Initializing Done.\n"),
      up);
  EXPECT_LT(finalLog.find("arqSwitchOrvoViaNbEthernetInterfaces Done initializing.\n"), up);
}

}  // namespace
