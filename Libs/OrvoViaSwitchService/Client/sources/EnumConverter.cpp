#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

#include <initializer_list>
#include <utility>
#include <vector>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumAssociation.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
namespace api = ArqSwitchApi;

namespace {

// Pairs of (domain value, generated value), written as numbers as the tables
// define them.
template <typename Domain, typename Generated>
std::vector<std::pair<Domain, Generated>> Numbered(
    std::initializer_list<std::pair<int, int>> numbers) {
  std::vector<std::pair<Domain, Generated>> pairs;
  for (const auto& [domain, generated] : numbers) {
    pairs.emplace_back(static_cast<Domain>(domain), static_cast<Generated>(generated));
  }
  return pairs;
}

// Each table is built once, on first use, and never changes.

const EnumAssociation<Dto::ErrorCode, api::ErrorCode_t::type>& ErrorCodes() {
  static const EnumAssociation<Dto::ErrorCode, api::ErrorCode_t::type> table(
      EnumAssociation<Dto::ErrorCode, api::ErrorCode_t::type>::EqualRange(0, 11));
  return table;
}

const EnumAssociation<Dto::ConfigType, api::ConfigType_t::type>& ConfigTypes() {
  static const EnumAssociation<Dto::ConfigType, api::ConfigType_t::type> table(
      EnumAssociation<Dto::ConfigType, api::ConfigType_t::type>::EqualRange(-1, 4));
  return table;
}

const EnumAssociation<Dto::ConfigState, api::ConfigState_t::type>& ConfigStates() {
  static const EnumAssociation<Dto::ConfigState, api::ConfigState_t::type> table(
      EnumAssociation<Dto::ConfigState, api::ConfigState_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::EthMode, api::EthMode_t::type>& EthModes() {
  static const EnumAssociation<Dto::EthMode, api::EthMode_t::type> table(
      Numbered<Dto::EthMode, api::EthMode_t::type>(
          {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}}));
  return table;
}

const EnumAssociation<Dto::EthSpeed, api::EthSpeed_t::type>& EthSpeeds() {
  static const EnumAssociation<Dto::EthSpeed, api::EthSpeed_t::type> table(
      Numbered<Dto::EthSpeed, api::EthSpeed_t::type>(
          {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}}));
  return table;
}

const EnumAssociation<Dto::EthFecType, api::EthFecType_t::type>& EthFecTypes() {
  static const EnumAssociation<Dto::EthFecType, api::EthFecType_t::type> table(
      Numbered<Dto::EthFecType, api::EthFecType_t::type>(
          {{-1, 0}, {0, 2}, {1, 1}, {2, 3}, {3, 4}}));
  return table;
}

const EnumAssociation<Dto::EthState, api::EthState_t::type>& EthStates() {
  static const EnumAssociation<Dto::EthState, api::EthState_t::type> table(
      EnumAssociation<Dto::EthState, api::EthState_t::type>::EqualRange(-1, 7));
  return table;
}

const EnumAssociation<Dto::EthFailureSts, api::EthFailureSts_t::type>& EthFailureStses() {
  static const EnumAssociation<Dto::EthFailureSts, api::EthFailureSts_t::type> table(
      EnumAssociation<Dto::EthFailureSts, api::EthFailureSts_t::type>::EqualRange(-1, 6));
  return table;
}

const EnumAssociation<Dto::IfType, api::IfType_t::type>& IfTypes() {
  static const EnumAssociation<Dto::IfType, api::IfType_t::type> table(
      Numbered<Dto::IfType, api::IfType_t::type>(
          {{-1, 0}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}}));
  return table;
}

