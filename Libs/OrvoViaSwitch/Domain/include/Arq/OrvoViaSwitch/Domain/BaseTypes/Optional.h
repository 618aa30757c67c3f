#pragma once

#include <stdexcept>
#include <utility>

namespace Arq::OrvoViaSwitch::Domain::BaseTypes {

// A value and a presence flag. Reading an empty one is a programming error on
// the caller's side, reported as a standard runtime error.
template <typename T>
class Optional {
 public:
  Optional() = default;
  explicit Optional(T value) : value_(std::move(value)), hasValue_(true) {}

  bool HasValue() const { return hasValue_; }

  const T& Value() const {
    if (!hasValue_) {
      throw std::runtime_error("Can't retrieve the value of a Null Optional value");
    }
    return value_;
  }

  void Reset() {
    value_ = T();
    hasValue_ = false;
  }

  bool operator==(const Optional& other) const {
    return hasValue_ == other.hasValue_ && (!hasValue_ || value_ == other.value_);
  }
  bool operator!=(const Optional& other) const { return !(*this == other); }

 private:
  T value_{};
  bool hasValue_ = false;
};

}  // namespace Arq::OrvoViaSwitch::Domain::BaseTypes
