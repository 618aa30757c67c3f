#include "Arq/OrvoViaSwitchService/Simulator/Scenario.h"

#include <json/reader.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>

#include "Arq/OrvoViaSwitchService/Simulator/LldpTlvEncoder.h"

namespace Arq::OrvoViaSwitchService::Simulator {
namespace {

namespace api = ArqSwitchApi;

namespace Dto = OrvoViaSwitch::Domain::Dto;

// The counters of a port record, in the list's order, by their wire names.
struct CounterField {
  const char* name;
  std::int64_t api::EthCnt_t::*value;
  void (api::EthCnt_t::*set)(const std::int64_t);
};

#define ARQ_COUNTER_FIELD(field) \
  CounterField{#field, &api::EthCnt_t::field, &api::EthCnt_t::__set_##field},
const std::array<CounterField, Scenario::kCounters> kCounterFields = {
    {ARQ_ETH_COUNTERS(ARQ_COUNTER_FIELD)}};
#undef ARQ_COUNTER_FIELD

std::size_t CounterIndex(const std::string& name) {
  for (std::size_t i = 0; i < kCounterFields.size(); ++i) {
    if (name == kCounterFields[i].name) return i;
  }
  return kCounterFields.size();
}

// The counters that move with the traffic rates.
constexpr std::size_t kOctetsReceived = Dto::EthCounterIndex::NbOfGoodOctetsReceived;
constexpr std::size_t kOctetsSent = Dto::EthCounterIndex::NbOfGoodOctectsSent;
constexpr std::size_t kUnicastReceived = Dto::EthCounterIndex::NbOfGoodUnicastFrameReceived;
constexpr std::size_t kUnicastSent = Dto::EthCounterIndex::NbOfGoodUnicastFrameSent;

constexpr std::int64_t kDefaultFrameBytes = 1000;
constexpr std::int64_t kMaxInt64 = std::numeric_limits<std::int64_t>::max();

// One JSON value and where it sits in the file, for error messages.
class Node {
 public:
  Node(const Json::Value& value, std::string path, const std::string& origin)
      : value(value), path(std::move(path)), origin(origin) {}

  [[noreturn]] void Fail(const std::string& problem) const {
    throw ScenarioError(origin + ": " + (path.empty() ? "top level" : path) + ": " + problem);
  }

  // An object with no members but those listed.
  void ExpectObject(std::initializer_list<const char*> members) const {
    if (!value.isObject()) Fail("expected an object");
    for (const auto& name : value.getMemberNames()) {
      bool known = false;
      for (const char* member : members) known = known || name == member;
      if (!known) Fail("unknown member \"" + name + "\"");
    }
  }

  bool Has(const char* key) const { return value.isMember(key); }
  Node Member(const std::string& key) const {
    return {value[key], path.empty() ? key : path + "." + key, origin};
  }
  const Json::Value& Value() const { return value; }

  std::vector<Node> Items(const char* key) const {
    std::vector<Node> items;
    if (!Has(key)) return items;
    const Node list = Member(key);
    if (!list.value.isArray()) list.Fail("expected an array");
    for (Json::ArrayIndex i = 0; i < list.value.size(); ++i) {
      items.emplace_back(list.value[i], list.path + "[" + std::to_string(i) + "]", origin);
    }
    return items;
  }

  std::string String(const char* key, const std::string& fallback = std::string()) const {
    if (!Has(key)) return fallback;
    const Node member = Member(key);
    if (!member.value.isString()) member.Fail("expected a string");
    return member.value.asString();
  }

  std::string RequiredString(const char* key) const {
    if (!Has(key)) Fail("\"" + std::string(key) + "\" is required");
    std::string text = String(key);
    if (text.empty()) Member(key).Fail("must not be empty");
    return text;
  }

  std::vector<std::string> Strings(const char* key) const {
    std::vector<std::string> texts;
    for (const auto& item : Items(key)) {
      if (!item.value.isString()) item.Fail("expected a string");
      texts.push_back(item.value.asString());
    }
    return texts;
  }

  std::int64_t Integer(std::int64_t min, std::int64_t max) const {
    if (!value.isInt64()) {
      Fail("expected a whole number");
    }
    const std::int64_t number = value.asInt64();
    if (number < min || number > max) {
      Fail(std::to_string(number) + " is not in " + std::to_string(min) + ".." +
           std::to_string(max));
    }
    return number;
  }

  std::int64_t Integer(const char* key, std::int64_t min, std::int64_t max,
                       std::int64_t fallback) const {
    return Has(key) ? Member(key).Integer(min, max) : fallback;
  }

  bool Bool(const char* key, bool fallback) const {
    if (!Has(key)) return fallback;
    const Node member = Member(key);
    if (!member.value.isBool()) member.Fail("expected true or false");
    return member.value.asBool();
  }

  // A member of a generated enum by its wire name, or a number (a value the
  // definitions do not list is what an inconsistent switch may send). Unless
  // `anyNumber`, a number must be one the enum type can hold: those of the
  // smallest bit-field that holds every member.
  int Enum(const std::map<int, const char*>& names, bool anyNumber = false) const {
    if (value.isString()) {
      for (const auto& [number, name] : names) {
        if (value.asString() == name) return number;
      }
      std::string known;
      for (const auto& entry : names)
        known += (known.empty() ? "" : ", ") + std::string(entry.second);
      Fail("\"" + value.asString() + "\" is not one of " + known + " (or a number)");
    }
    if (!value.isInt()) Fail("expected a name or a number");
    const int number = value.asInt();
    if (!anyNumber) {
      const int lowest = names.begin()->first;
      const int highest = names.rbegin()->first;
      int most = 0;
      while (most < highest || most < -lowest - 1) most = most * 2 + 1;
      const int least = lowest < 0 ? -most - 1 : 0;
      if (number < least || number > most) {
        Fail(std::to_string(number) + " is not in " + std::to_string(least) + ".." +
             std::to_string(most));
      }
    }
    return number;
  }

  template <typename EnumType>
  typename EnumType::type Enum(const char* key, const std::map<int, const char*>& names,
                               typename EnumType::type fallback) const {
    if (!Has(key)) return fallback;
    return static_cast<typename EnumType::type>(Member(key).Enum(names));
  }

  // The listed words among `allowed`.
  std::set<std::string> Words(const char* key, std::initializer_list<const char*> allowed) const {
    std::set<std::string> words;
    for (const auto& item : Items(key)) {
      const std::string word = item.value.isString() ? item.value.asString() : std::string();
      bool known = false;
      std::string list;
      for (const char* name : allowed) {
        known = known || word == name;
        list += (list.empty() ? "" : ", ") + std::string(name);
      }
      if (!known) item.Fail("expected one of " + list);
      words.insert(word);
    }
    return words;
  }

 private:
  const Json::Value& value;
  std::string path;
  const std::string& origin;
};

// Both numbers are at least 0. Whole seconds first, so that the product is
// exact for years of traffic; beyond 64 bits the counter wraps, as a switch's
// does.
std::int64_t Grown(std::int64_t initial, std::int64_t perSecond, std::int64_t elapsedMs) {
  const auto rate = static_cast<std::uint64_t>(perSecond);
  const auto ms = static_cast<std::uint64_t>(elapsedMs);
  const std::uint64_t whole = rate * (ms / 1000);
  const std::uint64_t part = rate / 1000 * (ms % 1000) + rate % 1000 * (ms % 1000) / 1000;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(initial) + whole + part);
}

api::IPAddress_t Address(const std::string& text, bool ipv6) {
  api::IPAddress_t address;
  address.__set_bIpv6(ipv6);
  address.__set_Address(text);
  return address;
}

}  // namespace

// Builds a scenario's answers from its JSON text.
class ScenarioReader {
 public:
  ScenarioReader(const Json::Value& root, const std::string& origin) : root(root, "", origin) {}

