#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Arq::Exposition {

// The two formats a scraper may ask for (Accept header): the Prometheus text
// format 0.0.4, and OpenMetrics 1.0.0.
enum class Format { Text, OpenMetrics };

// The format of the Accept header's most preferred media range that we serve
// (q values honoured; text/plain and */* are the text format, as is an
// absent or unreadable header).
Format NegotiateFormat(std::string_view accept);
std::string_view ContentType(Format format);

enum class MetricType { Counter, Gauge, Info };

// One metric family, declared once (as Prometheus client libraries register
// theirs): `name` is what its samples are called (a counter's ends in
// _total, an info's in _info; the OpenMetrics family name is it without
// that suffix), `unit` the OpenMetrics unit (the name's last word before
// that suffix) or "", `labels` the label names of its samples in their order,
// comma-separated.
struct Family {
  std::string_view name;
  MetricType type;
  std::string_view unit;
  std::string_view labels;
  std::string_view help;
};

// Family names and units that break the rules above are build errors.
constexpr bool EndsWith(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}
constexpr bool IsMetricName(std::string_view name) {
  if (name.empty() || (name[0] >= '0' && name[0] <= '9')) return false;
  // NOLINTNEXTLINE(readability-use-anyofallof): std::all_of is constexpr from C++20 only
  for (const char c : name) {
    if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_')) {
      return false;
    }
  }
  return true;
}
constexpr std::string_view FamilyName(const Family& family, Format format) {
  if (format == Format::Text) return family.name;
  if (family.type == MetricType::Counter && EndsWith(family.name, "_total")) {
    return family.name.substr(0, family.name.size() - 6);
  }
  if (family.type == MetricType::Info && EndsWith(family.name, "_info")) {
    return family.name.substr(0, family.name.size() - 5);
  }
  return family.name;
}
constexpr bool IsWellFormed(const Family& family) {
  const bool suffix = family.type == MetricType::Counter ? EndsWith(family.name, "_total")
                      : family.type == MetricType::Info  ? EndsWith(family.name, "_info")
                                                         : !EndsWith(family.name, "_total");
  const std::string_view base = FamilyName(family, Format::OpenMetrics);
  const bool unit =
      family.unit.empty() || (EndsWith(base, family.unit) && base.size() > family.unit.size() &&
                              base[base.size() - family.unit.size() - 1] == '_');
  return IsMetricName(family.name) && suffix && unit && !family.help.empty();
}

// Appends a label value as the formats write it between double quotes:
// backslash, double quote and line feed escaped, and any byte sequence that
// is not valid UTF-8 replaced by U+FFFD, one per byte, so that the scraper
// never refuses the whole scrape for one port's name.
void AppendLabelValue(std::string& out, std::string_view value);

// A sample's labels, built once and written with any number of samples:
// name="value" pairs joined by commas.
class Labels {
 public:
  Labels& Add(std::string_view name, std::string_view value);
  const std::string& Text() const { return text; }

 private:
  std::string text;
};

// Writes families and their samples in one format into `out`. Samples
// follow the family they belong to; Finish ends the exposition.
class ExpositionWriter {
 public:
  ExpositionWriter(Format format, std::string& out) : format(format), out(out) {}

  void Begin(const Family& family);
  // A sample of the family begun last, its labels in one or two parts
  // (pre-built label texts, either may be empty).
  void Sample(std::string_view labels, std::string_view more, std::uint64_t value);
  void Sample(std::string_view labels, std::string_view more, double value);
  void Sample(std::string_view labels, std::uint64_t value) { Sample(labels, {}, value); }
  void Finish();

 private:
  void Head(std::string_view labels, std::string_view more);

  Format format;
  std::string& out;
  std::string_view name;
};

}  // namespace Arq::Exposition
