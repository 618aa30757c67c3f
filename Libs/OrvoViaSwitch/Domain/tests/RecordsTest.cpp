#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitch/Domain/BaseTypes/Optional.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/EthInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Header.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/IfInfo.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"

namespace Dto = Arq::OrvoViaSwitch::Domain::Dto;
namespace BaseTypes = Arq::OrvoViaSwitch::Domain::BaseTypes;

namespace {

TEST(DomainRecordsTest, DefaultRecordsHoldNothingAndUnknownStates) {
  const Dto::IfInfo info;
  EXPECT_EQ(static_cast<int>(info.Type), -1);
  EXPECT_EQ(static_cast<int>(info.Status), -1);
  EXPECT_TRUE(info.Vlan.empty());
  EXPECT_TRUE(info.IfList.empty());
  EXPECT_EQ(static_cast<int>(Dto::EthInfo().State), -1);
  EXPECT_FALSE(Dto::Header().token.HasValue());
}

TEST(OptionalTest, EmptyOptionalThrowsTheStandardRuntimeError) {
  BaseTypes::Optional<std::string> optional("token-1");
  EXPECT_EQ(optional.Value(), "token-1");
  // An empty text is a value, not an absence.
  EXPECT_NE(BaseTypes::Optional<std::string>(""), BaseTypes::Optional<std::string>());
  optional.Reset();
  EXPECT_EQ(optional, BaseTypes::Optional<std::string>());
  try {
    (void)optional.Value();
    FAIL() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Can't retrieve the value of a Null Optional value");
  }
}

TEST(DtoToStringTest, JoinsWithSingleBlanks) {
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{}), "");
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{10, -1, 4094}), "10 -1 4094");
  EXPECT_EQ(Dto::ToString(std::vector<std::int16_t>{-32768, 32767}), "-32768 32767");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{}), "");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{"eth1", "eth2", "eth3"}), "eth1 eth2 eth3");
  EXPECT_EQ(Dto::ToString(std::vector<std::string>{"", "eth2"}), " eth2");
}

}  // namespace