  Scenario Read() {
    root.ExpectObject({"description", "mainMacAddress", "interfaces", "ports", "hardware", "lldp",
                       "ptp", "configuration", "management"});
    root.String("description");
    data.mainMac = root.String("mainMacAddress");
    ReadPorts();
    ReadInterfaces();
    ReadHardware();
    ReadLldp();
    ReadPtp();
    ReadConfiguration();
    ReadManagement();
    Scenario scenario;
    scenario.start = std::move(data);
    scenario.growth = std::move(growth);
    return scenario;
  }

 private:
  struct Port {
    api::EthCnt_t counters;
    std::array<std::int64_t, Scenario::kCounters> perSecond{};
    api::EthStat_t rates;
    std::set<std::string> missing;
  };

  void ReadPorts() {
    for (const auto& node : root.Items("ports")) {
      node.ExpectObject({"name", "mode", "speed", "state", "failure", "fecType", "fecTypeState",
                         "mainPhys", "nbPhys", "rates", "frameBytes", "counters", "growth",
                         "missing"});
      const std::string name = node.RequiredString("name");
      if (ports.count(name) != 0) node.Member("name").Fail("a second port named \"" + name + "\"");
      Port& port = ports[name];
      port.missing = node.Words("missing", {"info", "counters", "rates"});

      api::EthInfo_t info;
      info.__set_EthName(name);
      info.__set_Mode(node.Enum<api::EthMode_t>("mode", api::_EthMode_t_VALUES_TO_NAMES,
                                                api::EthMode_t::Unknown));
      info.__set_Speed(node.Enum<api::EthSpeed_t>("speed", api::_EthSpeed_t_VALUES_TO_NAMES,
                                                  api::EthSpeed_t::Unknown));
      info.__set_IsMainPhys(node.Bool("mainPhys", true));
      info.__set_NbPhys(static_cast<std::int8_t>(node.Integer("nbPhys", -128, 127, 1)));
      info.__set_State(node.Enum<api::EthState_t>("state", api::_EthState_t_VALUES_TO_NAMES,
                                                  api::EthState_t::Unknown));
      info.__set_FailureSts(node.Enum<api::EthFailureSts_t>(
          "failure", api::_EthFailureSts_t_VALUES_TO_NAMES, api::EthFailureSts_t::NoFailure));
      info.__set_FecType(node.Enum<api::EthFecType_t>("fecType", api::_EthFecType_t_VALUES_TO_NAMES,
                                                      api::EthFecType_t::Unknown));
      info.__set_FecTypeState(node.Enum<api::EthFecType_t>(
          "fecTypeState", api::_EthFecType_t_VALUES_TO_NAMES, api::EthFecType_t::Unknown));
      if (port.missing.count("info") == 0) data.ethInfos.push_back(info);

      std::int64_t tx = 0;
      std::int64_t rx = 0;
      if (node.Has("rates")) {
        const Node rates = node.Member("rates");
        rates.ExpectObject({"tx", "rx"});
        tx = rates.Integer("tx", 0, kMaxInt64, 0);
        rx = rates.Integer("rx", 0, kMaxInt64, 0);
      }
      port.rates.__set_EthName(name);
      port.rates.__set_TxSpeed(tx);
      port.rates.__set_RxSpeed(rx);

      const std::int64_t frameBytes = node.Integer("frameBytes", 1, 65535, kDefaultFrameBytes);
      port.perSecond[kOctetsReceived] = rx / 8;
      port.perSecond[kOctetsSent] = tx / 8;
      port.perSecond[kUnicastReceived] = rx / 8 / frameBytes;
      port.perSecond[kUnicastSent] = tx / 8 / frameBytes;
      ReadCounterMap(node, "growth",
                     [&](std::size_t i, std::int64_t perSecond) { port.perSecond[i] = perSecond; });

      port.counters.__set_EthName(name);
      for (const auto& field : kCounterFields) (port.counters.*field.set)(0);
      ReadCounterMap(node, "counters", [&](std::size_t i, std::int64_t initial) {
        (port.counters.*kCounterFields[i].set)(initial);
      });
    }
  }

