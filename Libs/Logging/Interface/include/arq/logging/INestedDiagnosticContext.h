#pragma once

#include <deque>
#include <string>

namespace arq::logging {

// Part of the plug-in binary interface: keep the slot order.
class INestedDiagnosticContext {
 public:
  virtual ~INestedDiagnosticContext() = default;
  virtual void Push(const std::string& context) = 0;
  virtual void Pop() = 0;
  virtual void Clear() = 0;
  virtual std::string Peek() const = 0;
  virtual std::string Print() const = 0;
  virtual std::deque<std::string> CloneStack() const = 0;
  virtual void InheritStack(std::deque<std::string>& stack) = 0;
};

}  // namespace arq::logging
