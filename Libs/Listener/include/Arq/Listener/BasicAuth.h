#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace Arq::Listener {

// True when `hash` is a crypt(3) hash that Debian's libcrypt verifies (bcrypt
// $2a$/$2b$/$2y$, which the exporter-toolkit's web configuration holds, and
// yescrypt or SHA-crypt): hashing a probe with it gives a hash of its shape.
bool IsPasswordHash(const std::string& hash);

// Whether `password` hashes to `hash` (crypt_rn), compared in time that does
// not depend on where the two differ.
bool PasswordMatches(std::string_view password, const std::string& hash);

// The users of HTTP basic authentication with their password hashes.
// bcrypt costs tens of milliseconds by design: a right pair of credentials is
// remembered (as a SHA-256 of user, password and hash, never the password)
// so that a scraper's every request does not pay it again; a wrong one pays
// it each time. An unknown user is checked against a stand-in hash so that it
// takes as long as a wrong password. Thread-safe.
class BasicAuthUsers {
 public:
  static constexpr std::size_t kRemembered = 16;

  BasicAuthUsers() = default;
  explicit BasicAuthUsers(std::map<std::string, std::string> hashes);
  // A copy takes the users, not what the original remembers.
  BasicAuthUsers(const BasicAuthUsers& other);
  BasicAuthUsers& operator=(const BasicAuthUsers& other);
  ~BasicAuthUsers() = default;

  bool Empty() const { return hashes.empty(); }
  bool Check(std::string_view user, std::string_view password);

 private:
  using Digest = std::array<std::uint8_t, 32>;
  static Digest DigestOf(std::string_view user, std::string_view password, const std::string& hash);

  std::map<std::string, std::string, std::less<>> hashes;
  std::mutex mutex;
  std::vector<Digest> remembered;  // oldest first
};

}  // namespace Arq::Listener
