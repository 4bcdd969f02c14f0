// Texts: UTF-16 that owns or borrows, views of a BSTR, and UTF-8 conversion.
// Bytes that are no UTF-8 travel as lone surrogates U+DC80 to U+DCFF, one a
// byte, so that every name on disk survives a round trip.
#ifndef ORVIX_TEXT_H
#define ORVIX_TEXT_H

#include <cstring>
#include <string>
#include <string_view>

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

// UTF-16 of UTF-8 bytes.
inline Text FromUtf8(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const auto [value, length] = text_detail::DecodeAt(bytes, at);
    if (length == 0) {
      text.push_back(static_cast<char16_t>(0xDC00 | static_cast<unsigned char>(bytes[at])));
      ++at;
      continue;
    }
    if (value >= 0x10000) {
      text.push_back(static_cast<char16_t>(0xD7C0 + (value >> 10)));
      text.push_back(static_cast<char16_t>(0xDC00 | (value & 0x3FF)));
    } else {
      text.push_back(static_cast<char16_t>(value));
    }
    at += length;
  }
  return text;
}

// UTF-8 bytes of UTF-16. A lone surrogate that stands for a byte gives that
// byte; any other lone surrogate gives U+FFFD and clears `*exact`.
inline std::string ToUtf8(TextView text, bool* exact = nullptr) {
  using text_detail::IsHigh;
  using text_detail::IsLow;
  if (exact != nullptr) *exact = true;
  std::string bytes;
  bytes.reserve(text.size());
  const auto put = [&](char32_t bits) { bytes.push_back(static_cast<char>(bits)); };
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t value = text[at];
    if (IsHigh(text[at]) && at + 1 < text.size() && IsLow(text[at + 1])) {
      value = (value - 0xD7C0) << 10 | (text[++at] & 0x3FF);
    } else if (value >= 0xDC80 && value <= 0xDCFF) {
      put(value & 0xFF);
      continue;
    } else if (value >= 0xD800 && value <= 0xDFFF) {
      if (exact != nullptr) *exact = false;
      value = 0xFFFD;
    }
    if (value < 0x80) {
      put(value);
    } else if (value < 0x800) {
      put(0xC0 | value >> 6);
      put(0x80 | (value & 0x3F));
    } else if (value < 0x10000) {
      put(0xE0 | value >> 12);
      put(0x80 | (value >> 6 & 0x3F));
      put(0x80 | (value & 0x3F));
    } else {
      put(0xF0 | value >> 18);
      put(0x80 | (value >> 12 & 0x3F));
      put(0x80 | (value >> 6 & 0x3F));
      put(0x80 | (value & 0x3F));
    }
  }
  return bytes;
}

}  // namespace Orvix

#endif
