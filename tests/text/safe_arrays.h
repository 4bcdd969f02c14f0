// Arrays and values for the tests of this folder.
#ifndef ORVIX_TESTS_TEXT_SAFE_ARRAYS_H
#define ORVIX_TESTS_TEXT_SAFE_ARRAYS_H

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/component.h"

namespace Orvix::testing {

inline VARIANT Empty() {
  VARIANT value;
  VariantInit(&value);
  return value;
}
inline VARIANT Null() {
  VARIANT value = Empty();
  value.vt = VT_NULL;
  return value;
}
inline VARIANT I4(LONG number) { return Variant(number).Detach(); }
inline VARIANT I2(SHORT number) { return Variant::Short(number).Detach(); }
inline VARIANT R8(double number) { return Variant(number).Detach(); }
inline VARIANT Bool(VARIANT_BOOL truth) { return Variant::Boolean(truth).Detach(); }

// Owns an array, and looks at its end whether a member left it locked.
class SafeArray {
 public:
  SafeArray() = default;  // unallocated
  SafeArray(VARTYPE type, LONG lower, ULONG count) : array_(SafeArrayCreateVector(type, lower, count)) {
    EXPECT_NE(array_, nullptr);
  }
  explicit SafeArray(const std::vector<VARIANT>& elements, LONG lower = 0)
      : SafeArray(VT_VARIANT, lower, static_cast<ULONG>(elements.size())) {
    for (VARIANT element : elements) Put(lower++, &element);
  }
  explicit SafeArray(const std::vector<TextView>& elements, LONG lower = 0)
      : SafeArray(VT_BSTR, lower, static_cast<ULONG>(elements.size())) {
    for (TextView element : elements) Put(lower++, BstrHandle(element).get());
  }
  SafeArray(SafeArray&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
  ~SafeArray() { EXPECT_EQ(SafeArrayDestroy(array_), S_OK); }

  // The two indexes go from 0 to 1.
  static SafeArray TwoDimensions(VARTYPE type) {
    SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
    SafeArray made;
    made.array_ = SafeArrayCreate(type, 2, bounds);
    return made;
  }

  void Put(LONG index, void* value) { EXPECT_EQ(SafeArrayPutElement(array_, &index, value), S_OK); }
  SAFEARRAY** Address() { return &array_; }

 private:
  SAFEARRAY* array_ = nullptr;
};

}  // namespace Orvix::testing

#endif
