// Decimal arithmetic: numbers as a run of decimal digits of any length, their
// exact rounding to integers, DECIMAL and binary fractions, and the comparison
// of two DECIMALs.
#ifndef ORVIX_PLATFORM_AUTOMATION_DECIMAL_H
#define ORVIX_PLATFORM_AUTOMATION_DECIMAL_H

#include <cstdint>
#include <string>

#include "orvix/automation.h"

namespace Orvix {

// The number 0.digits times 10 to the power `point`. The first digit is not
// "0"; zero has no digits and is not negative.
struct DecimalDigits {
  bool negative = false;
  std::string digits;
  std::int64_t point = 0;
};

// Sign and size of an integer.
struct SignedMagnitude {
  bool negative = false;
  std::uint64_t magnitude = 0;
};

// `number` times 10^scale, rounded half to even; DISP_E_OVERFLOW beyond 64 bits.
HRESULT RoundToInteger(const DecimalDigits& number, int scale, SignedMagnitude* integer);

// The nearest DECIMAL with as many decimals as fit, half to even;
// DISP_E_OVERFLOW beyond 96 bits.
HRESULT ToDecimal(const DecimalDigits& number, DECIMAL* decimal);

// The nearest binary fraction; 0 below its range, DISP_E_OVERFLOW above.
HRESULT ToDouble(const DecimalDigits& number, double* value);
HRESULT ToSingle(const DecimalDigits& number, float* value);

// Plain decimals: "0" before the point, trailing zeros dropped, no grouping.
std::string PlainText(const DecimalDigits& number);

// E_INVALIDARG when scale or sign is none a DECIMAL can have.
HRESULT DigitsOf(const DECIMAL& decimal, DecimalDigits* number);
DECIMAL DecimalOf(SignedMagnitude integer, int scale) noexcept;
// A number in units of 1/10000.
DECIMAL DecimalOf(CY currency) noexcept;

// -1, 0 or 1 in `*order`; E_INVALIDARG as above.
HRESULT CompareDecimals(const DECIMAL& left, const DECIMAL& right, int* order) noexcept;

}  // namespace Orvix

#endif
