#include "Arq/OrvoViaSwitchService/Simulator/LoopbackSwitchServer.h"

#include <ctime>
#include <future>
#include <mutex>
#include <random>
#include <stdexcept>

#include <ArqOrvoAPI/Management.h>
#include <ArqSwitchApi/Config.h>
#include <ArqSwitchApi/Ethernet.h>
#include <ArqSwitchApi/Interfaces.h>
#include <ArqSwitchApi/LLDP.h>
#include <ArqSwitchApi/PTP.h>
#include <thrift/processor/TMultiplexedProcessor.h>
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TServerSocket.h>
#include <thrift/transport/TVirtualTransport.h>

#include "ReplyFate.h"

namespace Arq::OrvoViaSwitchService::Simulator {

namespace api = ArqSwitchApi;

namespace {

// The connection under the server's buffered transport: counts the bytes
// that cross the socket, and carries out a reply's fate (ReplyFate.h) at its
// first write. A dropped or replaced reply ends the connection: the
// exception is one the server takes for a client that went away, so it
// closes the socket without a word; what the buffered transport still holds
// of the reply is swallowed.
class ConnectionTransport
    : public apache::thrift::transport::TVirtualTransport<ConnectionTransport> {
 public:
  ConnectionTransport(std::shared_ptr<apache::thrift::transport::TTransport> inner,
                      std::shared_ptr<std::atomic<std::uint64_t>> in,
                      std::shared_ptr<std::atomic<std::uint64_t>> out)
      : inner(std::move(inner)), in(std::move(in)), out(std::move(out)) {}

  bool isOpen() const override { return inner->isOpen(); }
  bool peek() override { return inner->peek(); }
  void open() override { inner->open(); }
  void close() override { inner->close(); }
  uint32_t read(uint8_t* buffer, uint32_t length) {
    const uint32_t got = inner->read(buffer, length);
    *in += got;
    return got;
  }
  void write(const uint8_t* buffer, uint32_t length) {
    if (ended) return;
    auto& reply = Detail::PendingReply();
    if (reply.kind != Detail::ReplyFate::Kind::Send) {
      ended = true;
      if (reply.kind == Detail::ReplyFate::Kind::Garbage) {
        inner->write(reinterpret_cast<const uint8_t*>(reply.bytes.data()),
                     static_cast<uint32_t>(reply.bytes.size()));
        *out += reply.bytes.size();
      }
      reply = Detail::ReplyFate();
      throw apache::thrift::transport::TTransportException(
          apache::thrift::transport::TTransportException::INTERRUPTED, "reply withheld");
    }
    inner->write(buffer, length);
    *out += length;
  }
  void flush() override {
    if (!ended) inner->flush();
  }

 private:
  std::shared_ptr<apache::thrift::transport::TTransport> inner;
  std::shared_ptr<std::atomic<std::uint64_t>> in;
  std::shared_ptr<std::atomic<std::uint64_t>> out;
  bool ended = false;
};

class CountingBufferedTransportFactory : public apache::thrift::transport::TTransportFactory {
 public:
  CountingBufferedTransportFactory(std::shared_ptr<std::atomic<std::uint64_t>> in,
                                   std::shared_ptr<std::atomic<std::uint64_t>> out)
      : in(std::move(in)), out(std::move(out)) {}

  std::shared_ptr<apache::thrift::transport::TTransport> getTransport(
      std::shared_ptr<apache::thrift::transport::TTransport> socket) override {
    return std::make_shared<apache::thrift::transport::TBufferedTransport>(
        std::make_shared<ConnectionTransport>(socket, in, out));
  }

 private:
  std::shared_ptr<std::atomic<std::uint64_t>> in;
  std::shared_ptr<std::atomic<std::uint64_t>> out;
};

// Reports when the server listens (its port is then known) and counts the
// connections it accepts.
class ServerEvents : public apache::thrift::server::TServerEventHandler {
 public:
  ServerEvents(std::shared_ptr<std::atomic<int>> count, std::function<void()> onListening)
      : count(std::move(count)), onListening(std::move(onListening)) {}
  void preServe() override { onListening(); }
  void* createContext(std::shared_ptr<apache::thrift::protocol::TProtocol>,
                      std::shared_ptr<apache::thrift::protocol::TProtocol>) override {
    ++*count;
    return nullptr;
  }

