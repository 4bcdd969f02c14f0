// The thread's error info: set by a failing member, and by nothing else.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"
#include "tests/support/scripted_object.h"

namespace Orvix::testing {
namespace {

const Failure kNothing{u"(none)", u"(none)"};

class ErrorInfoTest : public ::testing::Test {
 protected:
  void TearDown() override { SetErrorInfo(0, nullptr); }
  // Leaves the error info of an earlier failure behind.
  void FailBefore() {
    VARIANT taken{};
    ASSERT_EQ(stack_->Pop(&taken), static_cast<HRESULT>(0x800B01D0));
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  ComPtr<_classStack> stack_ = Make<_classStack>(CLSID_classStack, IID__classStack);
};

TEST_F(ErrorInfoTest, NumbersOver65535ComeAndGo) {
  VARIANT taken{};
  EXPECT_EQ(stack_->Pop(&taken), static_cast<HRESULT>(0x800B01D0));
  EXPECT_EQ(TakeFailure(), (Failure{u"classStack.Pop", u"Stack is empty"}));
  EXPECT_EQ(OxErrorNumber(static_cast<HRESULT>(0x800B01D0)), 66000);
  LONG one = 1;
  EXPECT_EQ(stack_->Peek(&one, &taken), static_cast<HRESULT>(0x800B01D1));
  EXPECT_EQ(stack_->GetStackItem(&one, &taken), static_cast<HRESULT>(0x800B01D3));
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classStack", u"Index out of bounds"}));
  EXCEPINFO exception{};
  Variant result;
  EXPECT_EQ(InvokeNamed(stack_.get(), u"Pop", DISPATCH_METHOD, {}, result.Receive(), &exception), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800B01D0));
  EXPECT_EQ(exception.wCode, 0);
  EXPECT_EQ(ViewOf(exception.bstrSource), u"classStack.Pop");
  EXPECT_EQ(ViewOf(exception.bstrDescription), u"Stack is empty");
  EXPECT_EQ(exception.bstrHelpFile, nullptr);
  EXPECT_EQ(exception.dwHelpContext, 0u);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  EXPECT_EQ(result.get().vt, VT_EMPTY);
  EXPECT_EQ(TakeFailure(), kNothing);  // moved, not copied
}

TEST_F(ErrorInfoTest, ANumberThatIsACodeTravelsAsItIs) {
  const auto operation = Make<_CSHFileOp>(CLSID_CSHFileOp, IID__CSHFileOp);
  VARIANT_BOOL done = VARIANT_TRUE;
  EXPECT_EQ(operation->CopyFiles(&done), -2147220504);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.CSHFileOp", u"No source files specified file operation"}));
  EXPECT_EQ(OxErrorNumber(-2147220504), -2147220504);
}

TEST_F(ErrorInfoTest, ARefusedArgumentLeavesNone) {
  FailBefore();
  EXPECT_EQ(orvix_->LengthList(nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(TakeFailure(), kNothing);
  FailBefore();
  EXPECT_EQ(orvix_->Wait(nullptr), E_POINTER);
  EXPECT_EQ(TakeFailure(), kNothing);
  FailBefore();
  VARIANT missing = Missing();
  EXPECT_EQ(stack_->Push(&missing), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(TakeFailure(), kNothing);
}

TEST_F(ErrorInfoTest, ARefusedCallByNameLeavesNone) {
  const Variant text(u"a");
  struct Case {
    const char16_t* name;
    WORD flags;
    std::vector<VARIANT> arguments;
    HRESULT expected;
  };
  const Case cases[] = {
      {u"GetElement", DISPATCH_METHOD, {text.get(), text.get(), text.get()}, DISP_E_TYPEMISMATCH},
      {u"GetElement", DISPATCH_METHOD, {text.get()}, DISP_E_BADPARAMCOUNT},
      {u"GetElement", DISPATCH_METHOD, {text.get(), Missing(), text.get()}, DISP_E_PARAMNOTOPTIONAL},
      {u"GetElement", DISPATCH_PROPERTYGET, {}, DISP_E_MEMBERNOTFOUND},
      {u"MyStr", DISPATCH_METHOD, {Missing()}, DISP_E_PARAMNOTOPTIONAL},
      {u"lChopCodeTiming2", DISPATCH_PROPERTYGET, {text.get()}, DISP_E_NOTACOLLECTION},
  };
  for (const Case& c : cases) {
    FailBefore();
    EXPECT_EQ(InvokeNamed(orvix_.get(), c.name, c.flags, c.arguments), c.expected);
    EXPECT_EQ(TakeFailure().description, u"(none)") << std::hex << c.expected;
  }
}

// Members that end in success, each after a failure inside.
TEST_F(ErrorInfoTest, ASuccessLeavesNoneOfAFailureInside) {
  const BstrHandle list(u"a,b");
  const BstrHandle comma(u",");
  LONG count = -1;
  FailBefore();
  EXPECT_EQ(orvix_->LengthList(list.get(), nullptr, &count), S_OK);  // reported
  EXPECT_EQ(count, 0);
  EXPECT_EQ(host_.boxes.size(), 1u);
  EXPECT_EQ(TakeFailure(), kNothing);
  // FindFirstElement calls LengthList, which reports.
  FailBefore();
  EXPECT_EQ(orvix_->FindFirstElement(list.get(), comma.get(), nullptr, &count), S_OK);
  EXPECT_EQ(TakeFailure(), kNothing);
  // A collection that fails is one without the key.
  ScriptedObject collection;
  collection.Fails(u"Item", 5);
  IDispatch* object = &collection;
  BSTR key = NewBstr(u"key");
  VARIANT_BOOL found = VARIANT_TRUE;
  FailBefore();
  EXPECT_EQ(orvix_->IsInCollection(&key, &object, &found), S_OK);
  EXPECT_EQ(found, VARIANT_FALSE);
  EXPECT_EQ(TakeFailure(), kNothing);
  SysFreeString(key);
  // By name too.
  FailBefore();
  const Variant bad_name(u"x\\");
  Variant result;
  EXPECT_EQ(InvokeNamed(orvix_.get(), u"FileExists", DISPATCH_METHOD, {bad_name.get()}, result.Receive()), S_OK);
  EXPECT_EQ(result.get().boolVal, VARIANT_FALSE);
  EXPECT_EQ(TakeFailure(), kNothing);
  // And a plain success after somebody else's failure.
  FailBefore();
  EXPECT_EQ(orvix_->get_lChopCodeTiming2(&count), S_OK);
  EXPECT_EQ(TakeFailure(), kNothing);
}

}  // namespace
}  // namespace Orvix::testing
