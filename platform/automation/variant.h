// Inside of the value services: which types exist, how a reference is followed
// and a value duplicated, and an owner for a temporary VARIANT.
#ifndef ORVIX_PLATFORM_AUTOMATION_VARIANT_H
#define ORVIX_PLATFORM_AUTOMATION_VARIANT_H

#include "orvix/automation.h"

namespace Orvix {

// Whether a value that is copied or converted may have this type.
bool IsValidType(VARTYPE type) noexcept;

// Size in bytes of one element of a plain type in an array or behind a
// reference; 0 for types that have none (a record's size is its own affair).
std::uint32_t SizeOfType(VARTYPE type) noexcept;

// What a by-reference value refers to, as a value that borrows: the caller
// neither clears it nor keeps it. A value that is no reference is handed through.
// DISP_E_BADVARTYPE; E_INVALIDARG for a null reference and for a reference to a
// reference to a VARIANT.
HRESULT FollowReference(const VARIANT& from, VARIANT* seen) noexcept;

// An owned copy of `from` in `*copy`, whose old content is ignored; untouched
// on failure. By-reference values stay references to the same place.
HRESULT Duplicate(const VARIANT& from, VARIANT* copy) noexcept;

// Clears `*to` and moves the owned value into it. On failure (invalid type or
// locked array in `*to`) both are as before.
HRESULT ReplaceValue(VARIANT* to, VARIANT* owned) noexcept;

// Clears its value at the end of the scope.
class OwnedVariant {
 public:
  OwnedVariant() noexcept { VariantInit(&value); }
  ~OwnedVariant() { VariantClear(&value); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;

  VARIANT value;
};

}  // namespace Orvix

#endif
