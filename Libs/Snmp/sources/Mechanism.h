#pragma once

// The shared machinery of the MIB modules: every scalar and every table
// module in Scalar/ and Dataset/ supplies only its data (identifier, source
// holder, columns, texts) and calls into this file.
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

// The agent headers need the two above first.
#include <net-snmp/agent/net-snmp-agent-includes.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "Arq/Monitoring/MonitoringProcessor.h"
#include "Arq/OrvoViaSwitch/Domain/Monitoring/OrvoViaMonitoringValues.h"
#include "Arq/Snmp/Conversions.h"
#include "TableShapes.h"

namespace Arq::Snmp::Mechanism {

using Values = OrvoViaSwitch::Domain::Monitoring::OrvoViaMonitoringValues_s;
using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;
namespace Metrics = OrvoViaSwitch::Domain::Dto::Metrics;

// The full identifier of a node of ObjectIdentifiers.def: the enterprise arc
// 1.3.6.1.4.1.<enterprise>, then the node's arcs.
std::vector<oid> ObjectId(const std::vector<oid>& arcs);

// ---- Scalars ---------------------------------------------------------------

enum class ScalarSyntax { Counter, Integer, OctetString, IpAddress };

// The user context of a scalar: the values set, the value served last, and
// the holder's change time at which it was taken.
template <typename Value>
struct ScalarUserContext {
  explicit ScalarUserContext(Value initial) : value(initial) {}

  Values* monitoringValues = nullptr;
  Value value;
  TimePoint creationTime = Clock::now();
  TimePoint changeTime = creationTime;
};

using IntegerScalar = ScalarUserContext<std::int64_t>;
template <std::size_t N>
using TextScalar = ScalarUserContext<std::array<char, N>>;

// The initial text of every string object: " " followed by zero bytes.
template <std::size_t N>
std::array<char, N> Blank() {
  return ToBuffer<N>(" ");
}

// Takes the holder's value into the context when its change time moved,
// logging the text `message()` builds first. `extract` turns the copied record into the value.
template <typename Context, typename Holder, typename Message, typename Extract>
void RefreshScalar(Context& context, const Holder& holder, Message message, Extract extract) {
  const TimePoint changed = holder.ChangeTime();
  if (changed == context.changeTime) return;
  snmp_log(LOG_INFO, "%s", std::string(message()).c_str());
  context.value = extract(holder.Value());
  context.changeTime = changed;
}

// Answers a GET with the context's value in the object's syntax.
int AnswerScalar(const char* handlerName, ScalarSyntax syntax, const IntegerScalar& context,
                 netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests);
template <std::size_t N>
int AnswerScalar(const char* handlerName, ScalarSyntax syntax, const TextScalar<N>& context,
                 netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests);
int AnswerText(const char* handlerName, ScalarSyntax syntax, const char* text, std::size_t size,
               netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests);

template <std::size_t N>
int AnswerScalar(const char* handlerName, ScalarSyntax syntax, const TextScalar<N>& context,
                 netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  return AnswerText(handlerName, syntax, context.value.data(), N, reqinfo, requests);
}

// Read-only scalar registration; logs "<name> Done initializing.\n".
void RegisterScalar(const char* name, Netsnmp_Node_Handler* handler, const std::vector<oid>& arcs);

// ---- Tables ----------------------------------------------------------------

enum class ColumnSyntax : u_char {
  Integer = ASN_INTEGER,
  OctetString = ASN_OCTET_STR,
  IpAddress = ASN_IPADDRESS
};

// One cell as a generated row takes it: an integer, or a text cut to `width`.
struct Cell {
  ColumnSyntax syntax = ColumnSyntax::Integer;
  long integer = -1;
  std::size_t width = 0;
  std::array<char, Width::kWidest> text{};

