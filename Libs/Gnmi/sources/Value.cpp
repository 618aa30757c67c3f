#include <cstdio>

#include "Arq/Gnmi/Schema.h"

namespace Arq::Gnmi {
namespace {

void Quote(std::string& out, const std::string& text) {
  out += '"';
  for (const char c : text) {
    const auto u = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (u < 0x20) {
      char escaped[8];
      (void)std::snprintf(escaped, sizeof escaped, "\\u%04x", u);
      out += escaped;
    } else {
      out += c;
    }
  }
  out += '"';
}

}  // namespace

void Value::JsonIetf(std::string& out) const {
  switch (type) {
    case Type::Uint64:
      Quote(out, std::to_string(number));
      break;
    case Type::Int64:
      Quote(out, std::to_string(static_cast<std::int64_t>(number)));
      break;
    case Type::Uint32:
      out += std::to_string(number);
      break;
    case Type::Bool:
      out += number != 0 ? "true" : "false";
      break;
    case Type::StringList:
      out += '[';
      for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) out += ',';
        Quote(out, items[i]);
      }
      out += ']';
      break;
    default:
      Quote(out, text);
      break;
  }
}

}  // namespace Arq::Gnmi
