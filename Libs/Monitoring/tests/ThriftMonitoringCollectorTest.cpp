#include <gtest/gtest.h>
#include <syslog.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Arq/Monitoring/ThriftMonitoringCollector.h"
#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"
#include "SnmpLogCapture.h"

namespace Arq::Monitoring {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace Interfaces = OrvoViaSwitch::Domain::Interfaces;
using OrvoViaSwitch::Domain::Exception::DomainException;
using OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;

// What the fake switch answers, what it must fail, and what happened.
struct FakeSwitch {
  std::vector<std::string> ifList;
  std::map<std::string, Dto::IfInfo> ifInfos;
  std::vector<Dto::EthInfo> ethInfos;
  std::map<std::string, std::vector<Dto::EthCnt>> counters;
  std::map<std::string, std::vector<Dto::EthStat>> stats;
  std::string mainMac;
  Dto::LldpConfig lldpConfig;
  std::vector<Dto::LldpInfo> neighbours;
  std::vector<Dto::PTPConfig> ptpConfigs;
  Dto::ConfigFile currentConfig;

  // Operations ("GetIfList", ...) that throw; "Open" fails every opening.
  std::set<std::string> failing;
  std::vector<std::string> journal;
  // Called at every service call, before it answers.
  std::function<void(const std::string&)> onCall = [](const std::string&) {};

  void Step(const std::string& entry) {
    journal.push_back(entry);
    if (entry.rfind("Open", 0) != 0) {
      onCall(entry);
    }
    const auto operation = entry.substr(0, entry.find(' '));
    if (failing.count(operation) != 0) {
      throw DomainException((operation + " failed").c_str(), Dto::ErrorCode::NotFound);
    }
  }
  static std::string Names(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) {
      text += (text.empty() ? "" : ",") + name;
    }
    return "[" + text + "]";
  }
};

using Dto::ConfigFile, Dto::ConfigType, Dto::EthCnt, Dto::EthConfig, Dto::EthInfo, Dto::EthStat,
    Dto::Header, Dto::HwDesc, Dto::IfInfo, Dto::IfIpConfig, Dto::IfStatus, Dto::LldpConfig,
    Dto::LldpInfo, Dto::PTPConfig;
using Names = std::vector<std::string>;
using String = std::string;