  // {"<counter name>": number, ...}, each counter by its wire name.
  static void ReadCounterMap(const Node& port, const char* key,
                             const std::function<void(std::size_t, std::int64_t)>& use) {
    if (!port.Has(key)) return;
    const Node map = port.Member(key);
    if (!map.Value().isObject()) map.Fail("expected an object");
    for (const auto& name : map.Value().getMemberNames()) {
      const std::size_t i = CounterIndex(name);
      if (i == kCounterFields.size()) map.Fail("\"" + name + "\" is not a counter name");
      use(i, map.Member(name).Integer(0, kMaxInt64));
    }
  }

  void ReadInterfaces() {
    std::set<std::string> names;
    for (const auto& node : root.Items("interfaces")) {
      node.ExpectObject({"name", "type", "status", "vid", "description", "macAddress", "vlans",
                         "members", "ip", "missing"});
      const std::string name = node.RequiredString("name");
      if (!names.insert(name).second) {
        node.Member("name").Fail("a second interface named \"" + name + "\"");
      }
      if (!node.Has("type")) node.Fail("\"type\" is required");
      const auto missing = node.Words("missing", {"list", "info", "counters", "rates", "mac"});

      api::IfInfo_t info;
      info.__set_Type(static_cast<api::IfType_t::type>(
          node.Member("type").Enum(api::_IfType_t_VALUES_TO_NAMES)));
      info.__set_Status(node.Enum<api::IfStatus_t>("status", api::_IfStatus_t_VALUES_TO_NAMES,
                                                   api::IfStatus_t::Enabled));
      info.__set_Vid(static_cast<std::int16_t>(node.Integer("vid", -32768, 32767, 0)));
      info.__set_Description(node.String("description"));
      info.__set_MacAddr(node.String("macAddress"));
      std::vector<std::int16_t> vlans;
      for (const auto& vlan : node.Items("vlans")) {
        vlans.push_back(static_cast<std::int16_t>(vlan.Integer(-32768, 32767)));
      }
      info.__set_Vlan(vlans);
      const auto members = node.Items("members");
      std::vector<std::string> memberNames;
      for (const auto& member : members) {
        if (!member.Value().isString() || ports.count(member.Value().asString()) == 0) {
          member.Fail("no port of that name in \"ports\"");
        }
        memberNames.push_back(member.Value().asString());
      }
      info.__set_IfList(memberNames);
      api::IfIpConfig_t ip;
      if (node.Has("ip")) {
        const Node address = node.Member("ip");
        address.ExpectObject({"address", "mask", "gateway", "dhcp", "ipv6"});
        const bool ipv6 = address.Bool("ipv6", false);
        ip.__set_Ip(Address(address.String("address"), ipv6));
        ip.__set_Mask(Address(address.String("mask"), ipv6));
        ip.__set_Gateway(Address(address.String("gateway"), ipv6));
        ip.__set_Dhcp(address.Bool("dhcp", false));
      }
      info.__set_IpConfig(ip);

      if (missing.count("list") == 0) data.ifList.push_back(name);
      if (missing.count("info") == 0) data.ifInfos[name] = info;
      if (missing.count("mac") == 0) data.macs[name] = info.MacAddr;
      if (missing.count("counters") == 0) {
        auto& records = data.counters[name];
        for (const auto& member : memberNames) {
          const Port& port = ports.at(member);
          if (port.missing.count("counters") != 0) continue;
          growth.push_back({name, records.size(), port.perSecond});
          records.push_back(port.counters);
        }
      }
      if (missing.count("rates") == 0) {
        auto& records = data.stats[name];
        for (const auto& member : memberNames) {
          const Port& port = ports.at(member);
          if (port.missing.count("rates") == 0) records.push_back(port.rates);
        }
      }
    }
  }

