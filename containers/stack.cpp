// The stack of values.
#include <new>

#include "containers/class_stack.h"
#include "containers/stack_errors.h"
#include "frame/ansi_text.h"

namespace Orvix::component {

namespace {

Variant ValueOf(const VARIANT& value) {
  Variant copy;
  CheckRuntime(VariantCopyInd(copy.Address(), &value));
  return copy;
}

// Whether a value is copied without a call of anybody's object.
bool IsNumberOrText(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_UI1:
      return true;
    default:
      return false;
  }
}

Variant CopyOfNumberOrText(const VARIANT& value) {
  Variant copy;
  VARIANT& held = *copy.Address();
  if (value.vt != VT_BSTR) {
    held = value;
  } else {
    // By bytes: a text may have an odd number of them.
    held.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(value.bstrVal), SysStringByteLen(value.bstrVal));
    if (held.bstrVal == nullptr) throw std::bad_alloc();
    held.vt = VT_BSTR;
  }
  return copy;
}

bool BeginsWith(const VARIANT& item, TextView text) {
  const ArgumentText item_text(item);
  return !item_text.View().empty() && item_text.View().starts_with(text);
}

}  // namespace

void classStack::Push(const VARIANT& value) {
  if (IsNumberOrText(value)) {
    items.AppendMade([&] { return CopyOfNumberOrText(value); });
  } else {
    items.Append(ValueOf(value));
  }
}

bool classStack::IsEmpty() const { return items.size() == 0; }

Variant classStack::Pop() {
  if (IsEmpty()) RaiseStackEmpty();
  return items.TakeLast();
}

Variant classStack::Peek(LongOr<0> offset) const {
  CheckOffset(Size(), offset);
  return GetStackItem(Size() - offset);
}

LONG classStack::Size() const { return static_cast<LONG>(items.size()); }

void classStack::Reset() {
  // Empty before the items go: an object's end may look at this stack.
  PiecewiseArray<Variant> gone;
  items.Swap(gone);
}

Variant classStack::GetStackItem(LONG index) const {
  CheckStackIndex(Size(), index);
  return ValueOf(items[static_cast<std::size_t>(index) - 1].get());
}

Variant classStack::Peek2(LongOr<0> offset) const {
  return IsBelowBottom(Size(), offset) ? Variant(TextView{}) : GetStackItem(Size() - offset);
}

bool classStack::IsOnStack(const VARIANT& value, StackSearchDirection direction, LONG& index) {
  if (IsEmpty()) {
    index = 0;
    return false;
  }
  const Variant wanted = ValueOf(value);
  const bool upwards = direction == sdStartToEnd;
  const LONG count = Size();
  if (wanted.get().vt != VT_NULL) {
    const ArgumentText text(wanted.get());
    for (LONG step = 0; step < count; ++step) {
      const LONG place = upwards ? step + 1 : count - step;
      if (place > Size()) continue;  // taken meanwhile by an object that was asked for its text
      const VARIANT& item = items[static_cast<std::size_t>(place) - 1].get();
      if (item.vt == VT_NULL) continue;
      // An object is held while it gives its text.
      const bool found =
          item.vt == VT_BSTR ? BeginsWith(item, text.View()) : BeginsWith(ValueOf(item).get(), text.View());
      if (!found) continue;
      index = place;
      return true;
    }
  }
  index = 0;
  return false;
}

}  // namespace Orvix::component
