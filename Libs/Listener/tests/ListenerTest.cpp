#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "Arq/Listener/BasicAuth.h"
#include "Arq/Listener/Endpoint.h"
#include "Arq/Listener/Files.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using namespace Arq::Listener;

TEST(EndpointTest, ParsesWhatTheEnvironmentVariableMayHold) {
  struct Case {
    const char* text;
    const char* canonical;  // "" when refused
    bool loopback;
  };
  const Case cases[] = {
      {"127.0.0.1:9132", "127.0.0.1:9132", true},
      {"localhost:65535", "127.0.0.1:65535", true},
      {"[::1]:9132", "[::1]:9132", true},
      {"[::ffff:127.0.0.1]:9132", "[::ffff:127.0.0.1]:9132", true},
      {"0.0.0.0:9132", "0.0.0.0:9132", false},
      {"192.0.2.7:9132", "192.0.2.7:9132", false},
      {"[2001:db8::1]:443", "[2001:db8::1]:443", false},
      {"127.0.0.1", "", false},
      {"127.0.0.1:0", "", false},
      {"127.0.0.1:65536", "", false},
      {"127.0.0.1:09132", "", false},
      {"::1:9132", "", false},
      {"[127.0.0.1]:9132", "", false},
      {"switch.example:9132", "", false},
      {":9132", "", false},
  };
  for (const auto& c : cases) {
    std::string error;
    const auto endpoint = ParseEndpoint(c.text, error);
    if (*c.canonical == '\0') {
      EXPECT_FALSE(endpoint) << c.text;
      EXPECT_NE(error, "") << c.text;
      continue;
    }
    ASSERT_TRUE(endpoint) << c.text << ": " << error;
    EXPECT_EQ(endpoint->ToString(), c.canonical);
    EXPECT_EQ(endpoint->IsLoopback(), c.loopback) << c.text;
    EXPECT_EQ(PlaintextRefusal(*endpoint).empty(), c.loopback) << c.text;
  }
}

TEST(FilesTest, ReadsSmallRegularFilesAndRefusesTheRest) {
  Arq::TestSupport::TempDir dir;
  Arq::TestSupport::WriteFile(dir.File("small"), "0123456789");
  Arq::TestSupport::WriteFile(dir.File("large"), std::string(11, 'x'));
  mkfifo(dir.File("fifo").c_str(), 0600);
  struct Case {
    std::string path;
    std::string error;
  };
  const Case cases[] = {
      {dir.File("small"), ""},
      {dir.File("large"), "larger than 10 bytes"},
      {dir.File("missing"), "cannot open: No such file or directory"},
      {dir.Path(), "not a regular file"},
      {dir.File("fifo"), "not a regular file"},
  };
  for (const auto& c : cases) {
    std::string content = "stale";
    EXPECT_EQ(ReadBoundedFile(c.path, 10, content), c.error) << c.path;
    EXPECT_EQ(content, c.error.empty() ? "0123456789" : "") << c.path;
  }
}

// The published bcrypt test vector, and hashes of "secret" made by Python's crypt.
constexpr const char* kVectorHash = "$2a$05$CCCCCCCCCCCCCCCCCCCCC.E5YPO9kmyuRGyh0XouQYb4YMJKvyOeW";
constexpr const char* kSecretBcrypt =
    "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqkIUcWuZGjByxq";
constexpr const char* kSecretSha512 =
    "$6$NX7YLaZ7V2syfPP/"
    "$9qv3hMmxjroIreKKEOAfAQ1eVYiTtDj.fFvnHc8J7RoCd7mNe3kseeUIsxLkZ2gMBFdI6PPW266"
    "bCO4ByXIXW/";

TEST(PasswordTest, ChecksCryptHashes) {
  struct Case {
    std::string password;
    std::string hash;
    bool matches;
  };
  const Case cases[] = {
      {"U*U", kVectorHash, true},      {"U*V", kVectorHash, false},
      {"secret", kSecretBcrypt, true}, {"Secret", kSecretBcrypt, false},
      {"", kSecretBcrypt, false},      {std::string("secret\0more", 11), kSecretBcrypt, false},
      {"secret", kSecretSha512, true}, {"secret", "secret", false},
      {"secret", "", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PasswordMatches(c.password, c.hash), c.matches) << c.password << " " << c.hash;
  }
  EXPECT_TRUE(IsPasswordHash(kVectorHash));
  EXPECT_TRUE(IsPasswordHash(kSecretSha512));
  for (const char* bad : {"", "secret", "$2b$04$RiBzOAtrejI/i798Oo5.P.KRkyBpc7nV6FFd.oeqk",
                          "$2b$04$", "$9$abc", "*0"}) {
    EXPECT_FALSE(IsPasswordHash(bad)) << bad;
  }
}

TEST(BasicAuthUsersTest, AcceptsTheRightPairOnlyAndRemembersIt) {
  BasicAuthUsers users({{"prometheus", kSecretBcrypt}, {"ops", kVectorHash}});
  EXPECT_FALSE(users.Empty());
  for (int round = 0; round < 2; ++round) {  // the second round is answered from memory
    EXPECT_TRUE(users.Check("prometheus", "secret"));
    EXPECT_TRUE(users.Check("ops", "U*U"));
    EXPECT_FALSE(users.Check("prometheus", "U*U"));
    EXPECT_FALSE(users.Check("ops", "secret"));
    EXPECT_FALSE(users.Check("nobody", "secret"));
    EXPECT_FALSE(users.Check("Prometheus", "secret"));
    EXPECT_FALSE(users.Check("", ""));
  }
  BasicAuthUsers none;
  EXPECT_TRUE(none.Empty());
  EXPECT_FALSE(none.Check("prometheus", "secret"));
}

}  // namespace
