// The elements of a caller's array, read in place.
#ifndef ORVIX_TEXT_ARRAY_ELEMENTS_H
#define ORVIX_TEXT_ARRAY_ELEMENTS_H

#include <cstdint>
#include <span>

#include "frame/argument_types.h"
#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

// True for an array that was never given bounds: a null pointer, or no
// dimensions. Asking it for a bound is error 9.
[[nodiscard]] inline bool IsUnallocated(const SAFEARRAY* array) { return array == nullptr || array->cDims == 0; }

// A one-dimensional array with elements of type T, locked while this object
// lives, so that an object called in between can neither end nor re-dimension
// it. Error 9 for an unallocated array, for two and more dimensions and for an
// array without memory; error 13 for elements of another type.
template <class T>
class ArrayElements {
 public:
  explicit ArrayElements(ArrayOf<T> parameter) : array_(parameter.array) {
    if (IsUnallocated(array_) || array_->cDims != 1) RaiseRuntimeError(kSubscriptOutOfRange);
    VARTYPE type = VT_EMPTY;
    if (FAILED(SafeArrayGetVartype(array_, &type)) || type != kElementType<T> || array_->cbElements != sizeof(T)) {
      RaiseRuntimeError(kTypeMismatch);
    }
    const std::uint32_t count = array_->rgsabound[0].cElements;
    void* data = nullptr;
    CheckRuntime(SafeArrayAccessData(array_, &data));
    elements_ = {static_cast<const T*>(data), count};
    if (data == nullptr && count != 0) {
      SafeArrayUnaccessData(array_);
      RaiseRuntimeError(kSubscriptOutOfRange);
    }
  }
  ArrayElements(ArrayElements&&) = delete;
  ~ArrayElements() { SafeArrayUnaccessData(array_); }

  // All elements, the one at the lower bound first.
  [[nodiscard]] std::span<const T> All() const { return elements_; }

  // The elements from index 0 to the upper bound: none when the upper bound is
  // below 0 or the array has no elements. Error 9 when index 0 lies below the
  // lower bound.
  [[nodiscard]] std::span<const T> FromZero() const {
    const std::int64_t lower = array_->rgsabound[0].lLbound;
    if (elements_.empty() || lower + static_cast<std::int64_t>(elements_.size()) <= 0) return {};
    if (lower > 0) RaiseRuntimeError(kSubscriptOutOfRange);
    return elements_.subspan(static_cast<std::size_t>(-lower));
  }

 private:
  SAFEARRAY* array_;
  std::span<const T> elements_;
};

}  // namespace Orvix::component

#endif
