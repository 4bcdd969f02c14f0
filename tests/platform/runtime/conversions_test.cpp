#include <gtest/gtest.h>

#include "frame/com_ptr.h"

namespace Orvix::testing {
namespace {

using component::BstrHandle;
using component::ComPtr;
using component::Variant;

HRESULT Numbered(LONG number) { return static_cast<HRESULT>(0x800A0000U + static_cast<ULONG>(number)); }

Variant Marked(VARTYPE type) {
  Variant value;
  value.Address()->vt = type;
  return value;
}
Variant MissingValue() {
  Variant value = Marked(VT_ERROR);
  value.Address()->scode = DISP_E_PARAMNOTFOUND;
  return value;
}

// An object whose default member gives `value`, or fails with `code`.
class DefaultValue final : public IDispatch {
 public:
  Variant value;
  HRESULT code = S_OK;

  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) override {
    *object = riid == IID_IUnknown || riid == IID_IDispatch ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() override { return ++references; }
  ULONG ORVIX_CALL Release() override { return --references; }
  HRESULT ORVIX_CALL GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT ORVIX_CALL GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT ORVIX_CALL GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT ORVIX_CALL Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                            EXCEPINFO* exception, UINT*) override {
    if (member != 0 || params->cArgs != 0) return DISP_E_MEMBERNOTFOUND;
    if (code == DISP_E_EXCEPTION) {
      exception->scode = Numbered(61);
      exception->bstrSource = NewBstr(u"Theirs");
      exception->bstrDescription = NewBstr(u"No room");
    }
    return FAILED(code) ? code : VariantCopy(result, value.Address());
  }
  Variant AsValue() {
    Variant holder = Marked(VT_DISPATCH);
    holder.Address()->pdispVal = this;
    AddRef();
    return holder;
  }
  ULONG references = 1;
};

Text TextFrom(const Variant& value) {
  BstrHandle text;
  EXPECT_EQ(OxTextOf(&value.get(), text.Receive()), S_OK);
  return Text(text.View());
}
HRESULT TextFailure(const Variant& value) {
  BstrHandle text;
  const HRESULT result = OxTextOf(&value.get(), text.Receive());
  EXPECT_EQ(text.get(), nullptr);
  return result;
}
LONG LongFrom(const Variant& value) {
  LONG number = 99;
  EXPECT_EQ(OxLongOf(&value.get(), &number), S_OK);
  return number;
}
HRESULT LongFailure(const Variant& value) {
  LONG number = 99;
  return OxLongOf(&value.get(), &number);
}
DATE DateFrom(const Variant& value) {
  DATE date = 99;
  EXPECT_EQ(OxDateOf(&value.get(), &date), S_OK);
  return date;
}
HRESULT DateFailure(const Variant& value) {
  DATE date = 99;
  return OxDateOf(&value.get(), &date);
}

Variant Words(const char16_t* text) { return Variant(TextView(text)); }

TEST(TextOfTest, ValuesHaveTheirText) {
  EXPECT_EQ(TextFrom(Variant()), u"");
  EXPECT_EQ(TextFrom(Words(u"as is")), u"as is");
  EXPECT_EQ(TextFrom(Variant(LONG{-12})), u"-12");
  EXPECT_EQ(TextFrom(Variant(12.5)), u"12.5");
  EXPECT_EQ(TextFrom(Variant::Boolean(VARIANT_TRUE)), u"True");
  EXPECT_EQ(TextFrom(Variant::Boolean(VARIANT_FALSE)), u"False");
  EXPECT_EQ(TextFrom(Variant::Date(365)), u"12/30/1900");
}

TEST(TextOfTest, ReferencesAreFollowed) {
  LONG number = 7;
  Variant reference = Marked(VT_I4 | VT_BYREF);
  reference.Address()->plVal = &number;
  EXPECT_EQ(TextFrom(reference), u"7");
}

TEST(TextOfTest, WhatHasNoTextFails) {
  EXPECT_EQ(TextFailure(Marked(VT_NULL)), Numbered(94));
  EXPECT_EQ(TextFailure(MissingValue()), Numbered(13));
  Variant array = Marked(VT_ARRAY | VT_I4);
  array.Address()->parray = SafeArrayCreateVector(VT_I4, 0, 2);
  EXPECT_EQ(TextFailure(array), Numbered(13));
  EXPECT_EQ(TextFailure(Marked(VT_DISPATCH)), Numbered(13));  // Nothing
  BSTR text = nullptr;
  EXPECT_EQ(OxTextOf(nullptr, &text), E_POINTER);
  EXPECT_EQ(OxTextOf(&array.get(), nullptr), E_POINTER);
}

TEST(TextOfTest, AnObjectStandsForItsDefaultMember) {
  DefaultValue inner;
  inner.value = Variant(LONG{42});
  EXPECT_EQ(TextFrom(inner.AsValue()), u"42");
  DefaultValue outer;
  outer.value = inner.AsValue();
  EXPECT_EQ(TextFrom(outer.AsValue()), u"42");
  inner.value = Marked(VT_NULL);
  EXPECT_EQ(TextFailure(outer.AsValue()), Numbered(94));
  inner.code = DISP_E_MEMBERNOTFOUND;
  EXPECT_EQ(TextFailure(outer.AsValue()), Numbered(13));
  outer.value = Variant();
  EXPECT_EQ(inner.references, 1u);
  EXPECT_EQ(outer.references, 1u);
}

TEST(TextOfTest, AnObjectThatLeadsToItselfIsAMismatch) {
  DefaultValue endless;
  endless.value = endless.AsValue();
  EXPECT_EQ(TextFailure(endless.AsValue()), Numbered(13));
  endless.value = Variant();
  EXPECT_EQ(endless.references, 1u);
}

TEST(TextOfTest, AnObjectsOwnErrorPassesThrough) {
  DefaultValue object;
  object.code = DISP_E_EXCEPTION;
  EXPECT_EQ(TextFailure(object.AsValue()), Numbered(61));
  ComPtr<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  BstrHandle source;
  BstrHandle description;
  info->GetSource(source.Receive());
  info->GetDescription(description.Receive());
  EXPECT_EQ(source.View(), u"Theirs");
  EXPECT_EQ(description.View(), u"No room");
}

TEST(LongOfTest, NumbersRoundHalfToEven) {
  EXPECT_EQ(LongFrom(Variant(2.5)), 2);
  EXPECT_EQ(LongFrom(Variant(3.5)), 4);
  EXPECT_EQ(LongFrom(Variant(-0.5)), 0);
  EXPECT_EQ(LongFrom(Words(u" 1,000 ")), 1000);
  EXPECT_EQ(LongFrom(Words(u"&HFF")), 255);
  EXPECT_EQ(LongFrom(Variant::Boolean(VARIANT_TRUE)), -1);
  EXPECT_EQ(LongFrom(Variant()), 0);
}

TEST(LongOfTest, FailuresCarryTheRuntimesNumbers) {
  EXPECT_EQ(LongFailure(Marked(VT_NULL)), Numbered(13));
  EXPECT_EQ(LongFailure(MissingValue()), Numbered(13));
  EXPECT_EQ(LongFailure(Words(u"")), Numbered(13));
  EXPECT_EQ(LongFailure(Words(u"True")), Numbered(13));
  EXPECT_EQ(LongFailure(Variant(2147483647.5)), Numbered(6));
  EXPECT_EQ(LongFailure(Words(u"99999999999")), Numbered(6));
  for (const VARTYPE type : {VT_UI4, VT_UINT}) {
    Variant unsigned_number;
    unsigned_number.Address()->vt = type;
    unsigned_number.Address()->ulVal = 0x80000000;
    EXPECT_EQ(LongFailure(unsigned_number), Numbered(6));
    unsigned_number.Address()->ulVal = 0x7FFFFFFF;
    EXPECT_EQ(LongFrom(unsigned_number), 2147483647);
  }
}

TEST(DateOfTest, TextsAreDatesOrNumbersOfDays) {
  EXPECT_EQ(DateFrom(Words(u"1/2/1970")), 25570);
  EXPECT_EQ(DateFrom(Words(u"1")), 1);
  EXPECT_EQ(DateFrom(Words(u"40000")), 40000);
  EXPECT_EQ(DateFrom(Words(u"-3")), -3);
  EXPECT_EQ(DateFrom(Variant(25570.5)), 25570.5);
  EXPECT_EQ(DateFrom(Variant()), 0);
}

TEST(DateOfTest, FailuresCarryTheRuntimesNumbers) {
  EXPECT_EQ(DateFailure(Marked(VT_NULL)), Numbered(94));
  EXPECT_EQ(DateFailure(MissingValue()), Numbered(13));
  EXPECT_EQ(DateFailure(Words(u"")), Numbered(13));
  EXPECT_EQ(DateFailure(Words(u"soon")), Numbered(13));
  EXPECT_EQ(DateFailure(Words(u"2958466")), Numbered(6));
  EXPECT_EQ(DateFailure(Variant(-657435.0)), Numbered(6));
}

}  // namespace
}  // namespace Orvix::testing
