// VarCmp: two values in order. A text is above every number whatever it says,
// unless a value is marked with VT_RESERVED: those compare by what they say.
#include <cstring>
#include <new>

#include "platform/automation/decimal.h"
#include "platform/automation/variant.h"
#include "platform/automation/variant_change.h"

namespace Orvix {
namespace {

constexpr ULONG kIgnoreCase = 1;

template <class Value>
HRESULT Order(const Value& left, const Value& right) {
  return left < right ? VARCMP_LT : left == right ? VARCMP_EQ : VARCMP_GT;
}

HRESULT Reverse(HRESULT order) { return order == VARCMP_LT ? VARCMP_GT : order == VARCMP_GT ? VARCMP_LT : order; }

// A letter of the first 256 characters without its accent, in lower case.
char16_t BaseLetter(char16_t unit) {
  static constexpr char kBases[] =
      "aaaaaaaceeeeiiii"
      "dnooooo*ouuuuyts"
      "aaaaaaaceeeeiiii"
      "dnooooo/ouuuuyty";
  if (unit >= 0xC0 && unit <= 0xFF && unit != 0xD7 && unit != 0xF7) return static_cast<char16_t>(kBases[unit - 0xC0]);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

// Signs before digits before letters.
std::uint32_t PrimaryWeight(char16_t unit) {
  const char16_t base = BaseLetter(unit);
  const bool digit = base >= u'0' && base <= u'9';
  const bool letter = (base >= u'a' && base <= u'z') || base > 0xBF;
  return (letter ? 0x20000U : digit ? 0x10000U : 0U) + base;
}

bool IsUpper(char16_t unit) { return (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7); }

char16_t Folded(char16_t unit) { return IsUpper(unit) ? static_cast<char16_t>(unit + 0x20) : unit; }

// English order: letters first, then accents, then case, the lower one first.
HRESULT CompareEnglish(TextView left, TextView right, ULONG flags) {
  const std::size_t common = left.size() < right.size() ? left.size() : right.size();
  for (std::size_t i = 0; i < common; ++i) {
    const HRESULT order = Order(PrimaryWeight(left[i]), PrimaryWeight(right[i]));
    if (order != VARCMP_EQ) return order;
  }
  if (left.size() != right.size()) return Order(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const HRESULT order = Order(Folded(left[i]), Folded(right[i]));
    if (order != VARCMP_EQ) return order;
  }
  for (std::size_t i = 0; (flags & kIgnoreCase) == 0 && i < common; ++i) {
    if (IsUpper(left[i]) != IsUpper(right[i])) return IsUpper(right[i]) ? VARCMP_LT : VARCMP_GT;
  }
  return VARCMP_EQ;
}

HRESULT CompareTexts(TextView left, TextView right, LCID lcid, ULONG flags) {
  return lcid == 0 ? Order(left, right) : CompareEnglish(left, right, flags);
}

// Both as `type`; what a value cannot be converted to is the failure.
template <class Compare>
HRESULT CompareAs(const VARIANT& left, const VARIANT& right, VARTYPE type, Compare compare) {
  OwnedVariant changed_left;
  OwnedVariant changed_right;
  HRESULT result = ChangeValue(left, 0, type, &changed_left.value);
  if (SUCCEEDED(result)) result = ChangeValue(right, 0, type, &changed_right.value);
  return FAILED(result) ? result : compare(changed_left.value, changed_right.value);
}

HRESULT CompareAsDecimals(const VARIANT& left, const VARIANT& right) {
  return CompareAs(left, right, VT_DECIMAL, [](const VARIANT& a, const VARIANT& b) {
    int order = 0;
    const HRESULT result = CompareDecimals(a.decVal, b.decVal, &order);
    return FAILED(result) ? result : Order(order, 0);
  });
}

HRESULT CompareAsDoubles(const VARIANT& left, const VARIANT& right) {
  return CompareAs(left, right, VT_R8, [](const VARIANT& a, const VARIANT& b) { return Order(a.dblVal, b.dblVal); });
}

HRESULT CompareAsSingles(const VARIANT& left, const VARIANT& right) {
  return CompareAs(left, right, VT_R4, [](const VARIANT& a, const VARIANT& b) { return Order(a.fltVal, b.fltVal); });
}

// Empty counts as 0. The widest type of the two decides.
HRESULT CompareNumbers(const VARIANT& left, const VARIANT& right) {
  const auto either = [&](VARTYPE type) { return left.vt == type || right.vt == type; };
  if (either(VT_DECIMAL)) {
    const HRESULT result = CompareAsDecimals(left, right);
    return result == DISP_E_OVERFLOW ? CompareAsDoubles(left, right) : result;
  }
  if (either(VT_R4)) {
    const HRESULT result = CompareAsSingles(left, right);
    return result == DISP_E_OVERFLOW ? CompareAsDoubles(left, right) : result;
  }
  if (either(VT_R8) || either(VT_DATE)) return CompareAsDoubles(left, right);
  // Currency and integers, whatever their sizes and signs, are exact in DECIMAL.
  return CompareAsDecimals(left, right);
}

bool ReadsAsNumber(const VARIANT& text, VARIANT* number) { return SUCCEEDED(ChangeValue(text, 0, VT_R8, number)); }

// A text against a number; the marks say which of them is typed.
HRESULT CompareTextWithNumber(const VARIANT& text, bool text_marked, const VARIANT& number, bool number_marked,
                              LCID lcid, ULONG flags) {
  if (!text_marked && !number_marked) return VARCMP_GT;
  OwnedVariant changed;
  if (!number_marked) {
    const HRESULT result = ChangeValue(number, 0, VT_BSTR, &changed.value);
    if (FAILED(result)) return result;
    return CompareTexts(ViewOf(text.bstrVal), ViewOf(changed.value.bstrVal), lcid, flags);
  }
  if (!ReadsAsNumber(text, &changed.value)) return VARCMP_GT;
  if (text_marked) return changed.value.dblVal < 0 ? VARCMP_LT : VARCMP_GT;
  return CompareNumbers(changed.value, number);
}

bool IsComparable(VARTYPE type) {
  return IsValidType(type) && (type & (VT_BYREF | VT_ARRAY)) == 0 && type != VT_RECORD;
}

bool IsObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_VARIANT; }

HRESULT Compare(VARIANT left, VARIANT right, LCID lcid, ULONG flags) {
  const bool left_marked = (left.vt & VT_RESERVED) != 0;
  const bool right_marked = (right.vt & VT_RESERVED) != 0;
  left.vt &= static_cast<VARTYPE>(~VT_RESERVED);
  right.vt &= static_cast<VARTYPE>(~VT_RESERVED);
  if (!IsComparable(left.vt) || !IsComparable(right.vt)) return DISP_E_BADVARTYPE;
  if (IsObject(left.vt) || IsObject(right.vt)) return DISP_E_TYPEMISMATCH;
  if (left.vt == VT_ERROR || right.vt == VT_ERROR) return left.vt == right.vt ? VARCMP_EQ : DISP_E_TYPEMISMATCH;
  if (left.vt == VT_NULL || right.vt == VT_NULL) return VARCMP_NULL;
  const bool left_text = left.vt == VT_BSTR;
  const bool right_text = right.vt == VT_BSTR;
  if (left_text && right_text) return CompareTexts(ViewOf(left.bstrVal), ViewOf(right.bstrVal), lcid, flags);
  if (left_text && right.vt == VT_EMPTY) return SysStringLen(left.bstrVal) == 0 ? VARCMP_EQ : VARCMP_GT;
  if (right_text && left.vt == VT_EMPTY) return SysStringLen(right.bstrVal) == 0 ? VARCMP_EQ : VARCMP_LT;
  if (left_text) return CompareTextWithNumber(left, left_marked, right, right_marked, lcid, flags);
  if (right_text) return Reverse(CompareTextWithNumber(right, right_marked, left, left_marked, lcid, flags));
  return CompareNumbers(left, right);
}

}  // namespace
}  // namespace Orvix

// VARCMP_LT, VARCMP_EQ, VARCMP_GT, or VARCMP_NULL when one of them is Null. Texts
// compare unit by unit with `lcid` 0, else in English order (flag 1: without
// regard to case). DISP_E_BADVARTYPE for references, arrays and records,
// DISP_E_TYPEMISMATCH for objects and for an error value beside another value.
HRESULT VarCmp(VARIANT* left, VARIANT* right, LCID lcid, ULONG flags) {
  if (left == nullptr || right == nullptr) return E_INVALIDARG;
  try {
    return Orvix::Compare(*left, *right, lcid, flags);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}
