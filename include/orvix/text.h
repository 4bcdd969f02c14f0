// Texts: UTF-16 that owns or borrows, views of a BSTR, and UTF-8 conversion.
// Bytes that are no UTF-8 travel as lone surrogates U+DC80 to U+DCFF, one a
// byte, so that every name on disk survives a round trip.
#ifndef ORVIX_TEXT_H
#define ORVIX_TEXT_H

#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "orvix/automation.h"

namespace Orvix {

using Text = std::u16string;
using TextView = std::u16string_view;

// The text of a BSTR, embedded NULs included; null is the empty text.
inline TextView ViewOf(BSTR text) noexcept {
  if (text == nullptr) return {};
  UINT bytes = 0;  // the length stands before the first unit
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof bytes, sizeof bytes);
  return {text, bytes / sizeof(OLECHAR)};
}

// The longest text that a BSTR can be asked for.
inline constexpr std::size_t kMostUnits = 0x7FFFFFFF;

// A new BSTR, owned by the caller; null when memory is exhausted, which is also
// so for a text that is too long.
[[nodiscard]] inline BSTR NewBstr(TextView text) noexcept {
  if (text.size() > kMostUnits) return nullptr;
  return SysAllocStringLen(text.data() == nullptr ? u"" : text.data(), static_cast<UINT>(text.size()));
}

namespace text_detail {
constexpr bool IsHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// The scalar value at `bytes[at]` and its length in bytes; length 0 when the
// bytes there are no well-formed UTF-8 (Unicode 15, table 3-7).
struct Decoded {
  char32_t value;
  std::size_t length;
};
constexpr Decoded DecodeAt(std::string_view bytes, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[at + i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || bytes.size() - at < length) return {0, 0};
  char32_t value = first & (0xFF >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {0, 0};
    value = value << 6 | (byte(i) & 0x3F);
  }
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < smallest[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return {0, 0};
  return {value, length};
}
}  // namespace text_detail

namespace text_detail {
// Blocks that hold ASCII alone are copied in loops of this length, which
// compilers turn into vector code.
inline constexpr std::size_t kBlock = 32;

// Copies whole blocks as long as they are ASCII; how many units that were.
template <class From, class To>
std::size_t CopyAscii(const From* from, std::size_t size, To* to) {
  std::size_t done = 0;
  for (; size - done >= kBlock; done += kBlock) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits |= static_cast<std::make_unsigned_t<From>>(from[done + i]);
    if (bits >= 0x80) break;
    for (std::size_t i = 0; i < kBlock; ++i) to[done + i] = static_cast<To>(from[done + i]);
  }
  return done;
}
}  // namespace text_detail

// UTF-16 of UTF-8 bytes.
inline Text FromUtf8(std::string_view bytes) {
  const std::size_t size = bytes.size();
  Text text(size, u'\0');  // never more units than bytes
  char16_t* to = text.data();
  for (std::size_t at = 0; at < size;) {
    const std::size_t run = text_detail::CopyAscii(bytes.data() + at, size - at, to);
    at += run;
    to += run;
    for (const std::size_t end = at + text_detail::kBlock; at < size && at < end;) {
      const auto byte = static_cast<unsigned char>(bytes[at]);
      if (byte < 0x80) {
        *to++ = byte;
        ++at;
        continue;
      }
      if (byte >= 0xC2 && byte < 0xE0 && at + 1 < size && (bytes[at + 1] & 0xC0) == 0x80) {
        *to++ = static_cast<char16_t>((byte & 0x1F) << 6 | (bytes[at + 1] & 0x3F));
        at += 2;
        continue;
      }
      const auto [value, length] = text_detail::DecodeAt(bytes, at);
      if (length == 0) {
        *to++ = static_cast<char16_t>(0xDC00 | byte);
        ++at;
        continue;
      }
      if (value >= 0x10000) {
        *to++ = static_cast<char16_t>(0xD7C0 + (value >> 10));
        *to++ = static_cast<char16_t>(0xDC00 | (value & 0x3FF));
      } else {
        *to++ = static_cast<char16_t>(value);
      }
      at += length;
    }
  }
  text.resize(static_cast<std::size_t>(to - text.data()));
  return text;
}

// UTF-8 bytes of UTF-16. A lone surrogate that stands for a byte gives that
// byte; any other lone surrogate gives U+FFFD and clears `*exact`.
inline std::string ToUtf8(TextView text, bool* exact = nullptr) {
  if (exact != nullptr) *exact = true;
  const std::size_t size = text.size();
  std::string bytes(size, '\0');
  std::size_t made = 0;
  const auto put = [&](char32_t bits) { bytes[made++] = static_cast<char>(bits); };
  for (std::size_t at = 0; at < size;) {
    const std::size_t run = text_detail::CopyAscii(text.data() + at, size - at, bytes.data() + made);
    at += run;
    made += run;
    if (at == size) break;
    // Room for what is left at three bytes a unit, which is the most.
    const std::size_t end = at + text_detail::kBlock < size ? at + text_detail::kBlock : size;
    if (bytes.size() - made < 3 * (end - at) + (size - end)) bytes.resize(made + 3 * (size - at));
    while (at < end) {
      char32_t value = text[at++];
      if (value < 0x80) {
        put(value);
        continue;
      }
      if (value < 0x800) {
        put(0xC0 | value >> 6);
        put(0x80 | (value & 0x3F));
        continue;
      }
      if (text_detail::IsHigh(text[at - 1]) && at < size && text_detail::IsLow(text[at])) {
        value = (value - 0xD7C0) << 10 | (text[at++] & 0x3FF);
      } else if (value >= 0xDC80 && value <= 0xDCFF) {
        put(value & 0xFF);
        continue;
      } else if (value >= 0xD800 && value <= 0xDFFF) {
        if (exact != nullptr) *exact = false;
        value = 0xFFFD;
      }
      if (value < 0x10000) {
        put(0xE0 | value >> 12);
      } else {
        put(0xF0 | value >> 18);
        put(0x80 | (value >> 12 & 0x3F));
      }
      put(0x80 | (value >> 6 & 0x3F));
      put(0x80 | (value & 0x3F));
    }
  }
  bytes.resize(made);
  return bytes;
}

}  // namespace Orvix

#endif
