// The plain class behind `classStack`: a last-in-first-out stack of values.
#ifndef ORVIX_CONTAINERS_CLASS_STACK_H
#define ORVIX_CONTAINERS_CLASS_STACK_H

#include "containers/piecewise_array.h"
#include "frame/argument_types.h"

namespace Orvix::component {

// Offsets count from 0 at the top downwards, indexes from 1 at the bottom.
class classStack {
 public:
  static constexpr std::string_view kClassName = "classStack";

  // A copy of its own; of a reference, the value it leads to.
  void Push(const VARIANT& value);
  [[nodiscard]] bool IsEmpty() const;
  // Error 66000 when the stack is empty.
  Variant Pop();
  // Error 66001 for an offset below the bottom, 9 for a negative one.
  [[nodiscard]] Variant Peek(LongOr<0> offset) const;
  [[nodiscard]] LONG Size() const;
  void Reset();
  // The last Reset: items that come in while others end go as well.
  void LetGo() {
    while (!IsEmpty()) Reset();
  }
  // Error 66003 outside.
  [[nodiscard]] Variant GetStackItem(LONG index) const;
  // An empty text instead of an item below the bottom; error 9 above the top.
  [[nodiscard]] Variant Peek2(LongOr<0> offset) const;
  // Whether the text of an item begins with the text of `value`, and the index
  // of the first such item in the direction given, 0 for none. Null is nowhere,
  // and an item without text is never found.
  bool IsOnStack(const VARIANT& value, StackSearchDirection direction, LONG& index);

 private:
  PiecewiseArray<Variant> items;
};

}  // namespace Orvix::component

#endif
