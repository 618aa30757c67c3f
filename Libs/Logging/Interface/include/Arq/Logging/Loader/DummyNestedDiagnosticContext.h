#pragma once

#include <deque>
#include <string>

#include "arq/logging/INestedDiagnosticContext.h"

namespace Arq::Logging::Loader {

// A nested diagnostic context that keeps nothing: every operation does
// nothing, Peek and Print give an empty text, CloneStack an empty stack.
class DummyNestedDiagnosticContext : public arq::logging::INestedDiagnosticContext {
 public:
  void Push(const std::string&) override {}
  void Pop() override {}
  void Clear() override {}
  std::string Peek() const override { return {}; }
  std::string Print() const override { return {}; }
  std::deque<std::string> CloneStack() const override { return {}; }
  void InheritStack(std::deque<std::string>&) override {}
};

}  // namespace Arq::Logging::Loader
