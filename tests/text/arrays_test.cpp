// Arrays of texts, allocation, and what a collection holds.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"
#include "tests/support/scripted_object.h"
#include "tests/text/safe_arrays.h"

namespace Orvix::testing {
namespace {

class ArraysTest : public ::testing::Test {
 protected:
  bool Contains(SafeArray& array, TextView target, VARIANT_BOOL* match_case = nullptr) {
    const BstrHandle wanted(target);
    VARIANT_BOOL found = 5;
    EXPECT_EQ(orvix_->IsInStringArray(array.Address(), wanted.get(), match_case, &found), S_OK);
    EXPECT_TRUE(found == VARIANT_TRUE || found == VARIANT_FALSE);
    return found == VARIANT_TRUE;
  }
  bool Holds(IDispatch* collection, TextView key) {
    BSTR wanted = NewBstr(key);
    VARIANT_BOOL found = 5;
    EXPECT_EQ(orvix_->IsInCollection(&wanted, &collection, &found), S_OK);
    SysFreeString(wanted);
    EXPECT_TRUE(found == VARIANT_TRUE || found == VARIANT_FALSE);
    return found == VARIANT_TRUE;
  }
  void ExpectReport(TextView description) {
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].text, Text(u"Error searching string.\r\n").append(description));
    host_.boxes.clear();
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(ArraysTest, FindsATextWithAndWithoutRegardToCase) {
  VARIANT_BOOL yes = VARIANT_TRUE;
  VARIANT_BOOL no = VARIANT_FALSE;
  SafeArray array({u"Apple", u"Pear", u"\u00C4pfel"});
  EXPECT_TRUE(Contains(array, u"apple"));
  EXPECT_TRUE(Contains(array, u"PEAR", &no));
  EXPECT_TRUE(Contains(array, u"\u00E4PFEL"));
  EXPECT_FALSE(Contains(array, u"apple", &yes));
  EXPECT_TRUE(Contains(array, u"Pear", &yes));
  EXPECT_FALSE(Contains(array, u"Pea"));
  EXPECT_FALSE(Contains(array, u"Pears"));
  EXPECT_FALSE(Contains(array, u""));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ArraysTest, NullAndEmptyTextsAreTheSame) {
  SafeArray array(VT_BSTR, 0, 2);  // null texts
  EXPECT_TRUE(Contains(array, u""));
  EXPECT_FALSE(Contains(array, u"a"));
}

TEST_F(ArraysTest, SearchesFromTheLowerBound) {
  SafeArray one(std::vector<TextView>{u"first", u"last"}, 1);
  EXPECT_TRUE(Contains(one, u"first"));
  EXPECT_TRUE(Contains(one, u"last"));
  SafeArray negative(std::vector<TextView>{u"first", u"last"}, -5);
  EXPECT_TRUE(Contains(negative, u"first"));
  SafeArray none(VT_BSTR, 0, 0);
  EXPECT_FALSE(Contains(none, u"first"));
  SafeArray unallocated;
  EXPECT_FALSE(Contains(unallocated, u"first"));
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ArraysTest, ReportsWhatIsNoArrayOfTexts) {
  SafeArray values({I4(1)});
  EXPECT_FALSE(Contains(values, u"1"));
  ExpectReport(u"Type mismatch");
  SafeArray plane = SafeArray::TwoDimensions(VT_BSTR);
  EXPECT_FALSE(Contains(plane, u""));
  ExpectReport(u"Subscript out of range");
  SafeArray halved(std::vector<TextView>{u"first", u"last"});  // a descriptor that somebody wrote into
  (*halved.Address())->cbElements = 4;
  EXPECT_FALSE(Contains(halved, u"first"));
  ExpectReport(u"Type mismatch");
  (*halved.Address())->cbElements = sizeof(BSTR);
}

TEST_F(ArraysTest, OnlyAnUnallocatedArrayIsEmpty) {
  SafeArray unallocated;
  SafeArray singles(VT_R4, 0, 1);
  SafeArray no_singles(VT_R4, 0, 0);
  SafeArray texts(VT_BSTR, 3, 1);
  SafeArray no_texts(VT_BSTR, 3, 0);
  VARIANT_BOOL empty = 5;
  EXPECT_EQ(orvix_->ArrayIsEmpty(unallocated.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_TRUE);
  EXPECT_EQ(orvix_->ArrayIsEmpty(singles.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_FALSE);
  EXPECT_EQ(orvix_->StringArrayIsEmpty(unallocated.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_TRUE);
  EXPECT_EQ(orvix_->ArrayIsEmpty(no_singles.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_FALSE);
  EXPECT_EQ(orvix_->StringArrayIsEmpty(texts.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_FALSE);
  EXPECT_EQ(orvix_->StringArrayIsEmpty(no_texts.Address(), &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_FALSE);
  SAFEARRAY no_dimensions{};
  SAFEARRAY* bare = &no_dimensions;
  EXPECT_EQ(orvix_->StringArrayIsEmpty(&bare, &empty), S_OK);
  EXPECT_EQ(empty, VARIANT_TRUE);
  EXPECT_TRUE(host_.boxes.empty());
}

TEST_F(ArraysTest, ACollectionHoldsObjectsUnderTheirKeys) {
  ComPtr<IDispatch> collection;
  ASSERT_EQ(OxCreateCollection(collection.Receive()), S_OK);
  const auto add = [&](const VARIANT& item, TextView key) {
    const Variant name(key);
    EXPECT_EQ(InvokeNamed(collection.get(), u"Add", DISPATCH_METHOD, {item, name.get()}), S_OK);
  };
  VARIANT object = Empty();
  object.vt = VT_DISPATCH;
  object.pdispVal = collection.get();
  add(object, u"self");
  object.pdispVal = nullptr;
  add(object, u"nothing");
  add(I4(4), u"number");
  EXPECT_TRUE(Holds(collection.get(), u"self"));
  EXPECT_TRUE(Holds(collection.get(), u"SELF"));  // the collection's own comparison
  EXPECT_TRUE(Holds(collection.get(), u"nothing"));
  EXPECT_FALSE(Holds(collection.get(), u"number"));
  EXPECT_FALSE(Holds(collection.get(), u"absent"));
  EXPECT_FALSE(Holds(collection.get(), u""));
  EXPECT_FALSE(Holds(collection.get(), u"1"));  // a key, not an index
  EXPECT_FALSE(Holds(nullptr, u"self"));
  EXPECT_FALSE(Holds(orvix_.get(), u"self"));  // it has no Item
  EXPECT_TRUE(host_.boxes.empty());
  EXPECT_EQ(TakeFailure(), (Failure{u"(none)", u"(none)"}));
  EXPECT_EQ(InvokeNamed(collection.get(), u"Remove", DISPATCH_METHOD, {I4(1)}), S_OK);  // it held itself
}

struct NamelessObject final : IUnknown {
  LONG references = 1;
  HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG AddRef() override { return static_cast<ULONG>(++references); }
  ULONG Release() override { return static_cast<ULONG>(--references); }
};

TEST_F(ArraysTest, ACollectionIsAskedForItsItem) {
  ScriptedObject item;
  NamelessObject nameless;
  ScriptedObject collection;
  const auto gives = [&](VARTYPE type, IUnknown* object) {
    collection.Gives(u"Item", [=](const ScriptedObject::Arguments&) {
      Variant value;
      if (object != nullptr) object->AddRef();
      value.Address()->vt = type;
      value.Address()->punkVal = object;
      return value;
    });
  };
  const struct {
    const char* label;
    VARTYPE type;
    IUnknown* object;
    bool held;
  } cases[] = {
      {"an object", VT_DISPATCH, &item, true},
      {"no object", VT_DISPATCH, nullptr, true},
      {"an object that tells its names", VT_UNKNOWN, &item, true},
      {"an object without names", VT_UNKNOWN, &nameless, false},
      {"none without names", VT_UNKNOWN, nullptr, true},
      {"Empty", VT_EMPTY, nullptr, false},
      {"Null", VT_NULL, nullptr, false},
      {"an empty text", VT_BSTR, nullptr, false},
  };
  for (const auto& c : cases) {
    gives(c.type, c.object);
    EXPECT_EQ(Holds(&collection, u"key"), c.held) << c.label;
    EXPECT_EQ(collection.log, std::vector<std::string>{"get Item BSTR key"}) << c.label;
    EXPECT_EQ(item.references, 1) << c.label;
    EXPECT_EQ(nameless.references, 1) << c.label;
    collection.log.clear();
  }
  gives(VT_DISPATCH, &item);
  BSTR null_key = nullptr;
  IDispatch* pointer = &collection;
  VARIANT_BOOL found = 5;
  EXPECT_EQ(orvix_->IsInCollection(&null_key, &pointer, &found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);
  EXPECT_EQ(collection.log, std::vector<std::string>{"get Item BSTR "});
  collection.Fails(u"Item", 5);
  EXPECT_FALSE(Holds(&collection, u"key"));
  EXPECT_EQ(collection.references, 1);
  EXPECT_TRUE(host_.boxes.empty());
  EXPECT_EQ(TakeFailure(), (Failure{u"(none)", u"(none)"}));
}

}  // namespace
}  // namespace Orvix::testing
