// The wrapper's owners and values: texts, values, dates, arrays, references.
#include <gtest/gtest.h>

#include <map>

#include "orvix/orvix.hpp"

namespace Orvix {
namespace {

using namespace std::chrono_literals;

TEST(WrapperString, ReadsAndComparesBothEncodings) {
  const String text = "\xC3\xA4\xF0\x9F\x98\x80";  // a with two points, a face
  EXPECT_EQ(text.View(), u"\u00E4\U0001F600");
  EXPECT_EQ(text.Size(), 3u);
  EXPECT_TRUE(text == u"\u00E4\U0001F600");
  EXPECT_TRUE(text == "\xC3\xA4\xF0\x9F\x98\x80");
  EXPECT_FALSE(text == u"\u00E4");
  EXPECT_EQ(text.Utf8(), "\xC3\xA4\xF0\x9F\x98\x80");
}

TEST(WrapperString, KeepsEmbeddedNulsInCopies) {
  const String text = TextView(u"a\0b", 3);
  const String copy = text;
  EXPECT_EQ(copy.Size(), 3u);
  EXPECT_NE(copy.get(), text.get());
  EXPECT_TRUE(copy == TextView(u"a\0b", 3));
  EXPECT_FALSE(copy == TextView(u"a\0c", 3));
}

TEST(WrapperString, NullIsTheEmptyText) {
  const String text;
  EXPECT_EQ(text.get(), nullptr);
  EXPECT_TRUE(text == u"");
  EXPECT_TRUE(text.IsEmpty());
}

TEST(WrapperTextArgument, LendsAStringButCopiesItForAVariable) {
  const String text = u"kept";
  TextArgument argument = text;
  EXPECT_EQ(argument.get(), text.get());
  BSTR* variable = argument.Reference();
  EXPECT_NE(*variable, text.get());
  EXPECT_EQ(ViewOf(*variable), u"kept");
}

TEST(WrapperValue, TypesOfCppValues) {
  EXPECT_EQ(Value().Type(), VT_EMPTY);
  EXPECT_EQ(Value(true).Type(), VT_BOOL);
  EXPECT_EQ(Value(true).get().boolVal, -1);
  EXPECT_EQ(Value(7).Type(), VT_I4);
  EXPECT_EQ(Value(SHORT{7}).Type(), VT_I2);
  EXPECT_EQ(Value(BYTE{7}).Type(), VT_UI1);
  EXPECT_EQ(Value(7.5F).Type(), VT_R4);
  EXPECT_EQ(Value(7.5).Type(), VT_R8);
  EXPECT_EQ(Value(LONGLONG{7}).Type(), VT_I8);
  EXPECT_EQ(Value("x").Type(), VT_BSTR);
  EXPECT_EQ(Value(u"x").Type(), VT_BSTR);
  EXPECT_EQ(Value(oxGreen).get().lVal, 1);
  EXPECT_EQ(Value(Date(1.5)).Type(), VT_DATE);
  EXPECT_EQ(Value(Pointer<IDispatch>()).Type(), VT_DISPATCH);
  EXPECT_TRUE(Value::Missing().IsMissing());
  EXPECT_EQ(Value::Missing().get().scode, static_cast<SCODE>(0x80020004));
}

TEST(WrapperValue, ConvertsLikeTheRuntime) {
  EXPECT_EQ(Value("42").To<LONG>(), 42);
  EXPECT_EQ(Value(2.5).To<LONG>(), 2);
  EXPECT_EQ(Value(3.5).To<LONG>(), 4);
  EXPECT_EQ(Value(true).To<std::string>(), "True");
  EXPECT_EQ(Value(1.25).To<Text>(), u"1.25");
  EXPECT_TRUE(Value(-3).To<bool>());
  EXPECT_EQ(Value("2002-11-30 12:00").To<Date>().days, 37590.5);
  EXPECT_EQ(Value(2).To<enumRGB>(), oxBlue);
}

LONG NumberOfFailure(const auto& body) {
  try {
    body();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

TEST(WrapperValue, ImpossibleConversionsCarryTheRuntimesNumbers) {
  EXPECT_EQ(NumberOfFailure([] { (void)Value("x").To<LONG>(); }), 13);
  EXPECT_EQ(NumberOfFailure([] { (void)Value(3e9).To<LONG>(); }), 6);
  EXPECT_EQ(NumberOfFailure([] { (void)Value(256).To<BYTE>(); }), 6);
  EXPECT_EQ(NumberOfFailure([] { (void)Value::Null().To<std::string>(); }), 94);
  EXPECT_EQ(NumberOfFailure([] { (void)Value(1).To<Pointer<IDispatch>>(); }), 13);
  EXPECT_EQ(NumberOfFailure([] { (void)Value(1).To<Array<float>>(); }), 13);
}

TEST(WrapperValue, CopiesAreIndependentAndReferencesAreFollowed) {
  Value text = "one";
  const Value copy = text;
  text = "two";
  EXPECT_EQ(copy.To<std::string>(), "one");
  LONG number = 5;
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &number;
  const Value followed(reference);
  number = 6;
  EXPECT_EQ(followed.Type(), VT_I4);
  EXPECT_EQ(followed.To<LONG>(), 5);
}

TEST(WrapperValue, EqualityIsThePlatforms) {
  EXPECT_TRUE(Value(1) == Value(1.0));
  EXPECT_FALSE(Value("1") == Value(1));
  EXPECT_TRUE(Value() == Value(""));
  EXPECT_FALSE(Value::Null() == Value::Null());
}

TEST(WrapperDate, CalendarTimeBothWays) {
  using namespace std::chrono;
  const local_seconds noon = local_days(2002y / November / 30) + 12h + 34min + 56s;
  EXPECT_EQ(Date(noon).Local(), noon);
  EXPECT_EQ(Date(noon).Iso(), "2002-11-30 12:34:56");
  EXPECT_EQ(Date(local_seconds(local_days(1899y / December / 30))).days, 0.0);
  EXPECT_EQ(Date(local_days(1899y / December / 25) + 6h).days, -5.25);
  EXPECT_EQ(Date(-5.25).Iso('T'), "1899-12-25T06:00:00");
  EXPECT_EQ(Date(29221.9988425926).Iso(), "1980-01-01 23:58:20");
  EXPECT_EQ(Date(1e300).Iso(), "invalid date");
}

TEST(WrapperArray, FromRangesAndBack) {
  const Array<String> texts(std::vector<std::string>{"a", "\xC3\xA4"});
  EXPECT_EQ(texts.ToVector(), (std::vector<String>{u"a", u"\u00E4"}));
  const Array<LONG> numbers({7, 8, 9}, 5);
  EXPECT_EQ(numbers.LowerBound(), 5);
  EXPECT_EQ(numbers.At(5), 7);
  EXPECT_EQ(numbers.At(7), 9);
  EXPECT_EQ(NumberOfFailure([&] { (void)numbers.At(4); }), 9);
  EXPECT_EQ(NumberOfFailure([&] { (void)numbers.At(8); }), 9);
}

TEST(WrapperArray, UnallocatedIsNotEmpty) {
  EXPECT_FALSE(Array<float>().IsAllocated());
  EXPECT_EQ(NumberOfFailure([] { (void)Array<float>().LowerBound(); }), 9);
  const Array<float> none(std::vector<float>{});
  EXPECT_TRUE(none.IsAllocated());
  EXPECT_EQ(none.Size(), 0u);
}

TEST(WrapperArray, TravelsInAValue) {
  const Array<Value> mixed{1, "two", 3.5};
  const Value value = mixed;
  EXPECT_EQ(value.Type(), VT_ARRAY | VT_VARIANT);
  const auto back = value.To<Array<Value>>();
  EXPECT_NE(back.get(), mixed.get());
  ASSERT_EQ(back.Size(), 3u);
  EXPECT_EQ(back.At(1).To<std::string>(), "two");
}

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // on the stack of a test, never deleted through
#endif
// Counts what the owners do with it.
struct CountedObject : IUnknown {
  ULONG references = 1;
  HRESULT ORVIX_CALL QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG ORVIX_CALL AddRef() override { return ++references; }
  ULONG ORVIX_CALL Release() override { return --references; }
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

TEST(WrapperPointer, CountsEachReferenceOnce) {
  CountedObject object;
  {
    const auto first = Pointer<IUnknown>::Share(&object);
    Pointer<IUnknown> second = first;
    EXPECT_EQ(object.references, 3u);
    const Pointer<IUnknown> third = std::move(second);
    EXPECT_EQ(object.references, 3u);
    EXPECT_FALSE(second);
    EXPECT_FALSE(first.As<IDispatch>());
  }
  EXPECT_EQ(object.references, 1u);
}

}  // namespace
}  // namespace Orvix
