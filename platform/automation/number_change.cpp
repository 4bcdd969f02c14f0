// Conversions between numbers, and between numbers and text. A source is read as
// an integer, a binary fraction or a decimal number; each of these knows every
// target.
#include <cmath>
#include <limits>

#include "platform/automation/date_text.h"
#include "platform/automation/decimal.h"
#include "platform/automation/number_text.h"
#include "platform/automation/text_scan.h"
#include "platform/automation/variant_change.h"

namespace Orvix {
namespace {

struct IntegerType {
  int bits;
  bool is_signed;
};

// 0 bits for a type that is no integer.
constexpr IntegerType IntegerTypeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
      return {8, true};
    case VT_UI1:
      return {8, false};
    case VT_I2:
      return {16, true};
    case VT_UI2:
      return {16, false};
    case VT_I4:
    case VT_INT:
      return {32, true};
    case VT_UI4:
    case VT_UINT:
      return {32, false};
    case VT_I8:
      return {64, true};
    case VT_UI8:
      return {64, false};
    default:
      return {0, false};
  }
}

// The low bits of an integer are its bits in every narrower type.
HRESULT StoreBits(std::uint64_t bits, VARTYPE type, VARIANT* to) {
  const int unused = 64 - IntegerTypeOf(type).bits;
  to->ullVal = bits << unused >> unused;
  to->vt = type;
  return S_OK;
}

HRESULT StoreInteger(SignedMagnitude value, VARTYPE type, VARIANT* to) {
  const IntegerType target = IntegerTypeOf(type);
  const std::uint64_t largest =
      std::numeric_limits<std::uint64_t>::max() >> (64 - target.bits + (target.is_signed ? 1 : 0));
  const std::uint64_t most = value.negative ? (target.is_signed ? largest + 1 : 0) : largest;
  if (value.magnitude > most) return DISP_E_OVERFLOW;
  return StoreBits(value.negative ? 0 - value.magnitude : value.magnitude, type, to);
}

HRESULT StoreText(std::string_view ascii, VARIANT* to) {
  BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(ascii.size()));
  if (text == nullptr) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < ascii.size(); ++i) text[i] = static_cast<OLECHAR>(ascii[i]);
  to->bstrVal = text;
  to->vt = VT_BSTR;
  return S_OK;
}

HRESULT StoreBoolean(bool value, VARIANT* to) {
  to->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  to->vt = VT_BOOL;
  return S_OK;
}

// R4, R8 and DATE.
HRESULT StoreFraction(double value, VARTYPE type, VARIANT* to) {
  if (type == VT_R4) {
    if (std::isfinite(value) && std::isinf(static_cast<float>(value))) return DISP_E_OVERFLOW;
    to->fltVal = static_cast<float>(value);
  } else {
    if (type == VT_DATE && !IsDateInRange(value)) return DISP_E_OVERFLOW;
    to->dblVal = value;
  }
  to->vt = type;
  return S_OK;
}

HRESULT StoreDecimal(const DECIMAL& decimal, VARIANT* to) {
  to->decVal = decimal;
  to->vt = VT_DECIMAL;  // overlays the number's reserved word
  return S_OK;
}

// `scaled` in units of 1/10000.
HRESULT StoreCurrency(SignedMagnitude scaled, VARIANT* to) {
  const HRESULT result = StoreInteger(scaled, VT_I8, to);
  if (SUCCEEDED(result)) to->vt = VT_CY;
  return result;
}

// --- From integers ------------------------------------------------------------

