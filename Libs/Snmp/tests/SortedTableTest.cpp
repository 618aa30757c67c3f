#include <gtest/gtest.h>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Standard/Engine/SortedTable.h"

// The serving engine of the standard views, in-process: GET and GET-NEXT go
// through the handler that Net-SNMP calls for a registration, over tables of
// known rows registered as the views register theirs (tables of one shared
// subtree, a table of its own, a range of scalars).
namespace {

namespace Standard = Arq::Snmp::Standard;

// Rows by index; each row's cells by column (a missing column: no value).
class KnownRows final : public Standard::ISortedTable {
 public:
  using Row = std::pair<std::vector<oid>, std::map<unsigned, long>>;
  KnownRows(std::initializer_list<Row> rows) : rows(rows) {}
  std::size_t Rows() const override { return rows.size(); }
  const std::vector<oid>& Index(std::size_t row) const override { return rows[row].first; }
  bool Answer(std::size_t row, unsigned column, netsnmp_variable_list* var) const override {
    const auto found = rows[row].second.find(column);
    if (found == rows[row].second.end()) return false;
    Standard::SetInteger(var, found->second);
    return true;
  }
  int refreshes = 0;

 private:
  std::vector<Row> rows;
};

// Under lldpObjects, whose tables share one registration: table 9 (columns
// 2 and 3, the cell 3.2 without a value), table 10 after it, and the scalars
// 1 and 2 of group 11. Table 8 of a subtree of no shared registration.
const std::vector<oid> kShared{1, 0, 8802, 1, 1, 2, 1};
const std::vector<oid> kOwn{1, 3, 6, 1, 4, 1, 32473, 99};

KnownRows first{{{{1}, {{2, 21}, {3, 31}}}, {{2}, {{2, 22}}}, {{5, 1}, {{2, 251}, {3, 351}}}}};
KnownRows second{{{{7}, {{1, 17}, {2, 27}}}}};
KnownRows scalars{{{{0}, {{1, 100}, {2, 200}}}}};
KnownRows own{{{{4}, {{1, 14}}}}};

std::vector<oid> Under(const std::vector<oid>& base, std::vector<oid> arcs) {
  std::vector<oid> id = base;
  id.insert(id.end(), arcs.begin(), arcs.end());
  return id;
}

class SortedTableTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    init_agent("arq-sorted-table-test");
    // Registered out of order: the shared registration keeps its members in
    // the order of their identifiers.
    sharedRegistration = Standard::RegisterSortedTable(
        registrations, "second", Under(kShared, {10}), 1, 2, &second, [] { ++second.refreshes; });
    EXPECT_EQ(Standard::RegisterSortedTable(registrations, "first", Under(kShared, {9}), 2, 3,
                                            &first, [] { ++first.refreshes; }),
              sharedRegistration);
    EXPECT_EQ(Standard::RegisterSortedRange(registrations, "scalars", Under(kShared, {11}), 1, 2,
                                            &scalars, [] { ++scalars.refreshes; }),
              sharedRegistration);
    ownRegistration = Standard::RegisterSortedTable(registrations, "own", kOwn, 1, 1, &own,
                                                    [] { ++own.refreshes; });
  }

  // Asks the registration's handler, as the agent does, for `name` (arcs
  // after `base`); renders the answer as "<arcs after base> = <value>", the
  // exception, or "none" when the handler left the request unanswered.
  static std::string Ask(netsnmp_handler_registration* registration, int mode,
                         const std::vector<oid>& base, const std::vector<oid>& arcs) {
    const std::vector<oid> name = Under(base, arcs);
    netsnmp_variable_list* var = nullptr;
    snmp_varlist_add_variable(&var, name.data(), name.size(), ASN_NULL, nullptr, 0);
    netsnmp_request_info request{};
    request.requestvb = var;
    netsnmp_agent_request_info info{};
    info.mode = mode;
    netsnmp_call_handlers(registration, &info, &request);
    std::string text;
    switch (var->type) {
      case ASN_NULL:
        text = "none";
        break;
      case SNMP_NOSUCHOBJECT:
        text = "noSuchObject";
        break;
      case SNMP_NOSUCHINSTANCE:
        text = "noSuchInstance";
        break;
      default: {
        for (std::size_t i = 0; i < var->name_length; ++i) {
          if (i < base.size()) {
            if (var->name[i] != base[i]) return "outside the base";
            continue;
          }
          text += (i == base.size() ? "" : ".") + std::to_string(var->name[i]);
        }
        text += " = " + std::to_string(*var->val.integer);
      }
    }
    snmp_free_varbind(var);
    return text;
  }

  static Standard::SortedRegistrations registrations;
  static netsnmp_handler_registration* sharedRegistration;
  static netsnmp_handler_registration* ownRegistration;
};
Standard::SortedRegistrations SortedTableTest::registrations;
netsnmp_handler_registration* SortedTableTest::sharedRegistration = nullptr;
netsnmp_handler_registration* SortedTableTest::ownRegistration = nullptr;

