// One VARIANT, made from C++ values and read back as them.
#ifndef ORVIX_WRAPPER_VALUE_HPP
#define ORVIX_WRAPPER_VALUE_HPP

#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "orvix/wrapper/date.hpp"
#include "orvix/wrapper/error.hpp"
#include "orvix/wrapper/pointer.hpp"
#include "orvix/wrapper/text.hpp"

namespace Orvix {

template <class T>
class Array;

namespace wrapper_detail {

// The type under which a C++ number travels.
template <class T>
consteval VARTYPE TypeOfNumber() {
  if constexpr (std::same_as<T, float>) {
    return VT_R4;
  } else if constexpr (std::floating_point<T>) {
    return VT_R8;
  } else if constexpr (sizeof(T) == 1) {
    return std::is_signed_v<T> ? VT_I1 : VT_UI1;
  } else if constexpr (sizeof(T) == 2) {
    return std::is_signed_v<T> ? VT_I2 : VT_UI2;
  } else if constexpr (sizeof(T) == 4) {
    return std::is_signed_v<T> ? VT_I4 : VT_UI4;
  } else {
    return std::is_signed_v<T> ? VT_I8 : VT_UI8;
  }
}

template <class T>
concept Number = std::is_arithmetic_v<T> && !std::same_as<T, bool> && !std::same_as<T, char16_t> &&
                 !std::same_as<T, char> && !std::same_as<T, char32_t> && !std::same_as<T, wchar_t>;

template <class T>
struct IsPointer : std::false_type {};
template <class I>
struct IsPointer<Pointer<I>> : std::true_type {};
template <class T>
struct IsArray : std::false_type {};
template <class T>
struct IsArray<Array<T>> : std::true_type {};

}  // namespace wrapper_detail

class Value {
 public:
  Value() noexcept { VariantInit(&value_); }  // Empty
  Value(bool value) noexcept : Value() {      // NOLINT(google-explicit-constructor)
    value_.vt = VT_BOOL;
    value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  template <wrapper_detail::Number T>
  Value(T value) noexcept : Value() {  // NOLINT(google-explicit-constructor)
    value_.vt = wrapper_detail::TypeOfNumber<T>();
    if constexpr (std::same_as<T, float>) {
      value_.fltVal = value;
    } else if constexpr (std::floating_point<T>) {
      value_.dblVal = static_cast<double>(value);
    } else if constexpr (sizeof(T) == 1) {
      value_.bVal = static_cast<BYTE>(value);
    } else if constexpr (sizeof(T) == 2) {
      value_.iVal = static_cast<SHORT>(value);
    } else if constexpr (sizeof(T) == 4) {
      value_.lVal = static_cast<LONG>(value);
    } else {
      value_.llVal = static_cast<LONGLONG>(value);
    }
  }
  template <class E>
  requires std::is_enum_v<E> Value(E value)
  noexcept : Value(static_cast<LONG>(value)) {}  // NOLINT(google-explicit-constructor)
  Value(Date date) noexcept : Value() {          // NOLINT(google-explicit-constructor)
    value_.vt = VT_DATE;
    value_.date = date.days;
  }
  template <AnyText T>
  Value(const T& text) : Value() {  // NOLINT(google-explicit-constructor)
    value_.bstrVal = String(text).Detach();
    value_.vt = VT_BSTR;
  }
  // Null becomes Nothing, an object value without an object.
  template <std::derived_from<IDispatch> I>
  Value(const Pointer<I>& object) noexcept : Value() {  // NOLINT(google-explicit-constructor)
    value_.vt = VT_DISPATCH;
    value_.pdispVal = Pointer<I>(object).Detach();
  }
  // A wrapper's object.
  template <class T>
  requires(!wrapper_detail::IsPointer<T>::value && std::convertible_to<const T&, Pointer<IDispatch>>)
      Value(const T& object)
  noexcept  // NOLINT(google-explicit-constructor)
      : Value(static_cast<Pointer<IDispatch>>(object)) {}
  template <class T>
  Value(const Array<T>& array);  // NOLINT(google-explicit-constructor): a copy, in array.hpp
  // A copy; a by-reference VARIANT is followed.
  explicit Value(const VARIANT& value) : Value() { Check(VariantCopyInd(&value_, &value)); }
  Value(const Value& other) : Value() { Check(VariantCopy(&value_, &other.value_)); }
  Value(Value&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  Value& operator=(Value other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Value() { VariantClear(&value_); }

  // The value that stands for an argument left out.
  [[nodiscard]] static Value Missing() noexcept {
    Value value;
    value.value_.vt = VT_ERROR;
    value.value_.scode = DISP_E_PARAMNOTFOUND;
    return value;
  }
  [[nodiscard]] static Value Null() noexcept {
    Value value;
    value.value_.vt = VT_NULL;
    return value;
  }
  // Takes over a VARIANT that the caller owns.
  [[nodiscard]] static Value Adopt(const VARIANT& value) noexcept {
    Value owner;
    owner.value_ = value;
    return owner;
  }

  [[nodiscard]] VARTYPE Type() const noexcept { return value_.vt; }
  [[nodiscard]] bool IsEmpty() const noexcept { return value_.vt == VT_EMPTY; }
  [[nodiscard]] bool IsNull() const noexcept { return value_.vt == VT_NULL; }
  [[nodiscard]] bool IsMissing() const noexcept {
    return value_.vt == VT_ERROR && value_.scode == DISP_E_PARAMNOTFOUND;
  }
  [[nodiscard]] bool IsText() const noexcept { return value_.vt == VT_BSTR; }
  [[nodiscard]] bool IsObject() const noexcept { return value_.vt == VT_DISPATCH || value_.vt == VT_UNKNOWN; }
  [[nodiscard]] bool IsArray() const noexcept { return (value_.vt & VT_ARRAY) != 0; }

  // The value as T, converted as the runtime converts: bool, a number, an
  // enumeration, Date, String, Text, std::string (UTF-8), Pointer<I>, Array<T>.
  // Error 13 when there is no such conversion, 6 out of range, 94 for Null to
  // text, 430 for an object without the interface.
  template <class T>
  [[nodiscard]] T To() const {
    if constexpr (std::same_as<T, bool>) {
      return Changed(VT_BOOL).value_.boolVal != VARIANT_FALSE;
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(To<LONG>());
    } else if constexpr (wrapper_detail::Number<T>) {
      return NumberAs<T>();
    } else if constexpr (std::same_as<T, Date>) {
      return Date(Changed(VT_DATE).value_.date);
    } else if constexpr (std::same_as<T, String>) {
      String text;
      Check(OxTextOf(&value_, text.Receive()));
      return text;
    } else if constexpr (std::same_as<T, Text>) {
      return Text(To<String>().View());
    } else if constexpr (std::same_as<T, std::string>) {
      return To<String>().Utf8();
    } else if constexpr (wrapper_detail::IsArray<T>::value) {
      return T(*this);
    } else {
      static_assert(wrapper_detail::IsPointer<T>::value, "no conversion to this type");
      return ObjectAs<T>();
    }
  }

  [[nodiscard]] const VARIANT& get() const noexcept { return value_; }
  // The place for a result; what was held is cleared first.
  [[nodiscard]] VARIANT* Receive() noexcept {
    VariantClear(&value_);
    VariantInit(&value_);
    return &value_;
  }
  // The variable itself, for a by-reference argument.
  [[nodiscard]] VARIANT* Reference() noexcept { return &value_; }
  [[nodiscard]] VARIANT Detach() noexcept {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

  // Equality as the platform compares: numbers by value, texts by code unit, a
  // text never equals a number. Error 13 for objects and arrays.
  friend bool operator==(const Value& left, const Value& right) {
    const HRESULT order = VarCmp(const_cast<VARIANT*>(&left.value_), const_cast<VARIANT*>(&right.value_), 0, 0);
    Check(order);
    return order == VARCMP_EQ;
  }

 private:
  [[nodiscard]] Value Changed(VARTYPE type) const {
    Value changed;
    Check(VariantChangeType(&changed.value_, &value_, 0, type));
    return changed;
  }
  template <class T>
  [[nodiscard]] T NumberAs() const {
    const Value changed = Changed(wrapper_detail::TypeOfNumber<T>());
    if constexpr (std::same_as<T, float>) {
      return changed.value_.fltVal;
    } else if constexpr (std::floating_point<T>) {
      return static_cast<T>(changed.value_.dblVal);
    } else if constexpr (sizeof(T) == 1) {
      return static_cast<T>(changed.value_.bVal);
    } else if constexpr (sizeof(T) == 2) {
      return static_cast<T>(changed.value_.iVal);
    } else if constexpr (sizeof(T) == 4) {
      return static_cast<T>(changed.value_.lVal);
    } else {
      return static_cast<T>(changed.value_.llVal);
    }
  }
  template <class P>
  [[nodiscard]] P ObjectAs() const {
    if (!IsObject()) wrapper_detail::ThrowNumber(13, u"Orvix.Value");
    P object;
    if (value_.punkVal == nullptr) return object;
    using Interface = std::remove_pointer_t<decltype(object.get())>;
    Check(value_.punkVal->QueryInterface(kIidOf<Interface>, object.ReceiveVoid()), value_.punkVal, IID_NULL);
    return object;
  }

  VARIANT value_;
};

}  // namespace Orvix

#endif
