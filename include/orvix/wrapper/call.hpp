// How a wrapper class calls a member: C++ arguments become what the slot takes,
// the result becomes a C++ value, a failure an exception. All of it is resolved
// at compile time.
#ifndef ORVIX_WRAPPER_CALL_HPP
#define ORVIX_WRAPPER_CALL_HPP

#include <optional>
#include <type_traits>
#include <utility>

#include "orvix/wrapper/array.hpp"
#include "orvix/wrapper/component.hpp"
#include "orvix/wrapper/error.hpp"
#include "orvix/wrapper/text.hpp"
#include "orvix/wrapper/value.hpp"

namespace Orvix {

template <class Interface>
class Object;

namespace wrapper_detail {

// One argument on its way: holds what the slot's type points at until the call
// is over. `Slot` is the parameter's type in the vtable.
template <class Slot, class Given>
struct Passed;

// The slot's own type, pointers to outputs included.
template <class T>
struct Passed<T, T> {
  T value;
  operator T() const { return value; }
};
// Numbers and enumerations by reference, read only.
template <class T, class Given>
requires(std::is_arithmetic_v<Given> || std::is_enum_v<Given>) && std::is_arithmetic_v<T> struct Passed<T*, Given> {
  T value;
  explicit Passed(Given given) : value(static_cast<T>(given)) {}
  operator T*() { return &value; }
};
template <>
struct Passed<VARIANT_BOOL*, bool> {
  VARIANT_BOOL value;
  explicit Passed(bool given) : value(given ? VARIANT_TRUE : VARIANT_FALSE) {}
  operator VARIANT_BOOL*() { return &value; }
};
// A Boolean that the member writes; it arrives even when the member fails.
template <>
struct Passed<VARIANT_BOOL*, bool*> {
  bool* target;
  VARIANT_BOOL value;
  explicit Passed(bool* given) : target(given), value(given != nullptr && *given ? VARIANT_TRUE : VARIANT_FALSE) {}
  Passed(const Passed&) = delete;
  Passed& operator=(const Passed&) = delete;
  ~Passed() {
    if (target != nullptr) *target = value != VARIANT_FALSE;
  }
  operator VARIANT_BOOL*() { return target == nullptr ? nullptr : &value; }
};
template <>
struct Passed<BSTR, TextArgument> {
  TextArgument& text;
  operator BSTR() const { return text.get(); }
};
template <>
struct Passed<BSTR*, TextArgument> {
  TextArgument& text;
  operator BSTR*() const { return text.Reference(); }
};
template <>
struct Passed<BSTR*, std::optional<TextArgument>> {
  std::optional<TextArgument>& text;
  operator BSTR*() const { return text ? text->Reference() : nullptr; }
};
template <>
struct Passed<BSTR*, String*> {
  String* text;
  operator BSTR*() const { return text == nullptr ? nullptr : text->Reference(); }
};
// Read only by every member, so the caller's value is lent.
template <>
struct Passed<VARIANT*, Value> {
  const Value& value;
  operator VARIANT*() const { return const_cast<VARIANT*>(&value.get()); }
};
template <>
struct Passed<VARIANT*, std::optional<Value>> {
  const std::optional<Value>& value;
  operator VARIANT*() const { return value ? const_cast<VARIANT*>(&value->get()) : nullptr; }
};
template <class T>
struct Passed<SAFEARRAY**, Array<T>> {
  const Array<T>& array;
  operator SAFEARRAY**() const { return array.Reference(); }
};
// An object by reference: a variable of the call's own.
template <class Interface>
struct Passed<Interface**, Object<Interface>> {
  Interface* object;
  explicit Passed(const Object<Interface>& given) : object(given.get()) {}
  operator Interface**() { return &object; }
};
template <>
struct Passed<IDispatch**, Pointer<IDispatch>> {
  IDispatch* object;
  explicit Passed(const Pointer<IDispatch>& given) : object(given.get()) {}
  operator IDispatch**() { return &object; }
};

// A result on its way back.
template <class R>
struct Returned {
  R value{};
  R* Receive() { return &value; }
  R Take() { return value; }
};
template <>
struct Returned<bool> {
  VARIANT_BOOL value = VARIANT_FALSE;
  VARIANT_BOOL* Receive() { return &value; }
  bool Take() const { return value != VARIANT_FALSE; }
};
template <class Owner>
requires std::same_as<Owner, String> || std::same_as<Owner, Value> || IsPointer<Owner>::value struct Returned<Owner> {
  Owner value;
  auto* Receive() { return value.Receive(); }
  Owner Take() { return std::move(value); }
};

}  // namespace wrapper_detail

// What every class has: one counted reference. An empty one, made from nullptr
// or handed back by a member that gave no object, fails each call with error 91.
template <class Interface>
class Object {
 public:
  explicit Object(Pointer<Interface> object) noexcept : object_(std::move(object)) {}

  [[nodiscard]] Interface* get() const noexcept { return object_.get(); }
  [[nodiscard]] const Pointer<Interface>& Reference() const noexcept { return object_; }
  // The object for members that take any object.
  operator Pointer<IDispatch>() const noexcept {  // NOLINT(google-explicit-constructor)
    return Pointer<IDispatch>::Share(object_.get());
  }
  explicit operator bool() const noexcept { return static_cast<bool>(object_); }

 protected:
  template <class... Slots, class... Given>
  void Call(HRESULT (ORVIX_CALL Interface::*member)(Slots...), Given&&... given) const {
    if (!object_) wrapper_detail::ThrowNumber(91, u"Orvix");
    Check((object_.get()->*member)(wrapper_detail::Passed<Slots, Plain<Given>>{given}...), object_.get(),
          kIidOf<Interface>);
  }
  template <class R, class... Slots, class... Given>
  R Get(HRESULT (ORVIX_CALL Interface::*member)(Slots...), Given&&... given) const {
    wrapper_detail::Returned<R> result;
    Call(member, given..., result.Receive());
    return result.Take();
  }

 private:
  template <class T>
  struct BaseOf {
    using type = T;
  };
  template <class T>
  requires requires(const T& object) { object.Reference().get()->QueryInterface(IID_NULL, nullptr); }
  struct BaseOf<T> {
    using type = Object<std::remove_pointer_t<decltype(std::declval<const T&>().get())>>;
  };
  template <class Given>
  using Plain = typename BaseOf<std::remove_cvref_t<Given>>::type;

  Pointer<Interface> object_;
};

}  // namespace Orvix

#endif
