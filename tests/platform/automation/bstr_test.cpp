// Texts: lengths, terminators, odd byte counts and re-allocation.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

std::uint32_t PrefixOf(BSTR text) {
  std::uint32_t length = 0;
  std::memcpy(&length, reinterpret_cast<const char*>(text) - 4, 4);
  return length;
}

TEST(Bstr, NullStaysNullAndHasNoLength) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  SysFreeString(nullptr);
}

TEST(Bstr, CountsBytesBeforeTheTextAndEndsWithNul) {
  BSTR text = SysAllocStringLen(u"a\0bcd", 4);
  EXPECT_EQ(PrefixOf(text), 8u);
  EXPECT_EQ(SysStringLen(text), 4u);
  EXPECT_EQ(TextView(text, 5), TextView(u"a\0bc\0", 5));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(text) % 8, 0u);
  SysFreeString(text);
}

TEST(Bstr, NothingOfLengthZeroIsATextAndNotNull) {
  BSTR text = SysAllocStringLen(nullptr, 0);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text[0], u'\0');
  EXPECT_EQ(PrefixOf(text), 0u);
  SysFreeString(text);
}

TEST(Bstr, UndefinedUnitsStillEndWithNul) {
  BSTR text = SysAllocStringLen(nullptr, 3);
  EXPECT_EQ(SysStringLen(text), 3u);
  EXPECT_EQ(text[3], u'\0');
  SysFreeString(text);
}

TEST(Bstr, OddByteLengthKeepsEveryByteAndACleanEnd) {
  BSTR text = SysAllocStringByteLen("\1\2\3", 3);
  EXPECT_EQ(SysStringByteLen(text), 3u);
  EXPECT_EQ(SysStringLen(text), 1u);
  EXPECT_EQ(std::memcmp(text, "\1\2\3\0\0\0", 6), 0);
  SysFreeString(text);
}

TEST(Bstr, ImpossibleLengthsGiveNull) {
  EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFFF), nullptr);
  EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFF), nullptr);
  EXPECT_EQ(SysAllocStringLen(nullptr, 0x80000000), nullptr);
}

TEST(Bstr, ReallocationKeepsTheCommonBeginning) {
  BSTR text = SysAllocString(u"abcdef");
  ASSERT_EQ(SysReAllocStringLen(&text, text, 3), 1);
  EXPECT_EQ(ViewOf(text), u"abc");
  EXPECT_EQ(text[3], u'\0');
  ASSERT_EQ(SysReAllocStringLen(&text, nullptr, 100), 1);
  EXPECT_EQ(ViewOf(text).substr(0, 3), u"abc");
  EXPECT_EQ(text[100], u'\0');
  SysFreeString(text);
}

TEST(Bstr, ReallocationReadsFromInsideTheOldText) {
  BSTR text = SysAllocString(u"abcdef");
  ASSERT_EQ(SysReAllocStringLen(&text, text + 2, 3), 1);
  EXPECT_EQ(ViewOf(text), u"cde");
  ASSERT_EQ(SysReAllocString(&text, text + 1), 1);
  EXPECT_EQ(ViewOf(text), u"de");
  ASSERT_EQ(SysReAllocString(&text, nullptr), 1);
  EXPECT_EQ(text, nullptr);
}

TEST(Bstr, FailedReallocationKeepsTheText) {
  BSTR text = SysAllocString(u"abc");
  EXPECT_EQ(SysReAllocStringLen(&text, nullptr, 0xFFFFFFFF), 0);
  EXPECT_EQ(ViewOf(text), u"abc");
  EXPECT_EQ(SysReAllocString(nullptr, u"x"), 0);
  EXPECT_EQ(SysReAllocStringLen(nullptr, u"x", 1), 0);
  SysFreeString(text);
}

}  // namespace
}  // namespace Orvix::testing
