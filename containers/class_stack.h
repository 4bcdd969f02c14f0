// The plain class behind `classStack`: a last-in-first-out stack of values.
#ifndef ORVIX_CONTAINERS_CLASS_STACK_H
#define ORVIX_CONTAINERS_CLASS_STACK_H

#include "frame/argument_types.h"

namespace Orvix::component {

class classStack {
 public:
  static constexpr std::string_view kClassName = "classStack";

  void Push(const VARIANT& value);
  [[nodiscard]] bool IsEmpty() const;
  Variant Pop();
  [[nodiscard]] Variant Peek(LongOr<0> offset) const;
  [[nodiscard]] LONG Size() const;
  void Reset();
  [[nodiscard]] Variant GetStackItem(LONG index) const;
  [[nodiscard]] Variant Peek2(LongOr<0> offset) const;
  bool IsOnStack(const VARIANT& value, StackSearchDirection direction, LONG& index);
};

}  // namespace Orvix::component

#endif
