// libFuzzer target: the path text parser and the resolution of what it reads
// against the served tree, on arbitrary bytes. Built with clang and
// AddressSanitizer: a read outside the input or an unbounded walk is a finding.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Arq/Gnmi/Path.h"
#include "Arq/Gnmi/Tree.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto path = Arq::Gnmi::ParsePath(text);
  if (!path) return 0;
  // What is printed reads back as the same path (when escaping kept it
  // within the length bound).
  const std::string printed = Arq::Gnmi::ToText(*path);
  if (printed.size() <= Arq::Gnmi::kMaxPathText && !(Arq::Gnmi::ParsePath(printed) == path)) {
    __builtin_trap();
  }
  Arq::Gnmi::Selection selection;
  (void)Arq::Gnmi::Tree::Instance().Resolve(*path, selection);
  return 0;
}
