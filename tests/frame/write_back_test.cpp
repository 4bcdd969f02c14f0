// What Invoke writes into the caller's by-reference arguments, what it leaves
// alone, and which accessor a put reaches.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

class WriteBackTest : public ::testing::Test {
 protected:
  // SuperRTrim of `text` with this count argument.
  HRESULT Trim(TextView text, VARIANT count) {
    const Variant given(text);
    Variant result;
    return InvokeNamed(orvix_.get(), u"SuperRTrim", DISPATCH_METHOD, {given.get(), count}, result.Receive());
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

template <class T>
struct Typed {
  VARTYPE type;
  T before;
  T after;
};

// "ab" and three blanks: the count is 3.
TEST_F(WriteBackTest, ConvertsIntoTheCallersType) {
  const auto check = [&]<class T>(Typed<T> c) {
    T variable = c.before;
    EXPECT_EQ(Trim(u"ab \t ", ByReference(c.type, &variable)), S_OK) << c.type;
    EXPECT_EQ(variable, c.after) << c.type;
  };
  check(Typed<SHORT>{VT_I2, 17, 3});
  check(Typed<LONG>{VT_I4, 17, 3});
  check(Typed<BYTE>{VT_UI1, 17, 3});
  check(Typed<float>{VT_R4, 17.5F, 3.0F});
  check(Typed<double>{VT_R8, 17.5, 3.0});
  check(Typed<VARIANT_BOOL>{VT_BOOL, VARIANT_FALSE, VARIANT_TRUE});
  check(Typed<std::int64_t>{VT_I8, 17, 3});
  check(Typed<DATE>{VT_DATE, 17.0, 3.0});
  CY money{};
  money.int64 = 170000;
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_CY, &money)), S_OK);
  EXPECT_EQ(money.int64, 30000);
  BSTR text = NewBstr(u"17");
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_BSTR, &text)), S_OK);
  EXPECT_EQ(ViewOf(text), u"3");
  SysFreeString(text);
}

// A neighbour of a narrow variable is not the member's.
TEST_F(WriteBackTest, WritesNoMoreThanTheVariable) {
  SHORT shorts[] = {-1, 17, -1};
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_I2, &shorts[1])), S_OK);
  EXPECT_EQ(shorts[0], -1);
  EXPECT_EQ(shorts[1], 3);
  EXPECT_EQ(shorts[2], -1);
  BYTE bytes[] = {0xEE, 17, 0xEE};
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_UI1, &bytes[1])), S_OK);
  EXPECT_EQ(bytes[0], 0xEE);
  EXPECT_EQ(bytes[1], 3);
  EXPECT_EQ(bytes[2], 0xEE);
}

TEST_F(WriteBackTest, AVariantTakesTheTypeOfTheParameter) {
  Variant value = Variant::Short(17);
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_VARIANT, value.Address())), S_OK);
  EXPECT_EQ(value.get().vt, VT_I4);
  EXPECT_EQ(value.get().lVal, 3);
  Variant text(u"17");
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_VARIANT, text.Address())), S_OK);
  EXPECT_EQ(text.get().vt, VT_I4);
  EXPECT_EQ(text.get().lVal, 3);
  Variant empty;
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_VARIANT, empty.Address())), S_OK);
  EXPECT_EQ(empty.get().vt, VT_I4);
  EXPECT_EQ(empty.get().lVal, 3);
  // One that refers to a typed variable keeps referring to it.
  SHORT number = 17;
  VARIANT reference = ByReference(VT_I2, &number);
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_VARIANT, &reference)), S_OK);
  EXPECT_EQ(reference.vt, VT_BYREF | VT_I2);
  EXPECT_EQ(number, 3);
}

// 40000 blanks are counted in a long, but do not fit a short.
TEST_F(WriteBackTest, WhatDoesNotConvertBackLeavesTheCallersValue) {
  Text text(40000, u' ');
  text.front() = u'a';
  SHORT number = 17;
  EXPECT_EQ(Trim(text, ByReference(VT_I2, &number)), S_OK);
  EXPECT_EQ(number, 17);
  LONG wide = 17;
  EXPECT_EQ(Trim(text, ByReference(VT_I4, &wide)), S_OK);
  EXPECT_EQ(wide, 39999);
}

TEST_F(WriteBackTest, WhatDoesNotConvertInIsRefusedUntouched) {
  BSTR word = NewBstr(u"many");
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_BSTR, &word)), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(ViewOf(word), u"many");
  SysFreeString(word);
  double huge = 1e12;
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_R8, &huge)), DISP_E_OVERFLOW);
  EXPECT_EQ(huge, 1e12);
  EXPECT_EQ(Trim(u"ab   ", ByReference<SHORT>(VT_I2, nullptr)), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Trim(u"ab   ", ByReference<LONG>(VT_I4, nullptr)), DISP_E_TYPEMISMATCH);
}

