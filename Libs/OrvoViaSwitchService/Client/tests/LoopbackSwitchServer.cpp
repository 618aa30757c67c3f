#include "LoopbackSwitchServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <future>
#include <mutex>
#include <random>
#include <stdexcept>

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

namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing {

namespace api = ArqSwitchApi;

void ServerBehaviour::Answer() {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Answer;
}

void ServerBehaviour::Fault(api::ErrorCode_t::type code, const std::string& what) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Fault;
  faultCode = code;
  text = what;
}

void ServerBehaviour::OtherException(const std::string& what) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::OtherException;
  text = what;
}

void ServerBehaviour::Delay(std::chrono::milliseconds value) {
  std::lock_guard<std::mutex> lock(mutex);
  mode = Mode::Delay;
  delay = value;
}

void ServerBehaviour::Only(const std::string& call) {
  std::lock_guard<std::mutex> lock(mutex);
  target = call;
}

void ServerBehaviour::Release() {
  {
    std::lock_guard<std::mutex> lock(mutex);
    isReleased = true;
  }
  released.notify_all();
}

std::vector<std::string> ServerBehaviour::Calls() const {
  std::lock_guard<std::mutex> lock(mutex);
  return calls;
}

std::vector<api::Header_t> ServerBehaviour::Headers() const {
  std::lock_guard<std::mutex> lock(mutex);
  return headers;
}

void ServerBehaviour::Apply(const std::string& line, const api::Header_t& header) {
  std::unique_lock<std::mutex> lock(mutex);
  calls.push_back(line);
  headers.push_back(header);
  const bool targeted =
      target.empty() || (line.compare(0, target.size(), target) == 0 &&
                         (line.size() == target.size() || line[target.size()] == ' '));
  switch (targeted ? mode : Mode::Answer) {
    case Mode::Answer:
      return;
    case Mode::Fault: {
      api::Fault_t fault;
      fault.__set_ErrCode(faultCode);
      fault.__set_What(text);
      throw fault;
    }
    case Mode::OtherException:
      // The generated processor answers a TApplicationException for it.
      throw std::runtime_error(text);
    case Mode::Delay:
      released.wait_for(lock, delay, [this] { return isReleased; });
      return;
  }
}

