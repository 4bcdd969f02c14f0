// Order of two values, in the steps in which it is decided.
#include <gtest/gtest.h>

#include <vector>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

struct OrderCase {
  Value left;
  Value right;
  HRESULT expected;
};

void ExpectOrders(const std::vector<OrderCase>& cases) {
  for (std::size_t i = 0; i < cases.size(); ++i) {
    Value left = cases[i].left;
    Value right = cases[i].right;
    EXPECT_EQ(VarCmp(&left, &right, 0, 0), cases[i].expected) << i;
    const HRESULT mirrored = cases[i].expected == VARCMP_LT   ? VARCMP_GT
                             : cases[i].expected == VARCMP_GT ? VARCMP_LT
                                                              : cases[i].expected;
    EXPECT_EQ(VarCmp(&right, &left, 0, 0), mirrored) << i << " mirrored";
  }
}

TEST(VarCmp, RefusesWhatHasNoOrder) {
  const LONG number = 1;
  CountedObject object;
  ExpectOrders({
      {Reference(VT_I4, &number), Integer(VT_I4, 1), DISP_E_BADVARTYPE},
      {Value(VT_ARRAY | VT_I4), Integer(VT_I4, 1), DISP_E_BADVARTYPE},
      {Value(VT_RECORD), Value(VT_NULL), DISP_E_BADVARTYPE},
      {Object(object), Value(VT_NULL), DISP_E_TYPEMISMATCH},
      {Value(VT_ERROR), Value(VT_ERROR), VARCMP_EQ},
      {Value(VT_ERROR), Value(VT_NULL), DISP_E_TYPEMISMATCH},
      {Value(VT_ERROR), Integer(VT_I4, 0), DISP_E_TYPEMISMATCH},
      {Value(VT_NULL), Value(VT_NULL), VARCMP_NULL},
      {Value(VT_NULL), Integer(VT_I4, 0), VARCMP_NULL},
      {Value(VT_NULL), Value(), VARCMP_NULL},
  });
  Value value;
  EXPECT_EQ(VarCmp(nullptr, &value, 0, 0), E_INVALIDARG);
}

TEST(VarCmp, TextsCompareUnitByUnitThenByLength) {
  ExpectOrders({
      {String(u"7"), String(u"42"), VARCMP_GT},
      {String(u"a"), String(u"A"), VARCMP_GT},
      {String(u"ab"), String(u"abc"), VARCMP_LT},
      {String({u"a\0b", 3}), String({u"a\0c", 3}), VARCMP_LT},
      {String(u"\uFFFF"), String(u"\U00010000"), VARCMP_GT},
      {String(u""), Value(), VARCMP_EQ},
      {String(u"a"), Value(), VARCMP_GT},
  });
  Value null_text(VT_BSTR);
  for (Value other : {String(u""), Value()}) EXPECT_EQ(VarCmp(&null_text, &other, 0, 0), VARCMP_EQ);
}

TEST(VarCmp, ATextIsAboveEveryNumber) {
  ExpectOrders({
      {String(u"1"), Integer(VT_I4, 2147483647), VARCMP_GT},
      {String(u""), Integer(VT_I2, 0), VARCMP_GT},
      {String(u"-666"), Integer(VT_I4, 1), VARCMP_GT},
      {String(u"0"), Bool(VARIANT_TRUE), VARCMP_GT},
      {String(u"0"), Double(5, VT_DATE), VARCMP_GT},
      {String(u"0"), Currency(5), VARCMP_GT},
  });
}

TEST(VarCmp, MarkedValuesCompareByWhatTheySay) {
  Value seven = String(u"7");
  Value number = Integer(VT_I4, 42);
  Value marked_number = Integer(VT_I4, 42);
  marked_number.vt |= VT_RESERVED;
  Value marked_text = String(u"7");
  Value marked_negative = String(u"-1");
  EXPECT_EQ(VarCmp(&seven, &marked_number, 0, 0), VARCMP_LT);
  EXPECT_EQ(VarCmp(&marked_number, &seven, 0, 0), VARCMP_GT);
  marked_text.vt |= VT_RESERVED;
  marked_negative.vt |= VT_RESERVED;
  EXPECT_EQ(VarCmp(&marked_text, &number, 0, 0), VARCMP_GT);
  EXPECT_EQ(VarCmp(&marked_text, &marked_number, 0, 0), VARCMP_GT);
  EXPECT_EQ(VarCmp(&marked_negative, &marked_number, 0, 0), VARCMP_LT);
  for (VARIANT* text : {&marked_text, &marked_negative}) text->vt = VT_BSTR;
}

TEST(VarCmp, NumbersCompareInTheWiderType) {
  ExpectOrders({
      {Single(1), Double(1.00000001), VARCMP_EQ},
      {Single(1), Double(1.00000001, VT_DATE), VARCMP_EQ},
      {Single(1), Double(1e300), VARCMP_LT},  // too big for a Single
      {Double(1), Double(1 + 1e-15, VT_DATE), VARCMP_LT},
      {Decimal(10, 1), Decimal(100, 2), VARCMP_EQ},
      {Decimal(1, 28), Decimal(0, 0, 0x80), VARCMP_GT},
      {Decimal(0xFFFFFFFFFFFFFFFF, 0, 0, 0xFFFFFFFF), Decimal(1, 28), VARCMP_GT},
      {Decimal(11, 1, 0x80), Integer(VT_I4, -1), VARCMP_LT},
      {Decimal(0xFFFFFFFFFFFFFFFF, 0, 0, 0xFFFFFFFF), Double(1e30), VARCMP_LT},
      {Decimal(1, 0), Single(1), VARCMP_EQ},
      {Decimal(1, 29), Integer(VT_I4, 1), E_INVALIDARG},
      {Currency(10001), Integer(VT_I4, 1), VARCMP_GT},
      {Currency(10000), Bool(VARIANT_TRUE), VARCMP_GT},
      {Bool(VARIANT_TRUE), Bool(VARIANT_FALSE), VARCMP_LT},
      {Bool(VARIANT_FALSE), Value(), VARCMP_EQ},
      {Value(), Value(), VARCMP_EQ},
      {Value(), Integer(VT_I4, -1), VARCMP_GT},
      {Integer(VT_UI1, 255), Integer(VT_I1, -1), VARCMP_GT},
      {Integer(VT_UI8, -1), Integer(VT_I8, -1), VARCMP_GT},
      {Integer(VT_I8, 9007199254740993), Integer(VT_I8, 9007199254740992), VARCMP_GT},
  });
}

TEST(VarCmp, ALocaleOrdersTextsAsInADictionary) {
  struct {
    TextView left;
    TextView right;
    ULONG flags;
    HRESULT expected;
  } const cases[] = {
      {u"a", u"A", 0, VARCMP_LT},      {u"a", u"A", 1, VARCMP_EQ},           {u"B", u"a", 0, VARCMP_GT},
      {u"_", u"1", 0, VARCMP_LT},      {u"9", u"a", 0, VARCMP_LT},           {u"e", u"\u00E9", 0, VARCMP_LT},
      {u"\u00E9", u"f", 0, VARCMP_LT}, {u"\u00C9", u"\u00E9", 1, VARCMP_EQ}, {u"ab", u"A", 1, VARCMP_GT},
  };
  for (const auto& c : cases) {
    Value left = String(c.left);
    Value right = String(c.right);
    EXPECT_EQ(VarCmp(&left, &right, 0x409, c.flags), c.expected) << Utf8(c.left) << " " << Utf8(c.right);
  }
}

}  // namespace
}  // namespace Orvix::testing
