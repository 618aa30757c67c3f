#include "Mechanism.h"

#include <cstdarg>
#include <cstdio>

#include "Arq/OrvoViaSwitch/Domain/Dto/IPAddress.h"

namespace Arq::Snmp {

int ipStringToNumber(const char* text, char* out) {
  const auto address = OrvoViaSwitch::Domain::Dto::ParseIpv4(text);
  if (!address) return 0;
  for (std::size_t i = 0; i < address->size(); ++i) out[i] = static_cast<char>((*address)[i]);
  return 1;
}

std::array<unsigned char, 4> IpAddressBytes(const char* text, std::size_t size) {
  const std::string terminated(text, strnlen(text, size));
  char bytes[4] = {0, 0, 0, 0};
  std::array<unsigned char, 4> address{};
  if (ipStringToNumber(terminated.c_str(), bytes) == 1) {
    for (int i = 0; i < 4; ++i) address[i] = static_cast<unsigned char>(bytes[i]);
  }
  return address;
}

std::int64_t RoundBitsPerSecToMegaBitsPerSec(long bitsPerSecond) {
  return (static_cast<std::int64_t>(bitsPerSecond) + 500000) / 1000000;
}

}  // namespace Arq::Snmp

namespace Arq::Snmp::Mechanism {

std::vector<oid> ObjectId(const std::vector<oid>& arcs) {
  std::vector<oid> id{1, 3, 6, 1, 4, 1, ARQ_ENTERPRISE_NUMBER};
  id.insert(id.end(), arcs.begin(), arcs.end());
  return id;
}

// NOLINTNEXTLINE(cert-dcl50-cpp): printf-style; the format attribute checks its callers
std::string Format(const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  (void)std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

namespace {

int UnknownMode(const char* handlerName, netsnmp_agent_request_info* reqinfo) {
  snmp_log(LOG_ERR, "unknown mode (%d) in %s\n", reqinfo->mode, handlerName);
  return SNMP_ERR_GENERR;
}

}  // namespace

int AnswerScalar(const char* handlerName, ScalarSyntax syntax, const IntegerScalar& context,
                 netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  if (reqinfo->mode != MODE_GET) return UnknownMode(handlerName, reqinfo);
  const long value = static_cast<long>(context.value);
  snmp_set_var_typed_value(requests->requestvb,
                           syntax == ScalarSyntax::Counter ? ASN_COUNTER : ASN_INTEGER,
                           reinterpret_cast<const u_char*>(&value), sizeof value);
  return SNMP_ERR_NOERROR;
}

int AnswerText(const char* handlerName, ScalarSyntax syntax, const char* text, std::size_t size,
               netsnmp_agent_request_info* reqinfo, netsnmp_request_info* requests) {
  if (reqinfo->mode != MODE_GET) return UnknownMode(handlerName, reqinfo);
  if (syntax == ScalarSyntax::IpAddress) {
    const auto address = IpAddressBytes(text, size);
    snmp_set_var_typed_value(requests->requestvb, ASN_IPADDRESS, address.data(), address.size());
  } else {
    snmp_set_var_typed_value(requests->requestvb, ASN_OCTET_STR,
                             reinterpret_cast<const u_char*>(text), strnlen(text, size));
  }
  return SNMP_ERR_NOERROR;
}

void RegisterScalar(const char* name, Netsnmp_Node_Handler* handler, const std::vector<oid>& arcs) {
  const auto id = ObjectId(arcs);
  netsnmp_register_scalar(
      netsnmp_create_handler_registration(name, handler, id.data(), id.size(), HANDLER_CAN_RONLY));
  snmp_log(LOG_INFO, "%s Done initializing.\n", name);
}

Cell Cell::Integer(long value) {
  Cell cell;
  cell.syntax = ColumnSyntax::Integer;
  cell.integer = value;
  return cell;
}

Cell Cell::Text(const std::string& value, std::size_t width, ColumnSyntax syntax) {
  Cell cell;
  cell.syntax = syntax;
  cell.width = width < cell.text.size() ? width : cell.text.size();
  std::memcpy(cell.text.data(), value.data(),
              value.size() < cell.width ? value.size() : cell.width);
  return cell;
}

void GeneratedRow::push_back(const Cell& cell) {
  Slot slot{cell.syntax, 0, 0, 0};
  if (cell.syntax == ColumnSyntax::Integer) {
    slot.offset = static_cast<std::uint16_t>(integers.size());
    integers.push_back(cell.integer);
  } else {
    const std::size_t length = cell.TextLength();
    slot.width = static_cast<std::uint8_t>(cell.width);
    slot.length = static_cast<std::uint8_t>(length);
    slot.offset = static_cast<std::uint16_t>(texts.size());
    texts.append(cell.text.data(), length);
  }
  slots.push_back(slot);
}

CellView GeneratedRow::operator[](std::size_t column) const {
  const Slot& slot = slots[column];
  if (slot.syntax == ColumnSyntax::Integer) {
    return {slot.syntax, integers[slot.offset], nullptr, 0, 0};
  }
  return {slot.syntax, -1, texts.data() + slot.offset, slot.length, slot.width};
}

void GeneratedRow::ShrinkToFit() {
  slots.shrink_to_fit();
  integers.shrink_to_fit();
  texts.shrink_to_fit();
}

GeneratedRow DefaultRow(const GeneratedRow& shape) {
  GeneratedRow row;
  for (std::size_t column = 0; column < shape.size(); ++column) {
    const CellView cell = shape[column];
    row.push_back(cell.syntax == ColumnSyntax::Integer ? Cell::Integer(-1)
                                                       : Cell::Text(" ", cell.width, cell.syntax));
  }
  row.ShrinkToFit();
  return row;
}

void AppendEthernetCells(GeneratedRow& row, const Metrics::EthernetMetric& metric) {
  row.push_back(Cell::Text(metric.ethName, Width::Name));
  row.push_back(Cell::Integer(static_cast<long>(metric.mode) + 1));
  row.push_back(Cell::Integer(static_cast<long>(metric.speed) + 1));
  row.push_back(Cell::Integer(metric.state));
  for (const auto counter : metric.counters)
    row.push_back(Cell::Text(std::to_string(counter), Width::Counter));
  row.push_back(Cell::Integer(RoundBitsPerSecToMegaBitsPerSec(metric.txSpeed)));
  row.push_back(Cell::Integer(RoundBitsPerSecToMegaBitsPerSec(metric.rxSpeed)));
}

void InitializeTable(TableUserContext& context, const TableDefinition& definition,
                     Netsnmp_Node_Handler* handler) {
  netsnmp_table_data_set* dataSet = netsnmp_create_table_data_set(definition.name);
  netsnmp_table_set_add_indexes(dataSet, ASN_INTEGER, 0);
  for (std::size_t column = 0; column < definition.shape.size(); ++column) {
    netsnmp_table_set_add_default_row(dataSet, static_cast<unsigned int>(column + 2),
                                      static_cast<int>(definition.shape[column].syntax), 0, nullptr,
                                      0);
  }
  const auto fullId = ObjectId(definition.arcs);
  netsnmp_register_table_data_set(
      netsnmp_create_handler_registration(definition.name, handler, fullId.data(), fullId.size(),
                                          HANDLER_CAN_RWRITE),
      dataSet, nullptr);
  context.monitoringValues = &Monitoring::MonitoringProcessor::monitoringValues;
  context.dataSet = dataSet;
}

void CreateRows(TableUserContext& context, const GeneratedRow& shape, long rowCount) {
  context.rows.assign(static_cast<std::size_t>(rowCount), CachedRow());
  for (long index = 0; index < rowCount; ++index) {
    CachedRow& cached = context.rows[static_cast<std::size_t>(index)];
    cached.row = DefaultRow(shape);
    cached.changeTime = cached.creationTime;
    netsnmp_table_row* row = netsnmp_create_table_data_row();
    snmp_varlist_add_variable(&row->indexes, nullptr, 0, ASN_INTEGER,
                              reinterpret_cast<const u_char*>(&index), sizeof index);
    for (std::size_t column = 0; column < cached.row.size(); ++column) {
      const CellView cell = cached.row[column];
      const auto number = static_cast<unsigned int>(column + 2);
      if (cell.syntax == ColumnSyntax::Integer) {
        netsnmp_set_row_column(row, number, ASN_INTEGER, &cell.integer, sizeof cell.integer);
      } else {
        netsnmp_set_row_column(row, number, static_cast<int>(cell.syntax), cell.text, 1);
      }
    }
    netsnmp_table_dataset_add_row(context.dataSet, row);
  }
}

void ShutdownTable(TableUserContext& context) {
  if (context.dataSet == nullptr) return;
  netsnmp_unregister_auto_data_table(context.dataSet, nullptr);
  netsnmp_delete_table_data_set(context.dataSet);
  context.dataSet = nullptr;
}

bool RequestIndex(netsnmp_request_info* request, long& index, unsigned int& column) {
  netsnmp_table_request_info* info = netsnmp_extract_table_info(request);
  netsnmp_table_row* row = netsnmp_extract_table_row(request);
  if (info == nullptr || row == nullptr) return false;
  // The row's own index: during walks the request's table information holds
  // the requested index, not the row the table support chose.
  if (row->index_oid != nullptr && row->index_oid_len > 0) {
    index = static_cast<long>(row->index_oid[0]);
  } else if (info->indexes != nullptr && info->indexes->val.integer != nullptr) {
    index = *info->indexes->val.integer;
  } else {
    return false;
  }
  column = info->colnum;
  return true;
}

int AnswerCell(const TableUserContext& context, long index, unsigned int column,
               netsnmp_agent_request_info* reqinfo, netsnmp_request_info* request) {
  const auto& row = context.rows[static_cast<std::size_t>(index)].row;
  if (column < 2 || column - 2 >= row.size()) {
    netsnmp_set_request_error(reqinfo, request, SNMP_NOSUCHOBJECT);
    return SNMP_NOSUCHOBJECT;
  }
  const CellView cell = row[column - 2];
  switch (cell.syntax) {
    case ColumnSyntax::Integer:
      snmp_set_var_typed_value(request->requestvb, ASN_INTEGER,
                               reinterpret_cast<const u_char*>(&cell.integer), sizeof cell.integer);
      break;
    case ColumnSyntax::IpAddress: {
      // A manager cannot use an IpAddress that is not four bytes: the dotted
      // text is answered as its address.
      const auto address = IpAddressBytes(cell.text, cell.length);
      snmp_set_var_typed_value(request->requestvb, ASN_IPADDRESS, address.data(), address.size());
      break;
    }
    case ColumnSyntax::OctetString:
      snmp_set_var_typed_value(request->requestvb, ASN_OCTET_STR,
                               reinterpret_cast<const u_char*>(cell.text), cell.length);
      break;
  }
  return SNMP_ERR_NOERROR;
}

}  // namespace Arq::Snmp::Mechanism
