// Conversion to and from the ANSI code page: blocks that hold ASCII alone are
// copied in loops of fixed length, which the compiler turns into vector code.
#include "platform/names/code_page.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "orvix/runtime.h"
#include "platform/names/lost_characters.h"

namespace Orvix {

namespace {

constexpr std::size_t kBlock = 64;

// The units of the bytes 0x80 to 0x9F.
constexpr char16_t kUpperControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char16_t UnitOf(unsigned char byte) noexcept {
  return static_cast<unsigned char>(byte - 0x80) < 0x20 ? kUpperControls[byte - 0x80] : char16_t{byte};
}

// The byte of `unit`, or -1.
int ByteOf(char16_t unit) noexcept {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return unit;
  const auto* const found = std::find(std::begin(kUpperControls), std::end(kUpperControls), unit);
  return found == std::end(kUpperControls) ? -1 : static_cast<int>(0x80 + (found - kUpperControls));
}

bool IsCodePage(UINT page) { return page == CP_ACP || page == 1252; }

}  // namespace

bool ToAnsi(TextView text, char* bytes, char substitute) noexcept {
  const char16_t* const units = text.data();
  bool exact = true;
  std::size_t at = 0;
  const auto one_by_one = [&](std::size_t end) {
    for (; at < end; ++at) {
      const int byte = ByteOf(units[at]);
      exact = exact && byte >= 0;
      bytes[at] = byte >= 0 ? static_cast<char>(byte) : substitute;
    }
  };
  while (text.size() - at >= kBlock) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits |= units[at + i];
    if (bits >= 0x80) {
      one_by_one(at + kBlock);
      continue;
    }
    for (std::size_t i = 0; i < kBlock; ++i) bytes[at + i] = static_cast<char>(units[at + i]);
    at += kBlock;
  }
  one_by_one(text.size());
  return exact;
}

std::string ToAnsi(TextView text, bool* exact) {
  std::string bytes(text.size(), '\0');
  const bool whole = ToAnsi(text, bytes.data(), '?');
  if (exact != nullptr) *exact = whole;
  return bytes;
}

void FromAnsi(std::string_view bytes, char16_t* text) noexcept {
  const auto byte_at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  std::size_t at = 0;
  while (bytes.size() - at >= kBlock) {
    unsigned char bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits = static_cast<unsigned char>(bits | byte_at(at + i));
    if (bits >= 0x80) {
      for (std::size_t i = 0; i < kBlock; ++i) text[at + i] = UnitOf(byte_at(at + i));
    } else {
      for (std::size_t i = 0; i < kBlock; ++i) text[at + i] = byte_at(at + i);
    }
    at += kBlock;
  }
  for (; at < bytes.size(); ++at) text[at] = UnitOf(byte_at(at));
}

Text FromAnsi(std::string_view bytes) {
  Text text(bytes.size(), u'\0');
  FromAnsi(bytes, text.data());
  return text;
}

}  // namespace Orvix

// Both functions give the number of units or bytes written, or needed when
// `capacity` is 0; a count of -1 means up to and with the NUL. 0 stands for
// failure: another page, nothing to convert, or a buffer that is too small,
// which stays as it was.
INT ORVIX_CALL MultiByteToWideChar(UINT page, DWORD /*flags: every byte is valid*/, const char* bytes, INT count,
                                   OLECHAR* text, INT capacity) {
  if (!Orvix::IsCodePage(page) || bytes == nullptr || count == 0 || count < -1 || capacity < 0) return 0;
  const std::size_t length = count < 0 ? std::char_traits<char>::length(bytes) + 1 : static_cast<std::size_t>(count);
  if (length > 0x7FFFFFFF) return 0;
  if (capacity == 0) return static_cast<INT>(length);
  if (text == nullptr || static_cast<std::size_t>(capacity) < length) return 0;
  Orvix::FromAnsi({bytes, length}, text);
  return static_cast<INT>(length);
}

// `substitute` null stands for "?"; `substituted` may be null.
INT ORVIX_CALL WideCharToMultiByte(UINT page, DWORD /*flags: there is no best fit*/, const OLECHAR* text, INT units,
                                   char* bytes, INT capacity, const char* substitute, BOOL* substituted) {
  if (!Orvix::IsCodePage(page) || text == nullptr || units == 0 || units < -1 || capacity < 0) return 0;
  const std::size_t length = units < 0 ? std::char_traits<char16_t>::length(text) + 1 : static_cast<std::size_t>(units);
  if (length > 0x7FFFFFFF) return 0;
  if (capacity == 0) return static_cast<INT>(length);
  if (bytes == nullptr || static_cast<std::size_t>(capacity) < length) return 0;
  const bool exact = Orvix::ToAnsi({text, length}, bytes, substitute != nullptr ? *substitute : '?');
  if (exact) {
    Orvix::ForgetLostCharacters({bytes, length});
  } else {
    const OLECHAR* const lost = std::find_if(text, text + length, [](OLECHAR unit) { return Orvix::ByteOf(unit) < 0; });
    Orvix::NoteLostCharacters({bytes, length}, static_cast<std::size_t>(lost - text));
  }
  if (substituted != nullptr) *substituted = exact ? 0 : 1;
  return static_cast<INT>(length);
}
