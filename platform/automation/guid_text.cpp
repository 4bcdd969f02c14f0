#include "platform/automation/guid_text.h"

#include <algorithm>

namespace Orvix {

namespace {

constexpr std::size_t kUnits = 38;
// The form of the text: a digit for each dot.
constexpr std::u16string_view kForm = u"{........-....-....-....-............}";
static_assert(kForm.size() == kUnits);

using Bytes = std::uint8_t[16];

void ToBytes(const GUID& guid, Bytes& bytes) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(guid.Data1 >> (24 - 8 * i));
  for (int i = 0; i < 2; ++i) bytes[4 + i] = static_cast<std::uint8_t>(guid.Data2 >> (8 - 8 * i));
  for (int i = 0; i < 2; ++i) bytes[6 + i] = static_cast<std::uint8_t>(guid.Data3 >> (8 - 8 * i));
  std::copy(std::begin(guid.Data4), std::end(guid.Data4), bytes + 8);
}

GUID FromBytes(const Bytes& bytes) {
  GUID guid{};
  for (int i = 0; i < 4; ++i) guid.Data1 = guid.Data1 << 8 | bytes[i];
  guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
  std::copy(bytes + 8, bytes + 16, std::begin(guid.Data4));
  return guid;
}

// 16 for anything but a hexadecimal digit.
unsigned DigitOf(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10U;
  return 16;
}

void Write(const GUID& guid, char16_t* text) {
  Bytes bytes{};
  ToBytes(guid, bytes);
  std::size_t digit = 0;
  for (std::size_t i = 0; i < kUnits; ++i) {
    text[i] = kForm[i];
    if (kForm[i] != u'.') continue;
    text[i] = u"0123456789ABCDEF"[bytes[digit / 2] >> (digit % 2 == 0 ? 4 : 0) & 0xF];
    ++digit;
  }
}

}  // namespace

Text GuidText(const GUID& guid) {
  Text text(kUnits, u'\0');
  Write(guid, text.data());
  return text;
}

std::optional<GUID> ParseGuid(TextView text) noexcept {
  if (text.size() != kUnits) return std::nullopt;
  Bytes bytes{};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < kUnits; ++i) {
    if (kForm[i] != u'.') {
      if (text[i] != kForm[i]) return std::nullopt;
      continue;
    }
    const unsigned digit = DigitOf(text[i]);
    if (digit == 16) return std::nullopt;
    bytes[digits / 2] = static_cast<std::uint8_t>(bytes[digits / 2] * 16U + digit);
    ++digits;
  }
  return FromBytes(bytes);
}

}  // namespace Orvix

// A text without braces is looked up as a program identifier. Null gives the
// identifier of zeros. CO_E_CLASSSTRING, and zeros, for anything else.
HRESULT ORVIX_CALL CLSIDFromString(const OLECHAR* text, CLSID* clsid) {
  if (clsid == nullptr) return E_INVALIDARG;
  *clsid = {};
  if (text == nullptr) return S_OK;
  if (text[0] != u'{') return CLSIDFromProgID(text, clsid);
  const std::optional<GUID> parsed = Orvix::ParseGuid(text);
  if (!parsed) return CO_E_CLASSSTRING;
  *clsid = *parsed;
  return S_OK;
}

// 39, the characters written with the NUL; 0 when `capacity` is below that.
INT ORVIX_CALL StringFromGUID2(REFGUID guid, OLECHAR* text, INT capacity) {
  constexpr INT kWithNul = static_cast<INT>(Orvix::kUnits) + 1;
  if (text == nullptr || capacity < kWithNul) return 0;
  Orvix::Write(guid, text);
  text[Orvix::kUnits] = u'\0';
  return kWithNul;
}
