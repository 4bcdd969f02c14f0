// Arrays: layout, bounds, locks, elements, copies and re-dimensioning.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

struct DestroyArray {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using Array = std::unique_ptr<SAFEARRAY, DestroyArray>;

Array Vector(VARTYPE type, ULONG elements, LONG lower = 0) {
  return Array(SafeArrayCreateVector(type, lower, elements));
}

template <class Element>
Element& At(const Array& array, std::size_t cell) {
  return static_cast<Element*>(array->pvData)[cell];
}

TEST(SafeArray, EveryTypeHasItsSizeAndFeatures) {
  struct {
    VARTYPE type;
    UINT size;
    USHORT features;
  } const cases[] = {
      {VT_I2, 2, 0x80},        {VT_I4, 4, 0x80},       {VT_R4, 4, 0x80},        {VT_R8, 8, 0x80},    {VT_CY, 8, 0x80},
      {VT_DATE, 8, 0x80},      {VT_BSTR, 8, 0x180},    {VT_DISPATCH, 8, 0x440}, {VT_ERROR, 4, 0x80}, {VT_BOOL, 2, 0x80},
      {VT_VARIANT, 24, 0x880}, {VT_UNKNOWN, 8, 0x240}, {VT_DECIMAL, 16, 0x80},  {VT_I1, 1, 0x80},    {VT_UI1, 1, 0x80},
      {VT_UI2, 2, 0x80},       {VT_UI4, 4, 0x80},      {VT_I8, 8, 0x80},        {VT_UI8, 8, 0x80},   {VT_INT, 4, 0x80},
      {VT_UINT, 4, 0x80},
  };
  for (const auto& c : cases) {
    SAFEARRAYBOUND bound{3, 1};
    Array array(SafeArrayCreate(c.type, 1, &bound));
    ASSERT_NE(array, nullptr) << c.type;
    EXPECT_EQ(SafeArrayGetElemsize(array.get()), c.size) << c.type;
    EXPECT_EQ(array->fFeatures, c.features) << c.type;
    VARTYPE type = 0;
    EXPECT_EQ(SafeArrayGetVartype(array.get(), &type), S_OK);
    EXPECT_EQ(type, c.type);
    const auto* bytes = static_cast<const char*>(array->pvData);
    EXPECT_TRUE(std::all_of(bytes, bytes + 3 * c.size, [](char byte) { return byte == 0; }));
    EXPECT_EQ(Vector(c.type, 1)->fFeatures, c.features | 0x2000);
  }
}

TEST(SafeArray, HiddenBytesTellTheElementType) {
  std::uint32_t type = 0;
  const Array numbers = Vector(VT_I4, 1);
  std::memcpy(&type, reinterpret_cast<const char*>(numbers.get()) - 4, 4);
  EXPECT_EQ(type, 3u);
  IID iid{};
  const Array objects = Vector(VT_DISPATCH, 1);
  std::memcpy(&iid, reinterpret_cast<const char*>(objects.get()) - 16, 16);
  EXPECT_EQ(iid, IID_IDispatch);
  SAFEARRAYBOUND bound{1, 0};
  IID given = IID_IErrorInfo;
  const Array others(SafeArrayCreateEx(VT_UNKNOWN, 1, &bound, &given));
  std::memcpy(&iid, reinterpret_cast<const char*>(others.get()) - 16, 16);
  EXPECT_EQ(iid, IID_IErrorInfo);
}

TEST(SafeArray, ImpossibleArraysAreNull) {
  SAFEARRAYBOUND one{1, 0};
  for (const int type : {0, 1, 15, 24, 25, 26, 27, 30, 36, 72, 0x2003, 0x4003}) {
    EXPECT_EQ(SafeArrayCreate(static_cast<VARTYPE>(type), 1, &one), nullptr) << type;
  }
  EXPECT_EQ(SafeArrayCreate(VT_I4, 0, &one), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 1, nullptr), nullptr);
  std::vector<SAFEARRAYBOUND> many(65536, SAFEARRAYBOUND{1, 0});
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 65536, many.data()), nullptr);
  EXPECT_NE(Array(SafeArrayCreate(VT_UI1, 65535, many.data())), nullptr);
  SAFEARRAYBOUND huge[] = {{0x10000, 0}, {0x10000, 0}, {0x10000, 0}, {0x10000, 0}};
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 4, huge), nullptr);  // 2^64 bytes
  EXPECT_EQ(SafeArrayCreate(VT_VARIANT, 2, huge), nullptr);
  EXPECT_EQ(SafeArrayCreateVector(VT_I4, 0x7FFFFFFF, 2), nullptr);
  EXPECT_NE(Vector(VT_I4, 1, 0x7FFFFFFF), nullptr);
}

