#include "Arq/Exposition/ExpositionWriter.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace Arq::Exposition {
namespace {

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool SameLetters(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

// The format one media range of an Accept header stands for, and its q.
struct Choice {
  std::optional<Format> format;
  double q = 1.0;
};

Choice Range(std::string_view range) {
  Choice choice;
  const auto semicolon = range.find(';');
  const std::string_view type = Trim(range.substr(0, semicolon));
  std::string_view version;
  for (auto rest = semicolon == std::string_view::npos ? std::string_view()
                                                       : range.substr(semicolon + 1);
       !rest.empty();) {
    const auto next = rest.find(';');
    const std::string_view parameter = Trim(rest.substr(0, next));
    rest = next == std::string_view::npos ? std::string_view() : rest.substr(next + 1);
    const auto equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view key = Trim(parameter.substr(0, equals));
    const std::string_view value = Trim(parameter.substr(equals + 1));
    if (SameLetters(key, "q")) {
      double q = 0;
      const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), q);
      choice.q = error == std::errc() && end == value.data() + value.size() ? q : 0;
    } else if (SameLetters(key, "version")) {
      version = value;
    }
  }
  if (SameLetters(type, "application/openmetrics-text")) {
    if (version.empty() || version == "1.0.0") choice.format = Format::OpenMetrics;
  } else if (SameLetters(type, "text/plain")) {
    if (version.empty() || version == "0.0.4") choice.format = Format::Text;
  } else if (type == "*/*" || SameLetters(type, "text/*")) {
    choice.format = Format::Text;
  }
  return choice;
}

bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// The length of the valid UTF-8 character at the start of `text`, or 0.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  std::size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;  // the range of the second byte
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // no overlong form
    if (lead == 0xED) high = 0x9F;  // no surrogate
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;  // nothing above U+10FFFF
  } else {
    return 0;
  }
  if (text.size() < length || byte(1) < low || byte(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!IsContinuation(byte(i))) return 0;
  }
  return length;
}

void AppendHelp(std::string& out, std::string_view help, Format format) {
  for (const char c : help) {
    if (c == '\\') {
      out += "\\\\";
    } else if (c == '\n') {
      out += "\\n";
    } else if (c == '"' && format == Format::OpenMetrics) {
      out += "\\\"";
    } else {
      out += c;
    }
  }
}

}  // namespace

Format NegotiateFormat(std::string_view accept) {
  Format best = Format::Text;
  double bestQ = 0;
  for (std::size_t start = 0; start <= accept.size();) {
    const auto comma = accept.find(',', start);
    const auto end = comma == std::string_view::npos ? accept.size() : comma;
    const Choice choice = Range(accept.substr(start, end - start));
    if (choice.format && choice.q > bestQ) {
      best = *choice.format;
      bestQ = choice.q;
    }
    start = end + 1;
  }
  return best;
}

std::string_view ContentType(Format format) {
  return format == Format::OpenMetrics
             ? "application/openmetrics-text; version=1.0.0; charset=utf-8"
             : "text/plain; version=0.0.4; charset=utf-8";
}

void AppendLabelValue(std::string& out, std::string_view value) {
  std::size_t plain = 0;  // the start of the bytes not yet appended
  for (std::size_t i = 0; i < value.size();) {
    const char c = value[i];
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x80 && c != '\\' && c != '"') {
      ++i;
      continue;
    }
    const std::size_t length = byte < 0x80 ? 1 : CharacterLength(value.substr(i));
    if (length > 1) {
      i += length;
      continue;
    }
    out.append(value.substr(plain, i - plain));
    if (c == '\\') {
      out += "\\\\";
    } else if (c == '"') {
      out += "\\\"";
    } else if (c == '\n') {
      out += "\\n";
    } else if (length == 1) {
      out += c;  // another control character: valid, written as it is
    } else {
      out += "\xEF\xBF\xBD";
    }
    plain = ++i;
  }
  out.append(value.substr(plain));
}

Labels& Labels::Add(std::string_view name, std::string_view value) {
  if (!text.empty()) text += ',';
  text.append(name).append("=\"");
  AppendLabelValue(text, value);
  text += '"';
  return *this;
}

void ExpositionWriter::Begin(const Family& family) {
  name = family.name;
  const std::string_view familyName = FamilyName(family, format);
  const std::string_view type = family.type == MetricType::Counter ? "counter"
                                : family.type == MetricType::Info && format == Format::OpenMetrics
                                    ? "info"
                                    : "gauge";
  out.append("# HELP ").append(familyName).append(" ");
  AppendHelp(out, family.help, format);
  out.append("\n# TYPE ").append(familyName).append(" ").append(type).append("\n");
  if (format == Format::OpenMetrics && !family.unit.empty()) {
    out.append("# UNIT ").append(familyName).append(" ").append(family.unit).append("\n");
  }
}

void ExpositionWriter::Head(std::string_view labels, std::string_view more) {
  out.append(name);
  if (labels.empty() && more.empty()) {
    out += ' ';
    return;
  }
  out += '{';
  out.append(labels);
  if (!labels.empty() && !more.empty()) out += ',';
  out.append(more);
  out += "} ";
}

void ExpositionWriter::Sample(std::string_view labels, std::string_view more, std::uint64_t value) {
  Head(labels, more);
  char digits[24];
  auto* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end).append("\n");
}

void ExpositionWriter::Sample(std::string_view labels, std::string_view more, double value) {
  Head(labels, more);
  if (std::isnan(value)) {
    out += "NaN\n";
    return;
  }
  if (std::isinf(value)) {
    out += value > 0 ? "+Inf\n" : "-Inf\n";
    return;
  }
  char digits[32];
  // Whole numbers as integers (exact below 2^53), others in their shortest form.
  auto* const end =
      std::abs(value) < 9007199254740992.0 && value == std::trunc(value)
          ? std::to_chars(digits, digits + sizeof digits, static_cast<std::int64_t>(value)).ptr
          : std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end).append("\n");
}

void ExpositionWriter::Finish() {
  if (format == Format::OpenMetrics) out += "# EOF\n";
}

}  // namespace Arq::Exposition
