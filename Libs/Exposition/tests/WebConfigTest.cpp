#include <gtest/gtest.h>

#include "Arq/Exposition/WebConfig.h"
#include "Arq/TestSupport/Certificates.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::Exposition::LoadWebConfig;
using Arq::Exposition::WebConfig;
using Arq::Listener::ClientAuth;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::WriteFile;

constexpr const char* kHash = "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqkIUcWuZGjByxq";
constexpr const char* kBothVersions =
    "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:%SERVER_PRECEDENCE";

class WebConfigTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir = new Arq::TestSupport::TempDir("arq-webconfig");
    Arq::TestSupport::MakeTestCertificates(dir->Path());
  }
  static void TearDownTestSuite() { delete dir; }
  static std::string File(const std::string& name) { return dir->File(name); }
  static Arq::TestSupport::TempDir* dir;
};
Arq::TestSupport::TempDir* WebConfigTest::dir = nullptr;

// A PEM text as a YAML block scalar under a key indented by two.
std::string Block(const std::string& pem) {
  std::string text = "|\n";
  for (std::size_t start = 0; start < pem.size();) {
    const auto end = pem.find('\n', start);
    text += "    " + pem.substr(start, end - start) + "\n";
    start = end == std::string::npos ? pem.size() : end + 1;
  }
  return text;
}

TEST_F(WebConfigTest, LoadsWhatExportersAccept) {
  const std::string server =
      "tls_server_config:\n  cert_file: server.pem\n  key_file: server.key\n";
  const std::string pem = ReadFile(File("server.pem")), ca = ReadFile(File("ca.pem"));
  struct Case {
    std::string text;
    bool tls;
    ClientAuth policy;
    std::string priorities, certificate, authorities;
    std::size_t users, headers;
  };
  const Case cases[] = {
      {"", false, ClientAuth::NoClientCert, "", "", "", 0, 0},
      {std::string("basic_auth_users:\n  prometheus: ") + kHash + "\n  ops: '" + kHash + "'\n",
       false, ClientAuth::NoClientCert, "", "", "", 2, 0},
      // Relative paths start at the file's folder.
      {server, true, ClientAuth::NoClientCert, kBothVersions, pem, "", 0, 0},
      {server + "  client_auth_type: RequireAndVerifyClientCert\n  client_ca_file: " +
           File("ca.pem") + "\n  min_version: TLS13\n  prefer_server_cipher_suites: false\n" +
           "  cipher_suites: []\nhttp_server_config:\n  http2: false\n  headers:\n" +
           "    X-Frame-Options: deny\n    Strict-Transport-Security: max-age=3600\n",
       true, ClientAuth::RequireAndVerifyClientCert, "NORMAL:-VERS-ALL:+VERS-TLS1.3", pem, ca, 0,
       2},
      {"tls_server_config:\n  cert: " + Block(pem) +
           "  key_file: server.key\n  client_auth_type: RequireAnyClientCert\n",
       true, ClientAuth::RequireAnyClientCert, kBothVersions, pem, "", 0, 0},
      // No certificate and no key: no TLS, as the toolkit serves then.
      {"tls_server_config:\n  min_version: TLS12\n", false, ClientAuth::NoClientCert, kBothVersions,
       "", "", 0, 0},
  };
  for (const auto& c : cases) {
    WriteFile(File("web.yml"), c.text);
    std::string error;
    Arq::Listener::TlsMaterial material;
    const auto config = LoadWebConfig(File("web.yml"), material, error);
    ASSERT_TRUE(config) << c.text << "\n" << error;
    EXPECT_EQ(config->tls, c.tls) << c.text;
    EXPECT_EQ(config->clientAuth, c.policy) << c.text;
    EXPECT_EQ(config->priorities, c.priorities) << c.text;
    EXPECT_EQ(material.certificate, c.certificate) << c.text;
    EXPECT_EQ(material.key, c.tls ? ReadFile(File("server.key")) : "") << c.text;
    EXPECT_EQ(material.clientAuthorities, c.authorities) << c.text;
    EXPECT_EQ(config->users.size(), c.users) << c.text;
    EXPECT_EQ(config->headers.size(), c.headers) << c.text;
  }
}