// One fake client for every service: the factory hands out a new one per
// call, named after its service; each opening, closing and destruction goes
// to the journal.
class FakeClient : public Interfaces::IOrvoViaSwitchInterfacesClient,
                   public Interfaces::IOrvoViaSwitchEthernetClient,
                   public Interfaces::IOrvoViaSwitchLLDPClient,
                   public Interfaces::IOrvoViaSwitchPTPClient,
                   public Interfaces::IOrvoViaSwitchConfigClient {
 public:
  FakeClient(FakeSwitch& fake, std::string service) : fake(fake), service(std::move(service)) {
    fake.journal.push_back("Create " + this->service);
  }
  ~FakeClient() override { fake.journal.push_back("Destroy " + service); }
  void Open() override { fake.Step("Open " + service); }
  void Close() override { fake.journal.push_back("Close " + service); }

  Names GetIfList(const Header&) override {
    fake.Step("GetIfList");
    return fake.ifList;
  }
  std::map<std::string, IfInfo> GetIfInfo(const Header&, const Names& names) override {
    fake.Step("GetIfInfo " + FakeSwitch::Names(names));
    return fake.ifInfos;
  }
  std::map<std::string, std::vector<EthCnt>> GetEthCnt(const Header&, const Names& names) override {
    fake.Step("GetEthCnt " + FakeSwitch::Names(names));
    return fake.counters;
  }
  std::map<std::string, std::vector<EthStat>> GetEthStats(const Header&,
                                                          const Names& names) override {
    fake.Step("GetEthStats " + FakeSwitch::Names(names));
    return fake.stats;
  }
  std::string GetMainMacAddr(const Header&) override {
    fake.Step("GetMainMacAddr");
    return fake.mainMac;
  }
  std::vector<EthInfo> GetEthInfo(const Header&, const Names& names) override {
    fake.Step("GetEthInfo " + FakeSwitch::Names(names));
    return fake.ethInfos;
  }
  LldpConfig GetLldpConfig(const Header&) override {
    fake.Step("GetLldpConfig");
    return fake.lldpConfig;
  }
  std::vector<LldpInfo> GetLldpInfo(const Header&) override {
    fake.Step("GetLldpInfo");
    return fake.neighbours;
  }
  std::vector<PTPConfig> GetPTPConfig(const Header&) override {
    fake.Step("GetPTPConfig");
    return fake.ptpConfigs;
  }
  ConfigFile GetCurrentConfig(const Header&) override {
    fake.Step("GetCurrentConfig");
    return fake.currentConfig;
  }

  // What the collector never calls.
  std::map<std::string, std::string> GetMacAddr(const Header&, const Names&) override { Unused(); }
  void SetIfDescription(const Header&, const String&, const String&) override { Unused(); }
  void SetIfStatus(const Header&, const Names&, const IfStatus&) override { Unused(); }
  void SetVID(const Header&, const Names&, std::int16_t) override { Unused(); }
  void AddToVlan(const Header&, const Names&, std::int16_t) override { Unused(); }
  void RemoveFromVlan(const Header&, const Names&, std::int16_t) override { Unused(); }
  void DeleteIfs(const Header&, const Names&) override { Unused(); }
  void DeleteAllIfs(const Header&) override { Unused(); }
  void SetIpConfig(const Header&, const String&, const IfIpConfig&) override { Unused(); }
  void ConfigureEth(const Header&, const EthConfig&, const Names&) override { Unused(); }
  std::vector<HwDesc> GetHardwareDesc(const Header&) override { Unused(); }
  void SetLldpConfig(const Header&, const LldpConfig&) override { Unused(); }
  void SetPTPConfig(const Header&, const PTPConfig&) override { Unused(); }
  void AddInterfaces(const Header&, std::int8_t, const Names&) override { Unused(); }
  void RemoveInterfaces(const Header&, std::int8_t, const Names&) override { Unused(); }
  void DelPTPConfig(const Header&, std::int8_t) override { Unused(); }
  std::vector<ConfigFile> ListConfigFile(const Header&, const ConfigType&) override { Unused(); }
  void Reset(const Header&) override { Unused(); }
  void LoadConfig(const Header&, const ConfigFile&) override { Unused(); }
  void LoadFactoryDefault(const Header&) override { Unused(); }
  void SaveRunningConfig2StartUpConfig(const Header&) override { Unused(); }
  void BackupRunningConfig(const Header&, const ConfigFile&) override { Unused(); }
  void SetConfigComment(const Header&, const ConfigFile&) override { Unused(); }
  std::string GetConfigComment(const Header&, const ConfigFile&) override { Unused(); }
  void CopyConfig(const Header&, const ConfigFile&, const ConfigFile&) override { Unused(); }
  void DeleteConfig(const Header&, const ConfigFile&) override { Unused(); }
  void RenameConfig(const Header&, const ConfigFile&, const ConfigFile&) override { Unused(); }

 private:
  [[noreturn]] static void Unused() { throw std::logic_error("not called by the collector"); }
  FakeSwitch& fake;
  std::string service;
};

class FakeClientFactory : public Interfaces::IOrvoViaSwitchMonitoringClientFactory {
 public:
  explicit FakeClientFactory(FakeSwitch& fake) : fake(fake) {}
  std::unique_ptr<Interfaces::IOrvoViaSwitchConfigClient> CreateOrvoViaSwitchConfigProxyClient()
      override {
    return std::make_unique<FakeClient>(fake, "Config");
  }
  std::unique_ptr<Interfaces::IOrvoViaSwitchEthernetClient> CreateOrvoViaSwitchEthernetProxyClient()
      override {
    return std::make_unique<FakeClient>(fake, "Ethernet");
  }
  std::unique_ptr<Interfaces::IOrvoViaSwitchInterfacesClient>
  CreateOrvoViaSwitchInterfacesProxyClient() override {
    return std::make_unique<FakeClient>(fake, "Interfaces");
  }
  std::unique_ptr<Interfaces::IOrvoViaSwitchLLDPClient> CreateOrvoViaSwitchLLDPProxyClient()
      override {
    return std::make_unique<FakeClient>(fake, "LLDP");
  }
  std::unique_ptr<Interfaces::IOrvoViaSwitchPTPClient> CreateOrvoViaSwitchPTPProxyClient()
      override {
    return std::make_unique<FakeClient>(fake, "PTP");
  }

 private:
  FakeSwitch& fake;
};

Dto::IfInfo Interface(Dto::IfType type, std::vector<std::string> members) {
  Dto::IfInfo info;
  info.Type = type;
  info.Status = Dto::IfStatus::Enabled;
  info.IfList = std::move(members);
  return info;
}

// Two Ethernet interfaces, one PRS and one LAG; the LAG shares port p2.
FakeSwitch SmallSwitch() {
  FakeSwitch fake;
  fake.ifList = {"eth2", "eth1", "prs1", "lag1"};
  fake.ifInfos["eth1"] = Interface(Dto::IfType::Ethernet, {"p1"});
  fake.ifInfos["eth2"] = Interface(Dto::IfType::Ethernet, {"p2"});
  fake.ifInfos["prs1"] = Interface(Dto::IfType::BasicPrs, {"p3", "p4"});
  fake.ifInfos["lag1"] = Interface(Dto::IfType::BasicLag, {"p5", "p2"});
  fake.mainMac = "00:11:22:33:44:55";
  fake.neighbours.resize(3);
  fake.ptpConfigs.resize(2);
  fake.currentConfig.Name = "running";
  return fake;
}

