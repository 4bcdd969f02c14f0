// Texts of numbers and numbers of texts.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

std::string TextOfValue(const Value& from) {
  Value to;
  const HRESULT result = VariantChangeType(&to, &from, 0, VT_BSTR);
  return result == S_OK ? Utf8(ViewOf(to.bstrVal)) : "failed";
}

struct NumberCase {
  TextView text;
  double expected;
};

TEST(TextToNumber, ReadsTheWholeText) {
  const NumberCase cases[] = {
      {u"0", 0},
      {u" 5\t", 5},
      {u"\u00A0 7\n\v\f\r", 7},
      {u"+5", 5},
      {u"5-", -5},
      {u"- 5", -5},
      {u"5 +", 5},
      {u"(5)", -5},
      {u"1,000", 1000},
      {u"1,,000", 1000},
      {u"1,00,0,,", 1000},
      {u"1,", 1},
      {u"1,000.5", 1000.5},
      {u"1.", 1},
      {u".2", 0.2},
      {u"01.2", 1.2},
      {u"1e1", 10},
      {u"1e+01", 10},
      {u"1.5e-20", 1.5e-20},
      {u"1.E2", 100},
      {u"1e-94938484", 0},
      {u"0e99999999999999999999", 0},
      {u"0.000000000000000000000000000000000000001e39", 1},
      {u"$11", 11},
      {u"-$11", -11},
      {u"$-11", -11},
      {u"$ 11", 11},
      {u"11$$", 11},
      {u"&HF800", 63488},
      {u"&h0abcdef", 11259375},
      {u"&o0777", 511},
      {u" &H10 ", 16},
      {u"9007199254740993", 9007199254740992},
      {u"9007199254740992.99999", 9007199254740992},
      {u"9007199254740993.00001", 9007199254740994},
      {u"1.7976931348623157e308", 1.7976931348623157e308},
      {u"4.9e-324", 4.9e-324},
  };
  for (const NumberCase& c : cases) {
    Value to;
    const Value from = String(c.text);
    EXPECT_EQ(VariantChangeType(&to, &from, 0, VT_R8), S_OK) << Utf8(c.text);
    EXPECT_EQ(to.dblVal, c.expected) << Utf8(c.text);
  }
}

TEST(TextToNumber, RefusesEverythingElse) {
  const TextView cases[] = {
      u"",     u" ",   u"+0+",  u"-0-",     u"++1",  u"--1",  u"+-1",  u"()",   u"5()",    u"(5",       u"5)",
      u"(-5)", u",1",  u"1.0,", u".",       u"1..",  u"1.2.", u"1 2",  u"1 e1", u"1e",     u"1e+",      u"1e 1",
      u"e1",   u"$",   u"1$99", u"\u20AC1", u"$$1",  u"0x10", u"FE",   u"10h",  u"& H1",   u"&",        u"&H",
      u"&HG",  u"&O8", u"&H1.", u"&H1,",    u"&H1$", u"&X1",  u"True", u"1/2",  u"\uFF11", u"1\u066B5", u"1%",
  };
  for (const TextView text : cases) {
    for (const VARTYPE type : {VT_I4, VT_R8, VT_CY, VT_DECIMAL}) {
      Value to;
      const Value from = String(text);
      EXPECT_EQ(VariantChangeType(&to, &from, 0, type), DISP_E_TYPEMISMATCH) << Utf8(text) << " as " << type;
    }
  }
  Value to;
  const Value nul = String({u"1\0", 2});
  EXPECT_EQ(VariantChangeType(&to, &nul, 0, VT_I4), DISP_E_TYPEMISMATCH);
}

TEST(TextToNumber, IntegersRoundHalfToEvenAndKeepTheirRange) {
  struct {
    TextView text;
    VARTYPE type;
    std::int64_t bits;
    HRESULT result;
  } const cases[] = {
      {u"1.5", VT_I4, 2, S_OK},
      {u"2.5", VT_I4, 2, S_OK},
      {u"2.50000000000000000000000001", VT_I4, 3, S_OK},
      {u"-0.5", VT_I4, 0, S_OK},
      {u"2147483647.4999999999999999999", VT_I4, 2147483647, S_OK},
      {u"2147483647.5", VT_I4, 0, DISP_E_OVERFLOW},
      {u"-2147483648.5", VT_I4, 0x80000000, S_OK},
      {u"99999999999999999999999999999999999999", VT_I8, 0, DISP_E_OVERFLOW},
      {u"1e999999999999", VT_I4, 0, DISP_E_OVERFLOW},
      {u"9223372036854775807", VT_I8, std::numeric_limits<std::int64_t>::max(), S_OK},
      {u"18446744073709551615", VT_UI8, -1, S_OK},
      {u"18446744073709551616", VT_UI8, 0, DISP_E_OVERFLOW},
      {u"-1", VT_UI1, 0, DISP_E_OVERFLOW},
      {u"&H80000002", VT_I4, 0x80000002, S_OK},
      {u"&H000000000000080000002", VT_I4, 0x80000002, S_OK},
      {u"&H100000000", VT_I4, 0, DISP_E_OVERFLOW},
      {u"&H8002", VT_I2, 0x8002, S_OK},
      {u"&H18002", VT_I2, 0, DISP_E_OVERFLOW},
      {u"&HFFFFFFFFFFFFFFFF", VT_I8, -1, S_OK},
      {u"&H1FFFFFFFFFFFFFFFF", VT_I8, 0, DISP_E_OVERFLOW},
      {u"&O37777777777", VT_I4, 0xFFFFFFFF, S_OK},
  };
  for (const auto& c : cases) {
    Value to;
    const Value from = String(c.text);
    EXPECT_EQ(VariantChangeType(&to, &from, 0, c.type), c.result) << Utf8(c.text);
    EXPECT_EQ(to.llVal, c.bits) << Utf8(c.text);
  }
}

