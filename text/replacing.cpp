// Replacing every occurrence of a text. The occurrences are counted first, so
// that the result has its exact length from the start and is filled in place.
#include <cstdint>
#include <cstring>
#include <limits>

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
Text UpperInBlocks(TextView text) {
  constexpr std::size_t kBlock = 512;
  Text upper(text.size(), u'\0');
  for (std::size_t at = 0; at < text.size();) {
    TextView block = text.substr(at, kBlock);
    // A pair of surrogates stays in one block; a high one that another one follows
    // is none.
    const std::size_t next = at + block.size();
    if (next < text.size() && text_detail::IsHigh(block.back()) && text_detail::IsLow(text[next])) {
      block = text.substr(at, kBlock + 1);
    }
    if (!UpperAscii(block, upper.data() + at)) Upper(block).copy(upper.data() + at, block.size());
    at += block.size();
  }
  return upper;
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
    } else {
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
    Text upper_text;
    Text upper_target;
    if (no_case_match) {
      upper_text = UpperInBlocks(text);
      upper_target = Upper(target);
    }
    const TextView searched = no_case_match ? TextView(upper_text) : text;
    const TextView wanted = no_case_match ? TextView(upper_target) : target;

    const std::size_t count = WalkOccurrences(searched, wanted, 0, std::numeric_limits<std::size_t>::max()).count;
    if (count == 0) return BstrHandle(text);
    const auto growth = static_cast<std::int64_t>(replacement.size()) - static_cast<std::int64_t>(target.size());
    const std::int64_t length = static_cast<std::int64_t>(text.size()) + growth * static_cast<std::int64_t>(count);
    // A length that does not fit wraps: negative, or too short for the pieces.
    // Both are an invalid argument.
    if (length > std::numeric_limits<LONG>::max()) RaiseRuntimeError(kInvalidArgument);

    BstrHandle replaced = BstrHandle::OfLength(static_cast<std::size_t>(length));
    Filler filler(replaced.data(), static_cast<std::size_t>(length));
    std::size_t from = 0;
    ForEachOccurrence(searched, wanted, [&](std::size_t at) {
      filler.Add(text, from, at - from);
      filler.Add(replacement);
      from = at + target.size();
    });
    const std::size_t tail = text.size() - from;
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
    replacements = static_cast<LONG>(count);
    return replaced;
  });
  if (replacements != 0) number_of_replacements.Write(replacements);
  return result;
}

}  // namespace Orvix::component