// The ten calls in order, each through its own client, for these port names.
std::vector<std::string> TenCalls(const std::string& ifNames, const std::string& portNames) {
  std::vector<std::string> journal;
  const std::vector<std::pair<std::string, std::string>> calls = {
      {"Interfaces", "GetIfList"},
      {"Interfaces", "GetIfInfo " + ifNames},
      {"Ethernet", "GetEthInfo " + portNames},
      {"Interfaces", "GetEthCnt " + portNames},
      {"Interfaces", "GetEthStats " + portNames},
      {"Interfaces", "GetMainMacAddr"},
      {"LLDP", "GetLldpConfig"},
      {"LLDP", "GetLldpInfo"},
      {"PTP", "GetPTPConfig"},
      {"Config", "GetCurrentConfig"}};
  for (const auto& [service, call] : calls) {
    journal.insert(journal.end(), {"Create " + service, "Open " + service, call, "Close " + service,
                                   "Destroy " + service});
  }
  return journal;
}

// Ten calls in order, each with its own client, all before any holder is
// written; then the counts of every kind.
TEST(ThriftMonitoringCollectorTest, MakesTheTenCallsThenStoresTheCounts) {
  Testing::SnmpLogCapture log;
  FakeSwitch fake = SmallSwitch();
  auto values = std::make_unique<OrvoViaMonitoringValues_s>();
  values->nbEthernetInterfaces.Value(7);
  values->nbPTPs.Value(7);
  std::vector<long> seenAtLastCall;
  fake.onCall = [&](const std::string& call) {
    if (call == "GetCurrentConfig") {
      seenAtLastCall = {values->nbEthernetInterfaces.Value(), values->nbPTPs.Value()};
    }
  };
  ThriftMonitoringCollector collector(std::make_unique<FakeClientFactory>(fake));

  collector.Collect(values.get());

  // Ports in interface-key order (eth1, eth2, lag1, prs1), p2 only once.
  EXPECT_EQ(fake.journal, TenCalls("[eth2,eth1,prs1,lag1]", "[p1,p2,p5,p3,p4]"));
  EXPECT_TRUE(log.Lines(LOG_ERR).empty());
  EXPECT_EQ(seenAtLastCall, (std::vector<long>{7, 7}));
  EXPECT_EQ((std::vector<long>{values->nbEthernetInterfaces.Value(),
                               values->nbPRSInterfaces.Value(), values->nbLAGInterfaces.Value(),
                               values->nbLLDPInfos.Value(), values->nbPTPs.Value()}),
            (std::vector<long>{2, 1, 1, 3, 2}));
}

// Each call failing in turn: one error line, the other calls still run, and
// the failed call's client is destroyed without its Close.
TEST(ThriftMonitoringCollectorTest, OneFailedCallLogsOnceAndTheOthersStillRun) {
  const std::string ifNames = "[eth2,eth1,prs1,lag1]", portNames = "[p1,p2,p5,p3,p4]";
  struct Case {
    std::string operation, ifNames, portNames;
  };
  for (const auto& c : std::vector<Case>{{"GetIfList", "[]", portNames},
                                         {"GetIfInfo", ifNames, "[]"},
                                         {"GetEthInfo", ifNames, portNames},
                                         {"GetEthCnt", ifNames, portNames},
                                         {"GetEthStats", ifNames, portNames},
                                         {"GetMainMacAddr", ifNames, portNames},
                                         {"GetLldpConfig", ifNames, portNames},
                                         {"GetLldpInfo", ifNames, portNames},
                                         {"GetPTPConfig", ifNames, portNames},
                                         {"GetCurrentConfig", ifNames, portNames}}) {
    SCOPED_TRACE(c.operation);
    Testing::SnmpLogCapture log;
    FakeSwitch fake = SmallSwitch();
    fake.failing = {c.operation};
    ThriftMonitoringCollector collector(std::make_unique<FakeClientFactory>(fake));
    auto values = std::make_unique<OrvoViaMonitoringValues_s>();

    collector.Collect(values.get());

    auto expected = TenCalls(c.ifNames, c.portNames);
    for (auto entry = expected.begin(); entry != expected.end(); ++entry) {
      if (entry->rfind(c.operation, 0) == 0) {
        expected.erase(entry + 1);
        break;
      }
    }
    EXPECT_EQ(fake.journal, expected);
    EXPECT_EQ(log.Lines(LOG_ERR), std::vector<std::string>{"Error: " + c.operation + " failed\n"});
  }
}

}  // namespace
}  // namespace Arq::Monitoring
