// VariantChangeType: its frame, conversions between numbers, objects, arrays.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

HRESULT Change(const Value& from, VARTYPE type, Value* to, USHORT flags = 0) {
  return VariantChangeType(to, &from, flags, type);
}

struct IntegerCase {
  Value from;
  VARTYPE type;
  std::int64_t expected;  // the value's 64 bits
  HRESULT result = S_OK;
};

void ExpectIntegers(const std::vector<IntegerCase>& cases) {
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const IntegerCase& c = cases[i];
    Value to = Integer(VT_ERROR, 99);
    ASSERT_EQ(Change(c.from, c.type, &to), c.result) << i;
    EXPECT_EQ(to.vt, c.result == S_OK ? c.type : static_cast<VARTYPE>(VT_ERROR)) << i;
    EXPECT_EQ(to.llVal, c.result == S_OK ? c.expected : 99) << i;
  }
}

TEST(VariantChangeType, FractionsRoundHalfToEvenThenMustFit) {
  constexpr HRESULT kOver = DISP_E_OVERFLOW;
  ExpectIntegers({
      {Double(-2147483648.5), VT_I4, 0x80000000},
      {Double(-2147483648.51), VT_I4, 0, kOver},
      {Double(2147483647.49), VT_I4, 2147483647},
      {Double(2147483647.5), VT_I4, 0, kOver},
      {Double(32767.49), VT_I2, 32767},
      {Double(32767.5), VT_I2, 0, kOver},
      {Double(-32768.5), VT_I2, 0x8000},
      {Double(255.49), VT_UI1, 255},
      {Double(255.5), VT_UI1, 0, kOver},
      {Double(-0.5), VT_UI1, 0},
      {Double(-0.51), VT_UI1, 0, kOver},
      {Double(-128.5), VT_I1, 0x80},
      {Double(127.5), VT_I1, 0, kOver},
      {Double(-1.5), VT_I4, 0xFFFFFFFE},
      {Double(-0.5), VT_I4, 0},
      {Double(0.5), VT_I4, 0},
      {Double(1.5), VT_I4, 2},
      {Double(2.5), VT_I4, 2},
      {Single(3.5f), VT_I4, 4},
      {Double(1.5, VT_DATE), VT_I4, 2},
      {Double(9223372036854775808.0), VT_I8, 0, kOver},
      {Double(9223372036854775808.0), VT_UI8, std::numeric_limits<std::int64_t>::min()},
      {Double(18446744073709551616.0), VT_UI8, 0, kOver},
      {Double(kInfinity), VT_I4, 0, kOver},
      {Double(std::nan("")), VT_I4, 0, kOver},
      {Currency(25000), VT_I4, 2},
      {Currency(-15000), VT_I2, 0xFFFE},
      {Decimal(35, 1), VT_I4, 4},
      {Decimal(1, 28), VT_I4, 0},
      {Decimal(0, 0, 0, 1), VT_UI8, 0, kOver},
      {Decimal(1, 29), VT_I4, 0, E_INVALIDARG},
      {Decimal(1, 0, 1), VT_I4, 0, E_INVALIDARG},
  });
}

TEST(VariantChangeType, IntegersKeepBitsWithinOneSizeAndRangeElsewhere) {
  constexpr HRESULT kOver = DISP_E_OVERFLOW;
  ExpectIntegers({
      {Integer(VT_I2, 0xFFFF), VT_UI2, 65535},
      {Integer(VT_UINT, 4294967295), VT_I4, 4294967295},
      {Integer(VT_UI4, 4294967295), VT_INT, 4294967295},
      {Integer(VT_I1, 0xFF), VT_UI1, 255},
      {Integer(VT_UI8, -1), VT_I8, -1},
      {Integer(VT_I1, 0xFF), VT_I4, 0xFFFFFFFF},
      {Integer(VT_I1, 0xFF), VT_UI2, 0, kOver},
      {Integer(VT_I4, 32768), VT_I2, 0, kOver},
      {Integer(VT_I4, 32768), VT_UI2, 32768},
      {Integer(VT_I4, 0xFFFFFFFF), VT_UI8, 0, kOver},
      {Integer(VT_UI8, -1), VT_I4, 0, kOver},
      {Integer(VT_I8, std::numeric_limits<std::int64_t>::min()), VT_UI4, 0, kOver},
      {Bool(VARIANT_TRUE), VT_UI1, 255},
      {Bool(VARIANT_TRUE), VT_I4, 0xFFFFFFFF},
      {Bool(VARIANT_TRUE), VT_UI4, 0xFFFFFFFF},
      {Bool(2), VT_I2, 2},
      {Value(), VT_I4, 0},
      {Value(VT_NULL), VT_I4, 0, DISP_E_TYPEMISMATCH},
  });
}

