// Conversion to and from the ANSI code page: blocks that hold ASCII alone are
// copied in loops of fixed length, which the compiler turns into vector code.
#include "platform/names/code_page.h"

#include <iconv.h>
#include <syslog.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "frame/runtime/never_destroyed.h"
#include "orvix/runtime.h"
#include "platform/names/text_behind.h"
#include "platform/system/log.h"

namespace Orvix {

namespace {

constexpr std::size_t kBlock = 64;

// One page: the unit of each byte, and the byte of each unit, 0 for none.
struct Page {
  UINT number = 0;
  char16_t units[256]{};
  std::array<unsigned char, 0x10000> bytes{};
};

// The units of the bytes 0x80 to 0x9F in 1252.
constexpr char16_t kUpperControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr UINT kDefaultNumber = 1252;

// The C library's name of a page; empty for one that is not known here.
std::string NameOf(UINT number) {
  if ((number >= 1250 && number <= 1258) || number == 874) return "CP" + std::to_string(number);
  if (number == 20866) return "KOI8-R";
  if (number == 21866) return "KOI8-U";
  if (number >= 28591 && number <= 28606 && number != 28602) return "ISO-8859-" + std::to_string(number - 28590);
  return {};
}

// The unit of one byte above ASCII, 0 when the page has none.
char16_t ConvertedByte(iconv_t conversion, unsigned char byte) {
  char in = static_cast<char>(byte);
  char out[8]{};
  char* from = &in;
  char* to = out;
  std::size_t from_left = 1;
  std::size_t to_left = sizeof out;
  iconv(conversion, nullptr, nullptr, nullptr, nullptr);
  const bool whole = iconv(conversion, &from, &from_left, &to, &to_left) != static_cast<std::size_t>(-1) &&
                     iconv(conversion, nullptr, nullptr, &to, &to_left) != static_cast<std::size_t>(-1);
  if (!whole || to_left != sizeof out - 2) return 0;
  return static_cast<char16_t>(static_cast<unsigned char>(out[0]) | static_cast<unsigned char>(out[1]) << 8);
}

constexpr void FillBytes(Page& page) {
  for (int byte = 1; byte < 0x100; ++byte) page.bytes[page.units[byte]] = static_cast<unsigned char>(byte);
}

// The default needs no memory: it serves when there is none.
constexpr Page MakeDefaultPage() {
  Page page{.number = kDefaultNumber};
  for (int byte = 0; byte < 0x100; ++byte) page.units[byte] = static_cast<char16_t>(byte);
  std::ranges::copy(kUpperControls, page.units + 0x80);
  FillBytes(page);
  return page;
}
constinit const Page default_page = MakeDefaultPage();

// Null for a page that is not known, here or to the C library.
std::unique_ptr<const Page> MakePage(UINT number) {
  const std::string name = NameOf(number);
  auto page = std::make_unique<Page>();
  const iconv_t conversion = name.empty() ? iconv_t(-1) : iconv_open("UTF-16LE", name.c_str());
  if (conversion == iconv_t(-1)) return nullptr;
  page->number = number;
  std::array<bool, 0x10000> taken{};
  for (int byte = 0; byte < 0x100; ++byte) {
    page->units[byte] =
        byte < 0x80 ? static_cast<char16_t>(byte) : ConvertedByte(conversion, static_cast<unsigned char>(byte));
    taken[page->units[byte]] = true;
  }
  iconv_close(conversion);
  // What the page leaves open: the control character of the same code, else a private unit.
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    if (page->units[byte] != 0) continue;
    page->units[byte] = static_cast<char16_t>(byte < 0xA0 && !taken[byte] ? byte : 0xF700U | byte);
  }
  FillBytes(*page);
  return page;
}

// Each page is made once and stays: others may be using it. Null for an unknown one.
const Page* PageNumbered(UINT number) {
  if (number == kDefaultNumber) return &default_page;
  static constinit std::mutex mutex;
  static NeverDestroyed<std::map<UINT, std::unique_ptr<const Page>>> pages;
  const std::lock_guard lock(mutex);
  std::unique_ptr<const Page>& page = (*pages)[number];
  if (page == nullptr) page = MakePage(number);
  return page.get();
}

constinit std::atomic<const Page*> the_page = &default_page;

// Done when the library is loaded: conversions themselves cannot fail.
[[maybe_unused]] const bool environment_is_read = [] {
  const char* const named = secure_getenv("ORVIX_CODE_PAGE");
  if (named == nullptr || named[0] == '\0') return false;
  char* end = nullptr;
  const unsigned long number = std::strtoul(named, &end, 10);
  const Page* const page = *end == '\0' && number < 0x10000 ? PageNumbered(static_cast<UINT>(number)) : nullptr;
  if (page == nullptr) {
    Log(LOG_WARNING, "ORVIX_CODE_PAGE names no code page that is known: 1252 is used");
    return false;
  }
  the_page = page;
  return true;
}();

bool IsCodePage(UINT page) { return page == CP_ACP || page == the_page.load()->number; }

}  // namespace

bool ToAnsi(TextView text, char* bytes, char substitute) noexcept {
  const Page& page = *the_page.load();
  const char16_t* const units = text.data();
  bool exact = true;
  std::size_t at = 0;
  const auto one_by_one = [&](std::size_t end) {
    for (; at < end; ++at) {
      const unsigned char byte = page.bytes[units[at]];
      const bool known = byte != 0 || units[at] == 0;
      exact = exact && known;
      bytes[at] = known ? static_cast<char>(byte) : substitute;
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
  const Page& page = *the_page.load();
  const auto byte_at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  std::size_t at = 0;
  while (bytes.size() - at >= kBlock) {
    unsigned char bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits = static_cast<unsigned char>(bits | byte_at(at + i));
    if (bits >= 0x80) {
      for (std::size_t i = 0; i < kBlock; ++i) text[at + i] = page.units[byte_at(at + i)];
    } else {
      for (std::size_t i = 0; i < kBlock; ++i) text[at + i] = byte_at(at + i);
    }
    at += kBlock;
  }
  for (; at < bytes.size(); ++at) text[at] = page.units[byte_at(at)];
}

Text FromAnsi(std::string_view bytes) {
  Text text(bytes.size(), u'\0');
  FromAnsi(bytes, text.data());
  return text;
}

}  // namespace Orvix

HRESULT ORVIX_CALL OxSetCodePage(UINT page) {
  try {
    const Orvix::Page* const made = Orvix::PageNumbered(page);
    if (made == nullptr) return E_INVALIDARG;
    Orvix::the_page = made;
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

UINT ORVIX_CALL OxCodePage() { return Orvix::the_page.load()->number; }

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
    Orvix::ForgetLossyConversion({bytes, length});
  } else {
    Orvix::NoteLossyConversion({bytes, length}, {text, length});
  }
  if (substituted != nullptr) *substituted = exact ? 0 : 1;
  return static_cast<INT>(length);
}
