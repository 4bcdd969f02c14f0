// The plain class behind `classStackObject`: a last-in-first-out stack of object
// references.
#ifndef ORVIX_CONTAINERS_CLASS_STACK_OBJECT_H
#define ORVIX_CONTAINERS_CLASS_STACK_OBJECT_H

#include "containers/piecewise_array.h"
#include "frame/argument_types.h"

namespace Orvix::component {

// Offsets count from 0 at the top downwards, indexes from 1 at the bottom.
// Nothing (null) is an item like any other.
class classStackObject {
 public:
  static constexpr std::string_view kClassName = "classStackObject";

  void Push(IDispatch* value);
  [[nodiscard]] bool IsEmpty() const;
  // Error 66000 when the stack is empty.
  ComPtr<IDispatch> Pop();
  // Always an error: 66001 for an offset below the bottom, 9 for a negative one,
  // else 91.
  [[nodiscard]] ComPtr<IDispatch> Peek(LongOr<0> offset) const;
  [[nodiscard]] LONG Size() const;
  void Reset();
  // The last Reset: items that come in while others end go as well.
  void LetGo() {
    while (!IsEmpty()) Reset();
  }
  // Error 66003 outside.
  [[nodiscard]] ComPtr<IDispatch> GetStackItem(LONG index) const;

 private:
  PiecewiseArray<ComPtr<IDispatch>> items;
};

}  // namespace Orvix::component

#endif
