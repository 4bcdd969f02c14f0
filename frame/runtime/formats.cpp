// Formats: number patterns of "0" and "#", text patterns of "@" and "&", and
// hexadecimal text.
#include <algorithm>
#include <new>
#include <string>

#include "frame/runtime/runtime_error.h"
#include "orvix/text.h"

namespace Orvix {
namespace {

// Characters that direct a pattern in ways that are not known here. They are
// refused rather than printed.
constexpr TextView kUnknownInNumbers = u",;%\\\"@&!<>*_eE";
constexpr TextView kUnknownInTexts = u";\\\"!<>*_";

TextView PatternOf(const OLECHAR* pattern, TextView unknown) {
  const TextView view = pattern == nullptr ? TextView{} : TextView{pattern};
  if (view.find_first_of(unknown) != TextView::npos) throw RuntimeError{5};
  return view;
}

BSTR NewText(TextView text) {
  const BSTR made = NewBstr(text);
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

Text DigitsOf(std::uint32_t number, std::uint32_t base) {
  Text digits;
  for (; number != 0; number /= base) digits += u"0123456789ABCDEF"[number % base];
  std::ranges::reverse(digits);
  return digits;
}

// Fills the placeholders of `pattern` with `shown`, right-aligned; what has no
// placeholder stands at the first of them. `empty` says what a placeholder
// without a character shows, U+0000 for nothing; the others copy themselves.
template <class IsPlaceholder, class EmptyShows>
Text FillFromRight(TextView pattern, TextView shown, IsPlaceholder is_placeholder, EmptyShows empty) {
  Text reversed;
  auto next = shown.rbegin();
  const auto first = std::ranges::find_if(pattern, is_placeholder);
  for (auto at = pattern.end(); at != pattern.begin();) {
    --at;
    if (!is_placeholder(*at)) {
      reversed += *at;
    } else if (next != shown.rend()) {
      reversed += *next++;
      if (at == first) reversed.append(next, shown.rend());
    } else if (const char16_t filler = empty(*at); filler != u'\0') {
      reversed += filler;
    }
  }
  std::ranges::reverse(reversed);
  return reversed;
}

// Zero has no digits of its own: only "0" makes one appear, so "0#" of 0 is "0".
Text FormatNumber(LONG value, TextView pattern) {
  const auto magnitude = value < 0 ? 0U - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
  Text digits = DigitsOf(magnitude, 10);
  const Text sign = value < 0 ? u"-" : u"";
  if (pattern.empty()) return sign + (digits.empty() ? Text(u"0") : digits);

  const auto is_placeholder = [](char16_t unit) { return unit == u'0' || unit == u'#'; };
  const auto zero_or_nothing = [](char16_t unit) { return unit == u'0' ? u'0' : u'\0'; };
  const std::size_t point = std::min(pattern.find(u'.'), pattern.size());
  const TextView whole = pattern.substr(0, point);
  const TextView fraction = pattern.substr(point);
  // A pattern that starts at its point shows the whole number before it.
  const bool has_place = std::ranges::any_of(whole, is_placeholder);
  const bool any_place = std::ranges::any_of(pattern, is_placeholder);
  Text formatted = FillFromRight(whole, digits, is_placeholder, zero_or_nothing);
  if (!has_place && any_place) formatted += digits;
  formatted += FillFromRight(fraction, {}, is_placeholder, zero_or_nothing);
  return any_place ? sign + formatted : formatted;
}

Text FormatText(TextView value, TextView pattern) {
  if (pattern.empty()) return Text(value);
  return FillFromRight(
      pattern, value, [](char16_t unit) { return unit == u'@' || unit == u'&'; },
      [](char16_t unit) { return unit == u'@' ? u' ' : u'\0'; });
}

std::uint32_t HexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10U;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
  throw RuntimeError{13};
}

std::uint32_t HexNumber(TextView text) {
  constexpr std::size_t kPrefix = 2;
  constexpr std::size_t kMostDigits = 8;
  if (text.size() <= kPrefix || text.size() > kPrefix + kMostDigits) throw RuntimeError{13};
  if (text[0] != u'&' || (text[1] != u'h' && text[1] != u'H')) throw RuntimeError{13};
  std::uint32_t number = 0;
  for (const char16_t unit : text.substr(kPrefix)) number = number << 4 | HexDigit(unit);
  return number;
}

}  // namespace
}  // namespace Orvix

HRESULT ORVIX_CALL OxFormatNumber(LONG value, const OLECHAR* pattern, BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  return Orvix::AtRuntimeEdge(
      [&] { *text = Orvix::NewText(Orvix::FormatNumber(value, Orvix::PatternOf(pattern, Orvix::kUnknownInNumbers))); });
}

HRESULT ORVIX_CALL OxFormatText(BSTR value, const OLECHAR* pattern, BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  return Orvix::AtRuntimeEdge([&] {
    const Orvix::TextView view = Orvix::PatternOf(pattern, Orvix::kUnknownInTexts);
    *text = Orvix::NewText(Orvix::FormatText(Orvix::ViewOf(value), view));
  });
}

HRESULT ORVIX_CALL OxHexText(LONG value, BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  return Orvix::AtRuntimeEdge([&] {
    const Orvix::Text digits = Orvix::DigitsOf(static_cast<std::uint32_t>(value), 16);
    *text = Orvix::NewText(digits.empty() ? u"0" : digits);
  });
}

HRESULT ORVIX_CALL OxHexValue(BSTR text, ULONG* value) {
  if (value == nullptr) return E_POINTER;
  *value = 0;
  return Orvix::AtRuntimeEdge([&] { *value = Orvix::HexNumber(Orvix::ViewOf(text)); });
}
