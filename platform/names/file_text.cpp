#include "platform/names/file_text.h"

#include <syslog.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <set>

#include "frame/runtime/never_destroyed.h"
#include "orvix/runtime.h"
#include "platform/names/code_page.h"
#include "platform/system/log.h"

namespace Orvix {

namespace {

constexpr UINT kUtf8 = 65001;
constexpr char16_t kFirstByteUnit = 0xF780;
constexpr char16_t kLastByteUnit = 0xF7FF;

std::atomic<UINT>& ThePage() {
  static std::atomic<UINT> page = [] {
    const char* const named = secure_getenv("ORVIX_FILE_TEXT");
    return named != nullptr && (strcasecmp(named, "utf-8") == 0 || strcasecmp(named, "utf8") == 0) ? kUtf8 : CP_ACP;
  }();
  return page;
}

// The length of the character that begins `bytes` (Unicode 15.0, table 3-7), 0 for none.
std::size_t CharacterLength(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
  const auto follows = [&](std::size_t i) { return (at(i) & 0xC0) == 0x80; };
  const unsigned first = at(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return follows(1) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    const bool is_short = first == 0xE0 && at(1) < 0xA0;
    const bool is_surrogate = first == 0xED && at(1) >= 0xA0;
    const bool is_byte_unit = first == 0xEF && at(1) >= 0x9E && at(1) <= 0x9F;  // U+F780 to U+F7FF
    return follows(1) && follows(2) && !is_short && !is_surrogate && !is_byte_unit ? 3 : 0;
  }
  if (first < 0xF0 || first > 0xF4) return 0;
  if ((first == 0xF0 && at(1) < 0x90) || (first == 0xF4 && at(1) > 0x8F)) return 0;
  return follows(1) && follows(2) && follows(3) ? 4 : 0;
}

void NoteLoss() noexcept { OxNoteLostText("a file"); }

}  // namespace

bool FileTextIsUtf8() noexcept { return ThePage() == kUtf8; }

std::size_t EncodeFileText(TextView text, char* bytes) noexcept {
  if (!FileTextIsUtf8()) {
    if (!ToAnsi(text, bytes, '?')) NoteLoss();
    return text.size();
  }
  char* to = bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit < 0x80) {
      *to++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
      *to++ = static_cast<char>(0xC0 | unit >> 6);
      *to++ = static_cast<char>(0x80 | (unit & 0x3F));
    } else if (unit >= kFirstByteUnit && unit <= kLastByteUnit) {
      *to++ = static_cast<char>(unit & 0xFF);
    } else if (text_detail::IsHigh(unit) && i + 1 < text.size() && text_detail::IsLow(text[i + 1])) {
      const unsigned character = 0x10000U + ((unit & 0x3FFU) << 10) + (text[++i] & 0x3FFU);
      for (const int shift : {18, 12, 6, 0}) {
        *to++ = static_cast<char>((shift == 18 ? 0xF0U : 0x80U) | (character >> shift & 0x3FU));
      }
    } else if (text_detail::IsHigh(unit) || text_detail::IsLow(unit)) {
      *to++ = '?';
      NoteLoss();
    } else {
      *to++ = static_cast<char>(0xE0 | unit >> 12);
      *to++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
      *to++ = static_cast<char>(0x80 | (unit & 0x3F));
    }
  }
  return static_cast<std::size_t>(to - bytes);
}

Text DecodeUtf8File(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  std::size_t valid = 0;  // where what was not taken over yet begins
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = CharacterLength(bytes.substr(at));
    if (length == 0) {
      text += FromUtf8(bytes.substr(valid, at - valid));
      text += static_cast<char16_t>(0xF700 | static_cast<unsigned char>(bytes[at]));
      valid = at + 1;
    }
    at += length == 0 ? 1 : length;
  }
  return text += FromUtf8(bytes.substr(valid));
}

}  // namespace Orvix

void ORVIX_CALL OxNoteLostText(const char* where) {
  static constinit std::mutex mutex;
  static Orvix::NeverDestroyed<std::set<std::string>> said;
  try {
    const std::lock_guard lock(mutex);
    if (!(*said).insert(where).second) return;
    Orvix::Log(LOG_WARNING, "Text put into " + std::string(where) + " lost characters: they are \"?\" there");
  } catch (const std::bad_alloc&) {  // a record that cannot be made is dropped
  }
}

HRESULT ORVIX_CALL OxSetFileText(UINT page) {
  if (page != CP_ACP && page != Orvix::kUtf8) return E_INVALIDARG;
  Orvix::ThePage() = page;
  return S_OK;
}

UINT ORVIX_CALL OxFileText() { return Orvix::ThePage(); }

HRESULT ORVIX_CALL OxTextOfFile(const char* bytes, LONG count, BSTR* text) {
  if (text == nullptr || (bytes == nullptr && count != 0) || count < 0) return E_POINTER;
  *text = nullptr;
  const std::string_view all(count == 0 ? "" : bytes, static_cast<std::size_t>(count));
  try {
    const Orvix::Text decoded = Orvix::FileTextIsUtf8() ? Orvix::DecodeUtf8File(all) : Orvix::FromAnsi(all);
    *text = SysAllocStringLen(decoded.data(), static_cast<UINT>(decoded.size()));
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return *text == nullptr ? E_OUTOFMEMORY : S_OK;
}