namespace {

api::EthCnt_t Counters(const std::string& name, std::int64_t base) {
  api::EthCnt_t c;
  c.__set_EthName(name);
  c.__set_NbOfGoodOctetsReceived(base + 1);
  c.__set_NbOfBadOctetsReceived(base + 2);
  c.__set_NbOfFrameNotTransmitted(base + 3);
  c.__set_NbOfGoodPacketsBroadcast(base + 4);
  c.__set_NbOfGoodPacketsMulticast(base + 5);
  c.__set_NbOfGoodPackets64Bytes(base + 6);
  c.__set_NbOfGoodPackets65to127Bytes(base + 7);
  c.__set_NbOfGoodPackets128to255Bytes(base + 8);
  c.__set_NbOfGoodPackets256to511Bytes(base + 9);
  c.__set_NbOfGoodPackets512to1023Bytes(base + 10);
  c.__set_NbOfGoodPackets1024toMaxBytes(base + 11);
  c.__set_NbOfGoodOctectsSent(base + 12);
  c.__set_NbOfPacketsDropDueCollision(base + 13);
  c.__set_NbOfGoodMulticastPacketsSent(base + 14);
  c.__set_NbOfGoodBroadcastPacketsSent(base + 15);
  c.__set_NbOfGoodFlowControlFrameSent(base + 16);
  c.__set_NbOfGoodFlowControlFrameReceived(base + 17);
  c.__set_NbOfInternalDropPacketsBW(base + 18);
  c.__set_NbOfPacketsSizeLess64BytesReceived(base + 19);
  c.__set_NbOfFragmentedPacketsReceived(base + 20);
  c.__set_NbOfOversizedPacketsReceived(base + 21);
  c.__set_NbOfJabberPacketsReceived(base + 22);
  c.__set_NbOfReceivedErrorFromMac(base + 23);
  c.__set_NbOfCrcErrorEvents(base + 24);
  c.__set_NbOfMacCollision(base + 25);
  c.__set_NbOfLateMacCollision(base + 26);
  c.__set_NbOfGoodUnicastFrameReceived(base + 27);
  c.__set_NbOfGoodUnicastFrameSent(base + 28);
  c.__set_NbOfValidFrameSentHalfDupWithCollision(base + 29);
  c.__set_NbOfValidFrameSentHalfDupWithOutCollision(base + 9000000000LL);
  return c;
}

api::IPAddress_t Address(const std::string& text) {
  api::IPAddress_t address;
  address.__set_bIpv6(false);
  address.__set_Address(text);
  return address;
}

api::IfInfo_t Interface(api::IfType_t::type type, api::IfStatus_t::type status, std::int16_t vid,
                        std::vector<std::string> members) {
  api::IfInfo_t info;
  info.__set_Type(type);
  info.__set_Status(status);
  info.__set_Vid(vid);
  info.__set_Description("if " + std::to_string(vid));
  info.__set_MacAddr("00:11:22:33:44:" + std::to_string(10 + vid % 80));
  info.__set_Vlan({vid, static_cast<std::int16_t>(vid + 1)});
  info.__set_IfList(std::move(members));
  api::IfIpConfig_t ip;
  ip.__set_Ip(Address("10.0.0." + std::to_string(vid % 250)));
  ip.__set_Mask(Address("255.255.255.0"));
  ip.__set_Gateway(Address("10.0.0.254"));
  ip.__set_Dhcp(vid % 2 == 0);
  info.__set_IpConfig(ip);
  return info;
}

api::EthInfo_t Port(const std::string& name, api::EthMode_t::type mode, api::EthSpeed_t::type speed,
                    api::EthState_t::type state, api::EthFecType_t::type fec,
                    api::EthFecType_t::type fecState) {
  api::EthInfo_t info;
  info.__set_EthName(name);
  info.__set_Mode(mode);
  info.__set_Speed(speed);
  info.__set_IsMainPhys(true);
  info.__set_NbPhys(4);
  info.__set_State(state);
  info.__set_FailureSts(api::EthFailureSts_t::NoFailure);
  info.__set_FecType(fec);
  info.__set_FecTypeState(fecState);
  return info;
}

api::EthStat_t Rates(const std::string& name, std::int64_t tx, std::int64_t rx) {
  api::EthStat_t stat;
  stat.__set_EthName(name);
  stat.__isset.EthName = true;
  stat.__set_TxSpeed(tx);
  stat.__set_RxSpeed(rx);
  return stat;
}

api::ConfigFile_t File(const std::string& name, api::ConfigType_t::type type,
                       api::ConfigState_t::type state) {
  api::ConfigFile_t file;
  file.__set_Name(name);
  file.__set_Type(type);
  file.__set_Comment("comment of " + name);
  file.__set_State(state);
  file.__set_BaseName("factory");
  file.__set_BaseType(api::ConfigType_t::Default);
  return file;
}

}  // namespace

