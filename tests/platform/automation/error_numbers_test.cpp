// Numbers behind result codes and their descriptions.
#include <gtest/gtest.h>

#include "orvix/runtime.h"
#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

TEST(ErrorNumber, NumberedCodesGiveTheirDistance) {
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800A0001)), 1);
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800A000D)), 13);
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800B01D0)), 66000);
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800BFFFF)), 131071);
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800A0000)), MakeResult(0x800A0000));
  EXPECT_EQ(OxErrorNumber(MakeResult(0x800C0000)), MakeResult(0x800C0000));
}

TEST(ErrorNumber, PlatformCodesGiveTheirRuntimeNumber) {
  struct {
    std::uint32_t code;
    LONG number;
  } const cases[] = {
      {0x80070057, 5},   {0x8002000A, 6},   {0x8007000E, 7},   {0x80030008, 7},   {0x8002000B, 9},   {0x80028CA1, 9},
      {0x8002000D, 10},  {0x80020012, 11},  {0x80020005, 13},  {0x80028CA0, 13},  {0x800300FC, 53},  {0x80028CA2, 57},
      {0x8003001D, 57},  {0x8003001E, 57},  {0x80030103, 57},  {0x80030050, 58},  {0x80030070, 61},  {0x80030004, 67},
      {0x80030012, 67},  {0x80070005, 70},  {0x80030005, 70},  {0x80030013, 70},  {0x80030021, 70},  {0x80030100, 70},
      {0x80030101, 70},  {0x80030020, 75},  {0x80030003, 76},  {0x80028CA3, 322}, {0x80040154, 429}, {0x800401E3, 429},
      {0x800401F3, 429}, {0x800401F5, 429}, {0x800401FE, 429}, {0x80080005, 429}, {0x80004002, 430}, {0x80030002, 432},
      {0x800401E6, 432}, {0x800401EA, 432}, {0x80020001, 438}, {0x80020003, 438}, {0x80020006, 438}, {0x80004001, 445},
      {0x80020007, 446}, {0x8002000C, 447}, {0x80020004, 448}, {0x8002000F, 449}, {0x8002000E, 450}, {0x80020011, 451},
      {0x8002802F, 453}, {0x80020008, 458}, {0x800706BA, 462},
  };
  for (const auto& c : cases) EXPECT_EQ(OxErrorNumber(MakeResult(c.code)), c.number) << std::hex << c.code;
}

TEST(ErrorNumber, OtherCodesKeepTheirValue) {
  for (const HRESULT code : {E_FAIL, E_POINTER, E_UNEXPECTED, S_OK, HRESULT{-2147220504}}) {
    EXPECT_EQ(OxErrorNumber(code), code);
  }
}

TEST(ErrorDescription, KnowsTheStandardTexts) {
  struct {
    LONG number;
    TextView text;
  } const cases[] = {
      {3, u"Return without GoSub"},
      {5, u"Invalid procedure call or argument"},
      {7, u"Out of memory"},
      {13, u"Type mismatch"},
      {94, u"Invalid use of Null"},
      {457, u"This key is already associated with an element of this collection"},
      {462, u"The remote server machine does not exist or is unavailable"},
      {4, u"Application-defined or object-defined error"},
      {463, u"Application-defined or object-defined error"},
      {-2147220504, u"Application-defined or object-defined error"},
  };
  for (const auto& c : cases) {
    BSTR text = nullptr;
    EXPECT_EQ(OxErrorDescription(c.number, &text), S_OK);
    EXPECT_EQ(Utf8(ViewOf(text)), Utf8(c.text));
    SysFreeString(text);
  }
  EXPECT_EQ(OxErrorDescription(5, nullptr), E_POINTER);
}

}  // namespace
}  // namespace Orvix::testing