// IsOnStack refuses an array, whose text nobody knows, before it writes the
// place; 2.5 went in as 2 and comes back as that.
TEST_F(WriteBackTest, AlsoWhenTheMemberFails) {
  const auto stack = Make<_classStack>(CLSID_classStack, IID__classStack);
  Variant item(u"item");
  ASSERT_EQ(stack->Push(item.Address()), S_OK);
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 1);
  VARIANT wanted{};
  wanted.vt = VT_ARRAY | VT_I4;
  wanted.parray = array;
  const Variant direction(LONG{1});
  double place = 2.5;
  EXCEPINFO exception{};
  EXPECT_EQ(InvokeNamed(stack.get(), u"IsOnStack", DISPATCH_METHOD,
                        {wanted, direction.get(), ByReference(VT_R8, &place)}, nullptr, &exception),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(ViewOf(exception.bstrSource), u"Orvix.classStack");
  EXPECT_EQ(place, 2.0);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  Variant held = Variant::Short(7);
  EXPECT_EQ(InvokeNamed(stack.get(), u"IsOnStack", DISPATCH_METHOD,
                        {wanted, direction.get(), ByReference(VT_VARIANT, held.Address())}),
            DISP_E_EXCEPTION);
  EXPECT_EQ(held.get().vt, VT_I4);
  EXPECT_EQ(held.get().lVal, 7);
  SafeArrayDestroy(array);
}

TEST_F(WriteBackTest, AnArrayInAVariableIsFreeAgainAfterTheCall) {
  Variant array;
  array.Address()->vt = VT_ARRAY | VT_VARIANT;
  array.Address()->parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  Variant least;
  EXPECT_EQ(
      InvokeNamed(orvix_.get(), u"Min", DISPATCH_METHOD, {ByReference(VT_VARIANT, array.Address())}, least.Receive()),
      S_OK);
  EXPECT_EQ(array.get().parray->cLocks, 0);
}

// A decimal shares its first bytes with the type word.
TEST_F(WriteBackTest, ADecimalVariableTakesTheWholeNumber) {
  DECIMAL decimal{};
  decimal.wReserved = 0x5A5A;
  decimal.Lo64 = 17;
  EXPECT_EQ(Trim(u"ab   ", ByReference(VT_DECIMAL, &decimal)), S_OK);
  EXPECT_EQ(decimal.Lo64, 3U);
  EXPECT_EQ(decimal.wReserved, 0x5A5A);
}

