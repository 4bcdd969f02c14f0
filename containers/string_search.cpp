// Searching the text buffer, and reading its content as a separated list.
#include <algorithm>
#include <limits>

#include "containers/prepared_search.h"
#include "frame/ansi_text.h"
#include "frame/error_styles.h"
#include "frame/late_binding.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

LONG NumberIn(const Variant& value) {
  LONG number = 0;
  CheckConversion(OxLongOf(&value.get(), &number));
  return number;
}

}  // namespace

// The position of the first match from `start` on that lies in the content, or 0;
// for an empty pattern `start`, whatever it is. Bytes before the first are absent.
LONG classString::Search(const BytePattern& pattern, LONG start) const {
  const auto size = static_cast<LONGLONG>(pattern.bytes().size());
  if (size == 0) return start;
  const LONGLONG from = std::max(LONGLONG{start} - 1, LONGLONG{0});
  if (from > length - size) return 0;
  const auto present = static_cast<std::size_t>(std::min(LONGLONG{length}, LONGLONG{bufferSize} + 1));
  const std::size_t found =
      pattern.FindIn({reinterpret_cast<const char*>(buffer.data()), present}, static_cast<std::size_t>(from));
  if (found != kNoBytes) return static_cast<LONG>(found) + 1;
  CheckIndex(length - 1);
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
  return Search(lastSearch->pattern, start);
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

Text classString::GetElement(LONG index, TextView separator) {
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
    if (walk.found == 0 && index > 1) return Text{};
    LONG end = Search(pattern, width + walk.found);
    if (end == 0) end = length + 1;
    const LONG start = walk.found > 0 ? walk.found + width : 1;
    if (start > length) return Text{};
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