  void ReadHardware() {
    for (const auto& node : root.Items("hardware")) {
      node.ExpectObject({"port", "subPorts"});
      api::HwDesc_t hardware;
      hardware.__set_Port(static_cast<std::int8_t>(node.Integer("port", -128, 127, 0)));
      hardware.__set_NbSubPort(static_cast<std::int8_t>(node.Integer("subPorts", -128, 127, 0)));
      data.hwDescs.push_back(hardware);
    }
  }

  void ReadLldp() {
    if (!root.Has("lldp")) return;
    const Node lldp = root.Member("lldp");
    lldp.ExpectObject({"local", "neighbours"});
    if (lldp.Has("local")) {
      const Node local = lldp.Member("local");
      local.ExpectObject({"systemName", "systemDescription", "managementIp", "chassisId", "ttl"});
      data.lldpConfig.__set_SystemName(local.String("systemName"));
      data.lldpConfig.__set_SystemDescr(local.String("systemDescription"));
      data.lldpConfig.__set_ManagementIP(local.String("managementIp"));
      data.lldpConfig.__set_ChassisId(local.String("chassisId"));
      data.lldpConfig.__set_TTL(
          static_cast<std::int32_t>(local.Integer("ttl", std::numeric_limits<std::int32_t>::min(),
                                                  std::numeric_limits<std::int32_t>::max(), 0)));
    }
    for (const auto& node : lldp.Items("neighbours")) {
      node.ExpectObject({"interface", "chassisId", "portId", "ttl", "portDescription", "systemName",
                         "systemDescription", "capabilities", "managementAddress", "raw"});
      api::lldpInfo_t neighbour;
      neighbour.__set_IfName(node.RequiredString("interface"));
      std::map<std::int8_t, std::string> tlvs;
      const auto add = [&](const Node& where, int type, const std::function<std::string()>& build) {
        try {
          tlvs[static_cast<std::int8_t>(type)] = build();
        } catch (const std::invalid_argument& error) {
          where.Fail(error.what());
        }
      };
      if (node.Has("chassisId")) {
        const Node id = node.Member("chassisId");
        const int subtype = Subtype(id, api::_lldpChassisIdTlvType_t_VALUES_TO_NAMES);
        const std::string bytes = IdBytes(id, subtype, api::lldpChassisIdTlvType_t::MacAddress,
                                          api::lldpChassisIdTlvType_t::NetworkAddress);
        add(id, api::lldpTlvType_t::ChassisId,
            [&] { return LldpTlvEncoder::ChassisId(subtype, bytes); });
      }
      if (node.Has("portId")) {
        const Node id = node.Member("portId");
        const int subtype = Subtype(id, api::_lldpPortIdTlvType_t_VALUES_TO_NAMES);
        const std::string bytes = IdBytes(id, subtype, api::lldpPortIdTlvType_t::MacAddress,
                                          api::lldpPortIdTlvType_t::NetworkAddress);
        add(id, api::lldpTlvType_t::PortId, [&] { return LldpTlvEncoder::PortId(subtype, bytes); });
      }
      if (node.Has("ttl")) {
        const Node ttl = node.Member("ttl");
        add(ttl, api::lldpTlvType_t::TimeToLive,
            [&] { return LldpTlvEncoder::TimeToLive(static_cast<int>(ttl.Integer(0, 65535))); });
      }
      const std::pair<const char*, api::lldpTlvType_t::type> texts[] = {
          {"portDescription", api::lldpTlvType_t::PortDescription},
          {"systemName", api::lldpTlvType_t::SystemName},
          {"systemDescription", api::lldpTlvType_t::SystemDescription}};
      for (const auto& text : texts) {
        if (!node.Has(text.first)) continue;
        const std::string value = node.String(text.first);
        add(node.Member(text.first), text.second,
            [&] { return LldpTlvEncoder::Tlv(text.second, value); });
      }
      if (node.Has("capabilities")) {
        const Node capabilities = node.Member("capabilities");
        capabilities.ExpectObject({"supported", "enabled"});
        add(capabilities, api::lldpTlvType_t::SystemCapabilities, [&] {
          return LldpTlvEncoder::SystemCapabilities(
              static_cast<int>(capabilities.Integer("supported", 0, 65535, 0)),
              static_cast<int>(capabilities.Integer("enabled", 0, 65535, 0)));
        });
      }
      if (node.Has("managementAddress")) {
        const Node address = node.Member("managementAddress");
        const auto bytes = LldpTlvEncoder::Ipv4Bytes(node.String("managementAddress"));
        if (!bytes) address.Fail("expected a dotted IPv4 address");
        add(address, api::lldpTlvType_t::ManagementAddress,
            [&] { return LldpTlvEncoder::ManagementAddressIpv4(*bytes, 0); });
      }
      ReadRawTlvs(node, tlvs);
      neighbour.__set_Tlv(tlvs);
      data.lldpInfos.push_back(neighbour);
    }
  }

