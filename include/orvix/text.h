// Texts: UTF-16 that owns or borrows, views of a BSTR, and UTF-8 conversion.
// Bytes that are no UTF-8 travel as lone surrogates U+DC80 to U+DCFF, one a
// byte, so that every name on disk survives a round trip.
#ifndef ORVIX_TEXT_H
#define ORVIX_TEXT_H

#include <cstdint>
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

namespace text_detail {
// How many bytes at `bytes` are ASCII: whole blocks of eight at a time.
inline std::size_t AsciiRun(const char* bytes, std::size_t size) {
  std::size_t run = 0;
  for (std::uint64_t eight = 0; run + sizeof eight <= size; run += sizeof eight) {
    std::memcpy(&eight, bytes + run, sizeof eight);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  return run;
}
inline std::size_t AsciiRun(const char16_t* units, std::size_t size) {
  std::size_t run = 0;
  for (std::uint64_t fours[2] = {}; run + 8 <= size; run += 8) {
    std::memcpy(fours, units + run, sizeof fours);
    if (((fours[0] | fours[1]) & 0xFF80FF80FF80FF80U) != 0) break;
  }
  return run;
}
}  // namespace text_detail

// UTF-16 of UTF-8 bytes.
inline Text FromUtf8(std::string_view bytes) {
  Text text(bytes.size(), u'\0');  // never more units than bytes
  char16_t* to = text.data();
  const std::size_t size = bytes.size();
  for (std::size_t at = 0; at < size;) {
    const auto byte = static_cast<unsigned char>(bytes[at]);
    if (byte < 0x80) {
      const std::size_t run = text_detail::AsciiRun(bytes.data() + at, size - at);
      for (std::size_t i = 0; i < run; ++i) to[i] = static_cast<unsigned char>(bytes[at + i]);
      to += run;
      at += run;
      for (std::size_t end = at + 8; at < end && at < size && static_cast<signed char>(bytes[at]) >= 0; ++at) {
        *to++ = static_cast<unsigned char>(bytes[at]);
      }
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
  text.resize(static_cast<std::size_t>(to - text.data()));
  return text;
}

// UTF-8 bytes of UTF-16. A lone surrogate that stands for a byte gives that
// byte; any other lone surrogate gives U+FFFD and clears `*exact`.
inline std::string ToUtf8(TextView text, bool* exact = nullptr) {
  using text_detail::IsHigh;
  using text_detail::IsLow;
  if (exact != nullptr) *exact = true;
  std::string bytes;
  const std::size_t size = text.size();
  std::size_t made = 0;
  // Room for what is left at three bytes a unit, which is the most.
  const auto room = [&](std::size_t left) {
    if (bytes.size() - made < 3 * left) bytes.resize(made + 3 * left);
  };
  const std::size_t ascii = text_detail::AsciiRun(text.data(), size);
  bytes.resize(size);
  for (std::size_t i = 0; i < ascii; ++i) bytes[i] = static_cast<char>(text[i]);
  made = ascii;
  const auto put = [&](char32_t bits) { bytes[made++] = static_cast<char>(bits); };
  if (ascii < size) room(size - ascii);
  for (std::size_t at = ascii; at < size; ++at) {
    char32_t value = text[at];
    if (value < 0x80) {
      const std::size_t run = text_detail::AsciiRun(text.data() + at, size - at);
      for (std::size_t i = 0; i < run; ++i) bytes[made + i] = static_cast<char>(text[at + i]);
      made += run;
      at += run;
      for (std::size_t end = at + 8; at < end && at < size && text[at] < 0x80; ++at) put(text[at]);
      --at;
      continue;
    }
    if (value < 0x800) {
      put(0xC0 | value >> 6);
      put(0x80 | (value & 0x3F));
      continue;
    }
    if (IsHigh(text[at]) && at + 1 < size && IsLow(text[at + 1])) {
      value = (value - 0xD7C0) << 10 | (text[++at] & 0x3FF);
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
  bytes.resize(made);
  return bytes;
}

}  // namespace Orvix

#endif
