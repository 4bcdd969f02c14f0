// The stack of object references.
#include "containers/class_stack_object.h"
#include "containers/stack_errors.h"

namespace Orvix::component {

void classStackObject::Push(IDispatch* value) { items.Append(ComPtr<IDispatch>::Share(value)); }

bool classStackObject::IsEmpty() const { return items.size() == 0; }

ComPtr<IDispatch> classStackObject::Pop() {
  if (IsEmpty()) RaiseStackEmpty();
  return items.TakeLast();
}

ComPtr<IDispatch> classStackObject::Peek(LongOr<0> offset) const {
  CheckOffset(Size(), offset);
  // The item is assigned as a value, through the default member of a result
  // that is still Nothing. Callers know it and use GetStackItem.
  RaiseRuntimeError(kObjectNotSet);
}

LONG classStackObject::Size() const { return static_cast<LONG>(items.size()); }

void classStackObject::Reset() {
  // Empty before the references go: an object's end may look at this stack.
  PiecewiseArray<ComPtr<IDispatch>> gone;
  items.Swap(gone);
}

ComPtr<IDispatch> classStackObject::GetStackItem(LONG index) const {
  CheckStackIndex(Size(), index);
  return items[static_cast<std::size_t>(index) - 1];
}

}  // namespace Orvix::component
