#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {
namespace {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

// One association table, checked over every value that the interface
// definitions declare: the domain numbers the same members `shift` lower
// (the mode, speed and type enums number Unknown 0 on the wire, -1 in the
// domain), both ways; a domain value past __LAST__ converts to 0.
struct Table {
  const char* name;
  const std::map<int, const char*>& wireNames;
  int shift;
  std::function<int(int)> toGenerated;
  std::function<int(int)> fromGenerated;
  int domainLast;
};

template <typename Domain, typename Wire>
Table Of(const char* name, const std::map<int, const char*>& wireNames, int shift) {
  return {name,
          wireNames,
          shift,
          [](int v) { return static_cast<int>(EnumConverter::ToGeneratedEnum(Domain(v))); },
          [](int v) { return static_cast<int>(EnumConverter::FromGeneratedEnum(Wire(v))); },
          static_cast<int>(Domain::__LAST__)};
}

TEST(EnumConverterTest, EveryDeclaredValueConvertsBothWays) {
#define ARQ_TABLE(domain, wire, shift) \
  Of<Dto::domain, api::wire::type>(#domain, api::_##wire##_VALUES_TO_NAMES, shift)
  const Table tables[] = {ARQ_TABLE(ErrorCode, ErrorCode_t, 0),
                          ARQ_TABLE(ConfigType, ConfigType_t, 0),
                          ARQ_TABLE(ConfigState, ConfigState_t, 0),
                          ARQ_TABLE(EthMode, EthMode_t, 1),
                          ARQ_TABLE(EthSpeed, EthSpeed_t, 1),
                          ARQ_TABLE(EthState, EthState_t, 0),
                          ARQ_TABLE(EthFailureSts, EthFailureSts_t, 0),
                          ARQ_TABLE(IfType, IfType_t, 1),
                          ARQ_TABLE(IfStatus, IfStatus_t, 0),
                          ARQ_TABLE(PrsState, PrsState_t, 0),
                          ARQ_TABLE(PrsPath, PrsPath_t, 0),
                          ARQ_TABLE(PrsClock, PrsClock_t, 0),
                          ARQ_TABLE(LagState, LagState_t, 0),
                          ARQ_TABLE(LacpMode, LacpMode_t, 0),
                          ARQ_TABLE(LldpTlvType, lldpTlvType_t, 0),
                          ARQ_TABLE(LldpChassisIdTlvType, lldpChassisIdTlvType_t, 0),
                          ARQ_TABLE(LldpPortIdTlvType, lldpPortIdTlvType_t, 0),
                          ARQ_TABLE(PTPPacketType, PTPPacketType_t, 0),
                          ARQ_TABLE(PTPClockMode, PTPClockMode_t, 0),
                          ARQ_TABLE(PTPProfile, PTPProfile_t, 0),
                          ARQ_TABLE(McFloodPolicy, McFloodPolicy_t, 0),
                          ARQ_TABLE(MirroringMode, MirroringMode_t, 0),
                          ARQ_TABLE(CageType, CageType_t, 0),
                          ARQ_TABLE(FlowDirection, FlowDirection_t, 0),
                          ARQ_TABLE(NatFlowStatus, NatFlowStatus_t, 0)};
#undef ARQ_TABLE
  for (const auto& table : tables) {
    SCOPED_TRACE(table.name);
    for (const auto& [wire, name] : table.wireNames) {
      EXPECT_EQ(table.fromGenerated(wire), wire - table.shift) << name;
      EXPECT_EQ(table.toGenerated(wire - table.shift), wire) << name;
    }
    EXPECT_EQ(table.toGenerated(table.domainLast + 1), 0);
  }
}

// The FEC type is the one enum whose members are in another order on the
// wire; they meet by name. Unknown values give 0.
TEST(EnumConverterTest, FecTypesMeetByNameAndUnknownValuesGiveZero) {
  const std::map<std::string, Dto::EthFecType> domain = {{"Unknown", Dto::EthFecType::Unknown},
                                                         {"Disable", Dto::EthFecType::Disable},
                                                         {"FC_FEC", Dto::EthFecType::FC_FEC},
                                                         {"RS_FEC", Dto::EthFecType::RS_FEC},
                                                         {"__LAST__", Dto::EthFecType::__LAST__}};
  ASSERT_EQ(api::_EthFecType_t_VALUES_TO_NAMES.size(), domain.size());
  for (const auto& [wire, name] : api::_EthFecType_t_VALUES_TO_NAMES) {
    const auto type = static_cast<api::EthFecType_t::type>(wire);
    EXPECT_EQ(EnumConverter::FromGeneratedEnum(type), domain.at(name)) << name;
    EXPECT_EQ(EnumConverter::ToGeneratedEnum(domain.at(name)), type) << name;
  }
  EXPECT_EQ(static_cast<int>(Dto::EthFecType::Disable), 0);
  // EthSpeed_t can hold 0..15 only; lldpTlvType_t reaches 255.
  EXPECT_EQ(static_cast<int>(EnumConverter::FromGeneratedEnum(api::EthSpeed_t::type(12))), 0);
  EXPECT_EQ(static_cast<int>(EnumConverter::FromGeneratedEnum(api::lldpTlvType_t::type(42))), 0);
  // A PTP domain keeps whether its clock mode was one the table holds: 9
  // converts to 0 (transparent) like any unknown value, but is marked.
  api::PTPConfig_t ptp;
  for (const auto& [wire, defined] : {std::pair{9, false}, {-2, false}, {4, true}, {-1, true}}) {
    ptp.ClockMode = api::PTPClockMode_t::type(wire);
    const Dto::PTPConfig config = PTPConfigConverter::FromGenerated(ptp);
    EXPECT_EQ(config.ClockModeDefined, defined) << wire;
    EXPECT_EQ(config.ClockMode, defined ? Dto::PTPClockMode(wire) : Dto::PTPClockMode::Transparent);
  }
}

}  // namespace
}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