TEST(VariantChangeType, FractionsOfOtherNumbers) {
  struct {
    Value from;
    VARTYPE type;
    double expected;
    HRESULT result;
  } const cases[] = {
      {Integer(VT_I4, 0xFFFFFFFB), VT_R8, -5, S_OK},
      {Integer(VT_UI8, -1), VT_R8, 18446744073709551616.0, S_OK},
      {Bool(VARIANT_TRUE), VT_R8, -1, S_OK},
      {Bool(VARIANT_TRUE), VT_DATE, -1, S_OK},
      {Currency(15000), VT_R8, 1.5, S_OK},
      {Currency(9223372036854775807), VT_R8, 922337203685477.5807, S_OK},
      {Decimal(1, 1), VT_R8, 0.1, S_OK},
      {Decimal(1, 0, 0x80), VT_DATE, -1, S_OK},
      {Double(1e300), VT_R4, 0, DISP_E_OVERFLOW},
      {Double(-657434), VT_DATE, -657434, S_OK},
      {Double(2958465.75), VT_DATE, 2958465.75, S_OK},
      {Double(2958466), VT_DATE, 0, DISP_E_OVERFLOW},
      {Integer(VT_I4, -657435), VT_DATE, 0, DISP_E_OVERFLOW},
      {Double(std::nan("")), VT_DATE, 0, DISP_E_OVERFLOW},
      {Value(), VT_DATE, 0, S_OK},
  };
  for (const auto& c : cases) {
    Value to;
    EXPECT_EQ(Change(c.from, c.type, &to), c.result) << c.expected;
    EXPECT_EQ(to.dblVal, c.expected);
  }
  Value single;
  EXPECT_EQ(Change(Decimal(1, 1), VT_R4, &single), S_OK);
  EXPECT_EQ(single.fltVal, 0.1f);
}

TEST(VariantChangeType, CurrencyAndDecimal) {
  struct {
    Value from;
    std::int64_t units;
    HRESULT result;
  } const cases[] = {
      {Integer(VT_I4, 0xFFFFFFFF), -10000, S_OK},
      {Integer(VT_I8, 922337203685477), 9223372036854770000, S_OK},
      {Integer(VT_I8, 922337203685478), 0, DISP_E_OVERFLOW},
      {Double(1.23455), 12346, S_OK},
      {Double(0.00025), 2, S_OK},
      {Double(1e15), 0, DISP_E_OVERFLOW},
      {Decimal(25, 5), 2, S_OK},
      {Decimal(35, 5, 0x80), -4, S_OK},
      {String(u"-1.5"), -15000, S_OK},
      {String(u"922337203685477.5807"), 9223372036854775807, S_OK},
      {String(u"922337203685477.5808"), 0, DISP_E_OVERFLOW},
  };
  for (const auto& c : cases) {
    Value to;
    EXPECT_EQ(Change(c.from, VT_CY, &to), c.result);
    EXPECT_EQ(to.cyVal.int64, c.units);
  }
  Value decimal;
  EXPECT_EQ(Change(Double(-0.1), VT_DECIMAL, &decimal), S_OK);
  EXPECT_EQ(decimal.vt, VT_DECIMAL);
  EXPECT_EQ(decimal.decVal.Lo64, 1u);
  EXPECT_EQ(decimal.decVal.scale, 1);
  EXPECT_EQ(decimal.decVal.sign, 0x80);
  EXPECT_EQ(Change(Double(1e29), VT_DECIMAL, &decimal), DISP_E_OVERFLOW);
  EXPECT_EQ(Change(Double(kInfinity), VT_DECIMAL, &decimal), DISP_E_OVERFLOW);
}

