#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Arq/Listener/Tls.h"

namespace Arq::Exposition {

// The Prometheus exporter-toolkit's web configuration file, as exporters
// read it: TLS (tls_server_config), response headers (http_server_config)
// and basic authentication (basic_auth_users with crypt hashes, bcrypt in
// the toolkit's files). Keys the toolkit does not know are refused, as it
// refuses them; keys it knows that this server cannot honour (cipher_suites,
// curve_preferences, client_allowed_sans, rate_limit) are refused too,
// rather than silently dropped.
struct WebConfig {
  // TLS is on when tls_server_config names a certificate and a key.
  bool tls = false;
  // File paths, relative ones taken from the configuration file's folder;
  // or the PEM texts given inline (cert, key, client_ca).
  std::string certFile, keyFile, clientCaFile;
  std::string cert, key, clientCa;
  Listener::ClientAuth clientAuth = Listener::ClientAuth::NoClientCert;
  // GnuTLS priorities for min_version..max_version (TLS12..TLS13 unless told).
  std::string priorities;
  std::vector<std::pair<std::string, std::string>> headers;
  std::map<std::string, std::string> users;  // user -> password hash
};

// Parses the file's `text`; `folder` is where its relative paths start.
std::optional<WebConfig> ParseWebConfig(const std::string& text, const std::string& folder,
                                        std::string& error);

// Reads the file at `path` (bounded), parses it, then reads and checks the
// TLS files it names, into `material`.
std::optional<WebConfig> LoadWebConfig(const std::string& path, Listener::TlsMaterial& material,
                                       std::string& error);

}  // namespace Arq::Exposition
