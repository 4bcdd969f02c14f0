// The members of `_classStackObject`, in slot order.
#include "containers/object_stack_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    Method<&classStackObject::Push, &_classStackObject::Push>("Push", {}, {"objValue"}),
    Method<&classStackObject::IsEmpty, &_classStackObject::IsEmpty>("IsEmpty"),
    Method<&classStackObject::Pop, &_classStackObject::Pop>("Pop"),
    Method<&classStackObject::Peek, &_classStackObject::Peek>("Peek", {}, {"lOffset"}),
    PropertyGet<&classStackObject::Size, &_classStackObject::get_Size>("Size"),
    Method<&classStackObject::Reset, &_classStackObject::Reset>("Reset"),
    Method<&classStackObject::GetStackItem, &_classStackObject::GetStackItem>("GetStackItem", {}, {"lIndex"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 7);

constexpr InterfaceTable kTable = {"_classStackObject", &IID__classStackObject, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classStackObject>() {
  return kTable;
}

template <>
ComPtr<_classStackObject> NewObject<_classStackObject>() {
  return MakeObject<ObjectStackObject, _classStackObject>();
}

}  // namespace Orvix::component
