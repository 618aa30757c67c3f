#include "Arq/Listener/BasicAuth.h"

#include <crypt.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace Arq::Listener {
namespace {

// crypt_rn's hash of `password` with the setting (salt and cost) of `hash`,
// or "" when the hash is not one libcrypt knows. A password holding a NUL
// byte would be cut there by crypt: it matches nothing.
std::string Hash(std::string_view password, const std::string& hash) {
  if (password.find('\0') != std::string_view::npos) return {};
  // About 32 kB of working space: on the heap, zeroed as crypt_rn wants it
  // the first time.
  auto data = std::make_unique<crypt_data>();
  const std::string phrase(password);
  const char* result =
      crypt_rn(phrase.c_str(), hash.c_str(), data.get(), static_cast<int>(sizeof(crypt_data)));
  return result == nullptr || result[0] == '*' ? std::string() : std::string(result);
}

// Equal contents, in time that depends on the lengths only.
bool SameText(const std::string& a, const std::string& b) {
  const std::size_t size = std::max(a.size(), b.size());
  unsigned difference = a.size() == b.size() ? 0 : 1;
  for (std::size_t i = 0; i < size; ++i) {
    const auto x = static_cast<unsigned char>(i < a.size() ? a[i] : 0);
    const auto y = static_cast<unsigned char>(i < b.size() ? b[i] : 0);
    difference |= static_cast<unsigned>(x ^ y);
  }
  return difference == 0;
}

}  // namespace

bool IsPasswordHash(const std::string& hash) {
  if (hash.empty() || hash[0] != '$') return false;
  const std::string probe = Hash("probe", hash);
  // The result repeats the setting: for a whole hash, as long as the hash.
  return probe.size() == hash.size() && probe.compare(0, 4, hash, 0, 4) == 0;
}

bool PasswordMatches(std::string_view password, const std::string& hash) {
  const std::string computed = Hash(password, hash);
  return !computed.empty() && SameText(computed, hash);
}

BasicAuthUsers::BasicAuthUsers(std::map<std::string, std::string> hashes)
    : hashes(hashes.begin(), hashes.end()) {}

BasicAuthUsers::BasicAuthUsers(const BasicAuthUsers& other) : hashes(other.hashes) {}

BasicAuthUsers& BasicAuthUsers::operator=(const BasicAuthUsers& other) {
  if (this == &other) return *this;
  const std::lock_guard<std::mutex> lock(mutex);
  hashes = other.hashes;
  remembered.clear();
  return *this;
}

BasicAuthUsers::Digest BasicAuthUsers::DigestOf(std::string_view user, std::string_view password,
                                                const std::string& hash) {
  std::string text;
  text.reserve(user.size() + password.size() + hash.size() + 2);
  text.append(user).append(1, '\0').append(password).append(1, '\0').append(hash);
  Digest digest{};
  gnutls_hash_fast(GNUTLS_DIG_SHA256, text.data(), text.size(), digest.data());
  return digest;
}

bool BasicAuthUsers::Check(std::string_view user, std::string_view password) {
  if (hashes.empty()) return false;
  const auto found = hashes.find(user);
  if (found == hashes.end()) {
    // As long as a wrong password takes, and never a match.
    (void)PasswordMatches(password, hashes.begin()->second);
    return false;
  }
  const Digest digest = DigestOf(user, password, found->second);
  {
    std::lock_guard<std::mutex> lock(mutex);
    if (std::find(remembered.begin(), remembered.end(), digest) != remembered.end()) return true;
  }
  if (!PasswordMatches(password, found->second)) return false;
  std::lock_guard<std::mutex> lock(mutex);
  if (remembered.size() == kRemembered) remembered.erase(remembered.begin());
  remembered.push_back(digest);
  return true;
}

}  // namespace Arq::Listener
