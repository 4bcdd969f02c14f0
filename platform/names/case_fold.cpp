// Simple case folding through tables that the compiler builds from the ranges.
#include "platform/names/case_fold.h"

#include <array>
#include <cstdint>

#include "platform/names/case_fold_ranges.h"

namespace Orvix {

namespace {

using text_detail::IsHigh;
using text_detail::IsLow;

constexpr std::size_t kPageSize = 256;

// The pages of the first plane in which something folds; page 0 is for all the
// others, in which nothing does.
constexpr std::size_t CountPages() {
  bool used[256] = {};
  for (const FoldRange& range : kFoldRanges) {
    if (range.first > 0xFFFF) break;
    for (std::uint32_t unit = range.first; unit <= range.last; unit += range.step) used[unit / kPageSize] = true;
  }
  used[0] = true;  // ASCII
  std::size_t pages = 1;
  for (const bool one : used) pages += one ? 1 : 0;
  return pages;
}

struct FoldTable {
  std::array<std::uint8_t, 256> page_of{};
  std::array<std::array<std::uint16_t, kPageSize>, CountPages()> delta{};  // added, modulo 2^16
};

constexpr FoldTable BuildTable() {
  FoldTable table;
  std::uint8_t pages = 0;
  const auto set = [&](std::uint32_t unit, std::int32_t delta) {
    std::uint8_t& page = table.page_of[unit / kPageSize];
    if (page == 0) page = ++pages;
    table.delta[page][unit % kPageSize] = static_cast<std::uint16_t>(delta);
  };
  for (std::uint32_t unit = 'A'; unit <= 'Z'; ++unit) set(unit, 'a' - 'A');
  for (const FoldRange& range : kFoldRanges) {
    if (range.first > 0xFFFF) break;
    for (std::uint32_t unit = range.first; unit <= range.last; unit += range.step) set(unit, range.delta);
  }
  return table;
}

constexpr FoldTable kTable = BuildTable();

// Above the first plane every range is dense and few there are.
char32_t FoldHigh(char32_t character) noexcept {
  for (const FoldRange& range : kFoldRanges) {
    if (character >= range.first && character <= range.last && (character - range.first) % range.step == 0) {
      return static_cast<char32_t>(static_cast<std::int32_t>(character) + range.delta);
    }
  }
  return character;
}

// The folded unit at `at`; the halves of a pair are folded together.
char16_t FoldedAt(TextView text, std::size_t at) noexcept {
  const char16_t unit = text[at];
  if (unit < 0x80) return static_cast<char16_t>(unit - u'A') < 26 ? static_cast<char16_t>(unit | 0x20) : unit;
  const bool first_half = IsHigh(unit) && at + 1 < text.size() && IsLow(text[at + 1]);
  const bool second_half = IsLow(unit) && at > 0 && IsHigh(text[at - 1]);
  if (!first_half && !second_half) return FoldUnit(unit);
  const char32_t high = first_half ? unit : text[at - 1];
  const char32_t low = first_half ? text[at + 1] : unit;
  const char32_t folded = FoldHigh(((high - 0xD7C0) << 10) | (low & 0x3FF));
  return static_cast<char16_t>(first_half ? 0xD7C0 + (folded >> 10) : 0xDC00 | (folded & 0x3FF));
}

}  // namespace

char16_t FoldUnit(char16_t unit) noexcept {
  return static_cast<char16_t>(unit + kTable.delta[kTable.page_of[unit / kPageSize]][unit % kPageSize]);
}

void AppendFolded(TextView name, Text& folded) {
  const std::size_t start = folded.size();
  folded.resize(start + name.size());
  for (std::size_t i = 0; i < name.size(); ++i) folded[start + i] = FoldedAt(name, i);
}

bool EqualNames(TextView a, TextView b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldedAt(a, i) != FoldedAt(b, i)) return false;
  }
  return true;
}

}  // namespace Orvix