  // {"subtype": name or number, "id": text}.
  static int Subtype(const Node& id, const std::map<int, const char*>& names) {
    id.ExpectObject({"subtype", "id"});
    if (!id.Has("subtype")) id.Fail("\"subtype\" is required");
    const int subtype = id.Member("subtype").Enum(names, true);
    if (subtype < 0 || subtype > 255) id.Member("subtype").Fail("a subtype is 0..255");
    return subtype;
  }

  // The id's bytes: a MAC address as 6 bytes, a network address as the IPv4
  // family number and 4 bytes, anything else as its text.
  static std::string IdBytes(const Node& id, int subtype, int macSubtype, int networkSubtype) {
    std::string text = id.String("id");
    if (subtype == macSubtype) {
      const auto bytes = LldpTlvEncoder::MacBytes(text);
      if (!bytes) id.Member("id").Fail("expected a MAC address (00:1b:21:3a:4f:5e)");
      return *bytes;
    }
    if (subtype == networkSubtype) {
      const auto bytes = LldpTlvEncoder::Ipv4Bytes(text);
      if (!bytes) id.Member("id").Fail("expected a dotted IPv4 address");
      return '\x01' + *bytes;
    }
    return text;
  }

  // {"<map key 0..255>": "<hex bytes of the whole TLV>"}: sent as they are.
  static void ReadRawTlvs(const Node& neighbour, std::map<std::int8_t, std::string>& tlvs) {
    if (!neighbour.Has("raw")) return;
    const Node raw = neighbour.Member("raw");
    if (!raw.Value().isObject()) raw.Fail("expected an object");
    for (const auto& key : raw.Value().getMemberNames()) {
      const Node entry = raw.Member(key);
      int type = -1;
      try {
        std::size_t used = 0;
        type = std::stoi(key, &used);
        if (used != key.size()) type = -1;
      } catch (const std::exception&) {
        type = -1;
      }
      if (type < 0 || type > 255) entry.Fail("a TLV key is a number 0..255");
      if (!entry.Value().isString()) entry.Fail("expected hex bytes");
      std::string hex = entry.Value().asString();
      hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
      const auto bytes = LldpTlvEncoder::HexBytes(hex);
      if (!bytes) entry.Fail("expected hex bytes");
      if (!tlvs.emplace(static_cast<std::int8_t>(type), *bytes).second) {
        entry.Fail("the neighbour already has a TLV under key " + key);
      }
    }
  }

