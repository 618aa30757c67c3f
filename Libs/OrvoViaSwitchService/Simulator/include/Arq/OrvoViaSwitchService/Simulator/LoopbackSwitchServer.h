#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>

#include <thrift/TProcessor.h>
#include <thrift/server/TThreadedServer.h>

#include "Arq/OrvoViaSwitchService/Simulator/ServerBehaviour.h"
#include "Arq/OrvoViaSwitchService/Simulator/ServerData.h"

namespace Arq::OrvoViaSwitchService::Simulator {

// The five switch services and the management service behind a multiplexed
// processor, served by a TThreadedServer on 127.0.0.1. Stopped and joined by
// the destructor.
class LoopbackSwitchServer {
 public:
  // Any: a port the system picks. High: a free port above 32767, the half a
  // client carrying ports as signed 16-bit numbers cannot reach.
  enum class PortRange { Any, High };

  explicit LoopbackSwitchServer(ServerData data = ServerData::Sample(),
                                PortRange range = PortRange::Any);
  // Answers from whatever `source` returns at each call (a switch whose
  // counters move); `fixedPort` > 0 listens on that port or throws.
  using DataSource = std::function<std::shared_ptr<const ServerData>()>;
  LoopbackSwitchServer(DataSource source, PortRange range, int fixedPort = 0);
  ~LoopbackSwitchServer();
  LoopbackSwitchServer(const LoopbackSwitchServer&) = delete;
  LoopbackSwitchServer& operator=(const LoopbackSwitchServer&) = delete;

  int Port() const { return port; }
  // Connections accepted so far.
  int Connections() const;
  // Bytes received from and sent to clients so far, all connections.
  std::uint64_t BytesIn() const { return bytesIn->load(); }
  std::uint64_t BytesOut() const { return bytesOut->load(); }
  ServerBehaviour& Behaviour() { return *behaviour; }
  // The answers as they were when the server started.
  const ServerData& Data() const { return *data; }

 private:
  bool TryStart(int requestedPort);

  std::shared_ptr<ServerBehaviour> behaviour;
  std::shared_ptr<const ServerData> data;
  std::shared_ptr<apache::thrift::TProcessor> processor;
  std::shared_ptr<apache::thrift::server::TThreadedServer> server;
  std::shared_ptr<std::atomic<int>> connections;
  std::shared_ptr<std::atomic<std::uint64_t>> bytesIn;
  std::shared_ptr<std::atomic<std::uint64_t>> bytesOut;
  std::thread thread;
  int port = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Simulator