TEST(SafeArray, BoundsAreStoredLastDimensionFirst) {
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, -5}, {0, 42}};
  const Array array(SafeArrayCreate(VT_I4, 3, bounds));
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(SafeArrayGetDim(array.get()), 3u);
  EXPECT_EQ(array->rgsabound[0].lLbound, 42);
  const LONG lower[] = {1, -5, 42};
  const LONG upper[] = {2, -3, 41};
  for (UINT dimension = 1; dimension <= 3; ++dimension) {
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), S_OK);
    EXPECT_EQ(bound, lower[dimension - 1]);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), S_OK);
    EXPECT_EQ(bound, upper[dimension - 1]);
  }
  LONG bound = 0;
  for (const UINT dimension : {0u, 4u}) {
    EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
  }
  EXPECT_EQ(SafeArrayGetLBound(nullptr, 1, &bound), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
  EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
}

TEST(SafeArray, FirstIndexVariesFastest) {
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 10}};
  const Array array(SafeArrayCreate(VT_I4, 2, bounds));
  for (LONG i = 0; i < 6; ++i) At<LONG>(array, static_cast<std::size_t>(i)) = i;
  LONG indices[] = {2, 11};
  LONG value = 0;
  EXPECT_EQ(SafeArrayGetElement(array.get(), indices, &value), S_OK);
  EXPECT_EQ(value, 3);
  void* element = nullptr;
  EXPECT_EQ(SafeArrayPtrOfIndex(array.get(), indices, &element), S_OK);
  EXPECT_EQ(element, &At<LONG>(array, 3));
  for (const auto& [first, second] : {std::pair<LONG, LONG>{0, 10}, {3, 10}, {1, 9}, {1, 13}, {INT32_MIN, 10}}) {
    LONG outside[] = {first, second};
    EXPECT_EQ(SafeArrayGetElement(array.get(), outside, &value), DISP_E_BADINDEX) << first << ", " << second;
    EXPECT_EQ(SafeArrayPutElement(array.get(), outside, &value), DISP_E_BADINDEX);
  }
  EXPECT_EQ(SafeArrayGetElement(array.get(), indices, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetElement(array.get(), nullptr, &value), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPutElement(nullptr, indices, &value), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPutElement(array.get(), indices, nullptr), E_INVALIDARG);
}

TEST(SafeArray, TextElementsAreCopiedBothWays) {
  const Array array = Vector(VT_BSTR, 1);
  LONG index = 0;
  BSTR text = SysAllocString(u"first");
  EXPECT_EQ(SafeArrayPutElement(array.get(), &index, text), S_OK);
  EXPECT_NE(At<BSTR>(array, 0), text);
  EXPECT_EQ(SafeArrayPutElement(array.get(), &index, At<BSTR>(array, 0)), S_OK);  // from itself
  SysFreeString(text);
  text = nullptr;
  EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &text), S_OK);
  EXPECT_EQ(ViewOf(text), u"first");
  EXPECT_NE(At<BSTR>(array, 0), text);
  SysFreeString(text);
  EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), S_OK);
  EXPECT_EQ(At<BSTR>(array, 0), nullptr);
}

TEST(SafeArray, ObjectElementsAreCounted) {
  CountedObject object;
  LONG index = 0;
  {
    const Array array = Vector(VT_DISPATCH, 2);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, static_cast<IDispatch*>(&object)), S_OK);
    EXPECT_EQ(object.references, 2u);
    IDispatch* found = nullptr;
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &found), S_OK);
    EXPECT_EQ(found->Release(), 2u);
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array.get(), &copy), S_OK);
    EXPECT_EQ(object.references, 3u);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), S_OK);
    EXPECT_EQ(object.references, 1u);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, static_cast<IDispatch*>(&object)), S_OK);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(SafeArray, VariantElementsIgnoreWhatTheReceiverHeld) {
  const Array array = Vector(VT_VARIANT, 1);
  LONG index = 0;
  Value text = String(u"value");
  EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &text), S_OK);
  VARIANT found;
  std::memset(static_cast<void*>(&found), 0xEE, sizeof found);
  EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &found), S_OK);
  EXPECT_EQ(ViewOf(found.bstrVal), u"value");
  VariantClear(&found);
  EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), E_INVALIDARG);
}