TEST(VariantChangeType, Booleans) {
  struct {
    Value from;
    VARIANT_BOOL expected;
    HRESULT result;
  } const cases[] = {
      {Double(0.4), -1, S_OK},
      {Integer(VT_I4, 2), -1, S_OK},
      {Double(-0.0), 0, S_OK},
      {Decimal(0, 5, 0x80), 0, S_OK},
      {Currency(1), -1, S_OK},
      {Value(), 0, S_OK},
      {Bool(5), 5, S_OK},
      {String(u"TRUE"), -1, S_OK},
      {String(u"false"), 0, S_OK},
      {String(u"#TRUE#"), -1, S_OK},
      {String(u"#FALSE#"), 0, S_OK},
      {String(u"#False#"), 0, DISP_E_TYPEMISMATCH},
      {String(u"0.1"), -1, S_OK},
      {String(u"+1"), -1, S_OK},
      {String(u"&H0"), 0, S_OK},
      {String(u"Yes"), 0, DISP_E_TYPEMISMATCH},
      {String(u""), 0, DISP_E_TYPEMISMATCH},
      {String(u" True"), 0, DISP_E_TYPEMISMATCH},
  };
  for (const auto& c : cases) {
    Value to;
    EXPECT_EQ(Change(c.from, VT_BOOL, &to), c.result);
    EXPECT_EQ(to.boolVal, c.expected);
  }
}

TEST(VariantChangeType, BooleanTexts) {
  Value to;
  EXPECT_EQ(Change(Bool(VARIANT_TRUE), VT_BSTR, &to), S_OK);
  EXPECT_EQ(ViewOf(to.bstrVal), u"-1");
  EXPECT_EQ(Change(Bool(VARIANT_FALSE), VT_BSTR, &to, VARIANT_ALPHABOOL), S_OK);
  EXPECT_EQ(ViewOf(to.bstrVal), u"False");
  EXPECT_EQ(Change(Bool(3), VT_BSTR, &to, VARIANT_LOCALBOOL), S_OK);
  EXPECT_EQ(ViewOf(to.bstrVal), u"True");
}

TEST(VariantChangeType, TargetsAndSourcesThatAreRefused) {
  for (const int number : {15, 24, 31, 72, 99, 0x1003, 0x8003, 0x4000, 0x2001}) {
    const auto type = static_cast<VARTYPE>(number);
    Value to = Integer(VT_I4, 1);
    EXPECT_EQ(Change(Integer(VT_I4, 1), type, &to), DISP_E_BADVARTYPE) << type;
    VARIANT from;
    VariantInit(&from);
    from.vt = type;
    EXPECT_EQ(VariantChangeType(&to, &from, 0, VT_I4), DISP_E_BADVARTYPE) << type;
  }
  CountedObject object;
  const LONG number = 3;
  struct {
    Value from;
    VARTYPE type;
  } const cases[] = {
      {Integer(VT_I4, 1), VT_VARIANT},
      {Integer(VT_I4, 1), VT_BYREF | VT_I4},
      {Integer(VT_I4, 1), VT_ERROR},
      {Integer(VT_I4, 1), VT_RECORD},
      {Integer(VT_I4, 1), VT_DISPATCH},
      {Value(), VT_UNKNOWN},
      {Value(VT_NULL), VT_EMPTY},
      {Value(VT_NULL), VT_BSTR},
      {Value(VT_ERROR), VT_I4},
      {Value(VT_ERROR), VT_EMPTY},
      {String(u"x"), VT_DISPATCH},
      {Reference(VT_I4, nullptr), VT_I4},
      {Object(object, VT_UNKNOWN), VT_I4},
      {Value(VT_ARRAY | VT_I4), VT_EMPTY},
      {Value(VT_ARRAY | VT_I4), VT_ARRAY | VT_R8},
      {Integer(VT_I4, 1), VT_ARRAY | VT_I4},
      {Value(VT_ARRAY | VT_I4), VT_BSTR},
      {Reference(VT_I4, &number), VT_BYREF | VT_I4},
  };
  for (const auto& c : cases) {
    Value to = String(u"kept");
    EXPECT_EQ(Change(c.from, c.type, &to), DISP_E_TYPEMISMATCH) << c.from.vt << " to " << c.type;
    EXPECT_EQ(ViewOf(to.bstrVal), u"kept");
  }
  Value value;
  EXPECT_EQ(VariantChangeType(nullptr, &value, 0, VT_I4), E_INVALIDARG);
  EXPECT_EQ(VariantChangeType(&value, nullptr, 0, VT_I4), E_INVALIDARG);
}

