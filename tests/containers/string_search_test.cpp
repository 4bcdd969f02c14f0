// Searches in the text buffer, and its content as a list.
#include "tests/containers/text_buffer.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

constexpr LONG kSmallest = -2147483647 - 1;
constexpr LONG kLargest = 2147483647;

struct Case {
  TextView content;
  TextView search;
  LONG start;
  LONG instr;
  LONG find;
};

TEST(StringSearch, FindsTheFirstMatchFromAPositionOn) {
  const Case cases[] = {
      {u"Hello world", u"o", 1, 5, 5},
      {u"Hello world", u"o", 6, 8, 8},
      {u"Hello world", u"o", 8, 8, 8},
      {u"Hello world", u"o", 9, 0, 0},
      {u"Hello world", u"world", 1, 7, 7},
      {u"Hello world", u"world", 7, 7, 7},
      {u"Hello world", u"world", 8, 0, 0},
      {u"Hello world", u"World", 1, 0, 0},
      {u"Hello world", u"xyz", 1, 0, 0},
      {u"Hello world", u"Hello world", 1, 1, 1},
      {u"Hello world", u"Hello world!", 1, 0, 0},
      {u"Hello world", u"d", 11, 11, 11},
      {u"Hello world", u"d", 12, 0, 0},
      {u"Hello world", u"", 4, 4, 0},
      {u"Hello world", u"", -7, -7, 0},
      {u"", u"", 1, 1, 0},
      {u"", u"a", 1, 0, 0},
      {u"Hello world", u"H", 0, 1, 1},
      {u"Hello world", u"e", -5, 2, 2},
      {u"Hello world", u"e", kSmallest, 0, 2},
      {u"Hello world", u"e", kLargest, 0, 0},
      {u"aaab", u"aab", 1, 2, 2},
      {u"abababac", u"abac", 1, 5, 5},
      {u"a\u20acb", u"\u20acb", 1, 2, 2},
      {u"what? no", u"\u4e2d", 1, 5, 5},
  };
  for (const Case& c : cases) {
    const Buffer buffer = BufferOf(c.content);
    EXPECT_EQ(Instr(buffer, c.search, c.start), c.instr) << ToUtf8(c.search) << " from " << c.start;
    EXPECT_EQ(Find(buffer, c.search, c.start), c.find) << ToUtf8(c.search) << " from " << c.start;
  }
}

TEST(StringSearch, MatchesLieInTheContentAlone) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetLength(buffer, 4), kDone);
  EXPECT_EQ(Instr(buffer, u"de"), 0);
  EXPECT_EQ(Find(buffer, u"de"), 0);
  EXPECT_EQ(Find(buffer, u"e"), 0);
  EXPECT_EQ(Find(buffer, u"cd"), 3);
}

TEST(StringSearch, InstrTakesNumbersBuffersAndItself) {
  const Buffer buffer = BufferOf(u"a1 wor");
  EXPECT_EQ(Instr(buffer, Variant(1).get()), 2);
  EXPECT_EQ(Instr(buffer, ObjectValue(BufferOf(u"wor").get())), 4);
  EXPECT_EQ(Instr(buffer, ObjectValue(BufferOf(u"").get()), 9), 9);
  EXPECT_EQ(Instr(buffer, ObjectValue(buffer.get())), 1);
  EXPECT_EQ(Instr(buffer, ObjectValue(buffer.get()), 2), 0);
  VARIANT null = Null();
  LONG position = -1;
  EXPECT_EQ(OutcomeOf(buffer->Instr(&null, nullptr, &position)),
            (Outcome{94, u"Orvix.classString", u"Invalid use of Null"}));
}

TEST(StringSearch, FindRemembersItsTextAndNotTheContent) {
  const Buffer buffer = BufferOf(u"one two one");
  EXPECT_EQ(Find(buffer, u"two"), 5);
  ASSERT_EQ(SetValue(buffer, u"two"), kDone);
  EXPECT_EQ(Find(buffer, u"two"), 1);
  EXPECT_EQ(Find(buffer, u"tw"), 1);
  EXPECT_EQ(Find(buffer, u"TWO"), 0);
  EXPECT_EQ(Find(buffer, u""), 0);
  EXPECT_EQ(Find(buffer, u"two"), 1);
}

