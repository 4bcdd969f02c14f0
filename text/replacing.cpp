// Replacing every occurrence of a text in one pass where the result is not longer
// than the text; else the occurrences are counted first, so that the result has
// its exact length from the start.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"
#include "frame/unit_scan.h"
#include "text/occurrences.h"

namespace Orvix::component {

namespace {

// The upper case of a block of ASCII into `to`; false, with `to` of no use, when
// there is another unit in it.
bool UpperAscii(TextView block, char16_t* to) {
  unsigned all = 0;
  for (std::size_t i = 0; i < block.size(); ++i) {
    const char16_t unit = block[i];
    const bool small = static_cast<char16_t>(unit - u'a') < 26;
    to[i] = static_cast<char16_t>(unit - (small ? 0x20 : 0));
    all |= unit;
  }
  return all < 0x80;
}

// Upper, at the speed of memory where the text is ASCII.
void UpperInto(TextView text, char16_t* to) {
  if (!UpperAscii(text, to)) Upper(text).copy(to, text.size());
}

bool IsPairAt(TextView text, std::size_t at) {
  return at > 0 && at < text.size() && text_detail::IsHigh(text[at - 1]) && text_detail::IsLow(text[at]);
}

// Targets up to this length are looked for block by block; a longer one in a copy
// of the whole text.
constexpr std::size_t kLongTarget = 512;

// ForEachOccurrence of a target in upper case, in the upper case of a text.
template <class Visit>
void ForEachOccurrenceInUpper(TextView text, TextView target, std::size_t start, Visit&& visit) {
  const std::size_t width = target.size();
  if (width > kLongTarget) {
    Text upper(text.size(), u'\0');
    UpperInto(text, upper.data());
    return ForEachOccurrence(upper, target, start, visit);
  }
  constexpr std::size_t kBlock = 2048;
  char16_t upper[kBlock + kLongTarget + 2];
  std::size_t next = start;  // where the last occurrence ended
  for (std::size_t at = start; at + width <= text.size(); at += kBlock) {
    // All that an occurrence beginning in the block may reach. A pair of surrogates
    // at either end is taken whole.
    const std::size_t end = std::min(at + kBlock + width - 1, text.size());
    const std::size_t first = IsPairAt(text, at) ? at - 1 : at;
    const std::size_t last = IsPairAt(text, end) ? end + 1 : end;
    UpperInto(text.substr(first, last - first), upper);
    const std::size_t from = std::max(at, next);
    if (from >= end) continue;
    ForEachOccurrence(TextView(upper + (from - first), end - from), target, 0, [&](std::size_t found) {
      visit(from + found);
      next = from + found + width;
    });
  }
}

// Fills a text of known length from its start on.
class Filler {
 public:
  Filler(char16_t* text, std::size_t length) : at_(text), end_(text + length) {}

  // Adds `count` units of `source` from index `from` on.
  void Add(TextView source, std::size_t from, std::size_t count) {
    // Short pieces are the rule: a fixed number of units costs less than an
    // exact one, and what is too much is written over by the next piece.
    if (count <= kShort && source.size() - from >= kShort && static_cast<std::size_t>(end_ - at_) >= kShort) {
      std::memcpy(at_, source.data() + from, kShort * sizeof(char16_t));
    } else if (count != 0) {
      std::memcpy(at_, source.data() + from, count * sizeof(char16_t));
    }
    at_ += count;
  }
  void Add(TextView source) {
    for (std::size_t i = 0; i < source.size(); ++i) at_[i] = source[i];
    at_ += source.size();
  }
  void AddSpace() { *at_++ = u' '; }

 private:
  static constexpr std::size_t kShort = 16;
  char16_t* at_;
  char16_t* end_;
};

}  // namespace

BstrHandle classOrvix::MyReplace(TextView text, TextView target, TextView replacement, OptionalBool no_case_match,
                                 OptionalLongOut number_of_replacements) {
  LONG replacements = 0;
  BstrHandle result = ReportAndContinue(u"Error replacing.", text, [&] {
    if (target.empty()) return BstrHandle(text);  // nothing is no occurrence
    const Text upper_target = no_case_match ? Upper(target) : Text{};
    const auto for_each = [&](std::size_t start, auto&& visit) {
      if (no_case_match) {
        ForEachOccurrenceInUpper(text, upper_target, start, visit);
      } else {
        ForEachOccurrence(text, target, start, visit);
      }
    };
    // The first occurrences of a result that is longer, so that most texts are
    // searched once.
    constexpr std::size_t kMostKept = 1 << 16;
    std::vector<std::uint32_t> kept;
    std::size_t count = 0;
    std::uint64_t length = text.size();
    if (replacement.size() > target.size()) {
      for_each(0, [&](std::size_t at) {
        if (++count <= kMostKept) kept.push_back(static_cast<std::uint32_t>(at));
      });
      length += std::uint64_t{replacement.size() - target.size()} * count;
      // A length that does not fit wraps: negative, or too short for the pieces.
      // Both are an invalid argument.
      if (length > std::uint64_t{std::numeric_limits<LONG>::max()}) RaiseRuntimeError(kInvalidArgument);
    }

    const auto units = static_cast<std::size_t>(length);
    BstrHandle replaced = BstrHandle::OfLength(units);
    Filler filler(replaced.data(), units);
    std::size_t from = 0;
    std::size_t made = 0;
    const auto replace = [&](std::size_t at) {
      filler.Add(text, from, at - from);
      filler.Add(replacement);
      from = at + target.size();
      ++made;
    };
    for (const std::size_t at : kept) replace(at);
    if (count == 0 ? replacement.size() <= target.size() : count > kept.size()) for_each(from, replace);
    count = made;
    const std::size_t tail = text.size() - from;
    if (count == 0) {
      filler.Add(text, 0, tail);
      return replaced;
    }
    // Where a deletion ends the text, the empty replacement goes behind the end
    // of the result: an invalid argument as well. Callers rely on it.
    if (replacement.empty() && tail == 0) RaiseRuntimeError(kInvalidArgument);
    // One single character behind the last occurrence is not copied: its place
    // holds a space. Callers rely on it.
    if (tail >= 2) {
      filler.Add(text, from, tail);
    } else if (tail == 1) {
      filler.AddSpace();
    }
    replaced.Shorten(units - (target.size() - std::min(replacement.size(), target.size())) * count);
    replacements = static_cast<LONG>(count);
    return replaced;
  });
  if (replacements != 0) number_of_replacements.Write(replacements);
  return result;
}

}  // namespace Orvix::component
