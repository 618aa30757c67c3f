#include "Arq/Listener/Tls.h"

#include <gnutls/gnutls.h>

#include <array>
#include <memory>
#include <utility>

#include "Arq/Listener/Files.h"

namespace Arq::Listener {
namespace {

constexpr std::array<std::pair<std::string_view, ClientAuth>, 5> kPolicies{{
    {"NoClientCert", ClientAuth::NoClientCert},
    {"RequestClientCert", ClientAuth::RequestClientCert},
    {"RequireAnyClientCert", ClientAuth::RequireAnyClientCert},
    {"VerifyClientCertIfGiven", ClientAuth::VerifyClientCertIfGiven},
    {"RequireAndVerifyClientCert", ClientAuth::RequireAndVerifyClientCert},
}};

struct CredentialsDeleter {
  void operator()(gnutls_certificate_credentials_t credentials) const {
    gnutls_certificate_free_credentials(credentials);
  }
};
using Credentials =
    std::unique_ptr<std::remove_pointer_t<gnutls_certificate_credentials_t>, CredentialsDeleter>;

gnutls_datum_t Datum(const std::string& text) {
  // GnuTLS takes the PEM text read-only through this non-const pointer.
  return {reinterpret_cast<unsigned char*>(const_cast<char*>(text.data())),
          static_cast<unsigned>(text.size())};
}

std::string ReadPem(const char* what, const std::string& path, std::string& text) {
  if (path.empty()) return {};
  const std::string error = ReadBoundedFile(path, kMaxPemFileBytes, text);
  return error.empty() ? std::string() : std::string(what) + " " + path + ": " + error;
}

// The file a text came from, or "(inline)".
std::string Origin(const char* what, const std::string& path) {
  return std::string(what) + " " + (path.empty() ? std::string("(inline)") : path);
}

}  // namespace

std::optional<ClientAuth> ParseClientAuth(std::string_view name) {
  if (name.empty()) return ClientAuth::NoClientCert;
  if (name == "RequireClientCert") return ClientAuth::RequireAnyClientCert;
  for (const auto& [text, policy] : kPolicies) {
    if (text == name) return policy;
  }
  return std::nullopt;
}

std::string_view ClientAuthName(ClientAuth policy) {
  for (const auto& [text, value] : kPolicies) {
    if (value == policy) return text;
  }
  return {};
}

std::string LoadTlsMaterial(const TlsFiles& files, TlsMaterial& material) {
  std::string error = ReadPem("cert_file", files.certificate, material.certificate);
  if (error.empty()) error = ReadPem("key_file", files.key, material.key);
  if (error.empty()) {
    error = ReadPem("client_ca_file", files.clientAuthorities, material.clientAuthorities);
  }
  if (!error.empty()) return error;

  gnutls_certificate_credentials_t raw = nullptr;
  if (gnutls_certificate_allocate_credentials(&raw) != GNUTLS_E_SUCCESS) {
    return "cannot allocate TLS credentials";
  }
  const Credentials credentials(raw);
  const gnutls_datum_t certificate = Datum(material.certificate);
  const gnutls_datum_t key = Datum(material.key);
  int status = gnutls_certificate_set_x509_key_mem2(raw, &certificate, &key, GNUTLS_X509_FMT_PEM,
                                                    nullptr, 0);
  if (status < 0) {
    return Origin("cert_file", files.certificate) + " and " + Origin("key_file", files.key) +
           ": not a PEM certificate chain and its private key (" + gnutls_strerror(status) + ")";
  }
  if (!material.clientAuthorities.empty()) {
    const gnutls_datum_t authorities = Datum(material.clientAuthorities);
    status = gnutls_certificate_set_x509_trust_mem(raw, &authorities, GNUTLS_X509_FMT_PEM);
    if (status <= 0) {
      return Origin("client_ca_file", files.clientAuthorities) + ": no PEM certificate in it" +
             (status < 0 ? std::string(" (") + gnutls_strerror(status) + ")" : std::string());
    }
  }
  return {};
}

}  // namespace Arq::Listener
