#include <gtest/gtest.h>

#include "orvix/runtime.h"
#include "tests/support/late_call.h"

namespace Orvix::testing {
namespace {

using component::ComPtr;
using component::Variant;

struct Fault {
  LONG number;
  const char16_t* description;
};
constexpr Fault kNoKey{5, u"Invalid procedure call or argument"};
constexpr Fault kNoPosition{9, u"Subscript out of range"};
constexpr Fault kMismatch{13, u"Type mismatch"};
constexpr Fault kUsedKey{457, u"This key is already associated with an element of this collection"};

class CollectionTest : public ::testing::Test {
 protected:
  CollectionTest() { EXPECT_EQ(OxCreateCollection(collection_.Receive()), S_OK); }

  LateResult Call(const char16_t* name, std::vector<VARIANT> arguments = {}) {
    return CallByName(collection_.get(), name, std::move(arguments));
  }
  LateResult Add(const Variant& item) { return Call(u"Add", {item.get()}); }
  LateResult Add(const Variant& item, const Variant& key) { return Call(u"Add", {item.get(), key.get()}); }
  LONG Count() { return Call(u"Count").value.get().lVal; }
  // The numbers held, in order.
  std::vector<LONG> Numbers() {
    std::vector<LONG> numbers;
    for (LONG i = 1; i <= Count(); ++i) numbers.push_back(Call(u"Item", {Variant(i).get()}).value.get().lVal);
    return numbers;
  }
  static void ExpectFault(const LateResult& result, const Fault& fault) {
    EXPECT_EQ(result.code, DISP_E_EXCEPTION);
    EXPECT_EQ(result.scode, static_cast<SCODE>(0x800A0000U + static_cast<ULONG>(fault.number)));
    EXPECT_EQ(result.description, fault.description);
    EXPECT_EQ(result.source, u"Orvix.Collection");
    EXPECT_EQ(result.value.get().vt, VT_EMPTY);
  }
  ComPtr<IDispatch> collection_;
};

Variant N(LONG number) { return Variant(number); }
Variant T(const char16_t* text) { return Variant(TextView(text)); }

TEST_F(CollectionTest, MembersHaveTheirIdentifiersWhateverTheCase) {
  EXPECT_EQ(IdOf(collection_.get(), u"ITEM"), 0);
  EXPECT_EQ(IdOf(collection_.get(), u"add"), 1);
  EXPECT_EQ(IdOf(collection_.get(), u"Count"), 2);
  EXPECT_EQ(IdOf(collection_.get(), u"Remove"), 3);
  EXPECT_EQ(IdOf(collection_.get(), u"_NewEnum"), -4);
  EXPECT_EQ(IdOf(collection_.get(), u"Items"), -1);
  OLECHAR add[] = u"Add", after[] = u"AFTER", wrong[] = u"Wrong", key[] = u"Key";
  OLECHAR* names[] = {add, after, wrong, key};
  DISPID ids[4] = {};
  EXPECT_EQ(collection_->GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 1);
  EXPECT_EQ(ids[1], 3);
  EXPECT_EQ(ids[2], -1);
  EXPECT_EQ(ids[3], 1);
  EXPECT_EQ(collection_->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(CollectionTest, ItemsAreFoundByPositionAndByKeyWithoutRegardToCase) {
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(Add(N(10), T(u"One")).code, S_OK);
  EXPECT_EQ(Add(N(20)).code, S_OK);
  EXPECT_EQ(Add(N(30), T(u"\u00C4rger")).code, S_OK);
  EXPECT_EQ(Count(), 3);
  EXPECT_EQ(Call(u"Item", {N(2).get()}).value.get().lVal, 20);
  EXPECT_EQ(Call(u"Item", {Variant(2.5).get()}).value.get().lVal, 20);
  EXPECT_EQ(Call(u"Item", {T(u"oNE").get()}).value.get().lVal, 10);
  EXPECT_EQ(Call(u"Item", {T(u"\u00E4RGER").get()}).value.get().lVal, 30);
  EXPECT_EQ(CallById(collection_.get(), 0, DISPATCH_PROPERTYGET, {N(3).get()}).value.get().lVal, 30);
}

TEST_F(CollectionTest, WrongIndexesAndKeys) {
  Add(N(10), T(u"One"));
  ExpectFault(Call(u"Item", {N(0).get()}), kNoPosition);
  ExpectFault(Call(u"Item", {N(2).get()}), kNoPosition);
  ExpectFault(Call(u"Item", {N(-1).get()}), kNoPosition);
  ExpectFault(Call(u"Item", {T(u"Two").get()}), kNoKey);
  ExpectFault(Call(u"Item", {T(u"1").get()}), kNoKey);  // a text is a key
  Variant null;
  null.Address()->vt = VT_NULL;
  ExpectFault(Call(u"Item", {null.get()}), kMismatch);
  ExpectFault(Call(u"Remove", {N(2).get()}), kNoPosition);
  ExpectFault(Call(u"Remove", {T(u"").get()}), kNoKey);
  ExpectFault(Add(N(1), N(5)), kMismatch);  // a key is a text
  ExpectFault(Add(N(11), T(u"ONE")), kUsedKey);
  EXPECT_EQ(Numbers(), (std::vector<LONG>{10}));
}

TEST_F(CollectionTest, BeforeAndAfterTakePositionsAndKeys) {
  const VARIANT no = Missing();
  Add(N(1), T(u"a"));
  Add(N(2), T(u"b"));
  EXPECT_EQ(Call(u"Add", {N(3).get(), no, N(1).get()}).code, S_OK);
  EXPECT_EQ(Call(u"Add", {N(4).get(), no, T(u"B").get()}).code, S_OK);
  EXPECT_EQ(Call(u"Add", {N(5).get(), no, no, N(1).get()}).code, S_OK);
  EXPECT_EQ(Call(u"Add", {N(6).get(), no, no, T(u"b").get()}).code, S_OK);
  EXPECT_EQ(Numbers(), (std::vector<LONG>{3, 5, 1, 4, 2, 6}));
  ExpectFault(Call(u"Add", {N(7).get(), no, N(7).get()}), kNoPosition);
  ExpectFault(Call(u"Add", {N(7).get(), no, no, N(0).get()}), kNoPosition);
  ExpectFault(Call(u"Add", {N(7).get(), no, T(u"x").get()}), kNoKey);
  ExpectFault(Call(u"Add", {N(7).get(), no, N(1).get(), N(1).get()}), kNoKey);
  EXPECT_EQ(Count(), 6);
}

TEST_F(CollectionTest, NamedArgumentsGoToTheirPlaces) {
  Add(N(1));
  // Natural order: the positional item, then Before and Key by name.
  const LateResult added =
      CallById(collection_.get(), 1, DISPATCH_METHOD, {N(2).get(), N(1).get(), T(u"k").get()}, {1, 2});
  EXPECT_EQ(added.code, S_OK);
  EXPECT_EQ(Numbers(), (std::vector<LONG>{2, 1}));
  EXPECT_EQ(Call(u"Item", {T(u"K").get()}).value.get().lVal, 2);
  const LateResult unknown = CallById(collection_.get(), 1, DISPATCH_METHOD, {N(2).get(), N(1).get()}, {4});
  EXPECT_EQ(unknown.code, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(unknown.argument_error, 0u);
}

TEST_F(CollectionTest, RemovedItemsGiveTheirKeyBack) {
  Add(N(1), T(u"a"));
  Add(N(2), T(u"b"));
  Add(N(3));
  EXPECT_EQ(Call(u"Remove", {T(u"A").get()}).code, S_OK);
  EXPECT_EQ(Numbers(), (std::vector<LONG>{2, 3}));
  EXPECT_EQ(Call(u"Remove", {N(2).get()}).code, S_OK);
  EXPECT_EQ(Add(N(4), T(u"a")).code, S_OK);
  EXPECT_EQ(Numbers(), (std::vector<LONG>{2, 4}));
}

TEST_F(CollectionTest, ItemsAreCopiesOfWhatAReferenceRefersTo) {
  LONG number = 7;
  VARIANT reference{};
  reference.vt = VT_I4 | VT_BYREF;
  reference.plVal = &number;
  EXPECT_EQ(Call(u"Add", {reference}).code, S_OK);
  number = 8;
  EXPECT_EQ(Numbers(), (std::vector<LONG>{7}));
}

TEST_F(CollectionTest, WrongCallsAreRefused) {
  EXPECT_EQ(Call(u"Add").code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(u"Add", {Missing()}).code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call(u"Count", {N(1).get()}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(u"Item", {N(1).get(), N(1).get()}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(CallById(collection_.get(), 9, DISPATCH_METHOD, {}).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(PutByName(collection_.get(), u"Count", N(1).get()).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(CallById(collection_.get(), 1, DISPATCH_PROPERTYGET, {N(1).get()}).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(collection_->Invoke(0, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
  DISPPARAMS none{};
  EXPECT_EQ(collection_->Invoke(2, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(collection_->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(OxCreateCollection(nullptr), E_POINTER);
  UINT count = 9;
  EXPECT_EQ(collection_->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
}

TEST_F(CollectionTest, ObjectsAreHeldUntilTheyAreRemoved) {
  ComPtr<IDispatch> object;
  ASSERT_EQ(OxCreateCollection(object.Receive()), S_OK);
  const auto references = [&] {
    object->AddRef();
    return object->Release();
  };
  Variant holder;
  holder.Address()->pdispVal = ComPtr<IDispatch>(object).Detach();
  holder.Address()->vt = VT_DISPATCH;
  Add(holder);
  Add(holder, T(u"twice"));
  ExpectFault(Add(holder, T(u"TWICE")), kUsedKey);
  EXPECT_EQ(references(), 4u);
  EXPECT_EQ(Call(u"Item", {N(1).get()}).value.get().pdispVal, object.get());
  EXPECT_EQ(Call(u"Remove", {N(1).get()}).code, S_OK);
  EXPECT_EQ(references(), 3u);
  collection_ = nullptr;
  EXPECT_EQ(references(), 2u);
}

TEST_F(CollectionTest, TheEnumeratorWalksTheItems) {
  for (LONG i = 1; i <= 3; ++i) Add(N(i));
  const LateResult made = Call(u"_NewEnum");
  ASSERT_EQ(made.value.get().vt, VT_UNKNOWN);
  ComPtr<IEnumVARIANT> walk;
  ASSERT_EQ(made.value.get().punkVal->QueryInterface(IID_IEnumVARIANT, walk.ReceiveVoid()), S_OK);
  VARIANT values[3];
  ULONG fetched = 9;
  EXPECT_EQ(walk->Next(2, values, &fetched), S_OK);
  EXPECT_EQ(fetched, 2u);
  EXPECT_EQ(values[0].lVal, 1);
  EXPECT_EQ(values[1].lVal, 2);
  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(walk->Clone(copy.Receive()), S_OK);
  EXPECT_EQ(walk->Next(2, values, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 1u);
  EXPECT_EQ(values[0].lVal, 3);
  EXPECT_EQ(copy->Next(1, values, nullptr), S_OK);
  EXPECT_EQ(values[0].lVal, 3);
  EXPECT_EQ(walk->Reset(), S_OK);
  EXPECT_EQ(walk->Skip(3), S_OK);
  EXPECT_EQ(walk->Next(1, values, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0u);
  walk->Reset();
  EXPECT_EQ(walk->Skip(4), S_FALSE);
  collection_ = nullptr;  // the enumerator holds what it walks
  walk->Reset();
  EXPECT_EQ(walk->Next(1, values, &fetched), S_OK);
  EXPECT_EQ(values[0].lVal, 1);
}

}  // namespace
}  // namespace Orvix::testing
