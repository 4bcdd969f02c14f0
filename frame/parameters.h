// How an interface's argument becomes a member's parameter. The member's own
// C++ type says what the caller gets: read only, written back, optional, with
// which default.
#ifndef ORVIX_FRAME_PARAMETERS_H
#define ORVIX_FRAME_PARAMETERS_H

#include <algorithm>
#include <cstddef>

#include "frame/com_ptr.h"
#include "frame/error.h"

namespace Orvix::component {

// ---- What members declare ------------------------------------------------------

// A VARIANT_BOOL as it came: any non-zero value counts as True.
struct VariantBool {
  VARIANT_BOOL raw;
  explicit operator bool() const { return raw != VARIANT_FALSE; }
};

// A text literal as a template argument.
template <std::size_t N>
struct FixedText {
  consteval FixedText(const char16_t (&text)[N]) {
    std::copy_n(text, N, units);
  }  // NOLINT(google-explicit-constructor)
  [[nodiscard]] constexpr TextView View() const { return {units, N - 1}; }
  char16_t units[N] = {};
};

// An optional argument with a default: the argument, or `Default` when omitted.
template <LONG Default>
struct LongOr {
  LONG value;
  operator LONG() const { return value; }  // NOLINT(google-explicit-constructor)
};
template <VARIANT_BOOL Default>
struct BooleanOr {
  VARIANT_BOOL raw;
  explicit operator bool() const { return raw != VARIANT_FALSE; }
};
using TrueByDefault = BooleanOr<VARIANT_TRUE>;
using FalseByDefault = BooleanOr<VARIANT_FALSE>;
template <FixedText Default>
struct TextOr {
  TextView value;
  operator TextView() const { return value; }  // NOLINT(google-explicit-constructor)
};
template <class Enumeration, Enumeration Default>
struct EnumerationOr {
  Enumeration value;
  operator Enumeration() const { return value; }  // NOLINT(google-explicit-constructor)
};
// An optional VARIANT whose default is the empty text.
struct VariantOrEmptyText {
  const VARIANT* value;
};

// An optional argument without a default: False, or the empty text, when omitted.
struct OptionalBool {
  VARIANT_BOOL raw;
  explicit operator bool() const { return raw != VARIANT_FALSE; }
};
struct OptionalText {
  TextView value;
  operator TextView() const { return value; }  // NOLINT(google-explicit-constructor)
};

// An optional output: a temporary that nobody sees when omitted.
class OptionalLongOut {
 public:
  explicit OptionalLongOut(LONG* target) : target_(target) {}
  void Write(LONG value) {
    if (target_ != nullptr) *target_ = value;
  }

 private:
  LONG* target_;
};

// An optional VARIANT: null when omitted, also by the missing value.
struct OptionalVariant {
  const VARIANT* value;
};

// A caller's own variable, read when it is needed: a member that calls the
// caller's objects in between must not keep what the variable held before.
class TextVariable {
 public:
  explicit TextVariable(const BSTR* variable) : variable_(variable) {}
  [[nodiscard]] BSTR get() const { return *variable_; }

 private:
  const BSTR* variable_;
};
template <class T>
class ArrayVariable {
 public:
  explicit ArrayVariable(SAFEARRAY* const* variable) : variable_(variable) {}
  [[nodiscard]] SAFEARRAY* get() const { return *variable_; }

 private:
  SAFEARRAY* const* variable_;
};

// A by-reference text that the member may replace; the old text is freed.
class TextReference {
 public:
  explicit TextReference(BSTR* target) : target_(target) {}
  [[nodiscard]] TextView View() const { return ViewOf(*target_); }
  void Assign(TextView text) { Take(BstrHandle(text)); }
  void Take(BstrHandle text) {
    SysFreeString(*target_);
    *target_ = text.Detach();
  }

 private:
  BSTR* target_;
};

// An optional by-reference text that the member may replace; an unseen one when
// omitted.
class OptionalTextReference {
 public:
  explicit OptionalTextReference(BSTR* target) : target_(target) {}
  [[nodiscard]] TextView View() const { return target_ == nullptr ? TextView{} : ViewOf(*target_); }
  void Take(BstrHandle text) {
    if (target_ != nullptr) TextReference(target_).Take(std::move(text));
  }

 private:
  BSTR* target_;
};

// A by-reference array with elements of type T, null while unallocated. It is
// only read.
template <class T>
struct ArrayOf {
  SAFEARRAY* array;
};

}  // namespace Orvix::component

#endif