TEST(VariantChangeType, FailureKeepsEvenAnInvalidDestination) {
  Value to = Integer(VT_I4, 5);
  to.vt = 99;
  EXPECT_EQ(Change(String(u"no number"), VT_I4, &to), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(to.vt, 99);
  EXPECT_EQ(to.lVal, 5);
}

TEST(VariantChangeType, WorksInPlaceAndThroughReferences) {
  Value value = String(u"12");
  EXPECT_EQ(VariantChangeType(&value, &value, 0, VT_I2), S_OK);
  EXPECT_EQ(value.iVal, 12);
  Value inner = String(u"7");
  Value reference = Reference(VT_VARIANT, &inner);
  EXPECT_EQ(VariantChangeType(&reference, &reference, 0, VT_I4), S_OK);
  EXPECT_EQ(reference.lVal, 7);
  EXPECT_EQ(ViewOf(inner.bstrVal), u"7");
  EXPECT_EQ(Change(Integer(VT_I4, 1), VT_NULL, &value), S_OK);
  EXPECT_EQ(value.vt, VT_NULL);
  EXPECT_EQ(Change(Value(), VT_BSTR, &value), S_OK);
  ASSERT_NE(value.bstrVal, nullptr);
  EXPECT_EQ(SysStringLen(value.bstrVal), 0u);
}

TEST(VariantChangeType, ObjectsGiveTheirDefaultMember) {
  CountedObject object;
  Value member = String(u"41.5");
  object.value = &member;
  {
    Value from = Object(object);
    Value to;
    EXPECT_EQ(Change(from, VT_I4, &to), S_OK);
    EXPECT_EQ(to.lVal, 42);
    EXPECT_EQ(Change(from, VT_I4, &to, VARIANT_NOVALUEPROP), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Change(from, VT_EMPTY, &to), S_OK);
    object.fails = true;
    EXPECT_EQ(Change(from, VT_BSTR, &to), DISP_E_TYPEMISMATCH);
    object.fails = false;
    object.value = &from;  // its own default member, without end
    EXPECT_EQ(Change(from, VT_I4, &to), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Change(Value(VT_DISPATCH), VT_I4, &to), DISP_E_TYPEMISMATCH);
    object.value = &member;
    EXPECT_EQ(VariantChangeType(&from, &from, 0, VT_BSTR), S_OK);
    EXPECT_EQ(ViewOf(from.bstrVal), u"41.5");
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(VariantChangeType, InterfacesAreAskedForEachOther) {
  CountedObject object;
  {
    Value to;
    EXPECT_EQ(Change(Object(object), VT_UNKNOWN, &to), S_OK);
    EXPECT_EQ(to.punkVal, &object);
    Value dispatch;
    EXPECT_EQ(Change(to, VT_DISPATCH, &dispatch), S_OK);
    EXPECT_EQ(object.references, 3u);
    object.is_dispatch = false;
    EXPECT_EQ(VariantChangeType(&to, &to, 0, VT_DISPATCH), E_NOINTERFACE);
    EXPECT_EQ(Change(Value(VT_UNKNOWN), VT_DISPATCH, &to), S_OK);
    EXPECT_EQ(to.vt, VT_DISPATCH);
    EXPECT_EQ(to.pdispVal, nullptr);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(VariantChangeType, ByteArraysAndTextsShareTheirBytes) {
  Value bytes;
  EXPECT_EQ(Change(String(u"a\u4142"), VT_ARRAY | VT_UI1, &bytes), S_OK);
  ASSERT_EQ(bytes.vt, VT_ARRAY | VT_UI1);
  EXPECT_EQ(bytes.parray->rgsabound[0].cElements, 4u);
  EXPECT_EQ(std::memcmp(bytes.parray->pvData, "a\0\x42\x41", 4), 0);
  Value text;
  EXPECT_EQ(Change(bytes, VT_BSTR, &text), S_OK);
  EXPECT_EQ(ViewOf(text.bstrVal), u"a\u4142");
  Value copy;
  EXPECT_EQ(Change(bytes, VT_ARRAY | VT_UI1, &copy), S_OK);
  EXPECT_NE(copy.parray, bytes.parray);
}

}  // namespace
}  // namespace Orvix::testing
