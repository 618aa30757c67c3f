#include "Arq/OrvoViaSwitch/Domain/Dto/ToString.h"

namespace Arq::OrvoViaSwitch::Domain::Dto {
namespace {

template <typename T, typename Append>
std::string Join(const std::vector<T>& values, Append append) {
  std::string text;
  for (const auto& value : values) {
    if (!text.empty() || &value != &values.front()) text += ' ';
    append(text, value);
  }
  return text;
}

}  // namespace

std::string ToString(const std::vector<std::int16_t>& values) {
  return Join(values, [](std::string& text, std::int16_t value) { text += std::to_string(value); });
}

std::string ToString(const std::vector<std::string>& values) {
  return Join(values, [](std::string& text, const std::string& value) { text += value; });
}

}  // namespace Arq::OrvoViaSwitch::Domain::Dto
