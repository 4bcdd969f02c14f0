#include "registry_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace Orvix::ctl {

namespace {

constexpr DWORD kText = 1;
constexpr DWORD kExpand = 2;
constexpr DWORD kBytes = 3;
constexpr DWORD kNumber = 4;
constexpr std::string_view kExpandMark = "expand:";
constexpr std::string_view kNumberMark = "dword:";
constexpr char kDigits[] = "0123456789abcdef";

template <class Number>
bool TakeNumber(std::string_view* text, int base, Number* number) {
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number, base);
  if (error != std::errc()) return false;
  text->remove_prefix(static_cast<std::size_t>(end - text->data()));
  return true;
}

RegistryValue ValueOfText(DWORD type, TextView text) {
  RegistryValue value{type, std::string((text.size() + 1) * sizeof(char16_t), '\0')};
  std::memcpy(value.data.data(), text.data(), text.size() * sizeof(char16_t));
  return value;
}

// The text that makes exactly these bytes, if there is one.
std::optional<Text> TextOf(const RegistryValue& value) {
  if (value.data.size() < sizeof(char16_t)) return std::nullopt;
  Text text(value.data.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), value.data.data(), text.size() * sizeof(char16_t));
  text.pop_back();
  return ValueOfText(value.type, text).data == value.data ? std::optional(text) : std::nullopt;
}

}  // namespace

RegistryValue TextValue(TextView text) { return ValueOfText(kText, text); }

std::string ValueText(const RegistryValue& value) {
  if (value.type == kText || value.type == kExpand) {
    if (const auto text = TextOf(value))
      return (value.type == kExpand ? std::string(kExpandMark) : "") + QuotedText(*text);
  }
  if (std::uint32_t number = 0; value.type == kNumber && value.data.size() == sizeof number) {
    std::memcpy(&number, value.data.data(), sizeof number);
    return std::string(kNumberMark) + std::to_string(number);
  }
  std::string text = value.type == kBytes ? "hex:" : "hex(" + std::to_string(value.type) + "):";
  for (std::size_t i = 0; i < value.data.size(); ++i) {
    const auto byte = static_cast<unsigned char>(value.data[i]);
    if (i > 0) text += ' ';
    text += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return text;
}

std::optional<RegistryValue> ReadValueText(std::string_view text) {
  const bool expands = text.starts_with(kExpandMark);
  if (expands) text.remove_prefix(kExpandMark.size());
  if (expands || text.starts_with('"')) {
    const auto content = TakeQuoted(&text);
    if (!content || !text.empty()) return std::nullopt;
    return ValueOfText(expands ? kExpand : kText, *content);
  }
  if (text.starts_with(kNumberMark)) {
    text.remove_prefix(kNumberMark.size());
    std::uint32_t number = 0;
    if (!TakeNumber(&text, 10, &number) || !text.empty()) return std::nullopt;
    return RegistryValue{kNumber, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
  }
  if (!text.starts_with("hex")) return std::nullopt;
  text.remove_prefix(3);
  RegistryValue value{kBytes, {}};
  if (text.starts_with('(')) {
    text.remove_prefix(1);
    if (!TakeNumber(&text, 10, &value.type) || !text.starts_with(')')) return std::nullopt;
    text.remove_prefix(1);
  }
  if (!text.starts_with(':')) return std::nullopt;
  text.remove_prefix(1);
  while (!text.empty()) {
    std::string_view digits = text.substr(0, 2);
    unsigned char byte = 0;
    if (digits.size() != 2 || !TakeNumber(&digits, 16, &byte) || !digits.empty()) return std::nullopt;
    value.data += static_cast<char>(byte);
    text.remove_prefix(2);
    if (text.empty()) break;
    if (text.front() != ' ' || text.size() == 1) return std::nullopt;
    text.remove_prefix(1);
  }
  return value;
}

std::string KeyText(TextView key) {
  const std::string quoted = QuotedText(key);
  const std::string plain = ToUtf8(key);
  // Quoting doubles the backslashes, and changes nothing else of most keys.
  const auto doubled = static_cast<std::size_t>(std::ranges::count(key, u'\\'));
  const bool is_plain = quoted.size() == plain.size() + doubled + 2 && !key.ends_with(u']') && !key.starts_with(u'"');
  return "[" + (is_plain ? plain : quoted) + "]";
}

std::optional<Text> ReadKeyText(std::string_view line) {
  if (line.size() < 2 || !line.starts_with('[') || !line.ends_with(']')) return std::nullopt;
  line = line.substr(1, line.size() - 2);
  if (!line.starts_with('"')) return FromUtf8(line);
  const auto key = TakeQuoted(&line);
  return line.empty() ? key : std::nullopt;
}

}  // namespace Orvix::ctl