ServerData ServerData::Sample() {
  ServerData d;
  d.ifList = {"eth1", "eth2", "prs1", "lag1"};
  d.ifInfos["eth1"] = Interface(api::IfType_t::Ethernet, api::IfStatus_t::Enabled, 10, {"p1"});
  d.ifInfos["eth2"] = Interface(api::IfType_t::Ethernet, api::IfStatus_t::Disabled, 11, {"p2"});
  d.ifInfos["prs1"] =
      Interface(api::IfType_t::BasicPrs, api::IfStatus_t::Unknown, 12, {"p3", "p4"});
  d.ifInfos["lag1"] =
      Interface(api::IfType_t::BasicLag, api::IfStatus_t::Enabled, 13, {"p5", "p6"});
  d.counters["eth1"] = {Counters("p1", 100)};
  d.counters["prs1"] = {Counters("p3", 300), Counters("p4", 400)};
  d.stats["eth1"] = {Rates("p1", 1000, 2000)};
  d.stats["prs1"] = {Rates("p3", 3000, 4000), Rates("p4", 5000, 6000)};
  d.mainMac = "00:11:22:33:44:55";
  d.macs = {{"eth1", "00:11:22:33:44:01"}, {"eth2", "00:11:22:33:44:02"}};
  d.ethInfos = {
      Port("p1", api::EthMode_t::KR, api::EthSpeed_t::S10G, api::EthState_t::LinkUp,
           api::EthFecType_t::Disable, api::EthFecType_t::FC_FEC),
      Port("p2", api::EthMode_t::_1000BASE_X, api::EthSpeed_t::S100G, api::EthState_t::LinkDown,
           api::EthFecType_t::RS_FEC, api::EthFecType_t::Unknown),
      Port("p3", api::EthMode_t::Unknown, api::EthSpeed_t::Unknown, api::EthState_t::Unknown,
           api::EthFecType_t::FC_FEC, api::EthFecType_t::Disable)};
  api::HwDesc_t hw;
  hw.__set_Port(7);
  hw.__set_NbSubPort(-4);
  d.hwDescs = {hw};
  d.lldpConfig.__set_SystemName("switch-a");
  d.lldpConfig.__set_SystemDescr("a test switch");
  d.lldpConfig.__set_ManagementIP("192.0.2.1");
  d.lldpConfig.__set_ChassisId("00:11:22:33:44:55");
  d.lldpConfig.__set_TTL(120);
  api::lldpInfo_t neighbour;
  neighbour.__set_IfName("p1");
  neighbour.__set_Tlv({{static_cast<std::int8_t>(api::lldpTlvType_t::ChassisId), "chassis"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::SystemName), "peer"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::CustomTlv), "custom"},
                       {static_cast<std::int8_t>(api::lldpTlvType_t::CustomEEETlv), "eee"}});
  d.lldpInfos = {neighbour};
  api::PTPConfig_t ptp;
  ptp.__set_Domain(-3);
  ptp.__set_PacketType(api::PTPPacketType_t::UDP);
  ptp.__set_ClockMode(api::PTPClockMode_t::Boundary);
  ptp.__set_IfList({"p1", "p2"});
  ptp.__set_SlaveIfList({"p2"});
  ptp.__set_Profile(api::PTPProfile_t::SMPTE_2059);
  d.ptpConfigs = {ptp};
  d.currentConfig = File("running", api::ConfigType_t::Release, api::ConfigState_t::altered);
  d.configFiles = {File("a", api::ConfigType_t::Debug, api::ConfigState_t::clean),
                   File("b", api::ConfigType_t::Unknown, api::ConfigState_t::Unknown)};
  d.comment = "a comment";
  return d;
}

ServerData ServerData::FullCapacity() {
  ServerData d;
  const auto add = [&d](const std::string& name, api::IfType_t::type type, int ports) {
    std::vector<std::string> members;
    for (int i = 0; i < ports; ++i) {
      const std::string port = name + "-p" + std::to_string(i);
      members.push_back(port);
      d.ethInfos.push_back(Port(port, api::EthMode_t::KR4, api::EthSpeed_t::S100G,
                                api::EthState_t::LinkUp, api::EthFecType_t::RS_FEC,
                                api::EthFecType_t::RS_FEC));
      d.counters[name].push_back(Counters(port, 1000000 * static_cast<std::int64_t>(i + 1)));
      d.stats[name].push_back(Rates(port, 25000000000LL, 24000000000LL));
    }
    d.ifList.push_back(name);
    d.ifInfos[name] = Interface(type, api::IfStatus_t::Enabled,
                                static_cast<std::int16_t>(d.ifList.size()), members);
    d.macs[name] = d.ifInfos[name].MacAddr;
  };
  for (int i = 0; i < 48; ++i) {
    add("eth" + std::to_string(i), api::IfType_t::Ethernet, 1);
  }
  for (int i = 0; i < 24; ++i) {
    add("prs" + std::to_string(i), api::IfType_t::BasicPrs, 2);
  }
  for (int i = 0; i < 3; ++i) {
    add("lag" + std::to_string(i), api::IfType_t::BasicLag, 6);
  }
  const ServerData sample = Sample();
  d.mainMac = sample.mainMac;
  d.hwDescs = sample.hwDescs;
  d.lldpConfig = sample.lldpConfig;
  for (int i = 0; i < 60; ++i) {
    api::lldpInfo_t neighbour = sample.lldpInfos[0];
    neighbour.__set_IfName("eth" + std::to_string(i % 48));
    neighbour.Tlv[static_cast<std::int8_t>(api::lldpTlvType_t::PortDescription)] =
        "neighbour port " + std::to_string(i);
    d.lldpInfos.push_back(neighbour);
  }
  d.ptpConfigs.assign(5, sample.ptpConfigs[0]);
  for (std::size_t i = 0; i < d.ptpConfigs.size(); ++i) {
    d.ptpConfigs[i].__set_Domain(static_cast<std::int8_t>(i));
  }
  d.currentConfig = sample.currentConfig;
  d.configFiles = sample.configFiles;
  d.comment = sample.comment;
  return d;
}

