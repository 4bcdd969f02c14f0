// Conversion of one value: the rules that VariantChangeType, comparison and the
// default member of an object share. The functions may run out of memory
// (std::bad_alloc); results that fail leave nothing in `*to`.
#ifndef ORVIX_PLATFORM_AUTOMATION_VARIANT_CHANGE_H
#define ORVIX_PLATFORM_AUTOMATION_VARIANT_CHANGE_H

#include "orvix/text.h"

namespace Orvix {

// A by-value `from` as `type` into `*to`, which is Empty and then owned by the
// caller. Errors as VariantChangeType.
HRESULT ChangeValue(const VARIANT& from, USHORT flags, VARTYPE type, VARIANT* to);

// The two parts of it that have rules of their own: from a number (integers,
// fractions, currency, DECIMAL, dates, Booleans; Empty is not one) and from
// text. `type` is a number, Boolean, date or text.
HRESULT ChangeNumber(const VARIANT& from, USHORT flags, VARTYPE type, VARIANT* to);
HRESULT ChangeText(TextView text, VARTYPE type, VARIANT* to);

bool IsNumberType(VARTYPE type) noexcept;

}  // namespace Orvix

#endif