  void ReadPtp() {
    for (const auto& node : root.Items("ptp")) {
      node.ExpectObject(
          {"domain", "packetType", "clockMode", "interfaces", "slaveInterfaces", "profile"});
      api::PTPConfig_t ptp;
      ptp.__set_Domain(static_cast<std::int8_t>(node.Integer("domain", -128, 127, 0)));
      ptp.__set_PacketType(node.Enum<api::PTPPacketType_t>(
          "packetType", api::_PTPPacketType_t_VALUES_TO_NAMES, api::PTPPacketType_t::Unknown));
      ptp.__set_ClockMode(node.Enum<api::PTPClockMode_t>(
          "clockMode", api::_PTPClockMode_t_VALUES_TO_NAMES, api::PTPClockMode_t::Unknown));
      ptp.__set_IfList(node.Strings("interfaces"));
      ptp.__set_SlaveIfList(node.Strings("slaveInterfaces"));
      ptp.__set_Profile(node.Enum<api::PTPProfile_t>("profile", api::_PTPProfile_t_VALUES_TO_NAMES,
                                                     api::PTPProfile_t::IEEE_1588_2008));
      data.ptpConfigs.push_back(ptp);
    }
  }

  static api::ConfigFile_t ConfigFile(const Node& node) {
    node.ExpectObject({"name", "type", "comment", "state", "baseName", "baseType"});
    api::ConfigFile_t file;
    file.__set_Name(node.String("name"));
    file.__set_Type(node.Enum<api::ConfigType_t>("type", api::_ConfigType_t_VALUES_TO_NAMES,
                                                 api::ConfigType_t::Unknown));
    file.__set_Comment(node.String("comment"));
    file.__set_State(node.Enum<api::ConfigState_t>("state", api::_ConfigState_t_VALUES_TO_NAMES,
                                                   api::ConfigState_t::Unknown));
    file.__set_BaseName(node.String("baseName"));
    file.__set_BaseType(node.Enum<api::ConfigType_t>("baseType", api::_ConfigType_t_VALUES_TO_NAMES,
                                                     api::ConfigType_t::Unknown));
    return file;
  }

