// One-dimensional SAFEARRAYs, made from ranges and read back as vectors.
#ifndef ORVIX_WRAPPER_ARRAY_HPP
#define ORVIX_WRAPPER_ARRAY_HPP

#include <concepts>
#include <initializer_list>
#include <new>
#include <ranges>
#include <utility>
#include <vector>

#include "orvix/wrapper/error.hpp"
#include "orvix/wrapper/value.hpp"

namespace Orvix {

namespace wrapper_detail {
// What an array of T holds, and how an element crosses.
template <class T>
struct Element {
  static constexpr VARTYPE kType = TypeOfNumber<T>();
  using Stored = T;
  static void Put(Stored& place, const T& value) { place = value; }
  static T Get(const Stored& place) { return place; }
};
template <>
struct Element<Date> {
  static constexpr VARTYPE kType = VT_DATE;
  using Stored = DATE;
  static void Put(Stored& place, const Date& value) { place = value.days; }
  static Date Get(const Stored& place) { return Date(place); }
};
template <>
struct Element<String> {
  static constexpr VARTYPE kType = VT_BSTR;
  using Stored = BSTR;
  static void Put(Stored& place, String value) { place = value.Detach(); }
  static String Get(const Stored& place) { return String(ViewOf(place)); }
};
template <>
struct Element<Value> {
  static constexpr VARTYPE kType = VT_VARIANT;
  using Stored = VARIANT;
  static void Put(Stored& place, Value value) { place = value.Detach(); }
  static Value Get(const Stored& place) { return Value(place); }
};
}  // namespace wrapper_detail

// An array of numbers, Date, String or Value. A new one is unallocated, as a
// dynamic array that was never given bounds.
template <class T>
class Array {
 public:
  Array() noexcept = default;
  // Elements at `lower`, `lower` + 1, ...
  Array(std::initializer_list<T> elements, LONG lower = 0) { Fill(elements, lower); }
  template <std::ranges::sized_range R>
  requires std::convertible_to<std::ranges::range_reference_t<const R>, T> &&(!std::same_as<R, Array>)&&(!AnyText<R>)
      Array(const R& elements, LONG lower = 0) {  // NOLINT(google-explicit-constructor): a range is an array
    Fill(elements, lower);
  }
  // A copy of the array in `value`: error 13 when it holds another type.
  explicit Array(const Value& value) {
    if (value.Type() != (VT_ARRAY | kType)) wrapper_detail::ThrowNumber(13, u"Orvix.Array");
    Check(SafeArrayCopy(value.get().parray, &array_));
  }
  Array(const Array& other) { Check(SafeArrayCopy(other.array_, &array_)); }
  Array(Array&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
  Array& operator=(Array other) noexcept {
    std::swap(array_, other.array_);
    return *this;
  }
  ~Array() { SafeArrayDestroy(array_); }

  // Takes over an array that the caller owns.
  [[nodiscard]] static Array Adopt(SAFEARRAY* array) noexcept {
    Array owner;
    owner.array_ = array;
    return owner;
  }

  [[nodiscard]] bool IsAllocated() const noexcept { return array_ != nullptr && array_->cDims != 0; }
  [[nodiscard]] std::size_t Size() const noexcept { return IsAllocated() ? array_->rgsabound[0].cElements : 0; }
  // Error 9 when unallocated.
  [[nodiscard]] LONG LowerBound() const {
    if (!IsAllocated()) wrapper_detail::ThrowNumber(9, u"Orvix.Array");
    return array_->rgsabound[0].lLbound;
  }
  // The element at `index`, counted from the lower bound as the array counts:
  // error 9 outside the bounds.
  [[nodiscard]] T At(LONG index) const {
    const auto offset = static_cast<LONGLONG>(index) - LowerBound();
    if (offset < 0 || offset >= static_cast<LONGLONG>(Size())) wrapper_detail::ThrowNumber(9, u"Orvix.Array");
    return Traits::Get(Data()[offset]);
  }
  [[nodiscard]] std::vector<T> ToVector() const {
    std::vector<T> elements;
    elements.reserve(Size());
    for (std::size_t i = 0; i < Size(); ++i) elements.push_back(Traits::Get(Data()[i]));
    return elements;
  }

  [[nodiscard]] SAFEARRAY* get() const noexcept { return array_; }
  [[nodiscard]] SAFEARRAY* Detach() noexcept { return std::exchange(array_, nullptr); }
  // The variable itself: members take arrays by reference and only read them.
  [[nodiscard]] SAFEARRAY** Reference() const noexcept { return &array_; }

 private:
  using Traits = wrapper_detail::Element<T>;
  using Stored = typename Traits::Stored;
  static constexpr VARTYPE kType = Traits::kType;

  [[nodiscard]] Stored* Data() const noexcept { return static_cast<Stored*>(array_->pvData); }

  template <class R>
  void Fill(const R& elements, LONG lower) {
    Array filled = Adopt(SafeArrayCreateVector(kType, lower, static_cast<ULONG>(std::ranges::size(elements))));
    if (filled.array_ == nullptr) throw std::bad_alloc();
    Stored* place = filled.Data();
    for (const auto& element : elements) Traits::Put(*place++, T(element));
    std::swap(array_, filled.array_);
  }

  mutable SAFEARRAY* array_ = nullptr;
};

template <class T>
Value::Value(const Array<T>& array) : Value() {
  value_.parray = Array<T>(array).Detach();
  value_.vt = static_cast<VARTYPE>(VT_ARRAY | wrapper_detail::Element<T>::kType);
}

}  // namespace Orvix

#endif
