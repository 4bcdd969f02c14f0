// The members of `_classStack`, in slot order.
#include "containers/stack_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    Method<&classStack::Push, &_classStack::Push>("Push", {}, {"vValue"}),
    Method<&classStack::IsEmpty, &_classStack::IsEmpty>("IsEmpty"),
    Method<&classStack::Pop, &_classStack::Pop>("Pop"),
    Method<&classStack::Peek, &_classStack::Peek>("Peek", {}, {"lOffset"}),
    PropertyGet<&classStack::Size, &_classStack::get_Size>("Size"),
    Method<&classStack::Reset, &_classStack::Reset>("Reset"),
    Method<&classStack::GetStackItem, &_classStack::GetStackItem>("GetStackItem", {}, {"lIndex"}),
    Method<&classStack::Peek2, &_classStack::Peek2>("Peek2", {}, {"lOffset"}),
    Method<&classStack::IsOnStack, &_classStack::IsOnStack>("IsOnStack", {}, {"vValue", "eDirection", "lIndex"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 9);

constexpr InterfaceTable kTable = {"_classStack", &IID__classStack, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classStack>() {
  return kTable;
}

template <>
ComPtr<_classStack> NewObject<_classStack>() {
  return MakeObject<StackObject, _classStack>();
}

}  // namespace Orvix::component