HRESULT ChangeInteger(SignedMagnitude value, VARTYPE type, VARIANT* to) {
  constexpr std::uint64_t kCurrencyUnit = 10000;
  const double nearest = static_cast<double>(value.magnitude);
  switch (type) {
    case VT_BOOL:
      return StoreBoolean(value.magnitude != 0, to);
    case VT_R4: {
      // Straight from the integer: by way of a double it could round twice.
      const auto single = static_cast<float>(value.magnitude);
      return StoreFraction(value.negative ? -single : single, type, to);
    }
    case VT_R8:
    case VT_DATE:
      return StoreFraction(value.negative ? -nearest : nearest, type, to);
    case VT_CY:
      if (value.magnitude > std::numeric_limits<std::uint64_t>::max() / kCurrencyUnit) return DISP_E_OVERFLOW;
      return StoreCurrency({value.negative, value.magnitude * kCurrencyUnit}, to);
    case VT_DECIMAL:
      return StoreDecimal(DecimalOf(value, 0), to);
    case VT_BSTR:
      return StoreText((value.negative ? "-" : "") + std::to_string(value.magnitude), to);
    default:
      return StoreInteger(value, type, to);
  }
}

// --- From binary fractions ------------------------------------------------------

// Rounded half to even; DISP_E_OVERFLOW beyond 64 bits, for infinities and for
// not-a-number.
HRESULT RoundFraction(double value, SignedMagnitude* integer) {
  const double size = std::fabs(value);
  if (!(size < 18446744073709551616.0)) return DISP_E_OVERFLOW;
  const double whole = std::floor(size);
  auto magnitude = static_cast<std::uint64_t>(whole);
  const double rest = size - whole;
  if (rest > 0.5 || (rest == 0.5 && magnitude % 2 != 0)) ++magnitude;
  *integer = {value < 0 && magnitude != 0, magnitude};
  return S_OK;
}

HRESULT ChangeFraction(double value, VARTYPE from_type, VARTYPE type, VARIANT* to) {
  const int digits = from_type == VT_R4 ? kSingleDigits : kDoubleDigits;
  switch (type) {
    case VT_BOOL:
      return StoreBoolean(value != 0, to);
    case VT_R4:
    case VT_R8:
    case VT_DATE:
      return StoreFraction(value, type, to);
    case VT_CY: {
      SignedMagnitude scaled;
      const HRESULT result = RoundFraction(value * 10000, &scaled);
      return FAILED(result) ? result : StoreCurrency(scaled, to);
    }
    case VT_DECIMAL: {
      if (!std::isfinite(value)) return DISP_E_OVERFLOW;
      DECIMAL decimal;
      const HRESULT result = ToDecimal(SignificantDigits(value, digits), &decimal);
      return FAILED(result) ? result : StoreDecimal(decimal, to);
    }
    case VT_BSTR: {
      std::string text;
      if (from_type != VT_DATE) return StoreText(FractionText(value, digits), to);
      const HRESULT result = DateText(value, &text);
      return FAILED(result) ? result : StoreText(text, to);
    }
    default: {
      SignedMagnitude integer;
      const HRESULT result = RoundFraction(value, &integer);
      return FAILED(result) ? result : StoreInteger(integer, type, to);
    }
  }
}

// --- From decimal numbers, of a value or of a text --------------------------------

HRESULT ChangeDigits(const DecimalDigits& number, VARTYPE type, VARIANT* to) {
  HRESULT result = S_OK;
  switch (type) {
    case VT_BOOL:
      return StoreBoolean(!number.digits.empty(), to);
    case VT_R4: {
      float single = 0;
      result = ToSingle(number, &single);
      return FAILED(result) ? result : StoreFraction(single, type, to);
    }
    case VT_R8:
    case VT_DATE: {
      double value = 0;
      result = ToDouble(number, &value);
      return FAILED(result) ? result : StoreFraction(value, type, to);
    }
    case VT_CY: {
      SignedMagnitude scaled;
      result = RoundToInteger(number, 4, &scaled);
      return FAILED(result) ? result : StoreCurrency(scaled, to);
    }
    case VT_DECIMAL: {
      DECIMAL decimal;
      result = ToDecimal(number, &decimal);
      return FAILED(result) ? result : StoreDecimal(decimal, to);
    }
    case VT_BSTR:
      return StoreText(PlainText(number), to);
    default: {
      SignedMagnitude integer;
      result = RoundToInteger(number, 0, &integer);
      return FAILED(result) ? result : StoreInteger(integer, type, to);
    }
  }
}

