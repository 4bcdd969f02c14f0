// Trimming: blanks at either end go, blanks inside stay. The members differ in
// what counts as blank and in what becomes of a text that is blank throughout;
// callers rely on each of these differences.
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

// A count that becomes 0 unless it is kept, so that a failing member leaves 0.
class CountOrZero {
 public:
  explicit CountOrZero(OptionalLongOut target) : target_(target) {}
  CountOrZero(CountOrZero&&) = delete;
  ~CountOrZero() {
    if (!kept_) target_.Write(0);
  }
  void Keep(LONG count) {
    target_.Write(count);
    kept_ = true;
  }
  void KeepUnwritten() { kept_ = true; }

 private:
  OptionalLongOut target_;
  bool kept_ = false;
};

}  // namespace

Text classOrvix::SuperRTrim(TextView text, OptionalLongOut tokens_removed) {
  CountOrZero removed(tokens_removed);
  return ReportAndContinue(u"Error SuperRTrim.", text, [&] {
    const std::size_t last = text.find_last_not_of(kTrailingBlanks);
    if (last == TextView::npos) {
      // Blank throughout: the text comes back as it is, and the caller's count
      // keeps what it held.
      Text whole(text);
      removed.KeepUnwritten();
      return whole;
    }
    Text trimmed(text.substr(0, last + 1));
    removed.Keep(Length(text) - Length(trimmed));
    return trimmed;
  });
}

Text classOrvix::SuperLTrim(TextView text, OptionalLongOut tokens_removed, FalseByDefault ignore_line_breaks) {
  CountOrZero removed(tokens_removed);
  return ReportAndContinue(u"Error SuperLTrim.", text, [&] {
    const std::size_t first = text.find_first_not_of(ignore_line_breaks ? kLeadingBlanksAndLineBreaks : kLeadingBlanks);
    // Blank throughout: the text comes back as it is, with the count 0.
    if (first == TextView::npos) return Text(text);
    Text trimmed(text.substr(first));
    // What follows the first character that stays, not what went: "abc" gives 2.
    removed.Keep(Length(trimmed) - 1);
    return trimmed;
  });
}

Text classOrvix::SuperLTrim2(TextView text) {
  TextView trimmed = text;
  return ReportAndContinue(u"Error SuperLTrim2.", trimmed, [&] {
    while (!trimmed.empty() && kSpaceTabLineBreak.find(trimmed.front()) != TextView::npos) {
      if (trimmed.front() != u' ') trimmed = Mid(trimmed, 2);
      trimmed = LeftTrimSpaces(trimmed);
    }
    return Text(trimmed);
  });
}

Text classOrvix::TabLTrim(TextView text) {
  TextView trimmed = text;
  return FallBackSilently(trimmed, [&] {
    while (trimmed.starts_with(u'\t')) trimmed = Mid(trimmed, 2);
    return Text(trimmed);
  });
}

}  // namespace Orvix::component
