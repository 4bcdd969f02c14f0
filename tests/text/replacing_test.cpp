// Replacing: every occurrence, the lost last character, deletions at the end.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

constexpr LONG kUntouched = 77;

struct Replaced {
  Text text;
  LONG count;
  bool operator==(const Replaced&) const = default;
};

class ReplacingTest : public ::testing::Test {
 protected:
  Replaced Replace(TextView text, TextView target, TextView replacement, VARIANT_BOOL no_case = VARIANT_FALSE) {
    const BstrHandle t(text);
    const BstrHandle wanted(target);
    const BstrHandle with(replacement);
    LONG count = kUntouched;
    Text replaced = Returned(
        [&](BSTR* result) { return orvix_->MyReplace(t.get(), wanted.get(), with.get(), &no_case, &count, result); });
    return {std::move(replaced), count};
  }
  Replaced ReplaceNoCase(TextView text, TextView target, TextView replacement) {
    return Replace(text, target, replacement, VARIANT_TRUE);
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(ReplacingTest, ReplacesEveryOccurrence) {
  EXPECT_EQ(Replace(u"a-b-cd", u"-", u"+"), (Replaced{u"a+b+cd", 2}));
  EXPECT_EQ(Replace(u"Hello World", u"o", u"0"), (Replaced{u"Hell0 W0rld", 2}));
  EXPECT_EQ(Replace(u"one two one end", u"one", u"three"), (Replaced{u"three two three end", 2}));
  EXPECT_EQ(Replace(u"one two one end", u"one ", u""), (Replaced{u"two end", 2}));
  EXPECT_EQ(Replace(u"aaaaa..", u"aa", u"b"), (Replaced{u"bba..", 2}));  // no overlap
  EXPECT_EQ(Replace(u"xx", u"x", u"xx"), (Replaced{u"xxxx", 2}));        // what was put in is not searched
  EXPECT_EQ(Replace(u"ab", u"ab", u"c"), (Replaced{u"c", 1}));
  EXPECT_EQ(Replace(Text(u"a\0b\0cd", 6), TextView(u"\0", 1), u"-"), (Replaced{u"a-b-cd", 2}));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ReplacingTest, ASingleLastCharacterBecomesASpace) {
  EXPECT_EQ(Replace(u"a-b-c", u"-", u"+"), (Replaced{u"a+b+ ", 2}));
  EXPECT_EQ(Replace(u"xa", u"x", u"y"), (Replaced{u"y ", 1}));
  EXPECT_EQ(Replace(u"abc", u"b", u""), (Replaced{u"a ", 1}));
  EXPECT_EQ(Replace(u"xa", u"x", u""), (Replaced{u" ", 1}));
  EXPECT_EQ(Replace(u"xab", u"x", u""), (Replaced{u"ab", 1}));
  EXPECT_EQ(Replace(u"ax", u"x", u"y"), (Replaced{u"ay", 1}));
}

TEST_F(ReplacingTest, NothingFoundLeavesTextAndCount) {
  EXPECT_EQ(Replace(u"abc", u"z", u"y"), (Replaced{u"abc", kUntouched}));
  EXPECT_EQ(Replace(u"abc", u"abcd", u"y"), (Replaced{u"abc", kUntouched}));
  EXPECT_EQ(Replace(u"", u"a", u"y"), (Replaced{u"", kUntouched}));
  EXPECT_EQ(Replace(u"abc", u"", u"y"), (Replaced{u"abc", kUntouched}));
  EXPECT_EQ(Replace(u"", u"", u"y"), (Replaced{u"", kUntouched}));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ReplacingTest, ADeletionAtTheEndIsReported) {
  for (const auto& [text, target] : {std::pair<TextView, TextView>{u"aa", u"a"}, {u"ab", u"b"}, {u"abab", u"ab"}}) {
    EXPECT_EQ(Replace(text, target, u""), (Replaced{Text(text), kUntouched}));
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].text, u"Error replacing.\r\nInvalid procedure call or argument");
    EXPECT_EQ(host_.boxes[0].style, 16);
    EXPECT_EQ(host_.boxes[0].title, u"Orvix");
    host_.boxes.clear();
  }
}

// 4 900 000 000 units; as a 32-bit number that is 605 032 704, too few for the pieces.
TEST_F(ReplacingTest, AResultBeyondEveryLengthIsReported) {
  const Text text(70000, u'a');
  EXPECT_TRUE(Replace(text, u"a", Text(70000, u'b')) == (Replaced{text, kUntouched}));
  ASSERT_EQ(host_.boxes.size(), 1U);
  EXPECT_EQ(host_.boxes[0].text, u"Error replacing.\r\nInvalid procedure call or argument");
}

