// The ANSI code page: 1252 unless another one was chosen. Bytes that the page leaves
// open (in 1252 0x81 0x8D 0x8F 0x90 0x9D) stand for the control characters of the same
// code, or for private units, both ways, so that every byte survives a round trip.
#ifndef ORVIX_PLATFORM_NAMES_CODE_PAGE_H
#define ORVIX_PLATFORM_NAMES_CODE_PAGE_H

#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix {

// One byte per UTF-16 unit, "?" for a unit that the page lacks (so a surrogate
// pair gives two). `*exact` then becomes false, otherwise true.
[[nodiscard]] std::string ToAnsi(TextView text, bool* exact = nullptr);
// The same into a buffer of at least `text.size()` bytes, with another
// substitute; true when nothing was substituted.
bool ToAnsi(TextView text, char* bytes, char substitute) noexcept;

// One unit per byte; every byte has one.
[[nodiscard]] Text FromAnsi(std::string_view bytes);
void FromAnsi(std::string_view bytes, char16_t* text) noexcept;

}  // namespace Orvix

#endif
