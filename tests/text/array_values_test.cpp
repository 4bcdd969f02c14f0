// The smallest and largest value: rounding against comparing, zeros, other
// types, bounds and reports.
#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include <limits>

#include "orvix/runtime.h"
#include "tests/support/component.h"
#include "tests/support/recording_host.h"
#include "tests/support/scripted_object.h"
#include "tests/text/safe_arrays.h"

namespace Orvix::testing {
namespace {

constexpr LONG kLargest = std::numeric_limits<LONG>::max();
constexpr LONG kSmallest = std::numeric_limits<LONG>::min();

using Slot = HRESULT (_classOrvix::*)(SAFEARRAY**, VARIANT*);
struct ValueMember {
  Slot slot;
  TextView report;
};
constexpr ValueMember kMin{&_classOrvix::Min, u"Error Min."};
constexpr ValueMember kMax{&_classOrvix::Max, u"Error Max."};
constexpr ValueMember kMinButZero{&_classOrvix::MinButZero, u"Error MinButZero."};
constexpr ValueMember kMaxButZero{&_classOrvix::MaxButZero, u"Error MaxButZero."};
constexpr ValueMember kMembers[] = {kMin, kMax, kMinButZero, kMaxButZero};

class ArrayValuesTest : public ::testing::Test {
 protected:
  void ExpectLong(const ValueMember& member, SafeArray& array, LONG expected) {
    Variant result;
    EXPECT_EQ((orvix_.get()->*member.slot)(array.Address(), result.Address()), S_OK);
    EXPECT_EQ(result.get().vt, VT_I4);
    EXPECT_EQ(result.get().lVal, expected);
    EXPECT_TRUE(host_.boxes.empty());
    host_.boxes.clear();
  }
  void ExpectReport(const ValueMember& member, SafeArray& array, TextView description) {
    Variant result(LONG{99});
    EXPECT_EQ((orvix_.get()->*member.slot)(array.Address(), result.Address()), S_OK);
    EXPECT_EQ(result.get().vt, VT_I2);
    EXPECT_EQ(result.get().iVal, 0);
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].text, Text(member.report).append(u"\r\n").append(description));
    EXPECT_EQ(host_.boxes[0].style, 16);
    EXPECT_EQ(host_.boxes[0].title, u"Orvix");
    host_.boxes.clear();
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

struct ValueCase {
  const char* label;
  std::vector<VARIANT> elements;
  LONG min;
  LONG max;
  LONG min_but_zero;
  LONG max_but_zero;
};

TEST_F(ArrayValuesTest, FindsTheValues) {
  const ValueCase cases[] = {
      {"longs", {I4(5), I4(3), I4(9)}, 3, 9, 3, 9},
      {"zero first", {I4(0), I4(4)}, 0, 4, 4, 4},
      {"zeros at both ends", {I4(0), I4(4), I4(2), I4(0)}, 0, 4, 2, 4},
      {"negative", {I4(0), I4(-4), I4(-2)}, -4, 0, -4, -2},
      {"nothing but zeros", {I4(0), I4(0)}, 0, 0, 0, 0},
      {"limits", {I4(kLargest), I4(kSmallest)}, kSmallest, kLargest, kSmallest, kLargest},
      {"Empty is a zero", {Empty(), I4(7)}, 0, 7, 7, 7},
      {"Null is passed over", {I4(3), Null(), I4(1)}, 1, 3, 1, 3},
      {"shorts", {I2(7), I2(-300)}, -300, 7, -300, 7},
      {"True is -1", {Bool(VARIANT_TRUE), I4(5), Bool(VARIANT_FALSE)}, -1, 5, -1, 5},
      // The result is rounded, the elements are not.
      {"2.5 is below the 3 of 2.6", {R8(2.6), R8(2.5)}, 2, 3, 2, 3},
      {"a half goes to the even side", {R8(1.5)}, 2, 2, 2, 2},
      {"a nonzero that rounds to 0", {R8(0.4), I4(3)}, 0, 3, 0, 3},
      {"negative halves", {R8(-0.5), R8(-3.5)}, -4, 0, -4, 0},
      {"longs round others", {I4(5), R8(1.5), I4(2), R8(0.4)}, 0, 5, 0, 5},
      {"zero behind another type", {R8(3), I4(0), I4(8), I4(0)}, 0, 8, 3, 8},
  };
  for (const ValueCase& c : cases) {
    SCOPED_TRACE(c.label);
    SafeArray array(c.elements);
    ExpectLong(kMin, array, c.min);
    ExpectLong(kMax, array, c.max);
    ExpectLong(kMinButZero, array, c.min_but_zero);
    ExpectLong(kMaxButZero, array, c.max_but_zero);
  }
}

TEST_F(ArrayValuesTest, ScansFromIndexZero) {
  SafeArray array({I4(-9), I4(50), I4(4), I4(6)}, -2);
  ExpectLong(kMin, array, 4);
  ExpectLong(kMax, array, 6);
  ExpectLong(kMinButZero, array, 4);
  ExpectLong(kMaxButZero, array, 6);
  SafeArray above_zero({I4(1), I4(2)}, 1);
  for (const ValueMember& member : kMembers) ExpectReport(member, above_zero, u"Subscript out of range");
  SafeArray below_zero({I4(1), I4(2)}, -2);
  ExpectReport(kMin, below_zero, u"Subscript out of range");
  ExpectLong(kMaxButZero, below_zero, 0);
}

TEST_F(ArrayValuesTest, AnArrayWithoutElementsHasNoValueButMayCountAsZeros) {
  SafeArray array(std::vector<VARIANT>{});
  ExpectReport(kMin, array, u"Subscript out of range");
  ExpectReport(kMax, array, u"Subscript out of range");
  ExpectLong(kMinButZero, array, 0);
  ExpectLong(kMaxButZero, array, 0);
}

TEST_F(ArrayValuesTest, ReportsWhatIsNoArrayOfValues) {
  SafeArray unallocated;
  SafeArray longs(VT_I4, 0, 3);
  SafeArray plane = SafeArray::TwoDimensions(VT_VARIANT);
  for (const ValueMember& member : kMembers) {
    ExpectReport(member, unallocated, u"Subscript out of range");
    ExpectReport(member, longs, u"Type mismatch");
    ExpectReport(member, plane, u"Subscript out of range");
  }
  SafeArray halved({I4(1), I4(2)});  // a descriptor that somebody wrote into
  (*halved.Address())->cbElements = 8;
  for (const ValueMember& member : kMembers) ExpectReport(member, halved, u"Type mismatch");
  (*halved.Address())->cbElements = sizeof(VARIANT);
}

// A number near another one, in every type that has one.
Variant RandomNumber(std::mt19937& random) {
  constexpr VARTYPE kTypes[] = {VT_I2, VT_I4,  VT_UI1, VT_R4,      VT_R8,  VT_CY,    VT_DATE, VT_BOOL,
                                VT_I8, VT_UI4, VT_I1,  VT_DECIMAL, VT_INT, VT_EMPTY, VT_NULL, VT_BSTR};
  constexpr double kNumbers[] = {0,   1,        2,        2.5,          2.6,        3,  0.4,  100,
                                 127, 16777216, 16777217, 2147483646.4, 2147483647, -1, -2.5, -2147483648.0};
  const VARTYPE type = kTypes[random() % std::size(kTypes)];
  Variant number(kNumbers[random() % std::size(kNumbers)]);
  if (FAILED(VariantChangeType(number.Address(), number.Address(), 0, type))) return Variant(LONG{1});
  return number;
}

TEST_F(ArrayValuesTest, EveryMixtureIsComparedAsThePlatformDoes) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    std::vector<Variant> numbers;
    std::vector<VARIANT> elements;
    for (std::size_t count = 1 + random() % 6; count > 0; --count) numbers.push_back(RandomNumber(random));
    if (numbers.front().get().vt == VT_NULL) continue;  // has no long, which is reported
    for (const Variant& number : numbers) elements.push_back(number.get());
    SafeArray array(elements);
    for (const ValueMember* member : {&kMin, &kMax, &kMinButZero, &kMaxButZero}) {
      const HRESULT wanted = member == &kMin || member == &kMinButZero ? VARCMP_LT : VARCMP_GT;
      const bool skips = member == &kMinButZero || member == &kMaxButZero;
      LONG best = 0;
      bool first = true;
      bool fails = false;
      for (VARIANT& element : elements) {
        Variant zero(LONG{0});
        Variant held(best);
        const HRESULT to_zero = VarCmp(&element, zero.Address(), 0, 0);
        if (skips && (to_zero == VARCMP_EQ || to_zero == VARCMP_NULL)) continue;
        if (!first && VarCmp(&element, held.Address(), 0, 0) != wanted) continue;
        first = false;
        fails = fails || FAILED(OxLongOf(&element, &best));
        if (fails) break;
      }
      if (!fails) ExpectLong(*member, array, best);
    }
  }
}

