#include "quoted.h"

#include <algorithm>
#include <charconv>

namespace Orvix::ctl {

namespace {

constexpr bool IsHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

struct Escape {
  char letter;
  char16_t unit;
};
constexpr Escape kEscapes[] = {{'n', u'\n'}, {'r', u'\r'}, {'t', u'\t'}, {'b', u'\b'},
                               {'f', u'\f'}, {'"', u'"'},  {'\\', u'\\'}};

}  // namespace

bool NeedsEscape(TextView text, std::size_t at) {
  const char16_t unit = text[at];
  if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) return true;
  if (IsHigh(unit)) return at + 1 == text.size() || !IsLow(text[at + 1]);
  return IsLow(unit) && (at == 0 || !IsHigh(text[at - 1]));
}

std::string HexDigits(char16_t unit) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {kDigits[unit >> 12], kDigits[unit >> 8 & 15], kDigits[unit >> 4 & 15], kDigits[unit & 15]};
}

std::string QuotedText(TextView text) {
  std::string quoted = "\"";
  std::size_t plain = 0;  // where what needs no escape begins
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto* const escape = std::ranges::find(kEscapes, text[at], &Escape::unit);
    if (escape == std::end(kEscapes) && !NeedsEscape(text, at)) continue;
    quoted += ToUtf8(text.substr(plain, at - plain)) + '\\';
    quoted += escape == std::end(kEscapes) ? 'u' + HexDigits(text[at]) : std::string(1, escape->letter);
    plain = at + 1;
  }
  return quoted + ToUtf8(text.substr(plain)) + '"';
}

std::optional<Text> TakeQuoted(std::string_view* line) {
  if (!line->starts_with('"')) return std::nullopt;
  line->remove_prefix(1);
  Text text;
  for (;;) {
    const std::size_t plain = line->find_first_of("\"\\");
    if (plain == std::string_view::npos) return std::nullopt;
    text += FromUtf8(line->substr(0, plain));
    const bool ends = (*line)[plain] == '"';
    line->remove_prefix(plain + 1);
    if (ends) return text;
    if (line->empty()) return std::nullopt;
    const char letter = line->front();
    line->remove_prefix(1);
    const auto* const escape = std::ranges::find(kEscapes, letter, &Escape::letter);
    if (escape != std::end(kEscapes)) {
      text += escape->unit;
    } else {
      std::uint16_t unit = 0;
      const char* const digits = line->data();
      if (letter != 'u' || line->size() < 4 || std::from_chars(digits, digits + 4, unit, 16).ptr != digits + 4) {
        return std::nullopt;
      }
      text += static_cast<char16_t>(unit);
      line->remove_prefix(4);
    }
  }
}

}  // namespace Orvix::ctl