  void ReadConfiguration() {
    if (!root.Has("configuration")) return;
    const Node configuration = root.Member("configuration");
    configuration.ExpectObject({"current", "files", "comment"});
    if (configuration.Has("current"))
      data.currentConfig = ConfigFile(configuration.Member("current"));
    for (const auto& file : configuration.Items("files"))
      data.configFiles.push_back(ConfigFile(file));
    data.comment = configuration.String("comment");
  }

  void ReadManagement() {
    auto& management = data.management;
    management.hostname = data.lldpConfig.SystemName;
    management.address.__set_bIpv6(false);
    management.address.__set_Address(data.lldpConfig.ManagementIP);
    if (!root.Has("management")) return;
    const Node node = root.Member("management");
    node.ExpectObject({"hostname", "versions", "ip"});
    management.hostname = node.String("hostname", management.hostname);
    if (node.Has("versions")) {
      const Node versions = node.Member("versions");
      if (!versions.Value().isObject()) versions.Fail("expected an object");
      for (const auto& module : versions.Value().getMemberNames()) {
        const Node version = versions.Member(module);
        const int number = ModuleNumber(version, module);
        if (!version.Value().isString()) version.Fail("expected a string");
        management.versions[number] = version.Value().asString();
      }
    }
    if (node.Has("ip")) {
      const Node ip = node.Member("ip");
      ip.ExpectObject({"address", "mask", "gateway", "ipv6"});
      management.address.__set_bIpv6(ip.Bool("ipv6", false));
      management.address.__set_Address(ip.String("address", management.address.Address));
      management.address.__set_SubNetMask(ip.String("mask"));
      management.address.__set_DefaultGateway(ip.String("gateway"));
    }
  }

  static int ModuleNumber(const Node& where, const std::string& module) {
    for (const auto& [number, name] : ArqOrvoAPI::_MODULE_VERSION_VALUES_TO_NAMES) {
      if (module == name) return number;
    }
    where.Fail("not a module: Manager, API or Package");
  }

  Node root;
  ServerData data;
  std::map<std::string, Port> ports;
  std::vector<Scenario::RecordGrowth> growth;
};

Scenario Scenario::Parse(const std::string& text, const std::string& origin) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  std::string errors;
  bool parsed = false;
  try {
    parsed = reader->parse(text.data(), text.data() + text.size(), &root, &errors);
  } catch (const std::exception& error) {
    errors = error.what();
  }
  if (!parsed) {
    // The reader's report spans lines ("* Line 3, Column 5\n  Missing ..."):
    // one line is enough to find the place.
    std::istringstream lines(errors);
    std::string line;
    std::string summary;
    while (std::getline(lines, line)) {
      const auto first = line.find_first_not_of(" *");
      if (first == std::string::npos) continue;
      summary += (summary.empty() ? "" : ": ") + line.substr(first);
    }
    throw ScenarioError(origin + ": not valid JSON: " + summary);
  }
  return ScenarioReader(root, origin).Read();
}

Scenario Scenario::Load(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw ScenarioError(path + ": cannot open the scenario file");
  std::ostringstream text;
  text << in.rdbuf();
  return Parse(text.str(), path);
}

ServerData Scenario::At(std::chrono::milliseconds elapsed) const {
  ServerData data = start;
  const std::int64_t ms = elapsed.count() < 0 ? 0 : static_cast<std::int64_t>(elapsed.count());
  for (const auto& record : growth) {
    auto& counters = data.counters.at(record.interfaceName).at(record.index);
    for (std::size_t i = 0; i < kCounterFields.size(); ++i) {
      auto& value = counters.*kCounterFields[i].value;
      value = Grown(value, record.perSecond[i], ms);
    }
  }
  return data;
}

}  // namespace Arq::OrvoViaSwitchService::Simulator