TEST(StringSearch, LongPatternsAreFound) {
  const Text pattern = Text(32767, u'a') + u"b";
  const Buffer buffer = BufferOf(u"xx" + Text(100, u'a') + pattern + u"yy");
  EXPECT_EQ(Find(buffer, pattern), 103);
  EXPECT_EQ(Find(buffer, pattern, 104), 0);
  EXPECT_EQ(Find(buffer, pattern.substr(1), 104), 104);
}

class StringList : public ::testing::Test {
 protected:
  Text Element(const Buffer& buffer, LONG index, TextView separator) {
    const BstrHandle text(separator);
    return Returned([&](BSTR* result) { return buffer->GetElement(index, text.get(), result); });
  }
  LONG Count(const Buffer& buffer, TextView separator) {
    const BstrHandle text(separator);
    LONG count = -1;
    EXPECT_EQ(buffer->LengthList(text.get(), &count), S_OK);
    return count;
  }
  RecordingHost host_;
};

TEST_F(StringList, WalksRoundAndRound) {
  const Buffer buffer = BufferOf(u"a,b,c");
  const std::pair<LONG, TextView> cases[] = {{kSmallest, u"a"},
                                             {0, u"a"},
                                             {1, u"a"},
                                             {2, u"b"},
                                             {3, u"c"},
                                             {4, u""},
                                             {5, u"b"},
                                             {6, u"c"},
                                             {7, u""},
                                             // 2147483646 searches are a whole number of rounds of 3
                                             {kLargest, u""},
                                             {kLargest - 1, u"c"}};
  for (const auto& [index, element] : cases) EXPECT_EQ(Element(buffer, index, u","), element) << index;
  EXPECT_EQ(Count(buffer, u","), 3);
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(StringList, EdgesOfElementsAndSeparators) {
  const struct {
    TextView list;
    TextView separator;
    LONG count;
    TextView first;
    TextView second;
  } cases[] = {
      {u"", u",", 0, u"", u""},
      {u"a", u",", 1, u"a", u""},
      {u",", u",", 2, u"", u""},
      {u"a,", u",", 2, u"a", u""},
      {u",b", u",", 2, u"", u"b"},
      {u"a--b", u"--", 2, u"a", u"b"},
      {u"--a--b", u"--", 2, u"--a", u"b"},  // the first search starts at 2
      {u"a---b", u"---", 1, u"a---b", u""},
      {u"ab", u"", 1, u"ab", u""},
      {u"aXb", u"x", 1, u"aXb", u""},
      {u"a\u20acb", u"\u20ac", 2, u"a", u"b"},
      {u"aaaa", u"aa", 2, u"a", u"a"},  // at 2; from 4 on there is no other
  };
  for (const auto& c : cases) {
    const Buffer buffer = BufferOf(c.list);
    EXPECT_EQ(Count(buffer, c.separator), c.count) << ToUtf8(c.list);
    EXPECT_EQ(Element(buffer, 1, c.separator), c.first) << ToUtf8(c.list);
    EXPECT_EQ(Element(buffer, 2, c.separator), c.second) << ToUtf8(c.list);
  }
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(StringList, FailuresAreReportedAndNotRaised) {
  const Buffer buffer = BufferOf(u"ab,cdef");
  ASSERT_EQ(SetBufferSize(buffer, 3), kDone);
  EXPECT_EQ(Element(buffer, 1, u","), u"ab");  // all of it is there
  EXPECT_TRUE(host_.boxes.empty());
  EXPECT_EQ(Element(buffer, 2, u","), u"");
  // Separators that are found nowhere without a search.
  EXPECT_EQ(Element(buffer, 1, u""), u"");
  EXPECT_EQ(Element(buffer, 1, u"longer than the list"), u"");
  EXPECT_EQ(Count(buffer, u","), 0);
  const std::vector<MessageBoxRequest> expected = {
      {u"Error GetElement.\r\nSubscript out of range", 16, u"Orvix"},
      {u"Error GetElement.\r\nSubscript out of range", 16, u"Orvix"},
      {u"Error GetElement.\r\nSubscript out of range", 16, u"Orvix"},
      {u"Error LengthList.\r\nSubscript out of range", 16, u"Orvix"},
  };
  EXPECT_EQ(host_.boxes, expected);
}

}  // namespace
}  // namespace Orvix::testing