TEST_F(SortedTableTest, GetAnswersACellOrSaysWhyNot) {
  const std::vector<std::pair<std::vector<oid>, std::string>> cases = {
      {{9, 1, 2, 1}, "9.1.2.1 = 21"},
      {{9, 1, 3, 5, 1}, "9.1.3.5.1 = 351"},
      {{10, 1, 1, 7}, "10.1.1.7 = 17"},
      {{11, 2, 0}, "11.2.0 = 200"},
      {{9, 1, 3, 2}, "noSuchInstance"},        // the row has no value there
      {{9, 1, 2, 3}, "noSuchInstance"},        // no such row
      {{9, 1, 2, 5}, "noSuchInstance"},        // part of an index
      {{9, 1, 2, 5, 1, 0}, "noSuchInstance"},  // an index and more
      {{9, 1, 2}, "noSuchObject"},             // a column, no index
      {{9, 1, 1, 1}, "noSuchObject"},          // a column not served
      {{9, 1, 4, 1}, "noSuchObject"},
      {{9, 2, 2, 1}, "noSuchObject"},  // not the entry
      {{11, 3, 0}, "noSuchObject"},    // a scalar of the group not served
      {{12, 1, 0}, "noSuchObject"},
  };
  for (const auto& [arcs, expected] : cases) {
    EXPECT_EQ(Ask(sharedRegistration, MODE_GET, kShared, arcs), expected) << arcs.size();
  }
  EXPECT_EQ(Ask(ownRegistration, MODE_GET, kOwn, {1, 1, 4}), "1.1.4 = 14");
  EXPECT_EQ(Ask(ownRegistration, MODE_GET, kOwn, {1, 1, 5}), "noSuchInstance");
}

TEST_F(SortedTableTest, GetNextWalksColumnsThenTablesOfTheSharedSubtree) {
  const std::vector<std::pair<std::vector<oid>, std::string>> cases = {
      {{8}, "9.1.2.1 = 21"},  // before the first table
      {{9}, "9.1.2.1 = 21"},
      {{9, 1, 0}, "9.1.2.1 = 21"},  // before the first column served
      {{9, 1, 2}, "9.1.2.1 = 21"},
      {{9, 1, 2, 1}, "9.1.2.2 = 22"},
      {{9, 1, 2, 2}, "9.1.2.5.1 = 251"},
      {{9, 1, 2, 3, 7}, "9.1.2.5.1 = 251"},  // between two rows
      {{9, 1, 2, 5}, "9.1.2.5.1 = 251"},     // a prefix of the next index
      {{9, 1, 2, 5, 1}, "9.1.3.1 = 31"},     // the column's end: the next column
      {{9, 1, 3, 1}, "9.1.3.5.1 = 351"},     // skips the row without a value
      {{9, 1, 3, 5, 1}, "10.1.1.7 = 17"},    // the table's end: the next table
      {{9, 1, 4}, "10.1.1.7 = 17"},          // past the last column served
      {{10, 1, 2, 7}, "11.1.0 = 100"},       // into the scalars
      {{11, 1, 0}, "11.2.0 = 200"},
      {{11, 2, 0}, "none"},  // the subtree's end: the agent asks the next registration
      {{12}, "none"},
  };
  for (const auto& [arcs, expected] : cases) {
    EXPECT_EQ(Ask(sharedRegistration, MODE_GETNEXT, kShared, arcs), expected) << arcs.size();
  }
  EXPECT_EQ(Ask(ownRegistration, MODE_GETNEXT, kOwn, {}), "1.1.4 = 14");
  EXPECT_EQ(Ask(ownRegistration, MODE_GETNEXT, kOwn, {1, 1, 4}), "none");
}

TEST_F(SortedTableTest, EveryTableOfARegistrationIsRefreshedOncePerRequest) {
  const int before[] = {first.refreshes, second.refreshes, scalars.refreshes, own.refreshes};
  Ask(sharedRegistration, MODE_GET, kShared, {9, 1, 2, 1});
  EXPECT_EQ(first.refreshes - before[0], 1);
  EXPECT_EQ(second.refreshes - before[1], 1);
  EXPECT_EQ(scalars.refreshes - before[2], 1);
  EXPECT_EQ(own.refreshes - before[3], 0);
}

}  // namespace