const EnumAssociation<Dto::IfStatus, api::IfStatus_t::type>& IfStatuses() {
  static const EnumAssociation<Dto::IfStatus, api::IfStatus_t::type> table(
      EnumAssociation<Dto::IfStatus, api::IfStatus_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::PrsState, api::PrsState_t::type>& PrsStates() {
  static const EnumAssociation<Dto::PrsState, api::PrsState_t::type> table(
      EnumAssociation<Dto::PrsState, api::PrsState_t::type>::EqualRange(-1, 7));
  return table;
}

const EnumAssociation<Dto::PrsPath, api::PrsPath_t::type>& PrsPaths() {
  static const EnumAssociation<Dto::PrsPath, api::PrsPath_t::type> table(
      EnumAssociation<Dto::PrsPath, api::PrsPath_t::type>::EqualRange(0, 3));
  return table;
}

const EnumAssociation<Dto::PrsClock, api::PrsClock_t::type>& PrsClocks() {
  static const EnumAssociation<Dto::PrsClock, api::PrsClock_t::type> table(
      EnumAssociation<Dto::PrsClock, api::PrsClock_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::LagState, api::LagState_t::type>& LagStates() {
  static const EnumAssociation<Dto::LagState, api::LagState_t::type> table(
      EnumAssociation<Dto::LagState, api::LagState_t::type>::EqualRange(-1, 4));
  return table;
}

const EnumAssociation<Dto::LacpMode, api::LacpMode_t::type>& LacpModes() {
  static const EnumAssociation<Dto::LacpMode, api::LacpMode_t::type> table(
      EnumAssociation<Dto::LacpMode, api::LacpMode_t::type>::EqualRange(-1, 3));
  return table;
}

const EnumAssociation<Dto::LldpTlvType, api::lldpTlvType_t::type>& LldpTlvTypes() {
  static const EnumAssociation<Dto::LldpTlvType, api::lldpTlvType_t::type> table(
      Numbered<Dto::LldpTlvType, api::lldpTlvType_t::type>({{0, 0},
                                                            {1, 1},
                                                            {2, 2},
                                                            {3, 3},
                                                            {4, 4},
                                                            {5, 5},
                                                            {6, 6},
                                                            {7, 7},
                                                            {8, 8},
                                                            {127, 127},
                                                            {128, 128},
                                                            {129, 129}}));
  return table;
}

const EnumAssociation<Dto::LldpChassisIdTlvType, api::lldpChassisIdTlvType_t::type>&
LldpChassisIdTlvTypes() {
  static const EnumAssociation<Dto::LldpChassisIdTlvType, api::lldpChassisIdTlvType_t::type> table(
      EnumAssociation<Dto::LldpChassisIdTlvType, api::lldpChassisIdTlvType_t::type>::EqualRange(1,
                                                                                                7));
  return table;
}

const EnumAssociation<Dto::LldpPortIdTlvType, api::lldpPortIdTlvType_t::type>&
LldpPortIdTlvTypes() {
  static const EnumAssociation<Dto::LldpPortIdTlvType, api::lldpPortIdTlvType_t::type> table(
      EnumAssociation<Dto::LldpPortIdTlvType, api::lldpPortIdTlvType_t::type>::EqualRange(1, 6));
  return table;
}

const EnumAssociation<Dto::PTPPacketType, api::PTPPacketType_t::type>& PTPPacketTypes() {
  static const EnumAssociation<Dto::PTPPacketType, api::PTPPacketType_t::type> table(
      EnumAssociation<Dto::PTPPacketType, api::PTPPacketType_t::type>::EqualRange(-1, 3));
  return table;
}

const EnumAssociation<Dto::PTPClockMode, api::PTPClockMode_t::type>& PTPClockModes() {
  static const EnumAssociation<Dto::PTPClockMode, api::PTPClockMode_t::type> table(
      EnumAssociation<Dto::PTPClockMode, api::PTPClockMode_t::type>::EqualRange(-1, 4));
  return table;
}

const EnumAssociation<Dto::PTPProfile, api::PTPProfile_t::type>& PTPProfiles() {
  static const EnumAssociation<Dto::PTPProfile, api::PTPProfile_t::type> table(
      EnumAssociation<Dto::PTPProfile, api::PTPProfile_t::type>::EqualRange(0, 4));
  return table;
}

const EnumAssociation<Dto::McFloodPolicy, api::McFloodPolicy_t::type>& McFloodPolicies() {
  static const EnumAssociation<Dto::McFloodPolicy, api::McFloodPolicy_t::type> table(
      EnumAssociation<Dto::McFloodPolicy, api::McFloodPolicy_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::MirroringMode, api::MirroringMode_t::type>& MirroringModes() {
  static const EnumAssociation<Dto::MirroringMode, api::MirroringMode_t::type> table(
      EnumAssociation<Dto::MirroringMode, api::MirroringMode_t::type>::EqualRange(-1, 3));
  return table;
}

const EnumAssociation<Dto::CageType, api::CageType_t::type>& CageTypes() {
  static const EnumAssociation<Dto::CageType, api::CageType_t::type> table(
      EnumAssociation<Dto::CageType, api::CageType_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::FlowDirection, api::FlowDirection_t::type>& FlowDirections() {
  static const EnumAssociation<Dto::FlowDirection, api::FlowDirection_t::type> table(
      EnumAssociation<Dto::FlowDirection, api::FlowDirection_t::type>::EqualRange(-1, 2));
  return table;
}

const EnumAssociation<Dto::NatFlowStatus, api::NatFlowStatus_t::type>& NatFlowStatuses() {
  static const EnumAssociation<Dto::NatFlowStatus, api::NatFlowStatus_t::type> table(
      EnumAssociation<Dto::NatFlowStatus, api::NatFlowStatus_t::type>::EqualRange(-1, 2));
  return table;
}

}  // namespace

api::ErrorCode_t::type EnumConverter::ToGeneratedEnum(Dto::ErrorCode value) {
  return ErrorCodes().ToGenerated(value);
}

Dto::ErrorCode EnumConverter::FromGeneratedEnum(api::ErrorCode_t::type value) {
  return ErrorCodes().FromGenerated(value);
}

api::ConfigType_t::type EnumConverter::ToGeneratedEnum(Dto::ConfigType value) {
  return ConfigTypes().ToGenerated(value);
}

Dto::ConfigType EnumConverter::FromGeneratedEnum(api::ConfigType_t::type value) {
  return ConfigTypes().FromGenerated(value);
}

api::ConfigState_t::type EnumConverter::ToGeneratedEnum(Dto::ConfigState value) {
  return ConfigStates().ToGenerated(value);
}

Dto::ConfigState EnumConverter::FromGeneratedEnum(api::ConfigState_t::type value) {
  return ConfigStates().FromGenerated(value);
}

api::EthMode_t::type EnumConverter::ToGeneratedEnum(Dto::EthMode value) {
  return EthModes().ToGenerated(value);
}

Dto::EthMode EnumConverter::FromGeneratedEnum(api::EthMode_t::type value) {
  return EthModes().FromGenerated(value);
}

api::EthSpeed_t::type EnumConverter::ToGeneratedEnum(Dto::EthSpeed value) {
  return EthSpeeds().ToGenerated(value);
}

Dto::EthSpeed EnumConverter::FromGeneratedEnum(api::EthSpeed_t::type value) {
  return EthSpeeds().FromGenerated(value);
}

api::EthFecType_t::type EnumConverter::ToGeneratedEnum(Dto::EthFecType value) {
  return EthFecTypes().ToGenerated(value);
}

Dto::EthFecType EnumConverter::FromGeneratedEnum(api::EthFecType_t::type value) {
  return EthFecTypes().FromGenerated(value);
}

api::EthState_t::type EnumConverter::ToGeneratedEnum(Dto::EthState value) {
  return EthStates().ToGenerated(value);
}

Dto::EthState EnumConverter::FromGeneratedEnum(api::EthState_t::type value) {
  return EthStates().FromGenerated(value);
}

api::EthFailureSts_t::type EnumConverter::ToGeneratedEnum(Dto::EthFailureSts value) {
  return EthFailureStses().ToGenerated(value);
}

Dto::EthFailureSts EnumConverter::FromGeneratedEnum(api::EthFailureSts_t::type value) {
  return EthFailureStses().FromGenerated(value);
}

api::IfType_t::type EnumConverter::ToGeneratedEnum(Dto::IfType value) {
  return IfTypes().ToGenerated(value);
}

Dto::IfType EnumConverter::FromGeneratedEnum(api::IfType_t::type value) {
  return IfTypes().FromGenerated(value);
}

api::IfStatus_t::type EnumConverter::ToGeneratedEnum(Dto::IfStatus value) {
  return IfStatuses().ToGenerated(value);
}

Dto::IfStatus EnumConverter::FromGeneratedEnum(api::IfStatus_t::type value) {
  return IfStatuses().FromGenerated(value);
}

api::PrsState_t::type EnumConverter::ToGeneratedEnum(Dto::PrsState value) {
  return PrsStates().ToGenerated(value);
}

Dto::PrsState EnumConverter::FromGeneratedEnum(api::PrsState_t::type value) {
  return PrsStates().FromGenerated(value);
}

api::PrsPath_t::type EnumConverter::ToGeneratedEnum(Dto::PrsPath value) {
  return PrsPaths().ToGenerated(value);
}

Dto::PrsPath EnumConverter::FromGeneratedEnum(api::PrsPath_t::type value) {
  return PrsPaths().FromGenerated(value);
}

api::PrsClock_t::type EnumConverter::ToGeneratedEnum(Dto::PrsClock value) {
  return PrsClocks().ToGenerated(value);
}

Dto::PrsClock EnumConverter::FromGeneratedEnum(api::PrsClock_t::type value) {
  return PrsClocks().FromGenerated(value);
}

api::LagState_t::type EnumConverter::ToGeneratedEnum(Dto::LagState value) {
  return LagStates().ToGenerated(value);
}

Dto::LagState EnumConverter::FromGeneratedEnum(api::LagState_t::type value) {
  return LagStates().FromGenerated(value);
}

api::LacpMode_t::type EnumConverter::ToGeneratedEnum(Dto::LacpMode value) {
  return LacpModes().ToGenerated(value);
}

Dto::LacpMode EnumConverter::FromGeneratedEnum(api::LacpMode_t::type value) {
  return LacpModes().FromGenerated(value);
}

api::lldpTlvType_t::type EnumConverter::ToGeneratedEnum(Dto::LldpTlvType value) {
  return LldpTlvTypes().ToGenerated(value);
}

Dto::LldpTlvType EnumConverter::FromGeneratedEnum(api::lldpTlvType_t::type value) {
  return LldpTlvTypes().FromGenerated(value);
}

api::lldpChassisIdTlvType_t::type EnumConverter::ToGeneratedEnum(Dto::LldpChassisIdTlvType value) {
  return LldpChassisIdTlvTypes().ToGenerated(value);
}

Dto::LldpChassisIdTlvType EnumConverter::FromGeneratedEnum(
    api::lldpChassisIdTlvType_t::type value) {
  return LldpChassisIdTlvTypes().FromGenerated(value);
}

api::lldpPortIdTlvType_t::type EnumConverter::ToGeneratedEnum(Dto::LldpPortIdTlvType value) {
  return LldpPortIdTlvTypes().ToGenerated(value);
}

Dto::LldpPortIdTlvType EnumConverter::FromGeneratedEnum(api::lldpPortIdTlvType_t::type value) {
  return LldpPortIdTlvTypes().FromGenerated(value);
}

api::PTPPacketType_t::type EnumConverter::ToGeneratedEnum(Dto::PTPPacketType value) {
  return PTPPacketTypes().ToGenerated(value);
}

Dto::PTPPacketType EnumConverter::FromGeneratedEnum(api::PTPPacketType_t::type value) {
  return PTPPacketTypes().FromGenerated(value);
}

api::PTPClockMode_t::type EnumConverter::ToGeneratedEnum(Dto::PTPClockMode value) {
  return PTPClockModes().ToGenerated(value);
}

Dto::PTPClockMode EnumConverter::FromGeneratedEnum(api::PTPClockMode_t::type value) {
  return PTPClockModes().FromGenerated(value);
}

bool EnumConverter::Defines(api::PTPClockMode_t::type value) {
  return PTPClockModes().Defines(value);
}

api::PTPProfile_t::type EnumConverter::ToGeneratedEnum(Dto::PTPProfile value) {
  return PTPProfiles().ToGenerated(value);
}

Dto::PTPProfile EnumConverter::FromGeneratedEnum(api::PTPProfile_t::type value) {
  return PTPProfiles().FromGenerated(value);
}

api::McFloodPolicy_t::type EnumConverter::ToGeneratedEnum(Dto::McFloodPolicy value) {
  return McFloodPolicies().ToGenerated(value);
}

Dto::McFloodPolicy EnumConverter::FromGeneratedEnum(api::McFloodPolicy_t::type value) {
  return McFloodPolicies().FromGenerated(value);
}

api::MirroringMode_t::type EnumConverter::ToGeneratedEnum(Dto::MirroringMode value) {
  return MirroringModes().ToGenerated(value);
}

Dto::MirroringMode EnumConverter::FromGeneratedEnum(api::MirroringMode_t::type value) {
  return MirroringModes().FromGenerated(value);
}

api::CageType_t::type EnumConverter::ToGeneratedEnum(Dto::CageType value) {
  return CageTypes().ToGenerated(value);
}

Dto::CageType EnumConverter::FromGeneratedEnum(api::CageType_t::type value) {
  return CageTypes().FromGenerated(value);
}

api::FlowDirection_t::type EnumConverter::ToGeneratedEnum(Dto::FlowDirection value) {
  return FlowDirections().ToGenerated(value);
}

Dto::FlowDirection EnumConverter::FromGeneratedEnum(api::FlowDirection_t::type value) {
  return FlowDirections().FromGenerated(value);
}

api::NatFlowStatus_t::type EnumConverter::ToGeneratedEnum(Dto::NatFlowStatus value) {
  return NatFlowStatuses().ToGenerated(value);
}

Dto::NatFlowStatus EnumConverter::FromGeneratedEnum(api::NatFlowStatus_t::type value) {
  return NatFlowStatuses().FromGenerated(value);
}

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
