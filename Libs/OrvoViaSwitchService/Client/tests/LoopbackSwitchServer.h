#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <ArqSwitchApi/ArqSwitchApi_types.h>
#include <thrift/TToString.h>
#include <thrift/server/TThreadedServer.h>

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

// What every handler of the loopback server does before answering, and what
// it has seen. Shared by the server's connection threads and the test.
class ServerBehaviour {
 public:
  enum class Mode { Answer, Fault, OtherException, Delay };

  void Answer();
  void Fault(ArqSwitchApi::ErrorCode_t::type code, const std::string& what);
  void OtherException(const std::string& what);
  void Delay(std::chrono::milliseconds delay);
  // Limits the configured behaviour to one call ("Interfaces:GetCnt"); the
  // other calls answer normally. Empty: every call.
  void Only(const std::string& call);
  // Ends every delay under way and refuses new ones (teardown).
  void Release();

  // One line per call: "Service:Method" then each argument, blank-separated.
  std::vector<std::string> Calls() const;
  std::vector<ArqSwitchApi::Header_t> Headers() const;

  // Records the call, then answers, throws or delays as configured.
  template <typename... Args>
  void Enter(const char* call, const ArqSwitchApi::Header_t& header, const Args&... args) {
    std::ostringstream line;
    line << call;
    ((line << ' ' << apache::thrift::to_string(args)), ...);
    Apply(line.str(), header);
  }

 private:
  void Apply(const std::string& line, const ArqSwitchApi::Header_t& header);

  mutable std::mutex mutex;
  std::condition_variable released;
  bool isReleased = false;
  Mode mode = Mode::Answer;
  ArqSwitchApi::ErrorCode_t::type faultCode = ArqSwitchApi::ErrorCode_t::NoError;
  std::string text;
  std::chrono::milliseconds delay{0};
  std::string target;
  std::vector<std::string> calls;
  std::vector<ArqSwitchApi::Header_t> headers;
};

// The answers of the loopback server, as wire structures.
struct ServerData {
  std::vector<std::string> ifList;
  std::map<std::string, ArqSwitchApi::IfInfo_t> ifInfos;
  std::map<std::string, std::vector<ArqSwitchApi::EthCnt_t>> counters;
  std::map<std::string, std::vector<ArqSwitchApi::EthStat_t>> stats;
  std::string mainMac;
  std::map<std::string, std::string> macs;
  std::vector<ArqSwitchApi::EthInfo_t> ethInfos;
  std::vector<ArqSwitchApi::HwDesc_t> hwDescs;
  ArqSwitchApi::lldpConfig_t lldpConfig;
  std::vector<ArqSwitchApi::lldpInfo_t> lldpInfos;
  std::vector<ArqSwitchApi::PTPConfig_t> ptpConfigs;
  ArqSwitchApi::ConfigFile_t currentConfig;
  std::vector<ArqSwitchApi::ConfigFile_t> configFiles;
  std::string comment;

  static ServerData Sample();
  // 48 Ethernet, 24 PRS (2 ports each), 3 LAG (6 ports each) interfaces with
  // their ports' records, 60 LLDP neighbours, 5 PTP records.
  static ServerData FullCapacity();
};

// The five switch services behind a multiplexed processor, served by a
// TThreadedServer on a free port of 127.0.0.1. Stopped and joined by the
// destructor.
class LoopbackSwitchServer {
 public:
  // Any: a port the system picks (usually above 32767). SignedShort: a free
  // port below 32768, for callers that carry the port as a 16-bit signed
  // number, as the daemon's command line does.
  enum class PortRange { Any, SignedShort };

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
  const ServerData& Data() const { return *data; }

 private:
  std::shared_ptr<ServerBehaviour> behaviour;
  bool TryStart(int requestedPort);

  std::shared_ptr<const ServerData> data;
  std::shared_ptr<apache::thrift::TProcessor> processor;
  std::shared_ptr<apache::thrift::server::TThreadedServer> server;
  std::shared_ptr<std::atomic<int>> connections;
  std::shared_ptr<std::atomic<std::uint64_t>> bytesIn;
  std::shared_ptr<std::atomic<std::uint64_t>> bytesOut;
  std::thread thread;
  int port = 0;
};

// A TCP peer that is not a Thrift server: accepts one connection at a time,
// keeps what the client sent (up to the first pause), writes `reply`, then
// closes. Stopped and joined by the destructor.
class RawPeer {
 public:
  explicit RawPeer(std::string reply = std::string());
  ~RawPeer();
  RawPeer(const RawPeer&) = delete;
  RawPeer& operator=(const RawPeer&) = delete;

  int Port() const { return port; }
  // Every byte received so far, all connections together.
  std::string Received() const;

 private:
  void Serve();

  std::string reply;
  int listener = -1;
  int port = 0;
  int wakeRead = -1;
  int wakeWrite = -1;
  mutable std::mutex mutex;
  std::string received;
  std::thread thread;
};

// A loopback port on which nothing listens (bound, never listening).
class ClosedPort {
 public:
  ClosedPort();
  ~ClosedPort();
  ClosedPort(const ClosedPort&) = delete;
  ClosedPort& operator=(const ClosedPort&) = delete;
  int Port() const { return port; }

 private:
  int socket = -1;
  int port = 0;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing
