#include "Arq/Exposition/WebConfig.h"

#include <yaml-cpp/yaml.h>

#include <array>
#include <set>
#include <string_view>

#include "Arq/Listener/BasicAuth.h"
#include "Arq/Listener/Files.h"

namespace Arq::Exposition {
namespace {

// A configuration error: what is wrong, for the one log line.
struct Refusal {
  std::string text;
};

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kVersions{{
    {"TLS10", "VERS-TLS1.0"},
    {"TLS11", "VERS-TLS1.1"},
    {"TLS12", "VERS-TLS1.2"},
    {"TLS13", "VERS-TLS1.3"},
}};

// The headers the toolkit lets a configuration add to responses.
constexpr std::array<std::string_view, 5> kHeaders{"Content-Security-Policy", "X-Frame-Options",
                                                   "X-Content-Type-Options", "X-XSS-Protection",
                                                   "Strict-Transport-Security"};

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  return text;
}

// The members of a mapping (nothing for null), each key once and known.
std::vector<std::pair<std::string, YAML::Node>> Members(
    const YAML::Node& node, const std::string& where,
    std::initializer_list<std::string_view> known) {
  std::vector<std::pair<std::string, YAML::Node>> members;
  if (!node || node.IsNull()) return members;
  if (!node.IsMap()) throw Refusal{where + " is not a mapping"};
  std::set<std::string> seen;
  for (const auto& member : node) {
    if (!member.first.IsScalar()) throw Refusal{where + ": a key is not a string"};
    const auto key = member.first.as<std::string>();
    std::string path = where;
    if (!path.empty()) path += '.';
    path += key;
    if (!seen.insert(key).second) throw Refusal{path + " is given twice"};
    if (known.size() != 0) {
      bool isKnown = false;
      for (const auto name : known) isKnown |= name == key;
      if (!isKnown) throw Refusal{"unknown key " + path};
    }
    members.emplace_back(key, member.second);
  }
  return members;
}

std::string Text(const YAML::Node& node, const std::string& path) {
  if (node.IsNull()) return {};
  if (!node.IsScalar()) throw Refusal{path + " is not a string"};
  return node.as<std::string>();
}

bool Boolean(const YAML::Node& node, const std::string& path) {
  bool value = false;
  if (!node.IsScalar() || !YAML::convert<bool>::decode(node, value)) {
    throw Refusal{path + " is not true or false"};
  }
  return value;
}

std::string Resolved(const std::string& path, const std::string& folder) {
  if (path.empty() || path[0] == '/' || folder.empty()) return path;
  return folder + "/" + path;
}

std::size_t VersionIndex(const std::string& name, const std::string& path) {
  for (std::size_t i = 0; i < kVersions.size(); ++i) {
    if (kVersions[i].first == name) return i;
  }
  throw Refusal{path + " '" + name + "' is not one of TLS10, TLS11, TLS12, TLS13"};
}

void ReadTls(const YAML::Node& node, const std::string& folder, WebConfig& config) {
  std::string clientAuth, minVersion = "TLS12", maxVersion = "TLS13";
  bool serverPreference = true;
  for (const auto& [key, value] :
       Members(node, "tls_server_config",
               {"cert", "key", "client_ca", "cert_file", "key_file", "client_auth_type",
                "client_ca_file", "client_allowed_sans", "min_version", "max_version",
                "cipher_suites", "prefer_server_cipher_suites", "curve_preferences"})) {
    const std::string path = "tls_server_config." + key;
    if (key == "cert") config.cert = Text(value, path);
    if (key == "key") config.key = Text(value, path);
    if (key == "client_ca") config.clientCa = Text(value, path);
    if (key == "cert_file") config.certFile = Resolved(Text(value, path), folder);
    if (key == "key_file") config.keyFile = Resolved(Text(value, path), folder);
    if (key == "client_ca_file") config.clientCaFile = Resolved(Text(value, path), folder);
    if (key == "client_auth_type") clientAuth = Text(value, path);
    if (key == "min_version") minVersion = Text(value, path);
    if (key == "max_version") maxVersion = Text(value, path);
    if (key == "prefer_server_cipher_suites") serverPreference = Boolean(value, path);
    if ((key == "cipher_suites" || key == "curve_preferences" || key == "client_allowed_sans") &&
        !value.IsNull() && !(value.IsSequence() && value.size() == 0)) {
      throw Refusal{path +
                    " is not supported by this server (GnuTLS chooses ciphers and curves from its "
                    "NORMAL priorities; a client certificate is checked against client_ca_file)"};
    }
  }
  const bool hasCert = !config.cert.empty() || !config.certFile.empty();
  const bool hasKey = !config.key.empty() || !config.keyFile.empty();
  if (!config.cert.empty() && !config.certFile.empty()) {
    throw Refusal{"tls_server_config: cert and cert_file are both given"};
  }
  if (!config.key.empty() && !config.keyFile.empty()) {
    throw Refusal{"tls_server_config: key and key_file are both given"};
  }
  if (!config.clientCa.empty() && !config.clientCaFile.empty()) {
    throw Refusal{"tls_server_config: client_ca and client_ca_file are both given"};
  }
  if (hasCert && !hasKey) throw Refusal{"tls_server_config: missing key_file"};
  if (hasKey && !hasCert) throw Refusal{"tls_server_config: missing cert_file"};
  const auto policy = Listener::ParseClientAuth(clientAuth);
  if (!policy) {
    throw Refusal{"tls_server_config.client_auth_type '" + clientAuth +
                  "' is not one of NoClientCert, RequestClientCert, RequireAnyClientCert, "
                  "VerifyClientCertIfGiven, RequireAndVerifyClientCert"};
  }
  config.clientAuth = *policy;
  const bool hasCa = !config.clientCa.empty() || !config.clientCaFile.empty();
  if (hasCa && !Listener::AsksForCertificate(*policy)) {
    throw Refusal{
        "tls_server_config: client_ca_file is given but client_auth_type is "
        "NoClientCert"};
  }
  if (!hasCa && Listener::VerifiesCertificate(*policy)) {
    throw Refusal{"tls_server_config: client_auth_type " +
                  std::string(Listener::ClientAuthName(*policy)) +
                  " verifies client certificates against client_ca_file, which is missing"};
  }
  if (!hasCert && (Listener::AsksForCertificate(*policy) || hasCa)) {
    throw Refusal{"tls_server_config: client certificates need TLS, and no cert_file is given"};
  }
  const std::size_t low = VersionIndex(minVersion, "tls_server_config.min_version");
  const std::size_t high = VersionIndex(maxVersion, "tls_server_config.max_version");
  if (low > high) {
    throw Refusal{"tls_server_config: min_version " + minVersion + " is above max_version " +
                  maxVersion};
  }
  config.tls = hasCert;
  config.priorities = "NORMAL:-VERS-ALL";
  for (std::size_t v = high + 1; v-- > low;)
    config.priorities.append(":+").append(kVersions[v].second);
  if (serverPreference) config.priorities += ":%SERVER_PRECEDENCE";
}

void ReadHttp(const YAML::Node& node, WebConfig& config) {
  for (const auto& [key, value] : Members(node, "http_server_config", {"http2", "headers"})) {
    // HTTP/1.1 is served whatever http2 says: Prometheus scrapes over it.
    if (key == "http2") (void)Boolean(value, "http_server_config.http2");
    if (key != "headers") continue;
    for (const auto& [name, text] : Members(value, "http_server_config.headers", {})) {
      const std::string path = "http_server_config.headers." + name;
      bool known = false;
      for (const auto header : kHeaders) known |= Lower(std::string(header)) == Lower(name);
      if (!known) throw Refusal{path + ": this header cannot be set"};
      const std::string header = Text(text, path);
      if (header.find_first_of(std::string("\r\n\0", 3)) != std::string::npos) {
        throw Refusal{path + " holds a line break"};
      }
      const std::string lower = Lower(header);
      if (Lower(name) == "x-frame-options" && lower != "deny" && lower != "sameorigin") {
        throw Refusal{path + " is not deny or sameorigin"};
      }
      if (Lower(name) == "x-content-type-options" && lower != "nosniff") {
        throw Refusal{path + " is not nosniff"};
      }
      if (!header.empty()) config.headers.emplace_back(name, header);
    }
  }
}

void ReadUsers(const YAML::Node& node, WebConfig& config) {
  for (const auto& [user, hash] : Members(node, "basic_auth_users", {})) {
    const std::string path = "basic_auth_users." + user;
    if (user.empty() || user.find(':') != std::string::npos) {
      throw Refusal{"basic_auth_users: '" + user + "' cannot be a basic-auth user name"};
    }
    const std::string text = Text(hash, path);
    if (!Listener::IsPasswordHash(text)) {
      throw Refusal{path + " is not a bcrypt (or other crypt) password hash"};
    }
    config.users.emplace(user, text);
  }
}

}  // namespace

