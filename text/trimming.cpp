// Trimming: blanks at either end go, blanks inside stay. The members differ in
// what counts as blank and in what becomes of a text that is blank throughout;
// callers rely on each of these differences.
#include <optional>
#include <string_view>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"

namespace Orvix::component {

namespace {

using namespace std::string_view_literals;

constexpr TextView kTrailingBlanks = u" \0\1\2\3\t"sv;
constexpr TextView kLeadingBlanks = u"\t "sv;
constexpr TextView kLeadingBlanksAndLineBreaks = u" \t\r\n\0\1\2\3"sv;
constexpr TextView kSpaceTabLineBreak = u" \t\r\n"sv;

}  // namespace

BstrHandle classOrvix::SuperRTrim(TextView text, OptionalLongOut tokens_removed) {
  std::optional<LONG> removed = 0;  // also where the member fails
  BstrHandle result = ReportAndContinue(u"Error SuperRTrim.", text, [&] {
    const std::size_t last = text.find_last_not_of(kTrailingBlanks);
    if (last == TextView::npos) {
      // Blank throughout: the text comes back as it is, and the caller's count
      // keeps what it held.
      BstrHandle whole(text);
      removed.reset();
      return whole;
    }
    BstrHandle trimmed(text.substr(0, last + 1));
    removed = Length(text) - Length(trimmed.View());
    return trimmed;
  });
  if (removed) tokens_removed.Write(*removed);
  return result;
}

BstrHandle classOrvix::SuperLTrim(TextView text, OptionalLongOut tokens_removed, FalseByDefault ignore_line_breaks) {
  LONG removed = 0;
  BstrHandle result = ReportAndContinue(u"Error SuperLTrim.", text, [&] {
    const std::size_t first = text.find_first_not_of(ignore_line_breaks ? kLeadingBlanksAndLineBreaks : kLeadingBlanks);
    // Blank throughout: the text comes back as it is, with the count 0.
    if (first == TextView::npos) return BstrHandle(text);
    BstrHandle trimmed(text.substr(first));
    // What follows the first character that stays, not what went: "abc" gives 2.
    removed = Length(trimmed.View()) - 1;
    return trimmed;
  });
  tokens_removed.Write(removed);
  return result;
}

BstrHandle classOrvix::SuperLTrim2(TextView text) {
  TextView trimmed = text;
  return ReportAndContinue(u"Error SuperLTrim2.", trimmed, [&] {
    while (!trimmed.empty() && kSpaceTabLineBreak.find(trimmed.front()) != TextView::npos) {
      if (trimmed.front() != u' ') trimmed = Mid(trimmed, 2);
      trimmed = LeftTrimSpaces(trimmed);
    }
    return BstrHandle(trimmed);
  });
}

BstrHandle classOrvix::TabLTrim(TextView text) {
  TextView trimmed = text;
  return FallBackSilently(trimmed, [&] {
    while (trimmed.starts_with(u'\t')) trimmed = Mid(trimmed, 2);
    return BstrHandle(trimmed);
  });
}

}  // namespace Orvix::component
