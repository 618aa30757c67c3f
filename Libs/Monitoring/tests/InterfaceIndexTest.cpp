#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Arq/Monitoring/Model/InterfaceIndex.h"
#include "Arq/Monitoring/Model/Numbers.h"
#include "Arq/TestSupport/TempDir.h"

namespace {

using Arq::Monitoring::InterfaceIndex;
using Arq::TestSupport::ReadFile;
using Arq::TestSupport::TempDir;
using Arq::TestSupport::WriteFile;

constexpr std::int64_t kNow = 1700000000;
const std::string kHeader =
    "# orvovia-ifindex 2: <index> <name: \\\\ \\n \\r \\t \\xHH escaped> <last seen, unix "
    "seconds>\n";
const std::string kFile = "orvovia-ifindex.conf";

std::string Stamp(std::int64_t secondsAgo) {
  return std::to_string(kNow - secondsAgo);
}

// One collection on a fresh instance: the indexes of `names`, then the file it leaves.
std::vector<long> Round(const std::string& path, const std::vector<std::string>& names,
                        std::int64_t now = kNow) {
  InterfaceIndex indexes(path);
  std::vector<long> got;
  for (const auto& name : names) got.push_back(indexes.Of(name));
  indexes.EndRound(now);
  return got;
}

TEST(InterfaceIndexTest, FileContentInIndexesAndRewrittenFileOut) {
  const std::string day = Stamp(0);
  struct Case {
    const char* what;
    std::string in;
    std::vector<std::string> names;
    std::vector<long> indexes;
    std::string out;
  };
  const Case cases[] = {
      {"two-field lines keep their indexes and are stamped now; rule names are not stored",
       "1000001 eth0\n1000000 mgmt 1\nthis line is garbage\n1000002 a\\b\n",
       {"eth0", "mgmt 1", "1/1", "new", "a\\b"},
       {1000001, 1000000, 1001, 1000003, 1000002},
       kHeader + "1000000 mgmt\\x201 " + day + "\n1000001 eth0 " + day + "\n1000002 a\\\\b " + day +
           "\n1000003 new " + day + "\n"},
      {"a shared index stays with the first line, the later name is placed again; the first "
       "of two lines with one name wins",
       kHeader + "1000005 a " + day + "\n1000005 b " + day + "\n1000006 a " + day + "\n",
       {"a", "b", "c"},
       {1000005, 1000000, 1000001},
       kHeader + "1000000 b " + day + "\n1000001 c " + day + "\n1000005 a " + day + "\n"},
      {"a garbage line costs only itself, and the file is written without it",
       kHeader + "1000003 x " + day + "\n#comment\n\x01garbage 1\n1000004 y " + day + "\n",
       {"y", "x"},
       {1000004, 1000003},
       kHeader + "1000003 x " + day + "\n1000004 y " + day + "\n"},
      {"indexes out of 1000000..2147483647, bad escapes and rule names are dropped",
       kHeader +
           "2147483648 big 1\n0 zero 1\n-1000001 neg 1\n999999 low 1\n01000001 lead 1\n"
           "1000002 bad\\q 1\n1000003 lag1 1\n2147483647 max " +
           day + "\n",
       {"max", "big", "zero", "neg"},
       {2147483647, 1000000, 1000001, 1000002},
       kHeader + "1000000 big " + day + "\n1000001 zero " + day + "\n1000002 neg " + day +
           "\n2147483647 max " + day + "\n"},
      {"unseen for more than 30 days is pruned; a stamp moves only after a day or more",
       kHeader + "1000000 old " + Stamp(30 * 86400 + 1) + "\n1000001 kept " + Stamp(30 * 86400) +
           "\n1000002 seen " + Stamp(86400) + "\n1000003 fresh " + Stamp(86399) + "\n",
       {"seen", "fresh"},
       {1000002, 1000003},
       kHeader + "1000001 kept " + Stamp(30 * 86400) + "\n1000002 seen " + day +
           "\n1000003 fresh " + Stamp(86399) + "\n"},
      {"nothing changed: the file is not written (its comment stays)",
       kHeader + "1000000 a " + Stamp(5) + "\n# not rewritten\n",
       {"a", "2/48"},
       {1000000, 2048},
       kHeader + "1000000 a " + Stamp(5) + "\n# not rewritten\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    WriteFile(dir.File(kFile), c.in);
    EXPECT_EQ(Round(dir.File(kFile), c.names), c.indexes);
    EXPECT_EQ(ReadFile(dir.File(kFile)), c.out);
  }
}

TEST(InterfaceIndexTest, WritesOnlyAtEndOfRoundThroughANewFileNeverFollowingALink) {
  TempDir dir, outside;
  const std::string path = dir.File(kFile);
  WriteFile(outside.File("victim"), "victim\n");
  ASSERT_EQ(symlink(outside.File("victim").c_str(), (path + ".new").c_str()), 0);
  InterfaceIndex indexes(path);
  EXPECT_EQ(indexes.Of("x"), 1000000);
  EXPECT_EQ(access(path.c_str(), F_OK), -1);
  indexes.EndRound(kNow);
  EXPECT_EQ(ReadFile(outside.File("victim")), "victim\n");
  EXPECT_EQ(ReadFile(path), kHeader + "1000000 x " + Stamp(0) + "\n");
  struct stat status {};
  EXPECT_EQ(lstat((path + ".new").c_str(), &status), -1);
  // A folder that cannot be written keeps the indexes in memory.
  InterfaceIndex lost(dir.File("missing/" + kFile));
  EXPECT_EQ(lost.Of("y"), 1000000);
  lost.EndRound(kNow);
  EXPECT_EQ(lost.Of("z"), 1000001);
}

TEST(InterfaceIndexTest, AnyByteOfANameSurvivesSaveAndLoad) {
  TempDir dir;
  const std::vector<std::string> names = {
      "a b", "line\nbreak", "back\\slash", "\xff\xfe", std::string("nul\0\t\r\x7f", 7), ""};
  EXPECT_EQ(Round(dir.File(kFile), names),
            (std::vector<long>{1000000, 1000001, 1000002, 1000003, 1000004, 1000005}));
  const std::string day = Stamp(0);
  EXPECT_EQ(ReadFile(dir.File(kFile)),
            kHeader + "1000000 a\\x20b " + day + "\n1000001 line\\nbreak " + day +
                "\n1000002 back\\\\slash " + day + "\n1000003 \xff\xfe " + day +
                "\n1000004 nul\\x00\\t\\r\\x7F " + day + "\n1000005  " + day + "\n");
  std::vector<std::string> reversed(names.rbegin(), names.rend());
  EXPECT_EQ(Round(dir.File(kFile), reversed),
            (std::vector<long>{1000005, 1000004, 1000003, 1000002, 1000001, 1000000}));
}

TEST(InterfaceIndexTest, TenMegabyteFileKeepsTheFirstMegabyteAndAtMostTheCap) {
  TempDir dir;
  std::string big;
  for (long i = 0; big.size() < 10 * 1024 * 1024; ++i) {
    big += std::to_string(1000000 + i) + " port-" + std::to_string(i) + "\n";
  }
  WriteFile(dir.File(kFile), big);
  // 4096 names of the first megabyte load; the cap then prunes the oldest unseen
  // (equal stamps: lowest index first).
  EXPECT_EQ(Round(dir.File(kFile), {"port-1", "port-4095", "port-4096", "port-500000"}),
            (std::vector<long>{1000001, 1004095, 1004096, 1004097}));
  const std::string out = ReadFile(dir.File(kFile));
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 4097);
  EXPECT_EQ(out.substr(kHeader.size(), 52),
            "1000001 port-1 " + Stamp(0) + "\n1000003 port-3 " + Stamp(0) + "\n");
  EXPECT_EQ(out.substr(out.size() - 32), "\n1004097 port-500000 " + Stamp(0) + "\n");
  // A 10 MB line: no whole line in the first megabyte.
  WriteFile(dir.File(kFile), "1000009 " + std::string(10 * 1024 * 1024, 'x') + "\n");
  EXPECT_EQ(Round(dir.File(kFile), {"x"}), std::vector<long>{1000000});
}

// The other spaces share the ifIndex file's mechanism, each in a file of its
// own: bridge ports from an older file of ifIndex form (its names prefixed,
// its numbers from 1000000) keep their numbers; port numbers follow the
// ifIndex rule where it fits in 16 bits, else take numbers no rule gives,
// kept across a restart while other ports come and go.
TEST(InterfaceIndexTest, BridgePortsAndPortNumbersKeepTheirNumbersInFilesOfTheirOwn) {
  using Arq::Monitoring::Numbers;
  TempDir dir;
  const std::string day = Stamp(0);
  WriteFile(dir.File("orvovia-bridge-ports.conf"), kHeader + "1000000 bridge\\x20port\\x201/1 " +
                                                       day + "\n1000004 bridge\\x20port\\x20lag1 " +
                                                       day + "\n1000001 xe-a " + day + "\n");
  // A number the rule gives is refused from the file.
  WriteFile(dir.File("orvovia-port-numbers.conf"),
            Arq::Monitoring::Numbering::Header("port-numbers") + "\n1001 ge-9 1\n");
  const auto round = [&](const std::vector<std::string>& names) {
    Numbers numbers(dir.Path());
    std::vector<long> got;
    for (const auto& name : names) got.push_back(numbers.bridgePorts.Of(name));
    for (const auto& name : names) got.push_back(numbers.PortNumber(name));
    numbers.EndRound(kNow);
    return got;
  };
  EXPECT_EQ(round({"1/1", "lag1", "ge-0/0/1", "65/535", "66/1", "ge-0/0/2"}),
            (std::vector<long>{1, 5, 2, 3, 4, 6, 1001, 1, 2, 65535, 3, 4}));
  EXPECT_EQ(ReadFile(dir.File("orvovia-bridge-ports.conf")),
            Arq::Monitoring::Numbering::Header("bridge-ports") + "\n1 1/1 " + day +
                "\n2 ge-0/0/1 " + day + "\n3 65/535 " + day + "\n4 66/1 " + day + "\n5 lag1 " +
                day + "\n6 ge-0/0/2 " + day + "\n");
  // ge-0/0/1 gone, ge-0/0/3 new: it takes the lowest number no one holds.
  EXPECT_EQ(round({"ge-0/0/2", "ge-0/0/3"}), (std::vector<long>{6, 7, 4, 5}));
  // A space whose every number is taken gives none.
  Arq::Monitoring::Numbering two({"two", "two", 1, 2}, "");
  EXPECT_EQ((std::vector<long>{two.Of("a"), two.Of("b"), two.Of("c"), two.Of("a")}),
            (std::vector<long>{1, 2, 0, 1}));
}

}  // namespace
