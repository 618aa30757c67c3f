#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Arq/Snmp/Conversions.h"

namespace {

using Arq::Snmp::IpAddressBytes;
using Arq::Snmp::RoundBitsPerSecToMegaBitsPerSec;

// The private MIB's address and the switch model's (every standard view's)
// are read by the same rule.
TEST(SnmpConversionsTest, IpAddressTextFollowsTheFourNumbersRule) {
  struct Case {
    const char* text;
    std::array<unsigned char, 4> bytes;
  };
  const Case cases[] = {
      {"10.0.0.1", {10, 0, 0, 1}},
      {"192.0.2.255", {192, 0, 2, 255}},
      {"10.0.0.256", {0, 0, 0, 0}},
      {"10.0.0.1x", {0, 0, 0, 0}},
      {"", {0, 0, 0, 0}},
      {" ", {0, 0, 0, 0}},
      {"10.0.0", {0, 0, 0, 0}},
      {"1.2.3.4 ", {1, 2, 3, 4}},
      {"1.2.3.4.5", {0, 0, 0, 0}},
      {" 1.2.3.4\n", {1, 2, 3, 4}},
      {"+1.2.3.4", {1, 2, 3, 4}},
      {"-0.2.3.4", {0, 2, 3, 4}},
      {"-1.2.3.4", {0, 0, 0, 0}},
      {"1 .2.3.4", {0, 0, 0, 0}},
      {"0010.0.0.1", {10, 0, 0, 1}},
      {"99999999999.0.0.1", {0, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(IpAddressBytes(c.text, 20), c.bytes);
  }
  // A buffer filled to its size needs no terminator.
  const auto full = Arq::Snmp::ToBuffer<8>("10.0.0.1");
  EXPECT_EQ(IpAddressBytes(full.data(), full.size()), (std::array<unsigned char, 4>{10, 0, 0, 1}));
}

// Half up to whole megabits; the formula as it stands for negative rates.
TEST(SnmpConversionsTest, RatesRoundHalfUpAndBuffersCutWithoutTerminator) {
  for (const auto& [bits, megabits] : std::vector<std::pair<long, std::int64_t>>{
           {499999, 0}, {1499999, 1}, {1500000, 2}, {25000000000L, 25000}, {-2000000, -1}}) {
    EXPECT_EQ(RoundBitsPerSecToMegaBitsPerSec(bits), megabits) << bits;
  }
  const auto cut = Arq::Snmp::ToBuffer<20>("0123456789abcdefghijKLMNO");
  EXPECT_EQ(std::string(cut.data(), Arq::Snmp::TextLength(cut)), "0123456789abcdefghij");
  EXPECT_EQ(Arq::Snmp::TextLength(Arq::Snmp::ToBuffer<20>("abc")), 3u);
}

}  // namespace