TEST_F(ReplacingTest, CaseCountsUnlessAskedOtherwise) {
  EXPECT_EQ(Replace(u"ABCD", u"b", u"x"), (Replaced{u"ABCD", kUntouched}));
  EXPECT_EQ(ReplaceNoCase(u"ABCD", u"b", u"x"), (Replaced{u"AxCD", 1}));
  EXPECT_EQ(ReplaceNoCase(u"aBc AbC aBx", u"ABC", u"x"), (Replaced{u"x x aBx", 2}));  // the rest keeps its case
  EXPECT_EQ(ReplaceNoCase(u"[{`az", u"[", u"-"), (Replaced{u"-{`az", 1}));            // neighbours of letters
  EXPECT_EQ(ReplaceNoCase(u"xy@`..", u"`", u"-"), (Replaced{u"xy@-..", 1}));
}

TEST_F(ReplacingTest, CaseIsThatOfEveryAlphabet) {
  EXPECT_EQ(ReplaceNoCase(u"\u00E4b\u00C4b..", u"\u00E4", u"a"), (Replaced{u"abab..", 2}));
  EXPECT_EQ(ReplaceNoCase(u"\u017Fs S..", u"s", u"x"), (Replaced{u"xx x..", 3}));  // the long s has the capital S
  EXPECT_EQ(ReplaceNoCase(u"\u0436\u0416..", u"\u0416", u"z"), (Replaced{u"zz..", 2}));
  EXPECT_EQ(ReplaceNoCase(u"\U00010428\U00010400..", u"\U00010428", u"d"), (Replaced{u"dd..", 2}));
}

// A near miss in the middle, and more occurrences than are kept from the count.
TEST_F(ReplacingTest, EveryUnitOfATargetCountsAndEveryOccurrence) {
  for (const std::size_t width : {3, 5, 6, 7, 12, 600}) {
    const Text target = u"<" + Text(width - 2, u'x') + u">";
    for (std::size_t wrong = 1; wrong + 1 < width; wrong += width > 20 ? 97 : 1) {
      Text miss = target;
      miss[wrong] = u'y';
      EXPECT_EQ(Replace(miss + target + u"..", target, u"-"), (Replaced{miss + u"-..", 1})) << width << " " << wrong;
      EXPECT_EQ(ReplaceNoCase(miss + target + u"..", target, u"-"), (Replaced{miss + u"-..", 1})) << width;
    }
  }
  constexpr std::size_t kMany = 70'000;
  Text twice;
  for (std::size_t i = 0; i < kMany; ++i) twice += u"bb";
  EXPECT_TRUE(Replace(Text(kMany, u'a') + u"..", u"a", u"bb") == (Replaced{twice + u"..", kMany}));
  // Occurrences that overlap across blocks: the first of them counts.
  EXPECT_TRUE(ReplaceNoCase(Text(5000, u'a') + u"..", u"AAA", u"b") == (Replaced{Text(1666, u'b') + u"aa..", 1666}));
  // The second half of a pair's capital, wherever a block ends.
  const Text before = Text(2047, u'-') + u"\xD801";
  const Text behind(100, u'-');
  EXPECT_TRUE(ReplaceNoCase(before + u"\xDC28" + behind, u"\xDC00", u"!") == (Replaced{before + u"!" + behind, 1}));
}

// Pairs of surrogates are told apart wherever they stand in a long text.
TEST_F(ReplacingTest, PairsStayWholeInLongTexts) {
  for (const std::size_t before : {510, 511, 512, 2045, 2046, 2047, 2048, 2049, 4094, 4095, 4096}) {
    const Text filling(before, u'-');
    EXPECT_EQ(ReplaceNoCase(filling + u"\U00010428" + filling, u"\U00010400", u"D"),
              (Replaced{filling + u"D" + filling, 1}))
        << before;
    // A high one in front of the pair belongs to none.
    EXPECT_EQ(ReplaceNoCase(filling + u"\xD801" + u"\U00010428" + filling, u"\U00010428", u"D"),
              (Replaced{filling + u"\xD801" + u"D" + filling, 1}))
        << before;
  }
}

TEST_F(ReplacingTest, FindsOccurrencesAnywhereInALongText) {
  for (std::size_t before = 0; before < 100; ++before) {
    const Text filling(before, u'.');
    EXPECT_EQ(Replace(filling + u"start" + filling + u"startend", u"start", u"-"),
              (Replaced{filling + u"-" + filling + u"-end", 2}))
        << before;
  }
}

TEST_F(ReplacingTest, OptionalArgumentsMayBeLeftOut) {
  const BstrHandle text(u"bBbb..");
  const BstrHandle target(u"b");
  EXPECT_EQ(Returned([&](BSTR* result) {
              return orvix_->MyReplace(text.get(), target.get(), text.get(), nullptr, nullptr, result);
            }),
            u"bBbb..BbBbb..bBbb....");
  EXPECT_EQ(
      Returned([&](BSTR* result) { return orvix_->MyReplace(nullptr, nullptr, nullptr, nullptr, nullptr, result); }),
      u"");
  EXPECT_EQ(Returned([&](BSTR* result) {
              return orvix_->MyReplace(nullptr, target.get(), text.get(), nullptr, nullptr, result);
            }),
            u"");
}

}  // namespace
}  // namespace Orvix::testing
