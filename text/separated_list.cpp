// Separated lists: texts of elements joined by a separator, searched afresh by
// every call. Elements count from 1.
#include <limits>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"
#include "frame/unit_scan.h"

namespace Orvix::component {

namespace {

// The separator search that every member shares: from a position p (0 at the
// start) the next separator is looked for from p plus its width on. The first
// search so starts at the width, not at 1, and a wide separator right at the
// start of the list goes unseen. Callers rely on it.
struct SeparatorWalk {
  LONG found = 0;     // position of the last separator passed, 0 for none
  LONG passed = 0;    // searches that found one
  LONG searches = 0;  // searches made, the failing one included
};

// Up to `searches` searches, ending with the first that finds nothing.
SeparatorWalk WalkSeparators(TextView list, TextView separator, LONG searches) {
  SeparatorWalk walk;
  if (searches <= 0) return walk;
  const LONG width = Length(separator);
  if (width == 0) RaiseRuntimeError(kInvalidArgument);  // the search would start at position 0
  if (list.empty()) return {0, 0, 1};
  const Walk units =
      WalkOccurrences(list, separator, static_cast<std::size_t>(width) - 1, static_cast<std::size_t>(searches));
  walk.passed = static_cast<LONG>(units.count);
  walk.found = walk.passed == searches ? static_cast<LONG>(units.last + 1) : 0;
  walk.searches = walk.passed == searches ? searches : walk.passed + 1;
  return walk;
}

// `searches` searches that do not stop at the end of the list: the search after
// the last separator finds nothing, and the next one starts from the front
// again. The positions repeat with a period of one more than the separators, so
// an index of any size answers at once.
LONG WalkRound(TextView list, TextView separator, LONG searches) {
  const SeparatorWalk walk = WalkSeparators(list, separator, searches);
  if (walk.passed == searches || searches <= 0) return walk.found;
  const LONG period = walk.passed + 1;
  return WalkSeparators(list, separator, searches % period).found;
}

}  // namespace

BstrHandle classOrvix::AddElement(TextView list, TextView element, TextView separator) {
  return ReportAndContinue(u"Error AddItemToList.", list, [&] {
    if (list.empty()) return BstrHandle(element);
    return Joined({list, separator, element});
  });
}

LONG classOrvix::LengthList(TextView list, TextView separator) {
  return ReportAndContinue(u"Error LengthList.", 0, [&]() -> LONG {
    // An empty list is not searched, so an empty separator goes unnoticed here.
    if (list.empty()) return 0;
    return WalkSeparators(list, separator, std::numeric_limits<LONG>::max()).searches;
  });
}

BstrHandle classOrvix::GetElement(TextView list, LONG index, TextView separator) {
  return ReportAndContinue(u"Error GetElement.", TextView{}, [&] {
    const LONG width = Length(separator);
    LONG found = 0;
    if (index > 1) {
      found = WalkSeparators(list, separator, index - 1).found;
      if (found == 0) return BstrHandle(TextView{});
    }
    LONG end = Find(width + found, list, separator);
    if (end == 0) end = Length(list) + 1;
    const LONG start = found > 0 ? found + width : 1;
    return BstrHandle(Mid(list, start, end - start));
  });
}

LONG classOrvix::FindFirstElement(TextView list, TextView element, TextView separator) {
  return ReportAndContinue(u"Error FindElement.", 0, [&]() -> LONG {
    if (Find(1, list, element) == 0) return 0;
    const LONG count = LengthList(list, separator);
    if (count == 0) return 0;
    // The elements in turn, as GetElement gives them: each starts just past the
    // separator before it, and the first one at the start of the list.
    const LONG width = Length(separator);
    LONG found = 0;
    for (LONG i = 1; i <= count; ++i) {
      const LONG next = Find(width + found, list, separator);
      const LONG end = next == 0 ? Length(list) + 1 : next;
      const LONG start = found > 0 ? found + width : 1;
      if (Equal(Mid(list, start, end - start), element)) return i;
      found = next;
    }
    return 0;
  });
}

BstrHandle classOrvix::InsertElement(TextView list, TextView element, LONG position, TextView separator) {
  return ReportAndContinue(u"Error InsertElement.", list, [&] {
    const LONG found = WalkRound(list, separator, position > 1 ? position - 1 : 0);
    // The text joins the element before the position, and the separator follows
    // it twice. At the start of the list there is no such element, and the
    // negative length is the error that is reported. Callers rely on both.
    const TextView left = Left(list, found - 1);
    const TextView right = Mid(list, found);
    return right.empty() ? Joined({left, element}) : Joined({left, element, separator, right});
  });
}

BstrHandle classOrvix::DeleteElement(TextView list, LONG index, TextView separator) {
  return ReportAndContinue(u"Error DeleteElement.", list, [&] {
    const LONG width = Length(separator);
    const LONG found = WalkRound(list, separator, index > 1 ? index - 1 : 0);
    LONG end = Find(width + found, list, separator);
    if (end == 0) end = Length(list);
    const TextView left = found > 0 ? Left(list, found - 1) : TextView{};
    const TextView right = Mid(list, width + end);
    // The separator comes back between two halves only, so an empty first or
    // last element next to the deleted one goes as well.
    return left.empty() || right.empty() ? Joined({left, right}) : Joined({left, separator, right});
  });
}

}  // namespace Orvix::component