 private:
  std::shared_ptr<std::atomic<int>> count;
  std::function<void()> onListening;
};

// Handlers: record, apply the behaviour, answer from the data.
struct Handler {
  std::shared_ptr<ServerBehaviour> behaviour;
  LoopbackSwitchServer::DataSource source;
  std::shared_ptr<const ServerData> Data() const { return source(); }
};

class ConfigHandler : public api::ConfigIf, Handler {
 public:
  explicit ConfigHandler(Handler h) : Handler(std::move(h)) {}
  void ListConfigFile(std::vector<api::ConfigFile_t>& out, const api::Header_t& h,
                      const api::ConfigType_t::type type) override {
    behaviour->Enter("Config:ListConfigFile", h, type);
    out = Data()->configFiles;
  }
  void Reset(const api::Header_t& h) override { behaviour->Enter("Config:Reset", h); }
  void LoadConfig(const api::Header_t& h, const api::ConfigFile_t& f) override {
    behaviour->Enter("Config:LoadConfig", h, f);
  }
  void LoadFactoryDefault(const api::Header_t& h) override {
    behaviour->Enter("Config:LoadFactoryDefault", h);
  }
  void SaveRunningConfig2StartUpConfig(const api::Header_t& h) override {
    behaviour->Enter("Config:SaveRunningConfig2StartUpConfig", h);
  }
  void BackupRunningConfig(const api::Header_t& h, const api::ConfigFile_t& f) override {
    behaviour->Enter("Config:BackupRunningConfig", h, f);
  }
  void SetConfigComment(const api::Header_t& h, const api::ConfigFile_t& f) override {
    behaviour->Enter("Config:SetConfigComment", h, f);
  }
  void GetConfigComment(std::string& out, const api::Header_t& h,
                        const api::ConfigFile_t& f) override {
    behaviour->Enter("Config:GetConfigComment", h, f);
    out = Data()->comment;
  }
  void GetCurrentConfig(api::ConfigFile_t& out, const api::Header_t& h) override {
    behaviour->Enter("Config:GetCurrentConfig", h);
    out = Data()->currentConfig;
  }
  void Copy(const api::Header_t& h, const api::ConfigFile_t& s,
            const api::ConfigFile_t& d) override {
    behaviour->Enter("Config:Copy", h, s, d);
  }
  void Delete(const api::Header_t& h, const api::ConfigFile_t& f) override {
    behaviour->Enter("Config:Delete", h, f);
  }
  void Rename(const api::Header_t& h, const api::ConfigFile_t& s,
              const api::ConfigFile_t& d) override {
    behaviour->Enter("Config:Rename", h, s, d);
  }
};

class EthernetHandler : public api::EthernetIf, Handler {
 public:
  explicit EthernetHandler(Handler h) : Handler(std::move(h)) {}
  void Configure(const api::Header_t& h, const api::EthConfig_t& c,
                 const std::vector<std::string>& names) override {
    behaviour->Enter("Ethernet:Configure", h, c, names);
  }
  void GetEthInfo(std::vector<api::EthInfo_t>& out, const api::Header_t& h,
                  const std::vector<std::string>& names) override {
    behaviour->Enter("Ethernet:GetEthInfo", h, names);
    out = Data()->ethInfos;
    behaviour->OverridePortStates(out);
  }
  void GetHardwareDesc(std::vector<api::HwDesc_t>& out, const api::Header_t& h) override {
    behaviour->Enter("Ethernet:GetHardwareDesc", h);
    out = Data()->hwDescs;
  }
};

class InterfacesHandler : public api::InterfacesIf, Handler {
 public:
  explicit InterfacesHandler(Handler h) : Handler(std::move(h)) {}
  void GetIfList(std::vector<std::string>& out, const api::Header_t& h) override {
    behaviour->Enter("Interfaces:GetIfList", h);
    out = Data()->ifList;
  }
  void GetInfo(std::map<std::string, api::IfInfo_t>& out, const api::Header_t& h,
               const std::vector<std::string>& names) override {
    behaviour->Enter("Interfaces:GetInfo", h, names);
    out = Data()->ifInfos;
  }
  void GetCnt(std::map<std::string, std::vector<api::EthCnt_t>>& out, const api::Header_t& h,
              const std::vector<std::string>& names) override {
    behaviour->Enter("Interfaces:GetCnt", h, names);
    out = Data()->counters;
  }
  void GetStats(std::map<std::string, std::vector<api::EthStat_t>>& out, const api::Header_t& h,
                const std::vector<std::string>& names) override {
    behaviour->Enter("Interfaces:GetStats", h, names);
    out = Data()->stats;
  }
  void GetMainMacAddr(std::string& out, const api::Header_t& h) override {
    behaviour->Enter("Interfaces:GetMainMacAddr", h);
    out = Data()->mainMac;
  }
  void GetMacAddr(std::map<std::string, std::string>& out, const api::Header_t& h,
                  const std::vector<std::string>& names) override {
    behaviour->Enter("Interfaces:GetMacAddr", h, names);
    out = Data()->macs;
  }
  void SetDescription(const api::Header_t& h, const std::string& name,
                      const std::string& description) override {
    behaviour->Enter("Interfaces:SetDescription", h, name, description);
  }
  void SetStatus(const api::Header_t& h, const std::vector<std::string>& names,
                 const api::IfStatus_t::type status) override {
    behaviour->Enter("Interfaces:SetStatus", h, names, status);
  }
  void SetVID(const api::Header_t& h, const std::vector<std::string>& names,
              const int16_t vid) override {
    behaviour->Enter("Interfaces:SetVID", h, names, vid);
  }
  void AddToVlan(const api::Header_t& h, const std::vector<std::string>& names,
                 const int16_t vid) override {
    behaviour->Enter("Interfaces:AddToVlan", h, names, vid);
  }
  void RemoveFromVlan(const api::Header_t& h, const std::vector<std::string>& names,
                      const int16_t vid) override {
    behaviour->Enter("Interfaces:RemoveFromVlan", h, names, vid);
  }
  void Delete(const api::Header_t& h, const std::vector<std::string>& names) override {
    behaviour->Enter("Interfaces:Delete", h, names);
  }
  void DeleteAll(const api::Header_t& h) override { behaviour->Enter("Interfaces:DeleteAll", h); }
  void SetIpConfig(const api::Header_t& h, const std::string& name,
                   const api::IfIpConfig_t& ip) override {
    behaviour->Enter("Interfaces:SetIpConfig", h, name, ip);
  }
};

class LLDPHandler : public api::LLDPIf, Handler {
 public:
  explicit LLDPHandler(Handler h) : Handler(std::move(h)) {}
  void SetConfig(const api::Header_t& h, const api::lldpConfig_t& c) override {
    behaviour->Enter("LLDP:SetConfig", h, c);
  }
  void GetConfig(api::lldpConfig_t& out, const api::Header_t& h) override {
    behaviour->Enter("LLDP:GetConfig", h);
    out = Data()->lldpConfig;
  }
  void GetInfo(std::vector<api::lldpInfo_t>& out, const api::Header_t& h) override {
    behaviour->Enter("LLDP:GetInfo", h);
    out = Data()->lldpInfos;
  }
};

class PTPHandler : public api::PTPIf, Handler {
 public:
  explicit PTPHandler(Handler h) : Handler(std::move(h)) {}
  void SetConfig(const api::Header_t& h, const api::PTPConfig_t& c) override {
    behaviour->Enter("PTP:SetConfig", h, c);
  }
  void AddInterfaces(const api::Header_t& h, const int8_t domain,
                     const std::vector<std::string>& names) override {
    behaviour->Enter("PTP:AddInterfaces", h, static_cast<int>(domain), names);
  }
  void RemoveInterfaces(const api::Header_t& h, const int8_t domain,
                        const std::vector<std::string>& names) override {
    behaviour->Enter("PTP:RemoveInterfaces", h, static_cast<int>(domain), names);
  }
  void DelConfig(const api::Header_t& h, const int8_t domain) override {
    behaviour->Enter("PTP:DelConfig", h, static_cast<int>(domain));
  }
  void GetConfig(std::vector<api::PTPConfig_t>& out, const api::Header_t& h) override {
    behaviour->Enter("PTP:GetConfig", h);
    out = Data()->ptpConfigs;
  }
};

// The appliance's management service: versions, host name and address from
// the data (a later Set... answers from then on), and log extractions kept
// as finished tasks that can be listed, read, cancelled and removed.
class ManagementHandler : public ArqOrvoAPI::ManagementIf, Handler {
 public:
  explicit ManagementHandler(Handler h) : Handler(std::move(h)) {}
  void GetVersion(std::string& out, const ArqOrvoAPI::MODULE_VERSION::type mod) override {
    behaviour->EnterManagement("Management:GetVersion", mod);
    const auto data = Data();
    const auto found = data->management.versions.find(mod);
    if (found == data->management.versions.end()) {
      throw Fault(ArqOrvoAPI::ERROR_CODE::NotFound, "no version for module " + std::to_string(mod));
    }
    out = found->second;
  }
  void InstallFirmware(const std::string& path, const ArqOrvoAPI::CHANGE_MODE::type mode) override {
    behaviour->EnterManagement("Management:InstallFirmware", path, mode);
  }
  void Reboot() override { behaviour->EnterManagement("Management:Reboot"); }
  void SetIpAddress(const ArqOrvoAPI::IPAddress_t& address,
                    const ArqOrvoAPI::CHANGE_MODE::type mode) override {
    behaviour->EnterManagement("Management:SetIpAddress", address, mode);
    std::lock_guard<std::mutex> lock(mutex);
    addressSet = address;
    isAddressSet = true;
  }
  void GetIpAddress(ArqOrvoAPI::IPAddress_t& out) override {
    behaviour->EnterManagement("Management:GetIpAddress");
    std::lock_guard<std::mutex> lock(mutex);
    out = isAddressSet ? addressSet : Data()->management.address;
  }
  void RestartNetwork() override { behaviour->EnterManagement("Management:RestartNetwork"); }
  void SetHostname(const std::string& name, const ArqOrvoAPI::CHANGE_MODE::type mode) override {
    behaviour->EnterManagement("Management:SetHostname", name, mode);
    std::lock_guard<std::mutex> lock(mutex);
    hostnameSet = name;
    isHostnameSet = true;
  }
  void GetHostname(std::string& out) override {
    behaviour->EnterManagement("Management:GetHostname");
    std::lock_guard<std::mutex> lock(mutex);
    out = isHostnameSet ? hostnameSet : Data()->management.hostname;
  }
  void ExtractLog(ArqOrvoAPI::Task_t& out,
                  const ArqOrvoAPI::TARGET_LOCATION::type location) override {
    behaviour->EnterManagement("Management:ExtractLog", location);
    std::lock_guard<std::mutex> lock(mutex);
    ArqOrvoAPI::Guid_t id;
    id.__set_Value("task-" + std::to_string(++lastTask));
    const auto now = static_cast<std::int64_t>(std::time(nullptr));
    out.__set_TaskId(id);
    out.__set_Name("ExtractLog");
    out.__set_CreationTime(now);
    out.__set_CompletedTime(now);
    out.__set_Status(ArqOrvoAPI::TASK_STATUS::Finished);
    out.__set_Progress(100);
    out.__set_ErrorMessage("");
    tasks.push_back(out);
  }
  void GetTaskIds(std::vector<ArqOrvoAPI::Guid_t>& out) override {
    behaviour->EnterManagement("Management:GetTaskIds");
    std::lock_guard<std::mutex> lock(mutex);
    out.clear();
    for (const auto& task : tasks) out.push_back(task.TaskId);
  }
  void GetTask(ArqOrvoAPI::Task_t& out, const ArqOrvoAPI::Guid_t& id) override {
    behaviour->EnterManagement("Management:GetTask", id);
    std::lock_guard<std::mutex> lock(mutex);
    out = *Find(id);
  }
  void SetTaskAction(ArqOrvoAPI::Task_t& out, const ArqOrvoAPI::Guid_t& id,
                     const ArqOrvoAPI::TASK_ACTION::type action) override {
    behaviour->EnterManagement("Management:SetTaskAction", id, action);
    std::lock_guard<std::mutex> lock(mutex);
    const auto task = Find(id);
    if (action == ArqOrvoAPI::TASK_ACTION::Remove) {
      out = *task;
      tasks.erase(task);
      return;
    }
    if (task->Status == ArqOrvoAPI::TASK_STATUS::Scheduled ||
        task->Status == ArqOrvoAPI::TASK_STATUS::InProgress) {
      task->__set_Status(ArqOrvoAPI::TASK_STATUS::Canceled);
    }
    out = *task;
  }

