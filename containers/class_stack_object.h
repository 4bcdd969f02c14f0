// The plain class behind `classStackObject`: a last-in-first-out stack of object
// references.
#ifndef ORVIX_CONTAINERS_CLASS_STACK_OBJECT_H
#define ORVIX_CONTAINERS_CLASS_STACK_OBJECT_H

#include "frame/argument_types.h"

namespace Orvix::component {

class classStackObject {
 public:
  static constexpr std::string_view kClassName = "classStackObject";

  void Push(IDispatch* value);
  [[nodiscard]] bool IsEmpty() const;
  ComPtr<IDispatch> Pop();
  [[nodiscard]] ComPtr<IDispatch> Peek(LongOr<0> offset) const;
  [[nodiscard]] LONG Size() const;
  void Reset();
  [[nodiscard]] ComPtr<IDispatch> GetStackItem(LONG index) const;
};

}  // namespace Orvix::component

#endif
