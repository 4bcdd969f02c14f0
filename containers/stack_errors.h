// Places and failures that both stacks share. The sources name the stack of
// values for the stack of objects too; callers compare against them.
#ifndef ORVIX_CONTAINERS_STACK_ERRORS_H
#define ORVIX_CONTAINERS_STACK_ERRORS_H

#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

[[noreturn]] inline void RaiseStackEmpty() { RaiseLibraryError(errStackEmpty, u"classStack.Pop", u"Stack is empty"); }

// Whether `offset` leads below the bottom of a stack of `count` items. Error 9
// when it leads above the top.
[[nodiscard]] inline bool IsBelowBottom(LONG count, LONG offset) {
  if (LONGLONG{count} - offset < 1) return true;
  if (offset < 0) RaiseRuntimeError(kSubscriptOutOfRange);
  return false;
}

// Error 66001 when `offset` leads below the bottom, 9 above the top.
inline void CheckOffset(LONG count, LONG offset) {
  if (IsBelowBottom(count, offset)) RaiseLibraryError(errOffsetTooFar, u"classStack.Peek", u"Offset too far");
}

// Error 66003, under the default source.
inline void CheckStackIndex(LONG count, LONG index) {
  if (index < 1 || index > count) RaiseLibraryError(errIndexOutOfBounds, {}, u"Index out of bounds");
}

}  // namespace Orvix::component

#endif
