#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Arq::Listener {

// What a TLS listener asks of its clients' certificates: the policies of Go's
// crypto/tls, by the names the Prometheus exporter-toolkit's web
// configuration uses for them.
enum class ClientAuth {
  NoClientCert,                // none asked for
  RequestClientCert,           // asked for, not required, not verified
  RequireAnyClientCert,        // required, not verified
  VerifyClientCertIfGiven,     // not required, verified when given
  RequireAndVerifyClientCert,  // required and verified
};

// The policy of that name ("" is NoClientCert; "RequireClientCert", the older
// name of RequireAnyClientCert, is taken too), or nothing.
std::optional<ClientAuth> ParseClientAuth(std::string_view name);
std::string_view ClientAuthName(ClientAuth policy);
inline bool AsksForCertificate(ClientAuth policy) {
  return policy != ClientAuth::NoClientCert;
}
inline bool RequiresCertificate(ClientAuth policy) {
  return policy == ClientAuth::RequireAnyClientCert ||
         policy == ClientAuth::RequireAndVerifyClientCert;
}
inline bool VerifiesCertificate(ClientAuth policy) {
  return policy == ClientAuth::VerifyClientCertIfGiven ||
         policy == ClientAuth::RequireAndVerifyClientCert;
}

// The PEM texts of a TLS listener: its certificate chain and key, and the
// authorities its clients' certificates are verified against (may be empty).
struct TlsMaterial {
  std::string certificate;
  std::string key;
  std::string clientAuthorities;
};

// Where the texts come from: a file each, or (an empty path) the text that
// `material` already holds, as a configuration may give it inline.
struct TlsFiles {
  std::string certificate;
  std::string key;
  std::string clientAuthorities;
};

// Reads the files (each bounded by kMaxPemFileBytes) and checks that the key
// belongs to the certificate and that the authorities parse, so that a wrong
// file is refused at start with its reason rather than at each handshake.
// Returns "" on success; else what is wrong, naming the file.
std::string LoadTlsMaterial(const TlsFiles& files, TlsMaterial& material);

}  // namespace Arq::Listener