TEST_F(ArrayValuesTest, ReportsWhatCannotBeCompared) {
  ScriptedObject object;
  object.Gives(u"", LONG{7});  // it could be converted
  VARIANT dispatch = Empty();
  dispatch.vt = VT_DISPATCH;
  dispatch.pdispVal = &object;
  VARIANT nothing = Empty();
  nothing.vt = VT_DISPATCH;
  VARIANT unknown = Empty();
  unknown.vt = VT_UNKNOWN;
  unknown.punkVal = &object;
  SafeArray longs(VT_I4, 0, 1);
  VARIANT array = Empty();
  array.vt = VT_ARRAY | VT_I4;
  array.parray = *longs.Address();
  const struct {
    const char* label;
    VARIANT element;
    TextView description;
  } cases[] = {
      {"an error value", Missing(), u"Type mismatch"},
      {"an object", dispatch, u"Type mismatch"},
      {"Nothing", nothing, u"Type mismatch"},
      {"an object without names", unknown, u"Type mismatch"},
      {"an array", array, u"Variable uses a type that Automation does not support"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    SafeArray values({I4(1), c.element});
    for (const ValueMember& member : kMembers) ExpectReport(member, values, c.description);
  }
  EXPECT_TRUE(object.log.empty());
  EXPECT_EQ(object.references, 1);
}

// An element is converted with the array locked: what it is converted by can
// neither end the array nor give it other bounds.
TEST_F(ArrayValuesTest, AnElementCannotTakeTheArrayAway) {
  ScriptedObject object;
  VARIANT dispatch = Empty();
  dispatch.vt = VT_DISPATCH;
  dispatch.pdispVal = &object;
  SafeArray values({dispatch, I4(3)});
  std::vector<HRESULT> answers;
  object.Gives(u"", [&](const ScriptedObject::Arguments&) {
    SAFEARRAYBOUND bound{2, 0};
    answers.push_back(SafeArrayRedim(*values.Address(), &bound));
    if (FAILED(answers.back())) answers.push_back(SafeArrayDestroy(*values.Address()));
    return Variant(LONG{7});
  });
  // Converted as the first, then refused where it is compared.
  ExpectReport(kMin, values, u"Type mismatch");
  ExpectReport(kMax, values, u"Type mismatch");
  EXPECT_EQ(answers, std::vector<HRESULT>(4, DISP_E_ARRAYISLOCKED));
  SAFEARRAYBOUND none{0, 0};
  EXPECT_EQ(SafeArrayRedim(*values.Address(), &none), S_OK);  // free again
  EXPECT_EQ(object.references, 1);
}

TEST_F(ArrayValuesTest, ATextIsAboveEveryNumber) {
  const Variant five(TextView(u"5"));
  SafeArray numbers({I4(9), five.get()});
  ExpectLong(kMin, numbers, 9);
  ExpectLong(kMax, numbers, 5);
  const Variant word(TextView(u"abc"));
  SafeArray words({I4(1), word.get()});
  ExpectLong(kMin, words, 1);
  ExpectReport(kMax, words, u"Type mismatch");
  SafeArray word_first({word.get()});
  ExpectReport(kMinButZero, word_first, u"Type mismatch");
}

TEST_F(ArrayValuesTest, ReportsWhatIsNoLong) {
  SafeArray large({I4(1), R8(2147483647.5)});
  ExpectLong(kMin, large, 1);
  ExpectReport(kMax, large, u"Overflow");
  SafeArray null_first({Null(), I4(7)});
  ExpectReport(kMin, null_first, u"Type mismatch");
  ExpectLong(kMinButZero, null_first, 7);
}

TEST_F(ArrayValuesTest, FollowsReferences) {
  LONG eight = 8;
  VARIANT inner = R8(-2.5);
  SafeArray array({I4(1), ByReference(VT_I4, &eight), ByReference(VT_VARIANT, &inner)});
  ExpectLong(kMin, array, -2);
  ExpectLong(kMax, array, 8);
  ExpectLong(kMaxButZero, array, 8);
}

TEST_F(ArrayValuesTest, FindsTheLimitsOfManyLongs) {
  std::vector<VARIANT> elements;
  std::uint32_t state = 12345;
  for (int i = 0; i < 1000; ++i) {
    state = state * 1664525 + 1013904223;
    elements.push_back(i % 7 == 0 ? I4(0) : I4(static_cast<LONG>(state) / 2));
  }
  elements[400] = I4(-2147000000);
  elements[401] = I4(2147000000);
  SafeArray array(elements);
  ExpectLong(kMin, array, -2147000000);
  ExpectLong(kMax, array, 2147000000);
}

}  // namespace
}  // namespace Orvix::testing
