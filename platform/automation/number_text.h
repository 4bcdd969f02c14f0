// Numbers from text and to text, in invariant English and exact to the digit.
#ifndef ORVIX_PLATFORM_AUTOMATION_NUMBER_TEXT_H
#define ORVIX_PLATFORM_AUTOMATION_NUMBER_TEXT_H

#include <cstdint>
#include <string>

#include "orvix/text.h"
#include "platform/automation/decimal.h"

namespace Orvix {

// Significant digits of a Single and of a Double, in texts and in DECIMALs.
inline constexpr int kSingleDigits = 7;
inline constexpr int kDoubleDigits = 15;

// What a text says: a decimal number, or with "&H" or "&O" the bits of an
// integer.
struct ParsedNumber {
  DecimalDigits decimal;
  bool is_bits = false;
  bool bits_overflow = false;  // more than 64
  std::uint64_t bits = 0;
};

// Reads the whole text as one number: spaces around, one sign before or after,
// or parentheses for a negative number, "," between digits, "$", an exponent.
// False when it is none.
bool ParseNumber(TextView text, ParsedNumber* number);

// `value`, which is finite, to `count` significant digits without trailing
// zeros. A tie, on the exact binary value, rounds away from zero.
DecimalDigits SignificantDigits(double value, int count);

// At most `count` significant digits: plain, or with an exponent when the whole
// part or the decimals would not fit into `count` digits. Infinities and
// not-a-number give "1.#INF", "-1.#INF" and "1.#QNAN".
std::string FractionText(double value, int count);

}  // namespace Orvix

#endif