 private:
  static ArqOrvoAPI::Fault Fault(ArqOrvoAPI::ERROR_CODE::type code, const std::string& what) {
    ArqOrvoAPI::Fault fault;
    fault.__set_ErrCode(code);
    fault.__set_What(what);
    return fault;
  }
  std::vector<ArqOrvoAPI::Task_t>::iterator Find(const ArqOrvoAPI::Guid_t& id) {
    for (auto task = tasks.begin(); task != tasks.end(); ++task) {
      if (task->TaskId.Value == id.Value) return task;
    }
    throw Fault(ArqOrvoAPI::ERROR_CODE::NotFound, "no task " + id.Value);
  }

  std::mutex mutex;
  bool isAddressSet = false;
  ArqOrvoAPI::IPAddress_t addressSet;
  bool isHostnameSet = false;
  std::string hostnameSet;
  int lastTask = 0;
  std::vector<ArqOrvoAPI::Task_t> tasks;
};

}  // namespace

LoopbackSwitchServer::LoopbackSwitchServer(ServerData serverData, PortRange range)
    : LoopbackSwitchServer(
          [data = std::make_shared<const ServerData>(std::move(serverData))] { return data; },
          range) {}

LoopbackSwitchServer::LoopbackSwitchServer(DataSource source, PortRange range, int fixedPort)
    : behaviour(std::make_shared<ServerBehaviour>()),
      data(source()),
      connections(std::make_shared<std::atomic<int>>(0)),
      bytesIn(std::make_shared<std::atomic<std::uint64_t>>(0)),
      bytesOut(std::make_shared<std::atomic<std::uint64_t>>(0)) {
  const Handler handler{behaviour, std::move(source)};
  auto multiplexed = std::make_shared<apache::thrift::TMultiplexedProcessor>();
  multiplexed->registerProcessor(
      "Config", std::make_shared<api::ConfigProcessor>(std::make_shared<ConfigHandler>(handler)));
  multiplexed->registerProcessor("Ethernet", std::make_shared<api::EthernetProcessor>(
                                                 std::make_shared<EthernetHandler>(handler)));
  multiplexed->registerProcessor("Interfaces", std::make_shared<api::InterfacesProcessor>(
                                                   std::make_shared<InterfacesHandler>(handler)));
  multiplexed->registerProcessor(
      "LLDP", std::make_shared<api::LLDPProcessor>(std::make_shared<LLDPHandler>(handler)));
  multiplexed->registerProcessor(
      "PTP", std::make_shared<api::PTPProcessor>(std::make_shared<PTPHandler>(handler)));
  multiplexed->registerProcessor("Management", std::make_shared<ArqOrvoAPI::ManagementProcessor>(
                                                   std::make_shared<ManagementHandler>(handler)));
  processor = multiplexed;

  if (fixedPort > 0) {
    if (TryStart(fixedPort)) return;
    throw std::runtime_error("loopback server: port " + std::to_string(fixedPort) + " is in use");
  }
  std::mt19937 random(std::random_device{}());
  // Above 32767, and above Linux's default range for outgoing connections
  // (32768-60999), so that a port is seldom taken by a connection of the moment.
  std::uniform_int_distribution<int> highPorts(61000, 65535);
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (TryStart(range == PortRange::Any ? 0 : highPorts(random))) {
      return;
    }
  }
  throw std::runtime_error("loopback server: no port to listen on");
}

