// Callers' objects that come back while they are counted, asked or ended, that
// lie, and that hang together in long chains.
#include <gtest/gtest.h>

#include <functional>

#include "orvix/runtime.h"
#include "tests/support/recording_host.h"
#include "tests/support/scripted_object.h"

namespace Orvix::testing {
namespace {

// Calls back when it is counted, asked for an interface, and ended.
class Caller final : public IDispatch {
 public:
  std::function<void()> counted = [] {};
  std::function<void()> ended = [] {};
  IUnknown* left_behind = nullptr;  // given out by a failing question
  ULONG references = 1;

  HRESULT QueryInterface(REFIID iid, void** object) override {
    *object = left_behind;
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  ULONG AddRef() override {
    ++references;
    counted();
    return references;
  }
  ULONG Release() override {
    if (--references == 0) ended();
    return references;
  }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
};

// Takes over the reference.
Variant Holding(IDispatch* object) {
  Variant value;
  value.Address()->pdispVal = object;
  value.Address()->vt = VT_DISPATCH;
  return value;
}
template <class Interface>
Variant Holding(ComPtr<Interface> object) {
  return Holding(object.Detach());
}
ComPtr<_classStack> NewStack() { return Make<_classStack>(CLSID_classStack, IID__classStack); }
ComPtr<_classStackObject> NewObjectStack() {
  return Make<_classStackObject>(CLSID_classStackObject, IID__classStackObject);
}
ComPtr<IDispatch> NewCollection() {
  ComPtr<IDispatch> collection;
  EXPECT_EQ(OxCreateCollection(collection.Receive()), S_OK);
  return collection;
}

// A container of each kind that holds the object in `inner`.
Variant InStack(Variant inner) {
  auto stack = NewStack();
  EXPECT_EQ(stack->Push(inner.Address()), S_OK);
  return Holding(stack);
}
Variant InObjectStack(Variant inner) {
  auto stack = NewObjectStack();
  EXPECT_EQ(stack->Push(&inner.Address()->pdispVal), S_OK);
  return Holding(stack);
}
Variant InCollection(Variant inner) {
  auto collection = NewCollection();
  EXPECT_EQ(CallByName(collection.get(), u"Add", {inner.get()}).code, S_OK);
  return Holding(collection);
}
Variant InArray(Variant inner) {
  Variant value;
  value.Address()->parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  value.Address()->vt = VT_ARRAY | VT_VARIANT;
  *static_cast<VARIANT*>(value.get().parray->pvData) = inner.Detach();
  return value;
}
constexpr Variant (*kContainers[])(Variant) = {&InStack, &InObjectStack, &InCollection, &InArray};

TEST(CallersObjects, ChainsOfAnyLengthEnd) {
  for (const auto& wrap : kContainers) {
    Caller last;
    bool ended = false;
    last.ended = [&] { ended = true; };
    Variant chain = Holding(&last);
    for (int level = 0; level < 200000; ++level) chain = wrap(std::move(chain));
    EXPECT_FALSE(ended);
    chain = Variant();
    EXPECT_TRUE(ended);
  }
}

TEST(CallersObjects, MayLookAtWhatEndsWithThem) {
  for (const auto& wrap : kContainers) {
    if (wrap == &InArray) continue;
    Caller item;
    LateResult size;
    Variant holder = wrap(Holding(&item));
    IDispatch* const container = holder.get().pdispVal;
    int ends = 0;
    item.ended = [&] {
      ++ends;
      container->AddRef();
      size = CallByName(container, wrap == &InCollection ? u"Count" : u"Size");
      container->Release();
    };
    holder = Variant();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(size.code, S_OK);
    EXPECT_EQ(size.value.get().lVal, 0);
  }
}

TEST(CallersObjects, AnEndThatWritesTheSameVariableLosesNothing) {
  Caller first;
  Caller second;
  Caller third;
  Variant variable = Holding(&first);
  const Variant to_third = Holding(&third);
  first.ended = [&] {
    const Variant value = Holding(&second);
    VariantCopy(variable.Address(), &value.get());
  };
  EXPECT_EQ(VariantCopy(variable.Address(), &to_third.get()), S_OK);
  variable = Variant();
  EXPECT_EQ(second.references, 0U);
  EXPECT_EQ(third.references, 1U);
}

TEST(CallersObjects, CannotEndWhatIsBeingCopied) {
  Caller element;
  Variant array = InArray(Holding(&element));
  HRESULT destroyed = S_OK;
  element.counted = [&] { destroyed = SafeArrayDestroy(array.get().parray); };
  Variant copy;
  EXPECT_EQ(VariantCopy(copy.Address(), &array.get()), S_OK);
  EXPECT_EQ(destroyed, DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(array.get().parray->cLocks, 0U);
}

TEST(CallersObjects, AFailedQuestionIsNoReference) {
  Caller other;
  Caller object;
  object.left_behind = &other;
  VARIANT value = Holding(&object).Detach();
  const ComPtr<_classString> buffer = Make<_classString>(CLSID_classString, IID__classString);
  ComPtr<_classString> same;
  EXPECT_NE(buffer->Append(&value, same.Receive()), S_OK);
  EXPECT_EQ(InvokeNamed(MakeOrvix().get(), u"StoreData", DISPATCH_METHOD, {value, value}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(other.references, 1U);
}

TEST(CallersObjects, ThatEmptyACollectionWhileTheyAreAddedFindNoPlace) {
  const auto collection = NewCollection();
  const Variant text(TextView(u"x"));
  const Variant one(LONG{1});
  for (int i = 0; i < 2; ++i) CallByName(collection.get(), u"Add", {text.get()});
  Caller item;
  item.counted = [&, items = 2]() mutable {
    for (; items > 0; --items) CallByName(collection.get(), u"Remove", {one.get()});
  };
  const Variant held = Holding(&item);
  const Variant two(LONG{2});
  EXPECT_EQ(OxErrorNumber(CallByName(collection.get(), u"Add", {held.get(), Missing(), two.get()}).scode), 9);
  EXPECT_EQ(item.references, 1U);
}

// What a script passes: every argument a VARIANT variable by reference. The
// object changes the other variable to another type when it is asked.
TEST(CallersObjects, MayChangeTheOtherVariablesOfTheCall) {
  const auto orvix = MakeOrvix();
  const auto stack = NewStack();
  Variant item(TextView(u"item"));
  stack->Push(item.Address());
  const Variant key(TextView(u"Software\\Variables"));
  const Variant number(LONG{1});
  const struct {
    const char16_t* member;
    std::vector<const Variant*> arguments;  // null: the object
  } calls[] = {
      {u"SetComboElement", {nullptr, &item}},
      {u"CreateNewKey", {&key, nullptr}},
      {u"SetKeyValue", {&key, &item, nullptr, &number}},
      {u"SetKeyValueRet", {&key, nullptr, &item, &number}},
      {u"StoreData", {nullptr, &item}},
      {u"MyReplace", {&item, nullptr, &item}},
      {u"InsertElement", {&item, &item, nullptr, &item}},
      {u"LengthList", {&item, nullptr}},
  };
  for (const auto& call : calls) {
    for (const bool to_text : {false, true}) {
      std::vector<Variant> variables(call.arguments.size());
      ScriptedObject object;
      const auto change = [&](const ScriptedObject::Arguments&) {
        for (std::size_t i = 0; i < variables.size(); ++i) {
          if (call.arguments[i] == nullptr) continue;
          variables[i] = to_text ? Variant(TextView(u"changed to a text")) : Variant(LONG{0x41414141});
        }
        return Variant(LONG{1});
      };
      for (const TextView name : {u"", u"ListCount", u"List"}) object.Gives(name, change);
      std::vector<VARIANT> arguments;
      for (std::size_t i = 0; i < variables.size(); ++i) {
        const Variant* given = call.arguments[i];
        if (given == nullptr) {
          variables[i] = Holding(&object);
        } else {
          EXPECT_EQ(VariantCopy(variables[i].Address(), &given->get()), S_OK);
        }
        arguments.push_back(ByReference(VT_VARIANT, variables[i].Address()));
      }
      const RecordingHost host;
      InvokeNamed(orvix.get(), call.member, DISPATCH_METHOD, arguments);
      for (std::size_t i = 0; i < variables.size(); ++i) {
        if (call.arguments[i] == nullptr) continue;
        const VARTYPE type = variables[i].get().vt;
        EXPECT_TRUE(type == VT_I4 || type == VT_BSTR) << ToUtf8(call.member) << " " << i << ": " << type;
      }
      variables.clear();
      EXPECT_EQ(object.references, 0) << ToUtf8(call.member);
    }
  }
}

}  // namespace
}  // namespace Orvix::testing
