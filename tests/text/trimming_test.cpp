// Trimming: what counts as blank, and what the counts say.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

using namespace std::string_view_literals;

constexpr LONG kUntouched = 7;

struct Trimmed {
  Text text;
  LONG count;
  bool operator==(const Trimmed&) const = default;
};

class TrimmingTest : public ::testing::Test {
 protected:
  ~TrimmingTest() override { EXPECT_TRUE(host_.boxes.empty()); }
  Trimmed Right(TextView text) {
    const BstrHandle argument(text);
    LONG count = kUntouched;
    Text trimmed = Returned([&](BSTR* result) { return orvix_->SuperRTrim(argument.get(), &count, result); });
    return {std::move(trimmed), count};
  }
  Trimmed Left(TextView text, VARIANT_BOOL ignore_line_breaks = VARIANT_FALSE) {
    const BstrHandle argument(text);
    LONG count = kUntouched;
    Text trimmed =
        Returned([&](BSTR* result) { return orvix_->SuperLTrim(argument.get(), &count, &ignore_line_breaks, result); });
    return {std::move(trimmed), count};
  }
  Text Left2(TextView text) {
    const BstrHandle argument(text);
    return Returned([&](BSTR* result) { return orvix_->SuperLTrim2(argument.get(), result); });
  }
  Text Tabs(TextView text) {
    const BstrHandle argument(text);
    return Returned([&](BSTR* result) { return orvix_->TabLTrim(argument.get(), result); });
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(TrimmingTest, RightCountsWhatFollowsTheLastCharacterThatStays) {
  EXPECT_EQ(Right(u"abc  "), (Trimmed{u"abc", 2}));
  EXPECT_EQ(Right(u"abc\t \0"sv), (Trimmed{u"abc", 3}));
  EXPECT_EQ(Right(u"a\1\2\3"sv), (Trimmed{u"a", 3}));
  EXPECT_EQ(Right(u"a\4"sv), (Trimmed{u"a\4", 0}));
  EXPECT_EQ(Right(u"abc\n"), (Trimmed{u"abc\n", 0}));
  EXPECT_EQ(Right(u"abc\r"), (Trimmed{u"abc\r", 0}));
  EXPECT_EQ(Right(u" a\tb "), (Trimmed{u" a\tb", 1}));
}

TEST_F(TrimmingTest, RightLeavesABlankTextAndItsCountAlone) {
  EXPECT_EQ(Right(u"   "), (Trimmed{u"   ", kUntouched}));
  EXPECT_EQ(Right(u""), (Trimmed{u"", kUntouched}));
}

TEST_F(TrimmingTest, LeftCountsWhatFollowsTheFirstCharacterThatStays) {
  EXPECT_EQ(Left(u"  ab"), (Trimmed{u"ab", 1}));
  EXPECT_EQ(Left(u"abc"), (Trimmed{u"abc", 2}));
  EXPECT_EQ(Left(u" \ta\t b "), (Trimmed{u"a\t b ", 4}));
  EXPECT_EQ(Left(u"\nx"), (Trimmed{u"\nx", 1}));
  EXPECT_EQ(Left(u"\0x"sv), (Trimmed{Text(u"\0x"sv), 1}));
}

TEST_F(TrimmingTest, LeftTakesLineBreaksAndLowCodesOnRequest) {
  EXPECT_EQ(Left(u"\nx", VARIANT_TRUE), (Trimmed{u"x", 0}));
  EXPECT_EQ(Left(u"\r\n \t\0\1\2\3x\r"sv, VARIANT_TRUE), (Trimmed{u"x\r", 1}));
  EXPECT_EQ(Left(u"\4x"sv, VARIANT_TRUE), (Trimmed{u"\4x", 1}));
  EXPECT_EQ(Left(u"\rx", 1), (Trimmed{u"x", 0}));  // any value but 0 is True
}

TEST_F(TrimmingTest, LeftLeavesABlankTextWithTheCountZero) {
  EXPECT_EQ(Left(u"   "), (Trimmed{u"   ", 0}));
  EXPECT_EQ(Left(u""), (Trimmed{u"", 0}));
  EXPECT_EQ(Left(u"\r\n", VARIANT_TRUE), (Trimmed{u"\r\n", 0}));
}

TEST_F(TrimmingTest, OptionalArgumentsMayBeLeftOut) {
  const BstrHandle text(u" \na ");
  EXPECT_EQ(Returned([&](BSTR* result) { return orvix_->SuperRTrim(text.get(), nullptr, result); }), u" \na");
  EXPECT_EQ(Returned([&](BSTR* result) { return orvix_->SuperLTrim(text.get(), nullptr, nullptr, result); }), u"\na ");
  EXPECT_EQ(Returned([&](BSTR* result) { return orvix_->SuperLTrim2(nullptr, result); }), u"");
}

TEST_F(TrimmingTest, TheSecondLeftOneTakesABlankTextWhole) {
  EXPECT_EQ(Left2(u" \t\r\nab"), u"ab");
  EXPECT_EQ(Left2(u"   "), u"");
  EXPECT_EQ(Left2(u"\n \n"), u"");
  EXPECT_EQ(Left2(u"\0a"sv), Text(u"\0a"sv));
  EXPECT_EQ(Left2(u"a\tb "), u"a\tb ");
  EXPECT_EQ(Left2(u""), u"");
}

TEST_F(TrimmingTest, OnlyLeadingTabsGo) {
  EXPECT_EQ(Tabs(u"\t\ta\t"), u"a\t");
  EXPECT_EQ(Tabs(u" \ta"), u" \ta");
  EXPECT_EQ(Tabs(u"\t \ta"), u" \ta");
  EXPECT_EQ(Tabs(u"\t\t"), u"");
  EXPECT_EQ(Tabs(u""), u"");
}

}  // namespace
}  // namespace Orvix::testing
