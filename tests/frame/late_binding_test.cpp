// Members of callers' objects by name: what arrives there, and what comes back.
#include "frame/late_binding.h"

#include <gtest/gtest.h>

#include <vector>

#include "frame/error.h"
#include "frame/text_primitives.h"
#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

using component::CallMember;
using component::Error;
using component::GetMember;
using component::ObjectOf;
using component::PutMember;

// Knows the name `Thing` in any case, keeps what it was called with, and answers
// as it was told.
class ScriptedObject final : public IDispatch {
 public:
  HRESULT answer = S_OK;
  VARIANT value{};
  EXCEPINFO exception{};

  WORD flags = 0;
  std::vector<LONG> arguments;  // in the order they came
  std::vector<DISPID> named;
  bool had_result = false;

  HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID, DISPID* ids) override {
    *ids = DISPID_UNKNOWN;
    if (component::Upper(names[0]) != u"THING") return DISP_E_UNKNOWNNAME;
    *ids = 42;
    return S_OK;
  }
  HRESULT Invoke(DISPID member, REFIID, LCID, WORD kind, DISPPARAMS* params, VARIANT* result, EXCEPINFO* failure,
                 UINT*) override {
    EXPECT_EQ(member, 42);
    EXPECT_EQ(references, 2);  // held during the call
    flags = kind;
    for (UINT i = 0; i < params->cArgs; ++i) arguments.push_back(params->rgvarg[i].lVal);
    named.assign(params->rgdispidNamedArgs, params->rgdispidNamedArgs + params->cNamedArgs);
    had_result = result != nullptr;
    if (SUCCEEDED(answer) && result != nullptr) *result = value;
    if (answer == DISP_E_EXCEPTION) *failure = exception;
    return answer;
  }

  LONG references = 1;
};

VARIANT Long(LONG number) { return Variant(number).Detach(); }

Error FailureOf(ScriptedObject* object, TextView name) {
  try {
    CallMember(object, name);
  } catch (const Error& error) {
    return error;
  }
  return {0, {}, {}};
}

TEST(LateBindingTest, ReadsWithBothKindsAndArgumentsLastFirst) {
  ScriptedObject object;
  object.value = Long(7);
  const VARIANT arguments[] = {Long(1), Long(2), Long(3)};
  EXPECT_EQ(GetMember(&object, u"tHiNg", arguments).get().lVal, 7);
  EXPECT_EQ(object.flags, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
  EXPECT_EQ(object.arguments, (std::vector<LONG>{3, 2, 1}));
  EXPECT_TRUE(object.named.empty());
  EXPECT_EQ(object.references, 1);
}

TEST(LateBindingTest, CallsAsAMethod) {
  ScriptedObject object;
  EXPECT_EQ(CallMember(&object, u"Thing").get().vt, VT_EMPTY);
  EXPECT_EQ(object.flags, DISPATCH_METHOD);
}

TEST(LateBindingTest, WritesTheNewValueUnderItsName) {
  ScriptedObject object;
  const VARIANT indexes[] = {Long(1), Long(2)};
  PutMember(&object, u"Thing", Long(9), indexes);
  EXPECT_EQ(object.flags, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(object.arguments, (std::vector<LONG>{9, 2, 1}));
  EXPECT_EQ(object.named, (std::vector<DISPID>{DISPID_PROPERTYPUT}));
  EXPECT_FALSE(object.had_result);
}

TEST(LateBindingTest, FollowsAReferenceThatComesBack) {
  LONG target = 5;
  ScriptedObject object;
  object.value = ByReference(VT_I4, &target);
  const Variant value = GetMember(&object, u"Thing");
  EXPECT_EQ(value.get().vt, VT_I4);
  EXPECT_EQ(value.get().lVal, 5);
}

TEST(LateBindingTest, FailuresAreNumbered) {
  EXPECT_EQ(FailureOf(nullptr, u"Thing").number(), 91);
  ScriptedObject object;
  EXPECT_EQ(FailureOf(&object, u"Thong").number(), 438);
  EXPECT_EQ(FailureOf(&object, u"").number(), 438);
  EXPECT_EQ(FailureOf(&object, u"Thong").description(), u"Object doesn't support this property or method");
  for (const auto& [answer, number] : {std::pair{DISP_E_MEMBERNOTFOUND, 438},
                                       {DISP_E_BADPARAMCOUNT, 450},
                                       {DISP_E_TYPEMISMATCH, 13},
                                       {E_FAIL, E_FAIL}}) {
    object.answer = answer;
    EXPECT_EQ(FailureOf(&object, u"Thing").number(), number);
    EXPECT_EQ(FailureOf(&object, u"Thing").source(), u"");
  }
}

TEST(LateBindingTest, AnObjectSpeaksForItself) {
  ScriptedObject object;
  object.answer = DISP_E_EXCEPTION;
  const auto raise = [&](WORD code, SCODE scode, const OLECHAR* source, const OLECHAR* description) {
    object.exception = {};
    object.exception.wCode = code;
    object.exception.scode = scode;
    object.exception.bstrSource = SysAllocString(source);
    object.exception.bstrDescription = SysAllocString(description);
    object.exception.bstrHelpFile = SysAllocString(u"help");
    return FailureOf(&object, u"Thing");
  };
  const Error own = raise(1001, 0, u"Form", u"No such control");
  EXPECT_EQ(own.number(), 1001);
  EXPECT_EQ(own.source(), u"Form");
  EXPECT_EQ(own.description(), u"No such control");
  EXPECT_EQ(raise(0, MakeResult(0x800A0009), u"Form", u"x").number(), 9);
  EXPECT_EQ(raise(0, DISP_E_OVERFLOW, u"Form", u"x").number(), 6);
  EXPECT_EQ(raise(0, 0, u"Form", u"x").number(), 440);
  const Error silent = raise(9, 0, nullptr, nullptr);
  EXPECT_EQ(silent.source(), u"");
  EXPECT_EQ(silent.description(), u"Subscript out of range");
}

TEST(LateBindingTest, ADeferredDescriptionIsAskedFor) {
  ScriptedObject object;
  object.answer = DISP_E_EXCEPTION;
  object.exception.pfnDeferredFillIn = [](EXCEPINFO* info) -> HRESULT {
    info->wCode = 1002;
    info->bstrSource = SysAllocString(u"Late");
    info->bstrDescription = SysAllocString(u"Filled in");
    return S_OK;
  };
  const Error error = FailureOf(&object, u"Thing");
  EXPECT_EQ(error.number(), 1002);
  EXPECT_EQ(error.source(), u"Late");
  EXPECT_EQ(error.description(), u"Filled in");
}

TEST(LateBindingTest, TellsObjectsFromOtherValues) {
  ScriptedObject object;
  Variant held;
  held.Address()->vt = VT_DISPATCH;
  held.Address()->pdispVal = &object;
  object.AddRef();
  EXPECT_EQ(ObjectOf(held).get(), &object);
  held.Receive()->vt = VT_DISPATCH;
  held.Address()->pdispVal = nullptr;
  EXPECT_FALSE(ObjectOf(held));
  const auto number_of = [](const Variant& value) -> LONG {
    try {
      (void)ObjectOf(value);
    } catch (const Error& error) {
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(number_of(Variant(LONG{1})), 424);
  Variant unknown;
  unknown.Address()->vt = VT_UNKNOWN;
  unknown.Address()->punkVal = &object;  // answers no interface
  object.AddRef();
  EXPECT_EQ(number_of(unknown), 430);
}

}  // namespace
}  // namespace Orvix::testing
