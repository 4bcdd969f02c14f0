// `classStackObject` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_CONTAINERS_OBJECT_STACK_OBJECT_H
#define ORVIX_CONTAINERS_OBJECT_STACK_OBJECT_H

#include "containers/class_stack_object.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class ObjectStackObject final : public Object<ObjectStackObject, _classStackObject, classStackObject> {
 public:
  HRESULT ORVIX_CALL Push(IDispatch** objValue) noexcept override { return Do<&classStackObject::Push>(objValue); }
  HRESULT ORVIX_CALL IsEmpty(VARIANT_BOOL* result) noexcept override {
    return Call<&classStackObject::IsEmpty>(result);
  }
  HRESULT ORVIX_CALL Pop(IDispatch** result) noexcept override { return Call<&classStackObject::Pop>(result); }
  HRESULT ORVIX_CALL Peek(LONG* lOffset, IDispatch** result) noexcept override {
    return Call<&classStackObject::Peek>(result, lOffset);
  }
  HRESULT ORVIX_CALL get_Size(LONG* result) noexcept override { return Call<&classStackObject::Size>(result); }
  HRESULT ORVIX_CALL Reset() noexcept override { return Do<&classStackObject::Reset>(); }
  HRESULT ORVIX_CALL GetStackItem(LONG* lIndex, IDispatch** result) noexcept override {
    return Call<&classStackObject::GetStackItem>(result, lIndex);
  }
};

}  // namespace Orvix::component

#endif
