// The text primitives in whose terms the members are written. Positions are
// 1-based and count UTF-16 units; an invalid argument is error 5.
#ifndef ORVIX_FRAME_TEXT_PRIMITIVES_H
#define ORVIX_FRAME_TEXT_PRIMITIVES_H

#include <cstring>
#include <initializer_list>

#include "frame/com_ptr.h"
#include "frame/error.h"
#include "orvix/text.h"

namespace Orvix::component {

// 32-bit sums wrap and never raise an overflow.
[[nodiscard]] constexpr LONG WrapAdd(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
}
[[nodiscard]] constexpr LONG WrapSubtract(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<ULONG>(a) - static_cast<ULONG>(b));
}
[[nodiscard]] constexpr LONG WrapMultiply(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<ULONG>(a) * static_cast<ULONG>(b));
}

// Number of code units.
[[nodiscard]] constexpr LONG Length(TextView text) { return static_cast<LONG>(text.size()); }

// The lowest position from `start` on at which `target` occurs in `text`, units
// compared exactly, or 0. In this order: error 5 when `start` is below 1; 0 for
// an empty text; 0 when `start` lies past the end; `start` for an empty target.
[[nodiscard]] LONG Find(LONG start, TextView text, TextView target);

// The first `count` units; the whole text when it has no more. Error 5 when
// `count` is below 0.
[[nodiscard]] TextView Left(TextView text, LONG count);

// The units from `start` on, `count` of them, fewer if the text ends first, none
// if `start` lies past the end. Error 5 when `start` is below 1 or `count` below 0.
[[nodiscard]] TextView Mid(TextView text, LONG start, LONG count);
[[nodiscard]] TextView Mid(TextView text, LONG start);

// Replaces in place the smallest of `count`, Length(replacement) and what `text`
// has from `start` on; the length never changes. Error 5 when `start` is below 1
// or past the end.
void Overwrite(Text& text, LONG start, LONG count, TextView replacement);

// `count` space characters. Error 5 when `count` is below 0.
[[nodiscard]] Text Spaces(LONG count);

// Every letter in its simple upper-case form, length unchanged.
[[nodiscard]] Text Upper(TextView text);
[[nodiscard]] char16_t UpperUnit(char16_t unit);
// Every letter in its simple lower-case form, length unchanged.
[[nodiscard]] Text Lower(TextView text);

// The character of a code 0 to 255 of the ANSI code page.
[[nodiscard]] char16_t Char(BYTE code);

// The text without its leading spaces (code 32 only).
[[nodiscard]] TextView LeftTrimSpaces(TextView text);

// Same length and the same units.
[[nodiscard]] inline bool Equal(TextView a, TextView b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

// The parts one after the other, in one block of memory.
[[nodiscard]] BstrHandle Joined(std::initializer_list<TextView> parts);

// Every occurrence of `target` (not empty), from left to right without overlap,
// replaced by `replacement`.
[[nodiscard]] Text ReplaceAll(TextView text, TextView target, TextView replacement);

}  // namespace Orvix::component

#endif
