#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "Arq/TestSupport/Certificates.h"
#include "Daemon.h"

namespace {

using Arq::SystemTests::DaemonSetup;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::RunCommand;
using Arq::TestSupport::WaitUntil;
using testing::HasSubstr;
using namespace std::chrono_literals;

// bcrypt (cost 4) of "secret".
constexpr const char* kHash = "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqkIUcWuZGjByxq";

// An HTTP answer as curl saw it: its status code ("000" when there was
// none), headers and body.
struct Answer {
  std::string code;
  std::string headers;
  std::string body;
};

class MetricsEndpointTest : public testing::Test {
 protected:
  Answer Get(const std::vector<std::string>& options, const std::string& scheme = "https") {
    std::vector<std::string> argv{"curl",       "-sS",
                                  "--max-time", "5",
                                  "--cacert",   Dir().File("ca.pem"),
                                  "-o",         Dir().File("body"),
                                  "-D",         Dir().File("headers"),
                                  "-w",         "%{http_code}"};
    argv.insert(argv.end(), options.begin(), options.end());
    argv.push_back(scheme + "://127.0.0.1:" + std::to_string(port) + "/metrics");
    std::remove(Dir().File("body").c_str());
    std::remove(Dir().File("headers").c_str());
    const auto result = RunCommand(argv, {}, 10s);
    return {result.output, ReadFile(Dir().File("headers")), ReadFile(Dir().File("body"))};
  }
  std::vector<std::string> Client(const std::string& password = "secret") {
    return {"--cert", Dir().File("client.pem"), "--key", Dir().File("client.key"),
            "-u",     "prometheus:" + password};
  }
  Arq::TestSupport::TempDir& Dir() { return setup.Dir(); }

  DaemonSetup setup;
  int port = Arq::TestSupport::FreeTcpPort();
};

// The endpoint over TLS with client certificates and basic auth: refused in
// plaintext on a non-loopback address with one line while SNMP serves on;
// then served to the right client only, through a malformed request and a
// client that connects and says nothing.
TEST_F(MetricsEndpointTest, ServesTheRightClientOnlyAndSurvivesBadOnes) {
  const std::string address = "127.0.0.1:" + std::to_string(port);
  setup.StartDaemon(
      {"monitoring_processor_mode:Fake", "collect_metrics_period:1", "log_level:Info"},
      {{"ORVOVIA_METRICS_ADDRESS", "0.0.0.0:" + std::to_string(port)}});
  ASSERT_TRUE(setup.WaitForGet("1.1.0", "Counter32: 16", 10s)) << setup.Stderr();
  const std::string refusal = "Prometheus endpoint not started: 0.0.0.0:" + std::to_string(port) +
                              " is not a loopback address and no TLS is configured: plaintext is "
                              "served on loopback addresses only";
  EXPECT_THAT(setup.Stdout(), HasSubstr(refusal));
  EXPECT_EQ(Get({}, "http").code, "000");
  setup.ExpectOrderlyStop(SIGTERM, 10s);

  Arq::TestSupport::MakeTestCertificates(Dir().Path());
  Arq::TestSupport::WriteFile(Dir().File("web.yml"),
                              "tls_server_config:\n"
                              "  cert_file: server.pem\n"
                              "  key_file: server.key\n"
                              "  client_auth_type: RequireAndVerifyClientCert\n"
                              "  client_ca_file: ca.pem\n"
                              "basic_auth_users:\n"
                              "  prometheus: " +
                                  std::string(kHash) + "\n");
  setup.StartDaemon(
      {"monitoring_processor_mode:Fake", "collect_metrics_period:1", "log_level:Info"},
      {{"ORVOVIA_METRICS_ADDRESS", address},
       {"ORVOVIA_METRICS_WEB_CONFIG", Dir().File("web.yml")}});
  ASSERT_TRUE(WaitUntil([&] { return Get(Client()).code == "200"; }, 10s)) << setup.Stdout();
  Answer answer = Get(Client());
  EXPECT_THAT(answer.body, HasSubstr("\norvovia_build_info{version=\"2.2.23\"} 1\n"));
  EXPECT_THAT(answer.headers, HasSubstr("Content-Type: text/plain; version=0.0.4; charset=utf-8"));
  auto openMetrics = Client();
  openMetrics.insert(openMetrics.end(),
                     {"-H", "Accept: application/openmetrics-text; version=1.0.0"});
  answer = Get(openMetrics);
  EXPECT_EQ(answer.code, "200");
  EXPECT_THAT(answer.body, testing::EndsWith("\n# EOF\n"));

  answer = Get(Client("wrong"));
  EXPECT_EQ(answer.code, "401");
  EXPECT_THAT(answer.headers,
              HasSubstr("WWW-Authenticate: Basic realm=\"OrvoVia switch metrics\""));
  EXPECT_EQ(Get({"-u", "prometheus:secret"}).code, "000");  // no client certificate
  EXPECT_EQ(Get({"--cert", Dir().File("rogue.pem"), "--key", Dir().File("rogue.key"), "-u",
                 "prometheus:secret"})
                .code,
            "000");  // a certificate no authority of ours signed
  EXPECT_EQ(Get(Client(), "http").code, "000");

  // A request that is not HTTP: 400, and the server serves on.
  const auto malformed = RunCommand(
      {"sh", "-c",
       "(printf 'NOT HTTP\\r\\n\\r\\n'; sleep 2) | openssl s_client -quiet -connect " + address +
           " -cert " + Dir().File("client.pem") + " -key " + Dir().File("client.key") +
           " -CAfile " + Dir().File("ca.pem") + " 2>/dev/null"},
      {}, 15s);
  EXPECT_THAT(malformed.output, testing::StartsWith("HTTP/1.1 400 Bad Request\r\n"));

  // A client that connects and says nothing holds one connection until the
  // idle limit (10 s) cuts it; others are served meanwhile.
  const int silent = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_GE(silent, 0);
  sockaddr_in target{};
  target.sin_family = AF_INET;
  target.sin_port = htons(static_cast<std::uint16_t>(port));
  target.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(connect(silent, reinterpret_cast<sockaddr*>(&target), sizeof target), 0);
  const timeval bound{20, 0};
  setsockopt(silent, SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
  const auto connected = std::chrono::steady_clock::now();
  EXPECT_EQ(Get(Client()).code, "200");
  // A TLS alert may come first; then the end of the stream.
  char bytes[64];
  ssize_t got = 0;
  for (int reads = 0; reads < 8 && (got = recv(silent, bytes, sizeof bytes, 0)) > 0; ++reads) {
  }
  EXPECT_EQ(got, 0) << "not closed by the server";
  EXPECT_GE(std::chrono::steady_clock::now() - connected, 5s);
  close(silent);

  EXPECT_EQ(Get(Client()).code, "200");
  EXPECT_EQ(setup.Get("1.1.0"), "Counter32: 16");
  setup.ExpectOrderlyStop(SIGTERM, 10s);
}

}  // namespace
