// Separated lists: the tables that callers rely on, reports, and the walk round.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

class ListTest : public ::testing::Test {
 protected:
  Text Get(TextView list, LONG index, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle s(separator);
    return Returned([&](BSTR* result) { return orvix_->GetElement(l.get(), index, s.get(), result); });
  }
  LONG Count(TextView list, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle s(separator);
    LONG count = -1;
    EXPECT_EQ(orvix_->LengthList(l.get(), s.get(), &count), S_OK);
    return count;
  }
  LONG FindFirst(TextView list, TextView element, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle e(element);
    const BstrHandle s(separator);
    LONG place = -1;
    EXPECT_EQ(orvix_->FindFirstElement(l.get(), e.get(), s.get(), &place), S_OK);
    return place;
  }
  Text Insert(TextView list, TextView element, LONG position, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle e(element);
    BSTR s = NewBstr(separator);
    Text text = Returned([&](BSTR* result) { return orvix_->InsertElement(l.get(), e.get(), position, &s, result); });
    SysFreeString(s);
    return text;
  }
  Text Delete(TextView list, LONG index, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle s(separator);
    return Returned([&](BSTR* result) { return orvix_->DeleteElement(l.get(), index, s.get(), result); });
  }
  Text Add(TextView list, TextView element, TextView separator) {
    const BstrHandle l(list);
    const BstrHandle e(element);
    const BstrHandle s(separator);
    return Returned([&](BSTR* result) { return orvix_->AddElement(l.get(), e.get(), s.get(), result); });
  }
  void ExpectOneReport(TextView fixed_text) {
    ASSERT_EQ(host_.boxes.size(), 1u);
    EXPECT_EQ(host_.boxes[0].text, Text(fixed_text) + u"\r\nInvalid procedure call or argument");
    EXPECT_EQ(host_.boxes[0].style, 16);
    EXPECT_EQ(host_.boxes[0].title, u"Orvix");
    host_.boxes.clear();
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(ListTest, AddingJoinsAndNeverSearches) {
  EXPECT_EQ(Add(u"", u"b", u","), u"b");
  EXPECT_EQ(Add(u"a,b", u"c", u","), u"a,b,c");
  EXPECT_EQ(Add(u"a", u"", u","), u"a,");
  EXPECT_EQ(Add(u"a", u"b", u""), u"ab");
}

TEST_F(ListTest, CountsOneMoreThanTheSeparatorsFound) {
  EXPECT_EQ(Count(u"", u","), 0);
  EXPECT_EQ(Count(u"", u""), 0);
  EXPECT_EQ(Count(u"a", u","), 1);
  EXPECT_EQ(Count(u"a,b,", u","), 3);
  EXPECT_EQ(Count(u",,", u","), 3);
  EXPECT_EQ(Count(u"||a", u"||"), 1);
  EXPECT_EQ(Count(u"a||b", u"||"), 2);
  EXPECT_EQ(Count(u"a|||||b", u"||"), 3);
  EXPECT_EQ(Count(u"a+++b+++c", u"+++"), 2);
  EXPECT_EQ(Count(Text(u"a\0b\0c", 5), TextView(u"\0", 1)), 3);
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ListTest, GivesTheElementAtAPosition) {
  for (const LONG index : {1, 0, -5, -2147483647}) EXPECT_EQ(Get(u"a,b,c", index, u","), u"a");
  EXPECT_EQ(Get(u"a,b,c", 3, u","), u"c");
  EXPECT_EQ(Get(u"a,b,c", 4, u","), u"");
  EXPECT_EQ(Get(u"a,b,c", 2147483647, u","), u"");
  EXPECT_EQ(Get(u"a,,c", 2, u","), u"");
  EXPECT_EQ(Get(u"a,b,", 3, u","), u"");
  EXPECT_EQ(Get(u"", 1, u","), u"");
  EXPECT_EQ(Get(u"||a", 1, u"||"), u"||a");
  EXPECT_EQ(Get(u"||a||b", 1, u"||"), u"||a");
  EXPECT_EQ(Get(u"a+++b+++c", 1, u"+++"), u"a+++b");
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ListTest, FindsTheFirstEqualElement) {
  EXPECT_EQ(FindFirst(u"a,b,c", u"b", u","), 2);
  EXPECT_EQ(FindFirst(u"a,b,c", u"B", u","), 0);
  EXPECT_EQ(FindFirst(u"a,b,b", u"b", u","), 2);
  EXPECT_EQ(FindFirst(u"abc,d", u"b", u","), 0);
  EXPECT_EQ(FindFirst(u"a,,c", u"", u","), 2);
  EXPECT_EQ(FindFirst(u"a,b,", u"", u","), 3);
  EXPECT_EQ(FindFirst(u"", u"", u","), 0);
  EXPECT_EQ(FindFirst(u"a||b", u"b", u"||"), 2);
}

TEST_F(ListTest, InsertingJoinsTheElementBeforeAndWrapsRound) {
  EXPECT_EQ(Insert(u"a,b,c", u"X", 2, u","), u"aX,,b,c");
  EXPECT_EQ(Insert(u"a,b,c", u"X", 3, u","), u"a,bX,,c");
  EXPECT_EQ(Insert(u"a,b,c", u"X", 5, u","), u"aX,,b,c");
  EXPECT_EQ(Insert(u"a,b,c", u"X", 2147483645, u","), u"aX,,b,c");  // 2147483644 is 1 more than a multiple of 3
  EXPECT_TRUE(host_.boxes.empty());
  for (const LONG position : {4, 1, 0, -3}) {
    EXPECT_EQ(Insert(u"a,b,c", u"X", position, u","), u"a,b,c");
    ExpectOneReport(u"Error InsertElement.");
  }
  EXPECT_EQ(Insert(u"abc", u"X", 2, u","), u"abc");
  ExpectOneReport(u"Error InsertElement.");
  EXPECT_EQ(Insert(u"", u"X", 3, u","), u"");
  ExpectOneReport(u"Error InsertElement.");
}

TEST_F(ListTest, DeletingWrapsRoundAndDropsEmptyEnds) {
  EXPECT_EQ(Delete(u"a,b,c", 2, u","), u"a,c");
  EXPECT_EQ(Delete(u"a,b,c", 1, u","), u"b,c");
  EXPECT_EQ(Delete(u"a,b,c", 3, u","), u"a,b");
  EXPECT_EQ(Delete(u"a,b,c", 4, u","), u"b,c");
  EXPECT_EQ(Delete(u"a,b,c", 5, u","), u"a,c");
  EXPECT_EQ(Delete(u"a,b,c", 0, u","), u"b,c");
  EXPECT_EQ(Delete(u"a,b,c", 2147483647, u","), u"b,c");  // 2147483646 is a multiple of 3
  EXPECT_EQ(Delete(u"abc", 1, u","), u"");
  EXPECT_EQ(Delete(u",b,c", 2, u","), u"c");
  EXPECT_EQ(Delete(u"a,b,", 2, u","), u"a");
  EXPECT_EQ(Delete(u"", 1, u","), u"");
  EXPECT_TRUE(host_.boxes.empty());
}

// Separators of several units, and what the first search leaves unseen.
TEST_F(ListTest, WideSeparatorsAtEveryPosition) {
  struct Case {
    TextView list, separator;
    LONG position;
    TextView element, inserted, deleted;  // inserted: null where it is refused
  };
  const Case cases[] = {
      {u"a||b||c", u"||", 1, u"a", {}, u"b||c"},
      {u"a||b||c", u"||", 2, u"b", u"aX||||b||c", u"a||c"},
      {u"a||b||c", u"||", 3, u"c", u"a||bX||||c", u"a||b"},
      {u"a||b||c", u"||", 4, u"", {}, u"b||c"},
      {u"a||b||c", u"||", 5, u"", u"aX||||b||c", u"a||c"},
      {u"||a||b", u"||", 1, u"||a", {}, u"b"},
      {u"||a||b", u"||", 2, u"b", u"||aX||||b", u"||a"},
      {u"||a||b", u"||", 3, u"", {}, u"b"},
      {u"a||b||", u"||", 2, u"b", u"aX||||b||", u"a"},
      {u"a||b||", u"||", 3, u"", u"a||bX||||", u"a||b"},
      {u"a+++b+++c", u"+++", 2, u"c", u"a+++bX++++++c", u"a+++b"},
      {u"a+++b+++c", u"+++", 1, u"a+++b", {}, u"c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.list) + " at " + std::to_string(c.position));
    EXPECT_EQ(Get(c.list, c.position, c.separator), c.element);
    EXPECT_EQ(Delete(c.list, c.position, c.separator), c.deleted);
    EXPECT_TRUE(host_.boxes.empty());
    if (c.inserted.data() != nullptr) {
      EXPECT_EQ(Insert(c.list, u"X", c.position, c.separator), c.inserted);
      EXPECT_TRUE(host_.boxes.empty());
    } else {
      EXPECT_EQ(Insert(c.list, u"X", c.position, c.separator), c.list);
      ExpectOneReport(u"Error InsertElement.");
    }
  }
}

TEST_F(ListTest, AnEmptySeparatorIsReportedAndFallsBack) {
  EXPECT_EQ(Get(u"a,b", 1, u""), u"");
  ExpectOneReport(u"Error GetElement.");
  EXPECT_EQ(Get(u"", 2, u""), u"");
  ExpectOneReport(u"Error GetElement.");
  EXPECT_EQ(Count(u"a,b", u""), 0);
  ExpectOneReport(u"Error LengthList.");
  EXPECT_EQ(Insert(u"a,b", u"X", 2, u""), u"a,b");
  ExpectOneReport(u"Error InsertElement.");
  EXPECT_EQ(Delete(u"a,b", 1, u""), u"a,b");
  ExpectOneReport(u"Error DeleteElement.");
  EXPECT_EQ(FindFirst(u"a,b", u"b", u""), 0);
  ExpectOneReport(u"Error LengthList.");
  EXPECT_EQ(FindFirst(u"a,b", u"z", u""), 0);
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ListTest, NullTextsAreEmptyAndNullPointersAreRefused) {
  LONG count = 7;
  EXPECT_EQ(orvix_->LengthList(nullptr, nullptr, &count), S_OK);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(orvix_->LengthList(nullptr, nullptr, nullptr), E_POINTER);
  BSTR text = nullptr;
  EXPECT_EQ(orvix_->InsertElement(nullptr, nullptr, 2, nullptr, &text), E_POINTER);
  EXPECT_EQ(text, nullptr);
}

}  // namespace
}  // namespace Orvix::testing
