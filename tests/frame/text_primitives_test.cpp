// The primitives that the members are written in: edge rules, and the vector
// scan against a plain one.
#include "frame/text_primitives.h"

#include <gtest/gtest.h>

#include <random>

#include "frame/unit_scan.h"

namespace Orvix::component {
namespace {

LONG NumberOf(const auto& body) {
  try {
    body();
  } catch (const Error& error) {
    EXPECT_EQ(error.description(), u"Invalid procedure call or argument");
    return error.number();
  }
  return 0;
}

TEST(Find, FollowsItsEdgeRulesInOrder) {
  struct Case {
    LONG start;
    TextView text;
    TextView target;
    LONG expected;
  };
  const Case cases[] = {
      {1, u"", u"", 0},       {1, u"", u"a", 0},       {7, u"abcdef", u"", 0},  {6, u"abcdef", u"", 6},
      {4, u"abcdef", u"", 4}, {20, u"abcdef", u"", 0}, {1, u"abcabc", u"c", 3}, {4, u"abcabc", u"c", 6},
      {1, u"abc", u"B", 0},   {3, u"aaab", u"ab", 3},  {1, u"ab", u"abc", 0},   {2, u"xax", u"x", 3},
  };
  for (const Case& c : cases) EXPECT_EQ(Find(c.start, c.text, c.target), c.expected) << c.start;
  EXPECT_EQ(NumberOf([] { (void)Find(0, u"", u""); }), 5);
  EXPECT_EQ(NumberOf([] { (void)Find(-1, u"abc", u"a"); }), 5);
}

TEST(LeftAndMid, CutAtTheEndsAndRefuseNegativeCounts) {
  EXPECT_EQ(Left(u"abc", 2), u"ab");
  EXPECT_EQ(Left(u"abc", 4), u"abc");
  EXPECT_EQ(Mid(u"abc", 2, 1), u"b");
  EXPECT_EQ(Mid(u"abc", 3, 9), u"c");
  EXPECT_EQ(Mid(u"abc", 4, 1), u"");
  EXPECT_EQ(Mid(u"abc", 2), u"bc");
  EXPECT_EQ(NumberOf([] { (void)Left(u"abc", -1); }), 5);
  EXPECT_EQ(NumberOf([] { (void)Mid(u"abc", 0, 1); }), 5);
  EXPECT_EQ(NumberOf([] { (void)Mid(u"abc", 9, -1); }), 5);
}

TEST(Overwrite, WritesTheSmallestOfTheThreeCounts) {
  Text text = u"abcdef";
  Overwrite(text, 2, 2, u"XYZ");
  EXPECT_EQ(text, u"aXYdef");
  Overwrite(text, 6, 5, u"789");
  EXPECT_EQ(text, u"aXYde7");
  Overwrite(text, 1, 9, u"-");
  EXPECT_EQ(text, u"-XYde7");
  EXPECT_EQ(NumberOf([&] { Overwrite(text, 7, 0, u""); }), 5);
  EXPECT_EQ(NumberOf([&] { Overwrite(text, 0, 1, u"a"); }), 5);
}

TEST(Upper, MapsOneToOneAndKeepsTheLength) {
  EXPECT_EQ(Upper(u"az{`"), u"AZ{`");
  EXPECT_EQ(Upper(u"\u00e9\u00ff\u00df\u00b5"), u"\u00c9\u0178\u00df\u039c");
  EXPECT_EQ(Upper(u"\u0131\u01c6\u1f80\u24d0"), u"I\u01c4\u1f88\u24b6");
  EXPECT_EQ(Upper(u"\U00010428"), u"\U00010400");
  EXPECT_EQ(Lower(u"AZ[\u00c9\u0178\u0130"), u"az[\u00e9\u00ff\u0130");
}

TEST(Spaces, GivesTheCountAndRefusesNegativeOnes) {
  EXPECT_EQ(Spaces(0), u"");
  EXPECT_EQ(Spaces(3), u"   ");
  EXPECT_EQ(NumberOf([] { (void)Spaces(-1); }), 5);
  EXPECT_EQ(NumberOf([] { (void)Spaces(-2147483647 - 1); }), 5);
}

TEST(Char, FollowsTheCodePage) {
  struct Case {
    BYTE code;
    char16_t expected;
  };
  const Case cases[] = {
      {0, u'\0'},
      {65, u'A'},
      {0x7F, u'\u007f'},
      {0x80, u'\u20ac'},
      {0x83, u'\u0192'},
      {0x99, u'\u2122'},
      {0x9F, u'\u0178'},
      {0xA0, u'\u00a0'},
      {0xE9, u'\u00e9'},
      {0xFF, u'\u00ff'},
      // Codes that the page leaves open stay as they are.
      {0x81, u'\x81'},
      {0x8D, u'\x8d'},
      {0x8F, u'\x8f'},
      {0x90, u'\x90'},
      {0x9D, u'\x9d'},
  };
  for (const Case& c : cases) EXPECT_EQ(Char(c.code), c.expected) << int{c.code};
}

TEST(Equal, ComparesLengthAndUnits) {
  EXPECT_TRUE(Equal(u"", TextView{}));
  EXPECT_TRUE(Equal(TextView(u"a\0b", 3), TextView(u"a\0b", 3)));
  EXPECT_FALSE(Equal(TextView(u"a\0b", 3), TextView(u"a\0c", 3)));
  EXPECT_FALSE(Equal(u"a", u"A"));
  EXPECT_FALSE(Equal(u"a", u"ab"));
}

TEST(LeftTrimSpaces, TakesSpacesOnly) {
  EXPECT_EQ(LeftTrimSpaces(u"  \ta "), u"\ta ");
  EXPECT_EQ(LeftTrimSpaces(u"   "), u"");
}

TEST(ReplaceAll, GoesOnPastWhatItReplaced) {
  EXPECT_EQ(ReplaceAll(u"\\\\\\a\\\\", u"\\\\", u"@@"), u"@@\\a@@");
  EXPECT_EQ(ReplaceAll(u"abc", u"x", u"y"), u"abc");
}

// Texts of a few letters, so that finds touch, overlap and straddle blocks.
TEST(WalkOccurrences, AgreesWithAPlainWalk) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 4000; ++round) {
    Text text(random() % 700, u'a');
    const auto spread = 2 + random() % 12;  // dense and sparse finds
    for (char16_t& unit : text) unit = static_cast<char16_t>(u'a' + random() % spread);
    Text target(1 + random() % 4, u'a');
    for (char16_t& unit : target) unit = static_cast<char16_t>(u'a' + random() % 2);
    const std::size_t from = random() % 40;
    const std::size_t limit = 1 + random() % 90;
    Walk expected{0, kNotFound};
    for (std::size_t at = from; expected.count < limit;) {
      at = text.find(target, at);
      if (at == Text::npos) break;
      expected = {expected.count + 1, at};
      at += target.size();
    }
    const Walk walk = WalkOccurrences(text, target, from, limit);
    ASSERT_EQ(walk.count, expected.count) << round;
    ASSERT_EQ(walk.last, expected.count == limit ? expected.last : kNotFound) << round;
    const std::size_t first = text.find(target, from);
    ASSERT_EQ(FindUnits(text, target, from), first == Text::npos ? kNotFound : first) << round;
  }
}

}  // namespace
}  // namespace Orvix::component