bool LoopbackSwitchServer::TryStart(int requestedPort) {
  using namespace apache::thrift;
  auto serverSocket = std::make_shared<transport::TServerSocket>("127.0.0.1", requestedPort);
  // Set once: the listening port, or -1 when serving could not start.
  auto started = std::make_shared<std::promise<int>>();
  auto once = std::make_shared<std::once_flag>();
  auto report = [started, once](int value) {
    std::call_once(*once, [&] { started->set_value(value); });
  };
  server = std::make_shared<server::TThreadedServer>(
      processor, serverSocket,
      std::make_shared<CountingBufferedTransportFactory>(bytesIn, bytesOut),
      std::make_shared<protocol::TBinaryProtocolFactory>());
  server->setServerEventHandler(std::make_shared<ServerEvents>(
      connections, [report, serverSocket] { report(serverSocket->getPort()); }));
  auto listening = started->get_future();
  thread = std::thread([this, report] {
    try {
      server->serve();
    } catch (const std::exception&) {
      report(-1);
    }
  });
  if (listening.wait_for(std::chrono::seconds(10)) != std::future_status::ready ||
      listening.get() <= 0) {
    server->stop();
    thread.join();
    return false;
  }
  port = serverSocket->getPort();
  return true;
}

int LoopbackSwitchServer::Connections() const {
  return connections->load();
}

LoopbackSwitchServer::~LoopbackSwitchServer() {
  behaviour->Release();
  server->stop();
  thread.join();
}

}  // namespace Arq::OrvoViaSwitchService::Simulator
