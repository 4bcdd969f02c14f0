// Searching the text buffer, and reading its content as a separated list.
#include <algorithm>
#include <array>
#include <limits>

#include "containers/prepared_search.h"
#include "frame/ansi_text.h"
#include "frame/error_styles.h"
#include "frame/late_binding.h"
#include "frame/modErrorCodes.h"
#include "frame/text_primitives.h"

namespace Orvix::component {

namespace {

LONG NumberIn(const Variant& value) {
  LONG number = 0;
  CheckConversion(OxLongOf(&value.get(), &number));
  return number;
}

}  // namespace

std::string_view classString::Present() const {
  const LONGLONG present = std::min(LONGLONG{length}, LONGLONG{bufferSize} + 1);
  return {reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(present)};
}

// The position of the first match from `start` on that lies in the content, or 0;
// for an empty pattern `start`, whatever it is. Bytes before the first are absent.
// Error 9 where a match can only be told by a byte that is not there.
LONG classString::Search(const BytePattern& pattern, LONG start) const {
  const auto size = static_cast<LONGLONG>(pattern.bytes().size());
  if (size == 0) return start;
  const LONG first = WrapSubtract(start, 1);  // the lowest start wraps: nothing is searched
  const LONGLONG last = length - size;
  if (first > last) return 0;
  const std::string_view present = Present();
  const auto from = static_cast<std::size_t>(std::max(first, LONG{0}));
  const std::size_t found = pattern.FindIn(present, from);
  if (found != kNoBytes) return static_cast<LONG>(found) + 1;
  if (last >= static_cast<LONGLONG>(present.size())) RaiseRuntimeError(kSubscriptOutOfRange);
  // Matches that would begin in what is there and end beyond it.
  const std::size_t whole = present.size() < pattern.bytes().size() ? 0 : present.size() - pattern.bytes().size() + 1;
  for (std::size_t at = std::max(from, whole); static_cast<LONGLONG>(at) <= last; ++at) {
    if (pattern.bytes().starts_with(present.substr(at))) RaiseRuntimeError(kSubscriptOutOfRange);
  }
  return 0;
}

// The same in steps of the pattern's skip table, which pass over bytes that are
// not there: for a buffer that was cut below its content.
LONG classString::SearchBySkips(std::string_view pattern, LONG start) const {
  const std::string_view present = Present();
  const std::size_t size = pattern.size();
  std::array<std::size_t, 256> skips;
  skips.fill(size);
  for (std::size_t i = 0; i < size; ++i) skips[static_cast<BYTE>(pattern[i])] = size - 1 - i;
  std::size_t last = static_cast<std::size_t>(std::max<LONG>(start, 1)) - 1 + size - 1;  // 0-based
  while (last < static_cast<std::size_t>(length)) {
    if (last >= present.size()) RaiseRuntimeError(kSubscriptOutOfRange);
    const std::size_t skip = skips[static_cast<BYTE>(present[last])];
    if (skip == 0 && present.substr(last + 1 - size, size) == pattern) return static_cast<LONG>(last + 2 - size);
    last += std::max(skip, std::size_t{1});
  }
  return 0;
}

LONG classString::Instr(const VARIANT& search, LongOr<1> start) {
  const ComPtr<_classString> other = search.vt == VT_BSTR ? nullptr : BufferIn(search);
  if (!other) {
    const std::string bytes = Narrowed(ArgumentText(search).View());
    return Search(BytePattern(bytes), start);
  }
  // Objects are asked by name.
  const LONG size = NumberIn(GetMember(other.get(), u"Length"));
  const LONG address = NumberIn(GetMember(other.get(), u"StrPtr"));
  if (size < 0) RaiseRuntimeError(kInvalidArgument);
  if (size == 0) return start;
  return Search(BytePattern({reinterpret_cast<const char*>(BytesAt(address)), static_cast<std::size_t>(size)}), start);
}

LONG classString::Find(TextView search, LongOr<1> start) {
  if (search.empty()) return 0;
  if (lastSearch == nullptr || lastSearch->text != search) lastSearch = std::make_unique<PreparedSearch>(search);
  const bool is_cut = Present().size() < static_cast<std::size_t>(length);
  return is_cut ? SearchBySkips(lastSearch->pattern.bytes(), start)
                : Search(lastSearch->pattern, std::max<LONG>(start, 1));
}

// ---- The content as a list -------------------------------------------------------------

struct classString::SeparatorWalk {
  LONG found = 0;     // position of the last separator passed, 0 for none
  LONG searches = 0;  // searches made, the failing one included
};

// Up to `searches` searches, ending with the first that finds nothing. From a
// position p (0 at the start) the next separator is looked for from p plus its
// width on. The first search so starts at the width, not at 1, and a wide
// separator right at the start goes unseen. Callers rely on it.
classString::SeparatorWalk classString::WalkSeparators(const BytePattern& separator, LONG searches) const {
  const auto width = static_cast<LONG>(separator.bytes().size());
  SeparatorWalk walk;
  while (walk.searches < searches) {
    ++walk.searches;
    walk.found = Search(separator, width + walk.found);
    if (walk.found == 0) break;
  }
  return walk;
}

BstrHandle classString::GetElement(LONG index, TextView separator) {
  return ReportAndContinue(u"Error GetElement.", TextView{}, [&] {
    const std::string bytes = Narrowed(separator);
    const BytePattern pattern(bytes);
    const auto width = static_cast<LONG>(bytes.size());
    const LONG searches = index > 1 ? index - 1 : 0;
    SeparatorWalk walk = WalkSeparators(pattern, searches);
    // A search that finds nothing does not end the walk: the next one starts
    // from the front again. The positions repeat with a period of one more than
    // the separators, so an index of any size answers at once.
    if (walk.found == 0 && walk.searches > 0) walk = WalkSeparators(pattern, searches % walk.searches);
    if (walk.found == 0 && index > 1) return BstrHandle(TextView{});
    LONG end = Search(pattern, width + walk.found);
    if (end == 0) end = length + 1;
    const LONG start = walk.found > 0 ? walk.found + width : 1;
    if (start > length) return BstrHandle(TextView{});
    CheckIndex(end - 2);
    return Widened({reinterpret_cast<const char*>(buffer.data()) + start - 1, static_cast<std::size_t>(end - start)});
  });
}

LONG classString::LengthList(TextView separator) {
  return ReportAndContinue(u"Error LengthList.", 0, [&]() -> LONG {
    if (length == 0) return 0;
    const std::string bytes = Narrowed(separator);
    return WalkSeparators(BytePattern(bytes), std::numeric_limits<LONG>::max()).searches;
  });
}

}  // namespace Orvix::component
