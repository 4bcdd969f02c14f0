// Rounding, parity, random integers, ticks and waiting, elapsed times, MyStr.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "orvix/host.h"
#include "tests/support/component.h"
#include "tests/support/scripted_object.h"
#include "tests/text/safe_arrays.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kOverflowResult = MakeResult(0x800A0006);
constexpr HRESULT kTypeMismatchResult = MakeResult(0x800A000D);
constexpr LONG kLargest = std::numeric_limits<LONG>::max();
constexpr LONG kSmallest = std::numeric_limits<LONG>::min();

class NumbersTest : public ::testing::Test {
 protected:
  float Single(float value) {
    float rounded = -99;
    EXPECT_EQ(orvix_->RoundSingle(value, &rounded), S_OK);
    return rounded;
  }
  float Double(double value) {
    float rounded = -99;
    EXPECT_EQ(orvix_->RoundDouble(value, &rounded), S_OK);
    return rounded;
  }
  Text DayTime(LONG seconds) {
    return Returned([&](BSTR* result) { return orvix_->DayTime(&seconds, result); });
  }
  Text MillisecondsToTime(LONG milliseconds) {
    return Returned([&](BSTR* result) { return orvix_->MillisecondsToTime(&milliseconds, result); });
  }
  LONG Random(LONG upper, LONG lower) {
    LONG number = -99;
    EXPECT_EQ(orvix_->GetRandom(&upper, &lower, &number), S_OK);
    return number;
  }
  Text Str(VARIANT value) {
    return Returned([&](BSTR* result) { return orvix_->MyStr(&value, result); });
  }

  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(NumbersTest, HalvesRoundUp) {
  for (const auto& [value, expected] :
       {std::pair{0.5F, 1.0F}, {-0.5F, 0.0F}, {1.49F, 1.0F}, {2.5F, 3.0F}, {-2.5F, -2.0F}, {-2.6F, -3.0F}}) {
    EXPECT_EQ(Single(value), expected) << value;
    EXPECT_EQ(Double(double{value}), expected) << value;
  }
  EXPECT_EQ(Double(0.49999999999999), 0.0F);
  EXPECT_EQ(Double(16777217.2), 16777216.0F);
  // The sum is made in double precision: 0.5 more is not lost here.
  EXPECT_EQ(Single(8388607.5F), 8388608.0F);
  EXPECT_EQ(Single(8388609.0F), 8388609.0F);
  EXPECT_EQ(Single(3.0e38F), 3.0e38F);
}

TEST_F(NumbersTest, WhatIsBeyondSinglePrecisionOverflows) {
  float rounded = -99;
  EXPECT_EQ(orvix_->RoundDouble(1e39, &rounded), kOverflowResult);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classOrvix", u"Overflow"}));
  EXPECT_EQ(orvix_->RoundDouble(-1e39, &rounded), kOverflowResult);
  EXPECT_EQ(orvix_->RoundDouble(HUGE_VAL, &rounded), kOverflowResult);
}

TEST_F(NumbersTest, Parity) {
  for (const auto& [number, even] : {std::pair{0, true},
                                     {1, false},
                                     {-3, false},
                                     {-4, true},
                                     {kLargest, false},
                                     {kSmallest, true},
                                     {kSmallest + 1, false}}) {
    LONG argument = number;
    VARIANT_BOOL is_even = 5;
    VARIANT_BOOL is_odd = 5;
    EXPECT_EQ(orvix_->IsEven(&argument, &is_even), S_OK);
    EXPECT_EQ(orvix_->IsOdd(&argument, &is_odd), S_OK);
    EXPECT_EQ(is_even, even ? VARIANT_TRUE : VARIANT_FALSE) << number;
    EXPECT_EQ(is_odd, even ? VARIANT_FALSE : VARIANT_TRUE) << number;
  }
}

TEST_F(NumbersTest, RandomNumbersFillTheirBoundsAndNoMore) {
  std::set<LONG> dice;
  std::set<LONG> swapped;
  std::set<LONG> below;
  for (int i = 0; i < 2000; ++i) {
    dice.insert(Random(6, 1));
    swapped.insert(Random(1, 5));
    EXPECT_EQ(Random(5, 5), 5);
    below.insert(Random(-1, -6));
    EXPECT_EQ(Random(0, 1), 1);         // no span at all
    EXPECT_LE(Random(kLargest, 0), 0);  // the span wraps
  }
  EXPECT_EQ(dice, (std::set<LONG>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(below, (std::set<LONG>{-6, -5, -4, -3, -2, -1}));
  swapped.erase(5);  // comes with the random number 0 only
  EXPECT_EQ(swapped, (std::set<LONG>{2, 3, 4}));
}

// A span of 2 above the largest number: what is past it wraps.
TEST_F(NumbersTest, RandomNumbersWrapAtTheLargest) {
  std::set<LONG> drawn;
  for (int i = 0; i < 100; ++i) drawn.insert(Random(kSmallest, kLargest));
  EXPECT_EQ(drawn, (std::set<LONG>{kSmallest, kLargest}));
}

struct Clock {
  std::vector<uint32_t> waits;
  OxHost table{};

  Clock() {
    table.size = sizeof table;
    table.context = this;
    table.Sleep = [](void* self, uint32_t milliseconds) { static_cast<Clock*>(self)->waits.push_back(milliseconds); };
    table.GetTickCount = [](void*) -> uint32_t { return 0x80000001; };
    OxSetHost(&table);
  }
  ~Clock() { OxSetHost(nullptr); }
  Clock(Clock&&) = delete;
};

TEST_F(NumbersTest, WaitsAndTicksArePassedOn) {
  const Clock clock;
  for (LONG milliseconds : {0, 250, -1}) EXPECT_EQ(orvix_->Wait(&milliseconds), S_OK);
  EXPECT_EQ(clock.waits, (std::vector<uint32_t>{0, 250, 0xFFFFFFFF}));
  LONG tick = 0;
  EXPECT_EQ(orvix_->GetTick(&tick), S_OK);
  EXPECT_EQ(tick, -2147483647);
}

TEST_F(NumbersTest, DayTimeHasTwoDigitsAndFloors) {
  const std::pair<LONG, TextView> cases[] = {
      {0, u"00:00:00"},      {59, u"00:00:59"},     {60, u"00:01:00"},           {3600, u"01:00:00"},
      {3725, u"01:02:05"},   {90000, u"25:00:00"},  {360000, u"100:00:00"},      {-1, u"-01:59:59"},
      {-3600, u"-01:00:00"}, {-3601, u"-02:59:59"}, {kLargest, u"596523:14:07"}, {kSmallest, u"-596524:45:52"}};
  for (const auto& [seconds, expected] : cases) EXPECT_EQ(DayTime(seconds), expected) << seconds;
}

TEST_F(NumbersTest, MillisecondsShowASingleZero) {
  const std::pair<LONG, TextView> cases[] = {{0, u"0:0:0"},         {999, u"0:0:0"},     {1000, u"0:0:01"},
                                             {5000, u"0:0:05"},     {60000, u"0:01:0"},  {61000, u"0:01:01"},
                                             {59999, u"0:0:59"},    {3600000, u"1:0:0"}, {3723000, u"1:02:03"},
                                             {36000000, u"10:0:0"}, {-1, u"-1:59:59"},   {kLargest, u"596:31:23"}};
  for (const auto& [milliseconds, expected] : cases)
    EXPECT_EQ(MillisecondsToTime(milliseconds), expected) << milliseconds;
}

TEST_F(NumbersTest, TextOfAnyValue) {
  EXPECT_EQ(Str(Null()), u"");
  EXPECT_EQ(Str(Empty()), u"");
  EXPECT_EQ(Str(R8(12.5)), u"12.5");
  EXPECT_EQ(Str(I4(-3)), u"-3");
  EXPECT_EQ(Str(Bool(VARIANT_TRUE)), u"True");
  EXPECT_EQ(Str(Variant::Date(1.25).Detach()), u"12/31/1899 6:00:00 AM");
  const Variant text(TextView(u"a b"));
  EXPECT_EQ(Str(text.get()), u"a b");
  VARIANT inner = Null();
  EXPECT_EQ(Str(ByReference(VT_VARIANT, &inner)), u"");
  LONG seven = 7;
  EXPECT_EQ(Str(ByReference(VT_I4, &seven)), u"7");
}

TEST_F(NumbersTest, WhatHasNoTextIsATypeMismatch) {
  VARIANT array = Empty();
  SafeArray longs(VT_I4, 0, 1);
  array.vt = VT_ARRAY | VT_I4;
  array.parray = *longs.Address();
  VARIANT nothing = Empty();
  nothing.vt = VT_DISPATCH;
  VARIANT bytes = Empty();
  SafeArray two_bytes(VT_UI1, 0, 2);
  bytes.vt = VT_ARRAY | VT_UI1;
  bytes.parray = *two_bytes.Address();
  for (VARIANT* value : {&array, &bytes, &nothing}) {
    BSTR text = nullptr;
    EXPECT_EQ(orvix_->MyStr(value, &text), kTypeMismatchResult);
    EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classOrvix", u"Type mismatch"}));
    EXPECT_EQ(text, nullptr);
  }
}

TEST_F(NumbersTest, AnObjectIsWhatItsDefaultMemberSays) {
  ScriptedObject object;
  VARIANT value = Empty();
  value.vt = VT_DISPATCH;
  value.pdispVal = &object;
  object.Gives(u"", TextView(u"abc"));
  EXPECT_EQ(Str(value), u"abc");
  object.Gives(u"", LONG{-12});
  EXPECT_EQ(Str(value), u"-12");
  IDispatch* pointer = &object;
  EXPECT_EQ(Str(ByReference(VT_DISPATCH, &pointer)), u"-12");
  EXPECT_EQ(object.log, (std::vector<std::string>{"get ", "get ", "get "}));
  EXPECT_EQ(object.references, 1);
}

TEST_F(NumbersTest, AnObjectsOwnErrorPassesThrough) {
  ScriptedObject object;
  object.Fails(u"", 1234);
  VARIANT value = Empty();
  value.vt = VT_DISPATCH;
  value.pdispVal = &object;
  BSTR text = nullptr;
  EXPECT_EQ(orvix_->MyStr(&value, &text), MakeResult(0x800A04D2));  // 1234
  EXPECT_EQ(TakeFailure(), (Failure{u"Scripted", u"refused"}));
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(object.references, 1);
  ScriptedObject without;
  value.pdispVal = &without;
  EXPECT_EQ(orvix_->MyStr(&value, &text), kTypeMismatchResult);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classOrvix", u"Type mismatch"}));
}

}  // namespace
}  // namespace Orvix::testing
