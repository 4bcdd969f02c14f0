// Units of a text that the readers of numbers, dates and Booleans know. Only
// ASCII digits and letters count.
#ifndef ORVIX_PLATFORM_AUTOMATION_TEXT_SCAN_H
#define ORVIX_PLATFORM_AUTOMATION_TEXT_SCAN_H

#include <algorithm>

#include "orvix/text.h"

namespace Orvix {

constexpr bool IsSpace(char16_t unit) { return unit == u' ' || unit == u'\u00A0' || (unit >= u'\t' && unit <= u'\r'); }

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr char16_t LowerOf(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

constexpr bool IsLetter(char16_t unit) { return LowerOf(unit) >= u'a' && LowerOf(unit) <= u'z'; }

constexpr bool EqualsIgnoringCase(TextView text, TextView lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char16_t unit, char16_t expected) { return LowerOf(unit) == expected; });
}

}  // namespace Orvix

#endif
