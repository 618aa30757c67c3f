// OrvoViaSwitchSimulator [--port N] [--control-port N] [--scenario FILE]
// Serves a switch on 127.0.0.1 until SIGTERM or SIGINT: the one a JSON
// scenario file describes, or without one the synthetic switch of Fake mode.
// Prints "listening on port <P> control <C>" once both ports listen. Port 0
// (the default) picks a free port above 32767, so that every run shows the
// daemon reaching the upper half of the port range. A scenario that cannot be used ends the
// process with status 1 and one line on standard error saying why.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <mutex>
#include <optional>
#include <sstream>

#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"
#include "Arq/OrvoViaSwitchService/Simulator/Scenario.h"
#include "SwitchSimulator.h"

namespace {

using Arq::OrvoViaSwitchService::Simulator::LoopbackSwitchServer;
using Arq::OrvoViaSwitchService::Simulator::Scenario;
using Arq::OrvoViaSwitchService::Simulator::ServerData;

int Usage() {
  std::cerr << "usage: OrvoViaSwitchSimulator [--port N] [--control-port N] [--scenario FILE]"
            << std::endl;
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  int port = 0;
  int controlPort = 0;
  const char* scenarioPath = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (i + 1 < argc && std::strcmp(argv[i], "--port") == 0) {
      std::istringstream(argv[++i]) >> port;
    } else if (i + 1 < argc && std::strcmp(argv[i], "--control-port") == 0) {
      std::istringstream(argv[++i]) >> controlPort;
    } else if (i + 1 < argc && std::strcmp(argv[i], "--scenario") == 0) {
      scenarioPath = argv[++i];
    } else {
      return Usage();
    }
  }
  if (port < 0 || port > 65535 || controlPort < 0 || controlPort > 65535) return Usage();

  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGTERM);
  sigaddset(&stopSignals, SIGINT);
  pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

  try {
    std::optional<Scenario> scenario;
    if (scenarioPath != nullptr) scenario = Scenario::Load(scenarioPath);
    const auto start = std::chrono::steady_clock::now();
    // One snapshot per 100 ms at most: the ten calls of a collection see one switch.
    std::mutex mutex;
    std::shared_ptr<const ServerData> cached;
    auto cachedAt = start;
    auto source = [&]() -> std::shared_ptr<const ServerData> {
      std::lock_guard<std::mutex> lock(mutex);
      const auto now = std::chrono::steady_clock::now();
      if (!cached || now - cachedAt >= std::chrono::milliseconds(100)) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - start);
        cached = std::make_shared<const ServerData>(
            scenario ? scenario->At(elapsed)
                     : Arq::OrvoViaSwitchSimulator::ToServerData(
                           Arq::Monitoring::FakeMonitoringCollector::Snapshot(now - start)));
        cachedAt = now;
      }
      return cached;
    };
    LoopbackSwitchServer server(source, LoopbackSwitchServer::PortRange::High, port);
    Arq::OrvoViaSwitchSimulator::ControlServer control(server.Behaviour(), controlPort);
    std::cout << "listening on port " << server.Port() << " control " << control.Port()
              << std::endl;
    int received = 0;
    sigwait(&stopSignals, &received);
    std::cout << "stopping on signal " << received << std::endl;
  } catch (const std::exception& error) {
    std::cerr << "OrvoViaSwitchSimulator: " << error.what() << std::endl;
    return 1;
  }
  return 0;
}
