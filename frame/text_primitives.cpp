#include "frame/text_primitives.h"

#include <algorithm>
#include <iterator>

#include "frame/case_ranges.h"
#include "frame/modErrorCodes.h"
#include "frame/modOrvix.h"
#include "frame/unit_scan.h"

namespace Orvix::component {

namespace {

char32_t Mapped(char32_t code, const CaseRange* begin, const CaseRange* end) {
  const CaseRange* range =
      std::upper_bound(begin, end, code, [](char32_t value, const CaseRange& row) { return value < row.first; });
  // A dense range may enclose the start of the next one, two steps apart.
  for (int back = 0; back < 2 && range != begin; ++back) {
    --range;
    if (code <= range->last && (code - range->first) % static_cast<std::uint32_t>(range->step) == 0) {
      return static_cast<char32_t>(static_cast<std::int32_t>(code) + range->delta);
    }
  }
  return code;
}

template <std::size_t N>
Text MapCase(TextView text, const CaseRange (&ranges)[N], char16_t ascii_first) {
  Text mapped(text);
  for (std::size_t i = 0; i < mapped.size(); ++i) {
    const char16_t unit = mapped[i];
    if (unit < 0x80) {
      if (static_cast<char16_t>(unit - ascii_first) < 26) mapped[i] = unit ^ 0x20;
    } else if (text_detail::IsHigh(unit) && i + 1 < mapped.size() && text_detail::IsLow(mapped[i + 1])) {
      const char32_t code = (static_cast<char32_t>(unit) - 0xD7C0) << 10 | (mapped[i + 1] & 0x3FF);
      const char32_t to = Mapped(code, std::begin(ranges), std::end(ranges));
      mapped[i] = static_cast<char16_t>(0xD7C0 + (to >> 10));
      mapped[++i] = static_cast<char16_t>(0xDC00 | (to & 0x3FF));
    } else {
      mapped[i] = static_cast<char16_t>(Mapped(unit, std::begin(ranges), std::end(ranges)));
    }
  }
  return mapped;
}

}  // namespace

LONG Find(LONG start, TextView text, TextView target) {
  if (start < 1) RaiseRuntimeError(kInvalidArgument);
  if (text.empty() || start > Length(text)) return 0;
  if (target.empty()) return start;
  const std::size_t at = FindUnits(text, target, static_cast<std::size_t>(start) - 1);
  return at == kNotFound ? 0 : static_cast<LONG>(at + 1);
}

TextView Left(TextView text, LONG count) {
  if (count < 0) RaiseRuntimeError(kInvalidArgument);
  return text.substr(0, static_cast<std::size_t>(count));
}

TextView Mid(TextView text, LONG start, LONG count) {
  if (start < 1 || count < 0) RaiseRuntimeError(kInvalidArgument);
  if (start > Length(text)) return {};
  return text.substr(static_cast<std::size_t>(start) - 1, static_cast<std::size_t>(count));
}

TextView Mid(TextView text, LONG start) {
  if (start < 1) RaiseRuntimeError(kInvalidArgument);
  if (start > Length(text)) return {};
  return text.substr(static_cast<std::size_t>(start) - 1);
}

void Overwrite(Text& text, LONG start, LONG count, TextView replacement) {
  if (start < 1 || start > Length(text)) RaiseRuntimeError(kInvalidArgument);
  const LONG room = Length(text) - start + 1;
  const LONG units = std::min({count, Length(replacement), room});
  if (units > 0) std::copy_n(replacement.data(), units, text.data() + start - 1);
}

Text Spaces(LONG count) {
  if (count < 0) RaiseRuntimeError(kInvalidArgument);
  return Text(static_cast<std::size_t>(count), u' ');
}

Text Upper(TextView text) { return MapCase(text, kUpperRanges, u'a'); }

char16_t UpperUnit(char16_t unit) {
  if (unit < 0x80) return static_cast<char16_t>(unit - u'a') < 26 ? static_cast<char16_t>(unit ^ 0x20) : unit;
  return static_cast<char16_t>(Mapped(unit, std::begin(kUpperRanges), std::end(kUpperRanges)));
}

Text Lower(TextView text) { return MapCase(text, kLowerRanges, u'A'); }

char16_t Char(BYTE code) {
  const char byte = static_cast<char>(code);
  char16_t unit = 0;
  MultiByteToWideChar(CP_ACP, 0, &byte, 1, &unit, 1);
  return unit;
}

TextView LeftTrimSpaces(TextView text) { return text.substr(std::min(text.find_first_not_of(u' '), text.size())); }

BstrHandle Joined(std::initializer_list<TextView> parts) {
  std::size_t length = 0;
  for (const TextView part : parts) length += part.size();
  BstrHandle text = BstrHandle::OfLength(length);
  char16_t* at = text.data();
  for (const TextView part : parts) {
    if (!part.empty()) std::memcpy(at, part.data(), part.size() * sizeof(char16_t));
    at += part.size();
  }
  return text;
}

Text ReplaceAll(TextView text, TextView target, TextView replacement) {
  Text replaced;
  std::size_t from = 0;
  for (;;) {
    const std::size_t at = FindUnits(text, target, from);
    if (at == kNotFound) break;
    replaced.append(text, from, at - from).append(replacement);
    from = at + target.size();
  }
  return replaced.append(text, from);
}

}  // namespace Orvix::component
