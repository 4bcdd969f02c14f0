// Values: initialising, clearing and copying, and whom the content belongs to.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

bool IsValid(int type, bool for_clear) {
  const int plain = type & 0xFFF;
  const int flags = type & 0xF000;
  if ((flags & 0x9000) != 0) return false;
  if (plain <= 1) return flags == 0;
  return plain <= 14 || (plain >= 16 && plain <= 23) || plain == 36 || (for_clear && plain == 72);
}

TEST(Variant, InitZeroesEveryByte) {
  VARIANT value;
  std::memset(static_cast<void*>(&value), 0xAB, sizeof value);
  VariantInit(&value);
  const char zeros[sizeof value] = {};
  EXPECT_EQ(std::memcmp(&value, zeros, sizeof value), 0);
}

TEST(Variant, ClearKnowsEveryTypeAndKeepsInvalidOnes) {
  for (int type = 0; type <= 0xFFFF; ++type) {
    if ((type & 0xFFF) > 100) continue;
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(type);
    EXPECT_EQ(VariantClear(&value), IsValid(type, true) ? S_OK : DISP_E_BADVARTYPE) << type;
    EXPECT_EQ(value.vt, IsValid(type, true) ? 0 : type);
  }
}

TEST(Variant, CopyKnowsEveryType) {
  for (int type = 0; type <= 0xFFFF; ++type) {
    if ((type & 0xFFF) > 100) continue;
    VARIANT from;
    VariantInit(&from);
    from.vt = static_cast<VARTYPE>(type);
    Value to = Integer(VT_I4, 7);
    EXPECT_EQ(VariantCopy(&to, &from), IsValid(type, false) ? S_OK : DISP_E_BADVARTYPE) << type;
    EXPECT_EQ(to.vt, IsValid(type, false) ? type : static_cast<int>(VT_I4)) << type;
  }
}

TEST(Variant, ClearLeavesTheValueBytes) {
  Value value = Integer(VT_I4, 1234);
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(value.lVal, 1234);
}

TEST(Variant, ReferencesOwnNothing) {
  CountedObject object;
  IDispatch* pointer = &object;
  BSTR text = SysAllocString(u"kept");
  for (Value value : {Reference(VT_DISPATCH, &pointer), Reference(VT_BSTR, &text)}) {
    Value copy;
    EXPECT_EQ(VariantCopy(&copy, &value), S_OK);
    EXPECT_EQ(copy.byref, value.byref);
    EXPECT_EQ(copy.vt, value.vt);
    EXPECT_EQ(VariantClear(&copy), S_OK);
  }
  EXPECT_EQ(object.references, 1u);
  EXPECT_EQ(ViewOf(text), u"kept");
  SysFreeString(text);
}

