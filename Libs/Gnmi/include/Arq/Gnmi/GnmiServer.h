#pragma once

#include <memory>
#include <string>

#include "Arq/Gnmi/Settings.h"
#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModelStore.h"

namespace Arq::Gnmi {

// The gNMI listener: Capabilities, Get and Subscribe over the published
// switch models, Set refused. It owns its gRPC server, the thread that turns
// each publication and each sample tick into stream updates, and its
// subscription to the store; the collection thread only wakes that thread.
// Must not outlive the store.
class GnmiServer {
 public:
  // Listening when it returns; nothing (and `error`, one line) when the
  // settings cannot work: a malformed address, plaintext off loopback, a
  // missing or oversized file, a port in use.
  static std::unique_ptr<GnmiServer> Create(const Settings& settings,
                                            OrvoViaSwitch::Domain::Model::SwitchModelStore& store,
                                            std::string& error);
  ~GnmiServer();
  GnmiServer(const GnmiServer&) = delete;
  GnmiServer& operator=(const GnmiServer&) = delete;

  int Port() const;

  struct Impl;

 private:
  explicit GnmiServer(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace Arq::Gnmi
