#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>
#include <thread>

#include "Daemon.h"

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ChildProcess;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::RunCommand;
using Arq::TestSupport::WaitUntil;
using namespace std::chrono_literals;

Json::Value ParseJson(const std::string& text) {
  Json::Value value;
  std::istringstream in(text);
  std::string errors;
  return Json::parseFromStream(Json::CharReaderBuilder(), in, &value, &errors) ? value
                                                                               : Json::Value();
}

// The daemon fed by the simulator's full-capacity switch, its endpoint scraped
// every second by Debian's Prometheus, started privately (its own folder for
// configuration and storage, a free port on 127.0.0.1).
class NativePrometheusTest : public testing::Test {
 protected:
  void SetUp() override {
    simulator = Arq::TestSupport::StartSimulator(
        {ARQ_SIMULATOR_PATH, "--port", "0", "--control-port", "0", "--scenario", kScenario},
        setup.Dir().File("simulator.out"));
    ASSERT_NE(simulator.port, 0) << ReadFile(setup.Dir().File("simulator.out"));
    setup.StartDaemon({"monitoring_processor_mode:Thrift", "remote_ip_address:127.0.0.1",
                       "remote_port_number:" + std::to_string(simulator.port),
                       "remote_ms_connection_timeout:1000", "remote_ms_receive_timeout:2000",
                       "collect_metrics_period:1"},
                      {{"ORVOVIA_METRICS_ADDRESS", "127.0.0.1:" + std::to_string(endpoint)}});
    Arq::TestSupport::WriteFile(
        setup.Dir().File("prometheus.yml"),
        "global:\n  scrape_interval: 1s\n  evaluation_interval: 1s\n"
        "scrape_configs:\n  - job_name: orvovia-switch-native\n    static_configs:\n"
        "      - targets: ['127.0.0.1:" +
            std::to_string(endpoint) + "']\n");
    prometheus = std::make_unique<ChildProcess>(
        std::vector<std::string>{
            "prometheus", "--config.file=" + setup.Dir().File("prometheus.yml"),
            "--storage.tsdb.path=" + setup.Dir().File("tsdb"),
            "--web.listen-address=127.0.0.1:" + std::to_string(web), "--log.level=warn"},
        std::map<std::string, std::string>{}, setup.Dir().File("prometheus.out"));
  }
  // The result vector of an instant query, by the value of `label`.
  std::map<std::string, double> Query(const std::string& promql, const std::string& label) {
    const auto result =
        RunCommand({"curl", "-sS", "--max-time", "10", "-G", "--data-urlencode", "query=" + promql,
                    "http://127.0.0.1:" + std::to_string(web) + "/api/v1/query"},
                   {}, 15s);
    std::map<std::string, double> values;
    const Json::Value answer = ParseJson(result.output);
    for (const auto& sample : answer["data"]["result"]) {
      values[sample["metric"][label].asString()] = std::stod(sample["value"][1].asString());
    }
    return values;
  }

  static constexpr const char* kScenario = ARQ_SOURCE_DIR "/etc/simulator/full-capacity.json";
  DaemonSetup setup;
  Arq::TestSupport::Simulator simulator;
  int endpoint = Arq::TestSupport::FreeTcpPort();
  int web = Arq::TestSupport::FreeTcpPort();
  std::unique_ptr<ChildProcess> prometheus;
};

TEST_F(NativePrometheusTest, RatesPrometheusComputesMatchTheSimulatorsAndTheScrapeLintsClean) {
  // The simulator's traffic, read from the scenario: octets grow by rate / 8
  // a second, unicast frames by rate / 8 / 1000 (its default frame length).
  std::map<std::string, std::pair<double, double>> traffic;  // port -> rx, tx bit/s
  std::ifstream file(kScenario);
  std::stringstream text;
  text << file.rdbuf();
  const Json::Value scenario = ParseJson(text.str());
  for (const auto& port : scenario["ports"]) {
    traffic[port["name"].asString()] = {port["rates"]["rx"].asDouble(),
                                        port["rates"]["tx"].asDouble()};
  }
  ASSERT_EQ(traffic.size(), 114u);

  const std::string up = R"(up{job="orvovia-switch-native"})";
  ASSERT_TRUE(WaitUntil([&] { return Query(up, "job")["orvovia-switch-native"] == 1; }, 30s))
      << ReadFile(setup.Dir().File("prometheus.out")) << setup.Stderr();
  // A scrape reads the last collection, up to one period (1 s) old, so a rate
  // over a window W is off by up to 1 s / W: 65 s of scrapes and W = 60 s.
  std::this_thread::sleep_for(65s);
  struct Rate {
    std::string promql;
    bool transmit;
    double bitsPerUnit;
  };
  const Rate rates[] = {
      {R"(rate(orvovia_port_received_bytes_total{kind="good"}[60s]))", false, 8},
      {R"(rate(orvovia_port_transmitted_bytes_total[60s]))", true, 8},
      {R"(rate(orvovia_port_received_packets_total{kind="unicast"}[60s]))", false, 8000},
  };
  double worst = 0;
  for (const auto& rate : rates) {
    const auto measured = Query(rate.promql, "ifName");
    EXPECT_EQ(measured.size(), traffic.size()) << rate.promql;
    for (const auto& [port, value] : measured) {
      const auto& [rx, tx] = traffic.at(port);
      const double expected = (rate.transmit ? tx : rx) / rate.bitsPerUnit;
      EXPECT_NEAR(value / expected, 1.0, 0.02) << rate.promql << " " << port;
      worst = std::max(worst, std::abs(value / expected - 1));
    }
  }
  std::cout << "largest departure of a rate from the simulator's: " << worst * 100 << " %\n";

  // promtool's lint of a real scrape finds one thing only: IF-MIB's label
  // names (ifIndex, ifName, ifAlias) are not snake_case, on the port families.
  const auto lint =
      RunCommand({"sh", "-c",
                  "curl -sS --max-time 10 http://127.0.0.1:" + std::to_string(endpoint) +
                      "/metrics | promtool check metrics 2>&1"},
                 {}, 30s);
  const std::regex camelCase(
      R"((orvovia_(port|lag|lldp|ptp)_\w+) label names should be written in 'snake_case' not 'camelCase')");
  std::istringstream lines(lint.output);
  std::size_t findings = 0;
  for (std::string line; std::getline(lines, line); ++findings) {
    std::smatch match;
    EXPECT_TRUE(std::regex_match(line, match, camelCase)) << line;
  }
  EXPECT_GT(findings, 0u);
}

}  // namespace