TEST_F(WebConfigTest, RefusesEachKindOfBadFileWithItsReason) {
  const std::string server =
      "tls_server_config:\n  cert_file: server.pem\n  key_file: server.key\n";
  const std::string one =
      "NoClientCert, RequestClientCert, RequireAnyClientCert, "
      "VerifyClientCertIfGiven, RequireAndVerifyClientCert";
  struct Case {
    std::string text;
    std::string error;  // after "web configuration <path>: "; a trailing '*' matches any rest
  };
  const Case cases[] = {
      {"tls_server_config: [", "not YAML: end of sequence flow not found (line 1, column 1)"},
      {"- tls_server_config\n", "the file is not a YAML mapping"},
      {"tls_config:\n  cert_file: x\n", "unknown key tls_config"},
      {"tls_server_config:\n  cert_file: server.pem\n  keyfile: server.key\n",
       "unknown key tls_server_config.keyfile"},
      {"tls_server_config: yes\n", "tls_server_config is not a mapping"},
      {server + "  client_auth_type: Always\n",
       "tls_server_config.client_auth_type 'Always' is not one of " + one},
      {"tls_server_config:\n  cert_file: server.pem\n", "tls_server_config: missing key_file"},
      {"tls_server_config:\n  cert_file: missing.pem\n  key_file: server.key\n",
       "cert_file " + File("missing.pem") + ": cannot open: No such file or directory"},
      {"tls_server_config:\n  cert_file: server.pem\n  key_file: /\n",
       "key_file /: not a regular file"},
      {"tls_server_config:\n  cert_file: server.pem\n  key_file: rogue.key\n",
       "cert_file " + File("server.pem") + " and key_file " + File("rogue.key") +
           ": not a PEM certificate chain and its private key (*"},
      {server + "  client_auth_type: RequireAndVerifyClientCert\n  client_ca_file: server.key\n",
       "client_ca_file " + File("server.key") + ": no PEM certificate in it"},
      {server + "  client_ca_file: ca.pem\n",
       "tls_server_config: client_ca_file is given but client_auth_type is NoClientCert"},
      {server + "  client_auth_type: VerifyClientCertIfGiven\n",
       "tls_server_config: client_auth_type VerifyClientCertIfGiven verifies client certificates "
       "against client_ca_file, which is missing"},
      {"tls_server_config:\n  client_auth_type: RequestClientCert\n",
       "tls_server_config: client certificates need TLS, and no cert_file is given"},
      {server + "  min_version: TLS13\n  max_version: TLS12\n",
       "tls_server_config: min_version TLS13 is above max_version TLS12"},
      {server + "  min_version: TLS1.2\n",
       "tls_server_config.min_version 'TLS1.2' is not one of TLS10, TLS11, TLS12, TLS13"},
      {server + "  cipher_suites: [TLS_AES_128_GCM_SHA256]\n",
       "tls_server_config.cipher_suites is not supported by this server*"},
      {server + "  prefer_server_cipher_suites: maybe\n",
       "tls_server_config.prefer_server_cipher_suites is not true or false"},
      {"rate_limit:\n  interval: 1s\n  burst: 20\n", "rate_limit is not supported by this server*"},
      {"http_server_config:\n  headers:\n    X-Powered-By: me\n",
       "http_server_config.headers.X-Powered-By: this header cannot be set"},
      {"basic_auth_users:\n  prometheus: secret\n",
       "basic_auth_users.prometheus is not a bcrypt (or other crypt) password hash"},
      {std::string("basic_auth_users:\n  'a:b': ") + kHash + "\n",
       "basic_auth_users: 'a:b' cannot be a basic-auth user name"},
      {std::string("basic_auth_users:\n  a: ") + kHash + "\n  a: " + kHash + "\n",
       "basic_auth_users.a is given twice"},
  };
  for (const auto& c : cases) {
    WriteFile(File("web.yml"), c.text);
    std::string error;
    Arq::Listener::TlsMaterial material;
    EXPECT_FALSE(LoadWebConfig(File("web.yml"), material, error)) << c.text;
    const std::string expected = "web configuration " + File("web.yml") + ": " + c.error;
    if (expected.back() == '*') {
      EXPECT_EQ(error.substr(0, expected.size() - 1), expected.substr(0, expected.size() - 1));
    } else {
      EXPECT_EQ(error, expected);
    }
  }
  std::string error;
  Arq::Listener::TlsMaterial material;
  EXPECT_FALSE(LoadWebConfig(File("absent.yml"), material, error));
  EXPECT_EQ(error,
            "web configuration " + File("absent.yml") + ": cannot open: No such file or directory");
}

}  // namespace