TEST(TextToNumber, TooBigOverflows) {
  Value to;
  const Value huge = String(u"1.8e308");
  EXPECT_EQ(VariantChangeType(&to, &huge, 0, VT_R8), DISP_E_OVERFLOW);
  const Value big = String(u"3.5e38");
  EXPECT_EQ(VariantChangeType(&to, &big, 0, VT_R4), DISP_E_OVERFLOW);
  const Value largest = String(u"79228162514264337593543950335");
  EXPECT_EQ(VariantChangeType(&to, &largest, 0, VT_DECIMAL), S_OK);
  EXPECT_EQ(TextOfValue(to), "79228162514264337593543950335");
  const Value beyond = String(u"79228162514264337593543950336");
  EXPECT_EQ(VariantChangeType(&to, &beyond, 0, VT_DECIMAL), DISP_E_OVERFLOW);
  const Value rounded = String(u"7.92281625142643375935439503365");
  EXPECT_EQ(VariantChangeType(&to, &rounded, 0, VT_DECIMAL), S_OK);
  EXPECT_EQ(TextOfValue(to), "7.922816251426433759354395034");
}

TEST(NumberToText, DoublesShowFifteenDigits) {
  struct {
    double value;
    const char* text;
  } const cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {-1.5, "-1.5"},
      {999999999999999, "999999999999999"},
      {999999999999999.5, "1E+15"},
      {1e15, "1E+15"},
      {-1.25e100, "-1.25E+100"},
      {12.34567890123456, "12.3456789012346"},
      {123.0, "123"},
      {0.1, "0.1"},
      {5.6789e-11, "0.000000000056789"},
      {5.6789e-12, "5.6789E-12"},
      {1.0 / 30, "3.33333333333333E-02"},
      {1.0 / 3, "0.333333333333333"},
      {1e-15, "0.000000000000001"},
      {1e-16, "1E-16"},
      {70368744177664.25, "70368744177664.3"},  // a tie: away from zero
      {-70368744177664.75, "-70368744177664.8"},
      {5e-324, "4.94065645841247E-324"},
      {1.7976931348623157e308, "1.79769313486232E+308"},
      {std::numeric_limits<double>::infinity(), "1.#INF"},
      {-std::numeric_limits<double>::infinity(), "-1.#INF"},
      {std::numeric_limits<double>::quiet_NaN(), "1.#QNAN"},
  };
  for (const auto& c : cases) EXPECT_EQ(TextOfValue(Double(c.value)), c.text);
}

TEST(NumberToText, SinglesShowSevenDigits) {
  struct {
    float value;
    const char* text;
  } const cases[] = {
      {654322.25f, "654322.3"}, {-654322.25f, "-654322.3"}, {1234.5678f, "1234.568"},
      {1e8f, "1E+08"},          {1234567.f, "1234567"},     {0.000005f, "0.000005"},
      {1.234e16f, "1.234E+16"}, {9999999.5f, "1E+07"},      {0.1f, "0.1"},
      {524287.75f, "524287.8"},
  };
  for (const auto& c : cases) EXPECT_EQ(TextOfValue(Single(c.value)), c.text);
}

TEST(NumberToText, ExactNumbersShowEveryDigit) {
  EXPECT_EQ(TextOfValue(Integer(VT_I4, 0x80000000)), "-2147483648");
  EXPECT_EQ(TextOfValue(Integer(VT_UI4, 0x80000000)), "2147483648");
  EXPECT_EQ(TextOfValue(Integer(VT_I8, std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
  EXPECT_EQ(TextOfValue(Integer(VT_UI8, -1)), "18446744073709551615");
  EXPECT_EQ(TextOfValue(Integer(VT_I1, 0x80)), "-128");
  EXPECT_EQ(TextOfValue(Currency(15000)), "1.5");
  EXPECT_EQ(TextOfValue(Currency(9)), "0.0009");
  EXPECT_EQ(TextOfValue(Currency(9223372036854775807)), "922337203685477.5807");
  EXPECT_EQ(TextOfValue(Currency(std::numeric_limits<std::int64_t>::min())), "-922337203685477.5808");
  EXPECT_EQ(TextOfValue(Decimal(1, 28, 0x80)), "-0.0000000000000000000000000001");
  EXPECT_EQ(TextOfValue(Decimal(1500, 3)), "1.5");
  EXPECT_EQ(TextOfValue(Decimal(1500, 0)), "1500");
  EXPECT_EQ(TextOfValue(Decimal(0, 3, 0x80)), "0");
  EXPECT_EQ(TextOfValue(Decimal(0, 0, 0, 1)), "18446744073709551616");
}

// Fifteen digits written and read back are the same fifteen digits.
TEST(NumberToText, FifteenDigitsReadBackTheSame) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 20000; ++i) {
    const auto digits = static_cast<std::int64_t>(random() % 1000000000000000);
    const int scale = static_cast<int>(random() % 28);
    Value decimal = Decimal(static_cast<std::uint64_t>(digits), static_cast<std::uint8_t>(scale));
    Value number;
    ASSERT_EQ(VariantChangeType(&number, &decimal, 0, VT_R8), S_OK);
    const Value text = String(FromUtf8(TextOfValue(number)));
    Value again;
    ASSERT_EQ(VariantChangeType(&again, &text, 0, VT_DECIMAL), S_OK);
    ASSERT_EQ(VarCmp(&again, &decimal, 0, 0), VARCMP_EQ) << digits << " " << scale;
  }
}

}  // namespace
}  // namespace Orvix::testing