TEST_F(WriteBackTest, WhatIsOnlyReadStaysAsItIs) {
  // A separator of another type, in a VARIANT and in a typed variable.
  const Variant list(u"152535");
  const Variant element(u"X");
  const Variant two(LONG{2});
  Variant five = Variant::Short(5);
  Variant result;
  ASSERT_EQ(
      InvokeNamed(orvix_.get(), u"InsertElement", DISPATCH_METHOD,
                  {list.get(), element.get(), two.get(), ByReference(VT_VARIANT, five.Address())}, result.Receive()),
      S_OK);
  EXPECT_EQ(ViewOf(result.get().bstrVal), u"1X552535");
  EXPECT_EQ(five.get().vt, VT_I2);
  EXPECT_EQ(five.get().iVal, 5);
  double number = 4.6;  // read as 5
  ASSERT_EQ(InvokeNamed(orvix_.get(), u"IsOdd", DISPATCH_METHOD, {ByReference(VT_R8, &number)}, result.Receive()),
            S_OK);
  EXPECT_EQ(result.get().vt, VT_BOOL);
  EXPECT_EQ(result.get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(number, 4.6);
  // An optional one, and by-value ones that are passed by reference.
  BSTR no = NewBstr(u"0");
  SHORT index = 2;
  BSTR text = NewBstr(u"\r\n a");
  ASSERT_EQ(InvokeNamed(orvix_.get(), u"SuperLTrim", DISPATCH_METHOD,
                        {ByReference(VT_BSTR, &text), Missing(), ByReference(VT_BSTR, &no)}, result.Receive()),
            S_OK);
  EXPECT_EQ(ViewOf(result.get().bstrVal), u"\r\n a");
  EXPECT_EQ(ViewOf(no), u"0");
  EXPECT_EQ(ViewOf(text), u"\r\n a");
  const Variant five_text(u"5");
  ASSERT_EQ(InvokeNamed(orvix_.get(), u"GetElement", DISPATCH_METHOD,
                        {list.get(), ByReference(VT_I2, &index), five_text.get()}, result.Receive()),
            S_OK);
  EXPECT_EQ(ViewOf(result.get().bstrVal), u"2");
  EXPECT_EQ(index, 2);
  SysFreeString(no);
  SysFreeString(text);
}

// ---- put and putref --------------------------------------------------------------------

// Reads as "pq" and answers no interface but its own.
class ReadsAsText final : public IDispatch {
 public:
  HRESULT QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  HRESULT Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (member != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
    *result = Variant(u"pq").Detach();
    return S_OK;
  }
  ULONG references = 1;
};

class PutTest : public ::testing::Test {
 protected:
  static ComPtr<_classString> Holding(TextView text) {
    auto made = Make<_classString>(CLSID_classString, IID__classString);
    BSTR value = NewBstr(text);
    EXPECT_EQ(made->put_Value(&value), S_OK);
    SysFreeString(value);
    return made;
  }
  static VARIANT ObjectValue(VARTYPE type, IUnknown* object) {
    VARIANT value{};
    value.vt = type;
    value.punkVal = object;
    return value;
  }
  // Left(2) of "Hello" assigned `value`: the content afterwards.
  Text Assigned(WORD flags, VARIANT value) {
    const auto target = Holding(u"Hello");
    const Variant two(LONG{2});
    wrong_ = 99;
    result_ = InvokeNamed(target.get(), u"Left", flags, {two.get(), value}, nullptr, nullptr, &wrong_);
    return Returned([&](BSTR* text) { return target->get_Value(text); });
  }

  static constexpr WORD kBoth = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  HRESULT result_ = S_OK;
  UINT wrong_ = 99;
};

TEST_F(PutTest, TogetherTheyChooseByTheValue) {
  const auto buffer = Holding(u"XYZ");
  ReadsAsText foreign;
  const Variant text(u"ab");
  const VARIANT own = ObjectValue(VT_DISPATCH, buffer.get());
  const VARIANT own_unknown = ObjectValue(VT_UNKNOWN, buffer.get());
  EXPECT_EQ(Assigned(kBoth, text.get()), u"abllo");
  EXPECT_EQ(result_, S_OK);
  EXPECT_EQ(Assigned(kBoth, own), u"XYllo");
  EXPECT_EQ(result_, S_OK);
  EXPECT_EQ(Assigned(kBoth, own_unknown), u"XYllo");
  EXPECT_EQ(result_, S_OK);
  VARIANT held = own;
  EXPECT_EQ(Assigned(kBoth, ByReference(VT_VARIANT, &held)), u"XYllo");
  EXPECT_EQ(result_, S_OK);
  // putref was chosen: it wants a text buffer, where put would have read a text.
  EXPECT_EQ(Assigned(kBoth, ObjectValue(VT_DISPATCH, &foreign)), u"Hello");
  EXPECT_EQ(result_, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong_, 0u);
  EXPECT_EQ(foreign.references, 1u);
}

TEST_F(PutTest, AloneEachTakesWhatItDeclares) {
  const auto buffer = Holding(u"XYZ");
  ReadsAsText foreign;
  const Variant text(u"ab");
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUT, text.get()), u"abllo");
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUT, ObjectValue(VT_DISPATCH, buffer.get())), u"XYllo");
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUT, ObjectValue(VT_DISPATCH, &foreign)), u"pqllo");
  EXPECT_EQ(result_, S_OK);
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUTREF, ObjectValue(VT_DISPATCH, buffer.get())), u"XYllo");
  EXPECT_EQ(result_, S_OK);
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUTREF, text.get()), u"Hello");
  EXPECT_EQ(result_, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUTREF, ObjectValue(VT_DISPATCH, &foreign)), u"Hello");
  EXPECT_EQ(result_, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(foreign.references, 1u);
  // Nothing is an object, but none to copy from.
  EXPECT_EQ(Assigned(DISPATCH_PROPERTYPUTREF, ObjectValue(VT_DISPATCH, nullptr)), u"Hello");
  EXPECT_EQ(result_, DISP_E_EXCEPTION);
}

// The result of a get is an object of its own, called through its interface.
TEST_F(PutTest, ThroughTheInterface) {
  const auto target = Holding(u"Hello");
  const auto other = Holding(u"XYZ");
  ComPtr<_classString> left;
  ASSERT_EQ(target->get_Left(2, left.Receive()), S_OK);
  EXPECT_EQ(Returned([&](BSTR* text) { return left->get_Value(text); }), u"He");
  Variant text(u"abc");
  EXPECT_EQ(target->put_Left(2, text.Address()), S_OK);
  EXPECT_EQ(Returned([&](BSTR* value) { return target->get_Value(value); }), u"abllo");
  EXPECT_EQ(Returned([&](BSTR* value) { return left->get_Value(value); }), u"He");
  _classString* from = other.get();
  EXPECT_EQ(target->putref_Left(4, &from), S_OK);
  EXPECT_EQ(Returned([&](BSTR* value) { return target->get_Value(value); }), u"XYZlo");
  _classString* none = nullptr;
  EXPECT_EQ(target->putref_Left(1, &none), static_cast<HRESULT>(0x800A005B));
  EXPECT_EQ(target->putref_Left(1, nullptr), E_POINTER);
  EXPECT_EQ(target->put_Left(1, nullptr), E_POINTER);
  EXPECT_EQ(Returned([&](BSTR* value) { return target->get_Value(value); }), u"XYZlo");
}

}  // namespace
}  // namespace Orvix::testing