  static Cell Integer(long value);
  static Cell Text(const std::string& value, std::size_t width,
                   ColumnSyntax syntax = ColumnSyntax::OctetString);
  std::size_t TextLength() const { return strnlen(text.data(), width); }
};

// A stored cell as the handler answers it; `text` points into the row.
struct CellView {
  ColumnSyntax syntax;
  long integer;
  const char* text;
  std::size_t length;
  std::size_t width;
};

// A generated row: the cells of columns 2 onwards, in column order. Texts are
// kept at their length, not their width, so that the 160-odd cached rows of
// the seven tables stay a few hundred bytes each.
class GeneratedRow {
 public:
  void push_back(const Cell& cell);
  std::size_t size() const { return slots.size(); }
  CellView operator[](std::size_t column) const;
  // Gives back the spare capacity the appends left.
  void ShrinkToFit();

 private:
  struct Slot {
    ColumnSyntax syntax;
    std::uint8_t width;
    std::uint8_t length;
    std::uint16_t offset;  // into `integers` or `texts`
  };
  std::vector<Slot> slots;
  std::vector<long> integers;
  std::string texts;
};

// Default content of a new row: " " in text cells, -1 in integer cells.
GeneratedRow DefaultRow(const GeneratedRow& shape);

// The cells of an EthernetMetric (Shape::kEthernetPortColumns) from its text
// field on: name, mode+1, speed+1, state, the counters as decimal text, the
// two rates in Mbit/s.
void AppendEthernetCells(GeneratedRow& row, const Metrics::EthernetMetric& metric);

struct CachedRow {
  GeneratedRow row;
  TimePoint creationTime = Clock::now();
  TimePoint changeTime = creationTime;
};

// The user context of a table: the values set, one cached row per table row,
// and the data set.
struct TableUserContext {
  Values* monitoringValues = nullptr;
  std::vector<CachedRow> rows;
  netsnmp_table_data_set* dataSet = nullptr;
};

struct TableDefinition {
  const char* name;
  std::vector<oid> arcs;
  GeneratedRow shape;  // the syntax and width of each column, from column 2
};

// Creates the data set, declares the index and the columns and registers the
// handler; CreateRows then makes every row with its default content.
void InitializeTable(TableUserContext& context, const TableDefinition& definition,
                     Netsnmp_Node_Handler* handler);
void CreateRows(TableUserContext& context, const GeneratedRow& shape, long rowCount);
void ShutdownTable(TableUserContext& context);

// Takes row `row` from `holder` when the holder's change time moved: logs
// `message`, copies the record and builds the row with `generate`.
template <typename Holder, typename Message, typename Generate>
bool RefreshRow(CachedRow& cached, const Holder& holder, Message message, Generate generate) {
  const TimePoint changed = holder.ChangeTime();
  if (changed == cached.changeTime) return false;
  snmp_log(LOG_INFO, "%s", std::string(message()).c_str());
  cached.row = generate(holder.Value());
  cached.row.ShrinkToFit();
  cached.changeTime = changed;
  return true;
}

// The GET-only table handler: for each request, the row's own index, the
// bound check, `refresh(index)`, then the cell from the cache (noSuchObject for
// column 1 or beyond the last column).
template <typename Refresh>
int HandleTable(TableUserContext& context, long rowCount, netsnmp_agent_request_info* reqinfo,
                netsnmp_request_info* requests, Refresh refresh);
int AnswerCell(const TableUserContext& context, long index, unsigned int column,
               netsnmp_agent_request_info* reqinfo, netsnmp_request_info* request);
bool RequestIndex(netsnmp_request_info* request, long& index, unsigned int& column);

template <typename Refresh>
int HandleTable(TableUserContext& context, long rowCount, netsnmp_agent_request_info* reqinfo,
                netsnmp_request_info* requests, Refresh refresh) {
  if (reqinfo->mode != MODE_GET) return SNMP_ERR_NOERROR;
  for (netsnmp_request_info* request = requests; request != nullptr; request = request->next) {
    long index = 0;
    unsigned int column = 0;
    if (!RequestIndex(request, index, column)) continue;
    if (index > rowCount - 1 || index < 0) {
      snmp_log(LOG_INFO, "index (%ld/%d) of out range\n", index, static_cast<int>(rowCount));
      return SNMP_ERR_NOERROR;
    }
    refresh(index);
    AnswerCell(context, index, column, reqinfo, request);
  }
  return SNMP_ERR_NOERROR;
}

// printf-style message text.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Arq::Snmp::Mechanism