TEST(Variant, ObjectsAreCounted) {
  CountedObject object;
  {
    Value value = Object(object);
    Value copy(value);
    EXPECT_EQ(object.references, 3u);
    EXPECT_EQ(VariantCopy(&copy, &value), S_OK);
    EXPECT_EQ(object.references, 3u);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(Variant, TextsAreCopiedByByteLength) {
  Value odd(VT_BSTR);
  odd.bstrVal = SysAllocStringByteLen("a\0b", 3);
  Value copy(odd);
  EXPECT_NE(copy.bstrVal, odd.bstrVal);
  EXPECT_EQ(SysStringByteLen(copy.bstrVal), 3u);
  EXPECT_EQ(std::memcmp(copy.bstrVal, "a\0b", 3), 0);
}

TEST(Variant, CopyOfANullTextIsTheEmptyText) {
  Value null_text(VT_BSTR);
  Value copy(null_text);
  ASSERT_NE(copy.bstrVal, nullptr);
  EXPECT_EQ(SysStringByteLen(copy.bstrVal), 0u);
}

TEST(Variant, CopyOntoItselfDoesNothing) {
  Value value = String(u"same");
  BSTR before = value.bstrVal;
  EXPECT_EQ(VariantCopy(&value, &value), S_OK);
  EXPECT_EQ(value.bstrVal, before);
}

TEST(Variant, CopyFromInsideTheDestinationWorks) {
  Value holder(VT_ARRAY | VT_VARIANT);
  holder.parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  auto* element = static_cast<VARIANT*>(holder.parray->pvData);
  element->vt = VT_BSTR;
  element->bstrVal = SysAllocString(u"inside");
  EXPECT_EQ(VariantCopy(&holder, element), S_OK);
  ASSERT_EQ(holder.vt, VT_BSTR);
  EXPECT_EQ(ViewOf(holder.bstrVal), u"inside");
}

TEST(Variant, FailedCopyKeepsTheDestination) {
  Value invalid = Integer(VT_I4, 5);
  invalid.vt = 99;
  Value text = String(u"x");
  EXPECT_EQ(VariantCopy(&invalid, &text), DISP_E_BADVARTYPE);
  EXPECT_EQ(invalid.vt, 99);
  EXPECT_EQ(VariantCopy(&text, &invalid), DISP_E_BADVARTYPE);
  EXPECT_EQ(ViewOf(text.bstrVal), u"x");
  EXPECT_EQ(VariantCopy(nullptr, &text), E_INVALIDARG);
  EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
}

TEST(Variant, ALockedArrayIsNeitherClearedNorReplaced) {
  Value value(VT_ARRAY | VT_I4);
  value.parray = SafeArrayCreateVector(VT_I4, 0, 1);
  SafeArrayLock(value.parray);
  Value number = Integer(VT_I4, 1);
  EXPECT_EQ(VariantClear(&value), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(VariantCopy(&value, &number), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(value.vt, VT_ARRAY | VT_I4);
  SafeArrayUnlock(value.parray);
}

TEST(Variant, ArraysAreCopiedDeep) {
  Value value(VT_ARRAY | VT_BSTR);
  value.parray = SafeArrayCreateVector(VT_BSTR, 0, 1);
  static_cast<BSTR*>(value.parray->pvData)[0] = SysAllocString(u"deep");
  Value copy(value);
  ASSERT_NE(copy.parray, value.parray);
  EXPECT_NE(static_cast<BSTR*>(copy.parray->pvData)[0], static_cast<BSTR*>(value.parray->pvData)[0]);
  EXPECT_EQ(ViewOf(static_cast<BSTR*>(copy.parray->pvData)[0]), u"deep");
}

TEST(Variant, RecordsBelongToTheirValue) {
  NameRecord info;
  {
    Value value(VT_RECORD);
    value.pvRecord = info.RecordCreate();
    value.pRecInfo = &info;
    info.AddRef();
    *static_cast<BSTR*>(value.pvRecord) = SysAllocString(u"name");
    Value copy(value);
    EXPECT_EQ(info.alive, 2);
    EXPECT_EQ(info.references, 3u);
    EXPECT_NE(copy.pvRecord, value.pvRecord);
    EXPECT_EQ(ViewOf(*static_cast<BSTR*>(copy.pvRecord)), u"name");
  }
  EXPECT_EQ(info.alive, 0);
  EXPECT_EQ(info.references, 1u);
}

TEST(VariantCopyInd, FollowsPlainReferences) {
  const SHORT number = -3;
  BSTR text = SysAllocString(u"text");
  Value value = Reference(VT_I2, &number);
  EXPECT_EQ(VariantCopyInd(&value, &value), S_OK);  // in place
  EXPECT_EQ(value.vt, VT_I2);
  EXPECT_EQ(value.iVal, -3);
  Value reference = Reference(VT_BSTR, &text);
  EXPECT_EQ(VariantCopyInd(&value, &reference), S_OK);
  EXPECT_EQ(ViewOf(value.bstrVal), u"text");
  EXPECT_NE(value.bstrVal, text);
  SysFreeString(text);
}

TEST(VariantCopyInd, FollowsADecimalAndAnArray) {
  Value decimal = Decimal(15, 1);
  Value value;
  Value reference = Reference(VT_DECIMAL, &decimal.decVal);
  EXPECT_EQ(VariantCopyInd(&value, &reference), S_OK);
  EXPECT_EQ(value.vt, VT_DECIMAL);
  EXPECT_EQ(value.decVal.Lo64, 15u);
  EXPECT_EQ(value.decVal.scale, 1);
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 3, 2);
  reference = Reference(VT_ARRAY | VT_I4, &array);
  EXPECT_EQ(VariantCopyInd(&value, &reference), S_OK);
  EXPECT_EQ(value.vt, VT_ARRAY | VT_I4);
  EXPECT_NE(value.parray, array);
  SafeArrayDestroy(array);
}

TEST(VariantCopyInd, FollowsAReferenceToAPlainReferenceButNoFurther) {
  const LONG number = 42;
  Value plain = Reference(VT_I4, &number);
  Value outer = Reference(VT_VARIANT, &plain);
  Value value;
  EXPECT_EQ(VariantCopyInd(&value, &outer), S_OK);
  EXPECT_EQ(value.vt, VT_I4);
  EXPECT_EQ(value.lVal, 42);
  Value outermost = Reference(VT_VARIANT, &outer);
  EXPECT_EQ(VariantCopyInd(&value, &outermost), E_INVALIDARG);
  Value itself(VT_VARIANT | VT_BYREF);
  itself.pvarVal = &itself;
  EXPECT_EQ(VariantCopyInd(&value, &itself), E_INVALIDARG);
  Value nowhere = Reference(VT_I4, nullptr);
  EXPECT_EQ(VariantCopyInd(&value, &nowhere), E_INVALIDARG);
  EXPECT_EQ(value.lVal, 42);
}

}  // namespace
}  // namespace Orvix::testing
