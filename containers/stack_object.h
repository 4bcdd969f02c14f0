// `classStack` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_CONTAINERS_STACK_OBJECT_H
#define ORVIX_CONTAINERS_STACK_OBJECT_H

#include "containers/class_stack.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class StackObject final : public Object<StackObject, _classStack, classStack> {
 public:
  HRESULT ORVIX_CALL Push(VARIANT* vValue) noexcept override { return Do<&classStack::Push>(vValue); }
  HRESULT ORVIX_CALL IsEmpty(VARIANT_BOOL* result) noexcept override { return Call<&classStack::IsEmpty>(result); }
  HRESULT ORVIX_CALL Pop(VARIANT* result) noexcept override { return Call<&classStack::Pop>(result); }
  HRESULT ORVIX_CALL Peek(LONG* lOffset, VARIANT* result) noexcept override {
    return Call<&classStack::Peek>(result, lOffset);
  }
  HRESULT ORVIX_CALL get_Size(LONG* result) noexcept override { return Call<&classStack::Size>(result); }
  HRESULT ORVIX_CALL Reset() noexcept override { return Do<&classStack::Reset>(); }
  HRESULT ORVIX_CALL GetStackItem(LONG* lIndex, VARIANT* result) noexcept override {
    return Call<&classStack::GetStackItem>(result, lIndex);
  }
  HRESULT ORVIX_CALL Peek2(LONG* lOffset, VARIANT* result) noexcept override {
    return Call<&classStack::Peek2>(result, lOffset);
  }
  HRESULT ORVIX_CALL IsOnStack(VARIANT* vValue, LONG* eDirection, LONG* lIndex,
                               VARIANT_BOOL* result) noexcept override {
    return Call<&classStack::IsOnStack>(result, vValue, eDirection, lIndex);
  }
};

}  // namespace Orvix::component

#endif