TEST(SafeArray, LocksAreCountedAndHoldTheArray) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 2);
  SAFEARRAYBOUND bound{3, 0};
  void* data = nullptr;
  EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(data, array->pvData);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayRedim(array, &bound), DISP_E_ARRAYISLOCKED);
  for (int i = 1; i < 65535; ++i) ASSERT_EQ(SafeArrayLock(array), S_OK);
  EXPECT_EQ(SafeArrayLock(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayAccessData(array, &data), E_UNEXPECTED);
  for (int i = 1; i < 65535; ++i) ASSERT_EQ(SafeArrayUnlock(array), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArray, CopyIsDeepUnlockedAndNoVector) {
  const Array array = Vector(VT_VARIANT, 3, 7);
  At<VARIANT>(array, 1).vt = VT_BSTR;
  At<VARIANT>(array, 1).bstrVal = SysAllocString(u"x");
  SafeArrayLock(array.get());
  SAFEARRAY* made = nullptr;
  EXPECT_EQ(SafeArrayCopy(array.get(), &made), S_OK);
  SafeArrayUnlock(array.get());
  const Array copy(made);
  EXPECT_EQ(copy->fFeatures, 0x880);
  EXPECT_EQ(copy->cLocks, 0u);
  EXPECT_EQ(copy->rgsabound[0].lLbound, 7);
  EXPECT_NE(At<VARIANT>(copy, 1).bstrVal, At<VARIANT>(array, 1).bstrVal);
  EXPECT_EQ(ViewOf(At<VARIANT>(copy, 1).bstrVal), u"x");
  made = array.get();
  EXPECT_EQ(SafeArrayCopy(nullptr, &made), S_OK);
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(SafeArrayCopy(array.get(), nullptr), E_INVALIDARG);
}

TEST(SafeArray, FailedCopyGivesNullAndLeavesNothing) {
  const Array array = Vector(VT_VARIANT, 3);
  At<VARIANT>(array, 0).vt = VT_BSTR;
  At<VARIANT>(array, 0).bstrVal = SysAllocString(u"copied first");
  At<VARIANT>(array, 1).vt = 99;
  SAFEARRAY* made = array.get();
  EXPECT_EQ(SafeArrayCopy(array.get(), &made), DISP_E_BADVARTYPE);
  EXPECT_EQ(made, nullptr);
  At<VARIANT>(array, 1).vt = VT_EMPTY;
}

TEST(SafeArray, RecordsAreCopiedAndClearedByTheirInfo) {
  NameRecord info;
  SAFEARRAYBOUND bound{3, 0};
  EXPECT_EQ(SafeArrayCreateEx(VT_RECORD, 1, &bound, nullptr), nullptr);
  {
    const Array array(SafeArrayCreateEx(VT_RECORD, 1, &bound, &info));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->fFeatures, 0x20);
    EXPECT_EQ(SafeArrayGetElemsize(array.get()), 8u);
    BSTR name = SysAllocString(u"name");
    LONG index = 1;
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &name), S_OK);
    SysFreeString(name);
    IRecordInfo* found = nullptr;
    EXPECT_EQ(SafeArrayGetRecordInfo(array.get(), &found), S_OK);
    EXPECT_EQ(found, &info);
    found->Release();
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array.get(), &copy), S_OK);
    EXPECT_EQ(ViewOf(static_cast<BSTR*>(copy->pvData)[1]), u"name");
    EXPECT_EQ(info.references, 3u);
    SafeArrayDestroy(copy);
    info.copies_left = 2;  // the second record is made, the third fails
    EXPECT_EQ(SafeArrayCopy(array.get(), &copy), E_OUTOFMEMORY);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(info.references, 2u);
  }
  EXPECT_EQ(info.references, 1u);
  const Array numbers = Vector(VT_I4, 1);
  IRecordInfo* none = nullptr;
  EXPECT_EQ(SafeArrayGetRecordInfo(numbers.get(), &none), E_INVALIDARG);
}

TEST(SafeArray, RedimKeepsZeroesAndReleases) {
  CountedObject object;
  const Array array = Vector(VT_UNKNOWN, 3);
  for (LONG i = 0; i < 3; ++i) SafeArrayPutElement(array.get(), &i, static_cast<IUnknown*>(&object));
  EXPECT_EQ(object.references, 4u);
  SAFEARRAYBOUND bound{1, 5};
  EXPECT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
  EXPECT_EQ(object.references, 2u);
  EXPECT_EQ(At<IUnknown*>(array, 0), &object);
  bound = {4, -1};
  EXPECT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
  EXPECT_EQ(At<IUnknown*>(array, 0), &object);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(At<IUnknown*>(array, i), nullptr);
  LONG lower = 0;
  SafeArrayGetLBound(array.get(), 1, &lower);
  EXPECT_EQ(lower, -1);
  bound = {0, 0};
  EXPECT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
  EXPECT_EQ(object.references, 1u);
}

TEST(SafeArray, RedimChangesTheLastDimension) {
  SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
  const Array array(SafeArrayCreate(VT_I4, 2, bounds));
  for (LONG i = 0; i < 4; ++i) At<LONG>(array, static_cast<std::size_t>(i)) = i + 1;
  SAFEARRAYBOUND last{3, 0};
  EXPECT_EQ(SafeArrayRedim(array.get(), &last), S_OK);
  const LONG expected[] = {1, 2, 3, 4, 0, 0};
  EXPECT_EQ(std::memcmp(array->pvData, expected, sizeof expected), 0);
}

TEST(SafeArray, FailedRedimKeepsTheArray) {
  const Array array = Vector(VT_R8, 2);
  At<double>(array, 1) = 1.5;
  SAFEARRAYBOUND huge{0xFFFFFFFF, -2147483647};
  EXPECT_EQ(SafeArrayRedim(array.get(), &huge), E_OUTOFMEMORY);
  SAFEARRAYBOUND beyond{2, 0x7FFFFFFF};
  EXPECT_EQ(SafeArrayRedim(array.get(), &beyond), E_INVALIDARG);
  SAFEARRAYBOUND one{1, 0};
  array->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(SafeArrayRedim(array.get(), &one), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayRedim(nullptr, &one), E_INVALIDARG);
  EXPECT_EQ(array->rgsabound[0].cElements, 2u);
  EXPECT_EQ(At<double>(array, 1), 1.5);
}

}  // namespace
}  // namespace Orvix::testing