std::optional<WebConfig> ParseWebConfig(const std::string& text, const std::string& folder,
                                        std::string& error) {
  try {
    const YAML::Node root = YAML::Load(text);
    if (root && !root.IsNull() && !root.IsMap()) throw Refusal{"the file is not a YAML mapping"};
    WebConfig config;
    for (const auto& [key, value] :
         Members(root, "",
                 {"tls_server_config", "http_server_config", "basic_auth_users", "rate_limit"})) {
      if (key == "tls_server_config") ReadTls(value, folder, config);
      if (key == "http_server_config") ReadHttp(value, config);
      if (key == "basic_auth_users") ReadUsers(value, config);
      if (key == "rate_limit" && !value.IsNull()) {
        throw Refusal{
            "rate_limit is not supported by this server (its connection limits bound "
            "what a client costs)"};
      }
    }
    return config;
  } catch (const Refusal& refusal) {
    error = refusal.text;
  } catch (const YAML::Exception& yaml) {
    error = "not YAML: " + yaml.msg + " (line " + std::to_string(yaml.mark.line + 1) + ", column " +
            std::to_string(yaml.mark.column + 1) + ")";
  }
  return std::nullopt;
}

std::optional<WebConfig> LoadWebConfig(const std::string& path, Listener::TlsMaterial& material,
                                       std::string& error) {
  std::string text;
  error = Listener::ReadBoundedFile(path, Listener::kMaxConfigFileBytes, text);
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
  std::optional<WebConfig> config;
  if (error.empty()) config = ParseWebConfig(text, folder, error);
  if (config && config->tls) {
    material = {config->cert, config->key, config->clientCa};
    error = Listener::LoadTlsMaterial({config->certFile, config->keyFile, config->clientCaFile},
                                      material);
    if (!error.empty()) config.reset();
  }
  if (!config) error = "web configuration " + path + ": " + error;
  return config;
}

}  // namespace Arq::Exposition
