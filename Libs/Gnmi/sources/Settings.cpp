#include "Arq/Gnmi/Settings.h"

#include <cstdlib>

namespace Arq::Gnmi {
namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

Settings Settings::FromEnvironment() {
  Settings settings;
  settings.address = Env("ORVOVIA_GNMI_ADDRESS");
  settings.certFile = Env("ORVOVIA_GNMI_TLS_CERT");
  settings.keyFile = Env("ORVOVIA_GNMI_TLS_KEY");
  settings.clientCaFile = Env("ORVOVIA_GNMI_TLS_CLIENT_CA");
  settings.usersFile = Env("ORVOVIA_GNMI_USERS");
  return settings;
}

}  // namespace Arq::Gnmi
