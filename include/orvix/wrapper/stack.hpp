// classStack and classStackObject: last in, first out; indexes count from 1 at
// the bottom. Errors 66000 empty, 66001 offset too far, 66003 index.
#ifndef ORVIX_WRAPPER_STACK_HPP
#define ORVIX_WRAPPER_STACK_HPP

#include "orvix/wrapper/call.hpp"

namespace Orvix {

class Stack : public Object<_classStack> {
  using I = _classStack;

 public:
  Stack() : Stack(Component::Default()) {}
  explicit Stack(const Component& component) : Object(component.Create<I>(CLSID_classStack)) {}
  explicit Stack(Pointer<I> object) noexcept : Object(std::move(object)) {}

  void Push(const Value& value) { Call(&I::Push, value); }
  [[nodiscard]] bool IsEmpty() const { return Get<bool>(&I::IsEmpty); }
  Value Pop() { return Get<Value>(&I::Pop); }
  [[nodiscard]] Value Peek(LONG offset = 0) const { return Get<Value>(&I::Peek, offset); }
  [[nodiscard]] LONG Size() const { return Get<LONG>(&I::get_Size); }
  void Reset() { Call(&I::Reset); }
  [[nodiscard]] Value GetStackItem(LONG index) const { return Get<Value>(&I::GetStackItem, index); }
  [[nodiscard]] Value Peek2(LONG offset = 0) const { return Get<Value>(&I::Peek2, offset); }
  // `index`, when given, takes the position that was found.
  [[nodiscard]] bool IsOnStack(const Value& value, StackSearchDirection direction, LONG* index = nullptr) const {
    LONG unused = 0;
    return Get<bool>(&I::IsOnStack, value, direction, index == nullptr ? &unused : index);
  }
};

class ObjectStack : public Object<_classStackObject> {
  using I = _classStackObject;
  using Any = Pointer<IDispatch>;

 public:
  ObjectStack() : ObjectStack(Component::Default()) {}
  explicit ObjectStack(const Component& component) : Object(component.Create<I>(CLSID_classStackObject)) {}
  explicit ObjectStack(Pointer<I> object) noexcept : Object(std::move(object)) {}

  void Push(const Any& object) { Call(&I::Push, object); }
  [[nodiscard]] bool IsEmpty() const { return Get<bool>(&I::IsEmpty); }
  Any Pop() { return Get<Any>(&I::Pop); }
  [[nodiscard]] Any Peek(LONG offset = 0) const { return Get<Any>(&I::Peek, offset); }
  [[nodiscard]] LONG Size() const { return Get<LONG>(&I::get_Size); }
  void Reset() { Call(&I::Reset); }
  [[nodiscard]] Any GetStackItem(LONG index) const { return Get<Any>(&I::GetStackItem, index); }
};

}  // namespace Orvix

#endif
