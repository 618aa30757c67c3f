#pragma once

#include <ArqSwitchApi/ArqSwitchApi_types.h>

#include "Arq/OrvoViaSwitch/Domain/Dto/Enums.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ErrorCode.h"

namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift {

// Two-way translation of every switch-interface enum through its fixed
// association table. The domain numbers Unknown as -1 everywhere; the wire
// numbers EthMode_t, EthSpeed_t, EthFecType_t and IfType_t from 0, and orders
// EthFecType_t differently, so those tables shift or reorder. A value that a
// table does not hold converts to 0.
class EnumConverter {
 public:
  static ArqSwitchApi::ErrorCode_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::ErrorCode value);
  static OrvoViaSwitch::Domain::Dto::ErrorCode FromGeneratedEnum(
      ArqSwitchApi::ErrorCode_t::type value);
  static ArqSwitchApi::ConfigType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::ConfigType value);
  static OrvoViaSwitch::Domain::Dto::ConfigType FromGeneratedEnum(
      ArqSwitchApi::ConfigType_t::type value);
  static ArqSwitchApi::ConfigState_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::ConfigState value);
  static OrvoViaSwitch::Domain::Dto::ConfigState FromGeneratedEnum(
      ArqSwitchApi::ConfigState_t::type value);
  static ArqSwitchApi::EthMode_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::EthMode value);
  static OrvoViaSwitch::Domain::Dto::EthMode FromGeneratedEnum(ArqSwitchApi::EthMode_t::type value);
  static ArqSwitchApi::EthSpeed_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::EthSpeed value);
  static OrvoViaSwitch::Domain::Dto::EthSpeed FromGeneratedEnum(
      ArqSwitchApi::EthSpeed_t::type value);
  static ArqSwitchApi::EthFecType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::EthFecType value);
  static OrvoViaSwitch::Domain::Dto::EthFecType FromGeneratedEnum(
      ArqSwitchApi::EthFecType_t::type value);
  static ArqSwitchApi::EthState_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::EthState value);
  static OrvoViaSwitch::Domain::Dto::EthState FromGeneratedEnum(
      ArqSwitchApi::EthState_t::type value);
  static ArqSwitchApi::EthFailureSts_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::EthFailureSts value);
  static OrvoViaSwitch::Domain::Dto::EthFailureSts FromGeneratedEnum(
      ArqSwitchApi::EthFailureSts_t::type value);
  static ArqSwitchApi::IfType_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::IfType value);
  static OrvoViaSwitch::Domain::Dto::IfType FromGeneratedEnum(ArqSwitchApi::IfType_t::type value);
  static ArqSwitchApi::IfStatus_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::IfStatus value);
  static OrvoViaSwitch::Domain::Dto::IfStatus FromGeneratedEnum(
      ArqSwitchApi::IfStatus_t::type value);
  static ArqSwitchApi::PrsState_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::PrsState value);
  static OrvoViaSwitch::Domain::Dto::PrsState FromGeneratedEnum(
      ArqSwitchApi::PrsState_t::type value);
  static ArqSwitchApi::PrsPath_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::PrsPath value);
  static OrvoViaSwitch::Domain::Dto::PrsPath FromGeneratedEnum(ArqSwitchApi::PrsPath_t::type value);
  static ArqSwitchApi::PrsClock_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::PrsClock value);
  static OrvoViaSwitch::Domain::Dto::PrsClock FromGeneratedEnum(
      ArqSwitchApi::PrsClock_t::type value);
  static ArqSwitchApi::LagState_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::LagState value);
  static OrvoViaSwitch::Domain::Dto::LagState FromGeneratedEnum(
      ArqSwitchApi::LagState_t::type value);
  static ArqSwitchApi::LacpMode_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::LacpMode value);
  static OrvoViaSwitch::Domain::Dto::LacpMode FromGeneratedEnum(
      ArqSwitchApi::LacpMode_t::type value);
  static ArqSwitchApi::lldpTlvType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::LldpTlvType value);
  static OrvoViaSwitch::Domain::Dto::LldpTlvType FromGeneratedEnum(
      ArqSwitchApi::lldpTlvType_t::type value);
  static ArqSwitchApi::lldpChassisIdTlvType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::LldpChassisIdTlvType value);
  static OrvoViaSwitch::Domain::Dto::LldpChassisIdTlvType FromGeneratedEnum(
      ArqSwitchApi::lldpChassisIdTlvType_t::type value);
  static ArqSwitchApi::lldpPortIdTlvType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::LldpPortIdTlvType value);
  static OrvoViaSwitch::Domain::Dto::LldpPortIdTlvType FromGeneratedEnum(
      ArqSwitchApi::lldpPortIdTlvType_t::type value);
  static ArqSwitchApi::PTPPacketType_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::PTPPacketType value);
  static OrvoViaSwitch::Domain::Dto::PTPPacketType FromGeneratedEnum(
      ArqSwitchApi::PTPPacketType_t::type value);
  static ArqSwitchApi::PTPClockMode_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::PTPClockMode value);
  static OrvoViaSwitch::Domain::Dto::PTPClockMode FromGeneratedEnum(
      ArqSwitchApi::PTPClockMode_t::type value);
  // Whether the association table holds the wire value (FromGeneratedEnum
  // gives 0 for one it does not).
  static bool Defines(ArqSwitchApi::PTPClockMode_t::type value);
  static ArqSwitchApi::PTPProfile_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::PTPProfile value);
  static OrvoViaSwitch::Domain::Dto::PTPProfile FromGeneratedEnum(
      ArqSwitchApi::PTPProfile_t::type value);
  static ArqSwitchApi::McFloodPolicy_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::McFloodPolicy value);
  static OrvoViaSwitch::Domain::Dto::McFloodPolicy FromGeneratedEnum(
      ArqSwitchApi::McFloodPolicy_t::type value);
  static ArqSwitchApi::MirroringMode_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::MirroringMode value);
  static OrvoViaSwitch::Domain::Dto::MirroringMode FromGeneratedEnum(
      ArqSwitchApi::MirroringMode_t::type value);
  static ArqSwitchApi::CageType_t::type ToGeneratedEnum(OrvoViaSwitch::Domain::Dto::CageType value);
  static OrvoViaSwitch::Domain::Dto::CageType FromGeneratedEnum(
      ArqSwitchApi::CageType_t::type value);
  static ArqSwitchApi::FlowDirection_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::FlowDirection value);
  static OrvoViaSwitch::Domain::Dto::FlowDirection FromGeneratedEnum(
      ArqSwitchApi::FlowDirection_t::type value);
  static ArqSwitchApi::NatFlowStatus_t::type ToGeneratedEnum(
      OrvoViaSwitch::Domain::Dto::NatFlowStatus value);
  static OrvoViaSwitch::Domain::Dto::NatFlowStatus FromGeneratedEnum(
      ArqSwitchApi::NatFlowStatus_t::type value);
};

}  // namespace Arq::OrvoViaSwitchService::Service::Serialization::Thrift
