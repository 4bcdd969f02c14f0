#include <gtest/gtest.h>

#include "frame/com_ptr.h"

namespace Orvix::testing {
namespace {

using component::BstrHandle;

Text Number(LONG value, const OLECHAR* pattern) {
  BstrHandle text;
  EXPECT_EQ(OxFormatNumber(value, pattern, text.Receive()), S_OK);
  return Text(text.View());
}
Text Padded(TextView value, const OLECHAR* pattern) {
  BstrHandle text;
  EXPECT_EQ(OxFormatText(BstrHandle(value).get(), pattern, text.Receive()), S_OK);
  return Text(text.View());
}
Text Hex(LONG value) {
  BstrHandle text;
  EXPECT_EQ(OxHexText(value, text.Receive()), S_OK);
  return Text(text.View());
}

TEST(FormatNumberTest, PlaceholdersTakeDigitsFromTheRight) {
  struct Case {
    LONG value;
    const OLECHAR* pattern;
    const char16_t* expected;
  };
  const Case cases[] = {
      {0, u"00", u"00"},
      {1, u"00", u"01"},
      {10, u"00", u"10"},
      {123, u"00", u"123"},
      {-1, u"00", u"-01"},
      {0, u"0#", u"0"},
      {1, u"0#", u"01"},
      {9, u"0#", u"09"},
      {10, u"0#", u"10"},
      {100, u"0#", u"100"},
      {-5, u"0#", u"-05"},
      {0, u"#", u""},
      {7, u"#", u"7"},
      {0, u"#.#", u"."},
      {1, u"#.#", u"1."},
      {0, u"0.0", u"0.0"},
      {1, u"0.0", u"1.0"},
      {12, u".00", u"12.00"},
      {5, u"#0", u"5"},
      {0, u"#0", u"0"},
      {90, u"0:00", u"0:90"},
      {3725, u"0:00", u"37:25"},
      {5, u"(00)", u"(05)"},
      {12, u"", u"12"},
      {0, u"", u"0"},
      {2147483647, u"00", u"2147483647"},
      {static_cast<LONG>(0x80000000), u"0", u"-2147483648"},
  };
  for (const Case& c : cases) EXPECT_EQ(Number(c.value, c.pattern), c.expected) << c.value;
  EXPECT_EQ(Number(-42, nullptr), u"-42");
}

TEST(FormatNumberTest, DirectionsThatAreNotKnownAreRefused) {
  BSTR text = nullptr;
  EXPECT_EQ(OxFormatNumber(1, u"#,##0", &text), MakeResult(0x800A0005));
  EXPECT_EQ(OxFormatNumber(1, u"0;0", &text), MakeResult(0x800A0005));
  EXPECT_EQ(OxFormatText(nullptr, u"!@", &text), MakeResult(0x800A0005));
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(OxFormatNumber(1, u"0", nullptr), E_POINTER);
  EXPECT_EQ(OxFormatText(nullptr, u"@", nullptr), E_POINTER);
}

TEST(FormatTextTest, TextIsRightAlignedInItsPlaceholders) {
  EXPECT_EQ(Padded(u"", u"@&"), u" ");
  EXPECT_EQ(Padded(u"5", u"@&"), u" 5");
  EXPECT_EQ(Padded(u"FF", u"@&"), u"FF");
  EXPECT_EQ(Padded(u"ABCD", u"@&"), u"ABCD");
  EXPECT_EQ(Padded(u"5", u"&&@"), u"5");
  EXPECT_EQ(Padded(u"12", u"@@-@@"), u"  -12");
  EXPECT_EQ(Padded(u"12345", u"@@-@@"), u"123-45");
  EXPECT_EQ(Padded(u"as it is", u""), u"as it is");
  EXPECT_EQ(Padded(u"as it is", nullptr), u"as it is");
}

TEST(HexTextTest, UpperCaseWithoutLeadingZerosInTwosComplement) {
  EXPECT_EQ(Hex(0), u"0");
  EXPECT_EQ(Hex(459), u"1CB");
  EXPECT_EQ(Hex(-1), u"FFFFFFFF");
  EXPECT_EQ(Hex(-934859845), u"C8472BBB");
  EXPECT_EQ(Hex(2147483647), u"7FFFFFFF");
  EXPECT_EQ(OxHexText(0, nullptr), E_POINTER);
}

TEST(HexValueTest, ReadsUpToEightDigitsOfEitherCase) {
  const auto value_of = [](TextView text) {
    ULONG value = 99;
    EXPECT_EQ(OxHexValue(BstrHandle(text).get(), &value), S_OK);
    return value;
  };
  EXPECT_EQ(value_of(u"&h0"), 0u);
  EXPECT_EQ(value_of(u"&hFf"), 255u);
  EXPECT_EQ(value_of(u"&H00000012"), 18u);
  EXPECT_EQ(value_of(u"&hFFFFFFFF"), 4294967295u);
}

TEST(HexValueTest, AnythingElseIsATypeMismatch) {
  for (const TextView text : {u"", u"&h", u"h1", u"12", u"&hG", u"&h ", u"&h-1", u"&o1", u"&h000000001", u"&h1 "}) {
    ULONG value = 99;
    EXPECT_EQ(OxHexValue(BstrHandle(text).get(), &value), MakeResult(0x800A000D));
    EXPECT_EQ(value, 0u);
  }
  ULONG value = 0;
  EXPECT_EQ(OxHexValue(nullptr, &value), MakeResult(0x800A000D));
  EXPECT_EQ(OxHexValue(nullptr, nullptr), E_POINTER);
}

}  // namespace
}  // namespace Orvix::testing