SignedMagnitude IntegerOf(const VARIANT& value) {
  const IntegerType type = IntegerTypeOf(value.vt);
  const int unused = 64 - type.bits;
  const std::uint64_t high = value.ullVal << unused;
  if (!type.is_signed || high >> 63 == 0) return {false, high >> unused};
  return {true, 0 - static_cast<std::uint64_t>(static_cast<std::int64_t>(high) >> unused)};
}

// --- From text ----------------------------------------------------------------------

HRESULT ChangeParsed(const ParsedNumber& number, VARTYPE type, VARIANT* to) {
  if (!number.is_bits) return ChangeDigits(number.decimal, type, to);
  if (number.bits_overflow) return DISP_E_OVERFLOW;
  const int width = IntegerTypeOf(type).bits;
  if (width == 0) return ChangeInteger({false, number.bits}, type, to);
  // The bits as written fill the integer, sign included.
  if (width < 64 && number.bits >> width != 0) return DISP_E_OVERFLOW;
  return StoreBits(number.bits, type, to);
}

}  // namespace

bool IsNumberType(VARTYPE type) noexcept {
  switch (type) {
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BOOL:
    case VT_DECIMAL:
      return true;
    default:
      return IntegerTypeOf(type).bits != 0;
  }
}

HRESULT ChangeNumber(const VARIANT& from, USHORT flags, VARTYPE type, VARIANT* to) {
  const IntegerType target = IntegerTypeOf(type);
  switch (from.vt) {
    case VT_R4:
      return ChangeFraction(double{from.fltVal}, VT_R4, type, to);
    case VT_R8:
    case VT_DATE:
      return ChangeFraction(from.dblVal, from.vt, type, to);
    case VT_CY:
    case VT_DECIMAL: {
      DecimalDigits number;
      const HRESULT result = DigitsOf(from.vt == VT_CY ? DecimalOf(from.cyVal) : from.decVal, &number);
      return FAILED(result) ? result : ChangeDigits(number, type, to);
    }
    case VT_BOOL: {
      if (type == VT_BSTR && (flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)) != 0) {
        return StoreText(from.boolVal != VARIANT_FALSE ? "True" : "False", to);
      }
      const std::int64_t raw = from.boolVal;
      // The raw value, cut to a narrower integer: True is 255 in a byte.
      if (target.bits != 0) return StoreBits(static_cast<std::uint64_t>(raw), type, to);
      return ChangeInteger({raw < 0, static_cast<std::uint64_t>(raw < 0 ? -raw : raw)}, type, to);
    }
    default: {
      const IntegerType source = IntegerTypeOf(from.vt);
      // Between the signed and the unsigned type of one size the bits are kept.
      if (source.bits == target.bits) return StoreBits(from.ullVal, type, to);
      return ChangeInteger(IntegerOf(from), type, to);
    }
  }
}

HRESULT ChangeText(TextView text, VARTYPE type, VARIANT* to) {
  if (type == VT_DATE) {
    double date = 0;
    const HRESULT result = ParseDate(text, &date);
    return FAILED(result) ? result : StoreFraction(date, VT_DATE, to);
  }
  if (type == VT_BOOL) {
    if (text == u"#TRUE#" || EqualsIgnoringCase(text, u"true")) return StoreBoolean(true, to);
    if (text == u"#FALSE#" || EqualsIgnoringCase(text, u"false")) return StoreBoolean(false, to);
  }
  ParsedNumber number;
  if (!ParseNumber(text, &number)) return DISP_E_TYPEMISMATCH;
  return ChangeParsed(number, type, to);
}

}  // namespace Orvix