namespace {

// Counts the bytes that cross the socket under the server's buffered transport.
class CountingTransport : public apache::thrift::transport::TVirtualTransport<CountingTransport> {
 public:
  CountingTransport(std::shared_ptr<apache::thrift::transport::TTransport> inner,
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
    inner->write(buffer, length);
    *out += length;
  }
  void flush() override { inner->flush(); }

 private:
  std::shared_ptr<apache::thrift::transport::TTransport> inner;
  std::shared_ptr<std::atomic<std::uint64_t>> in;
  std::shared_ptr<std::atomic<std::uint64_t>> out;
};

class CountingBufferedTransportFactory : public apache::thrift::transport::TTransportFactory {
 public:
  CountingBufferedTransportFactory(std::shared_ptr<std::atomic<std::uint64_t>> in,
                                   std::shared_ptr<std::atomic<std::uint64_t>> out)
      : in(std::move(in)), out(std::move(out)) {}

  std::shared_ptr<apache::thrift::transport::TTransport> getTransport(
      std::shared_ptr<apache::thrift::transport::TTransport> socket) override {
    return std::make_shared<apache::thrift::transport::TBufferedTransport>(
        std::make_shared<CountingTransport>(socket, in, out));
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
  processor = multiplexed;

  if (fixedPort > 0) {
    if (TryStart(fixedPort)) return;
    throw std::runtime_error("loopback server: port " + std::to_string(fixedPort) + " is in use");
  }
  std::mt19937 random(std::random_device{}());
  std::uniform_int_distribution<int> lowPorts(20000, 32767);
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (TryStart(range == PortRange::Any ? 0 : lowPorts(random))) {
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

RawPeer::RawPeer(std::string replyBytes) : reply(std::move(replyBytes)) {
  listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(listener, 8) != 0) {
    throw std::runtime_error("raw peer: cannot listen");
  }
  socklen_t length = sizeof(address);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  port = ntohs(address.sin_port);
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) {
    throw std::runtime_error("raw peer: no pipe");
  }
  wakeRead = pipeEnds[0];
  wakeWrite = pipeEnds[1];
  thread = std::thread([this] { Serve(); });
}

RawPeer::~RawPeer() {
  const char stop = 's';
  (void)!write(wakeWrite, &stop, 1);
  thread.join();
  close(listener);
  close(wakeRead);
  close(wakeWrite);
}

std::string RawPeer::Received() const {
  std::lock_guard<std::mutex> lock(mutex);
  return received;
}

void RawPeer::Serve() {
  for (;;) {
    pollfd fds[2] = {{listener, POLLIN, 0}, {wakeRead, POLLIN, 0}};
    if (poll(fds, 2, -1) < 0 || (fds[1].revents & POLLIN)) {
      return;
    }
    const int connection = accept(listener, nullptr, nullptr);
    if (connection < 0) {
      continue;
    }
    // Read until the client pauses for 200 ms: one request.
    char buffer[4096];
    for (int reads = 0; reads < 1000; ++reads) {
      pollfd in = {connection, POLLIN, 0};
      if (poll(&in, 1, 200) <= 0) {
        break;
      }
      const ssize_t n = read(connection, buffer, sizeof(buffer));
      if (n <= 0) {
        break;
      }
      std::lock_guard<std::mutex> lock(mutex);
      received.append(buffer, static_cast<std::size_t>(n));
    }
    if (!reply.empty()) {
      (void)!write(connection, reply.data(), reply.size());
    }
    close(connection);
  }
}

ClosedPort::ClosedPort() {
  socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (socket < 0 || bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("closed port: cannot bind");
  }
  socklen_t length = sizeof(address);
  getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
  port = ntohs(address.sin_port);
}

ClosedPort::~ClosedPort() {
  close(socket);
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift::Testing
