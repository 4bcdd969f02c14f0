// Late binding: names, argument matching, conversion, failures.
#include <gtest/gtest.h>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

Variant T(TextView text) { return Variant(text); }
Variant N(LONG number) { return Variant(number); }

class InvokeTest : public ::testing::Test {
 protected:
  // GetElement by name with these arguments; the text, or the result code in hex.
  Text Element(std::vector<VARIANT> arguments) {
    Variant result;
    const HRESULT done =
        InvokeNamed(orvix_.get(), u"getelement", DISPATCH_METHOD, std::move(arguments), result.Receive());
    if (FAILED(done)) return u"failed";
    EXPECT_EQ(result.get().vt, VT_BSTR);
    return Text(ViewOf(result.get().bstrVal));
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  ComPtr<_classFilename> filename_ = MakeFilename();
};

TEST_F(InvokeTest, NamesIgnoreCaseAndUnknownOnesAreTold) {
  OLECHAR member[] = u"GETELEMENT";
  OLECHAR first[] = u"slist";
  OLECHAR unknown[] = u"nonsense";
  OLECHAR third[] = u"sSeparator";
  OLECHAR* names[] = {member, first, unknown, third};
  DISPID ids[4] = {};
  EXPECT_EQ(orvix_->GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 14);
  EXPECT_EQ(ids[1], 0);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
  EXPECT_EQ(ids[3], 2);
  EXPECT_EQ(orvix_->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids), DISP_E_UNKNOWNINTERFACE);
  OLECHAR wide[] = u"\u0147etElement";  // a unit whose low byte is no letter of the name
  OLECHAR* wide_names[] = {wide};
  EXPECT_EQ(orvix_->GetIDsOfNames(IID_NULL, wide_names, 1, 0, ids), DISP_E_UNKNOWNNAME);
}

TEST_F(InvokeTest, ConvertsByValueArguments) {
  const Variant list = T(u"a,b,c");
  const Variant comma = T(u",");
  const Variant two = N(2);
  const Variant two_as_text = T(u" 2 ");
  const Variant two_and_a_half(2.5);  // half to even
  const Variant word = T(u"two");
  EXPECT_EQ(Element({list.get(), two.get(), comma.get()}), u"b");
  EXPECT_EQ(Element({list.get(), two_as_text.get(), comma.get()}), u"b");
  EXPECT_EQ(Element({list.get(), two_and_a_half.get(), comma.get()}), u"b");
  const Variant digits = N(12345);
  const Variant three = T(u"3");
  EXPECT_EQ(Element({digits.get(), two.get(), three.get()}), u"45");
  Variant result;
  UINT wrong = 99;
  EXPECT_EQ(InvokeNamed(orvix_.get(), u"GetElement", DISPATCH_METHOD, {list.get(), word.get(), comma.get()},
                        result.Receive(), nullptr, &wrong),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong, 1u);  // the arguments stand last first
}

TEST_F(InvokeTest, TellsWrongCalls) {
  const Variant a = T(u"a");
  const Variant one = N(1);
  const auto call = [&](const char16_t* name, WORD flags, std::vector<VARIANT> arguments) {
    return InvokeNamed(orvix_.get(), name, flags, std::move(arguments));
  };
  EXPECT_EQ(call(u"GetElement", DISPATCH_METHOD, {a.get(), one.get()}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(call(u"GetElement", DISPATCH_METHOD, {a.get(), one.get(), a.get(), a.get()}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(call(u"GetElement", DISPATCH_METHOD, {a.get(), Missing(), a.get()}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(call(u"GetElement", DISPATCH_PROPERTYGET, {a.get(), one.get(), a.get()}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(u"lChopCodeTiming2", DISPATCH_METHOD, {}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(u"lChopCodeTiming2", DISPATCH_PROPERTYPUTREF, {one.get()}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(call(u"lChopCodeTiming2", DISPATCH_PROPERTYGET, {one.get()}), DISP_E_NOTACOLLECTION);
  EXPECT_EQ(orvix_->Invoke(14, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
  DISPPARAMS none{};
  EXPECT_EQ(orvix_->Invoke(14, IID_IDispatch, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(orvix_->Invoke(4711, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  // A put whose value is not named.
  VARIANT value = one.get();
  DISPPARAMS unnamed{&value, nullptr, 1, 0};
  EXPECT_EQ(orvix_->Invoke(62, IID_NULL, 0, DISPATCH_PROPERTYPUT, &unnamed, nullptr, nullptr, nullptr),
            DISP_E_PARAMNOTFOUND);
  VARIANT broken = one.get();
  broken.vt = 15;
  EXPECT_EQ(call(u"GetElement", DISPATCH_METHOD, {a.get(), broken, a.get()}), DISP_E_BADVARTYPE);
}

TEST_F(InvokeTest, NamedArgumentsFindTheirPlaces) {
  const Variant list = T(u"a,b,c");
  const Variant comma = T(u",");
  const Variant three = N(3);
  VARIANT arguments[] = {three.get(), comma.get(), list.get()};
  DISPID named[] = {1, 2};  // lIndex, sSeparator; the list by position
  DISPPARAMS params{arguments, named, 3, 2};
  Variant result;
  ASSERT_EQ(orvix_->Invoke(14, IID_NULL, 0, DISPATCH_METHOD, &params, result.Receive(), nullptr, nullptr), S_OK);
  EXPECT_EQ(ViewOf(result.get().bstrVal), u"c");
  named[0] = 0;  // taken by position already
  EXPECT_EQ(orvix_->Invoke(14, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr), DISP_E_PARAMNOTFOUND);
  named[0] = 7;
  EXPECT_EQ(orvix_->Invoke(14, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr), DISP_E_PARAMNOTFOUND);
}

TEST_F(InvokeTest, AFailureIsDescribed) {
  const Variant refused = T(u"d?r\\");
  EXCEPINFO exception{};
  EXPECT_EQ(
      InvokeNamed(filename_.get(), u"CompleteFilename", DISPATCH_PROPERTYPUT, {refused.get()}, nullptr, &exception),
      DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800AEA60));
  EXPECT_EQ(exception.wCode, 0);
  EXPECT_EQ(ViewOf(exception.bstrSource), u"classFilename.CompleteFilename");
  EXPECT_EQ(ViewOf(exception.bstrDescription), u"Invalid filename.");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  EXPECT_EQ(ViewOf(refused.get().bstrVal), u"d?r\\");  // a by-value argument is the caller's own
}

TEST_F(InvokeTest, OmittedAndMissingArgumentsTakeTheirDefaults) {
  Variant name = T(u"C:\\d\\f.x");
  ASSERT_EQ(InvokeNamed(filename_.get(), u"CompleteFilename", DISPATCH_PROPERTYPUT, {name.get()}), S_OK);
  const auto driveless = [&](std::vector<VARIANT> arguments) {
    Variant result;
    EXPECT_EQ(InvokeNamed(filename_.get(), u"GetDrivelessCompleteFilenameEx", DISPATCH_METHOD, std::move(arguments),
                          result.Receive()),
              S_OK);
    return Text(ViewOf(result.get().bstrVal));
  };
  EXPECT_EQ(driveless({}), u"\\d\\f.x");
  EXPECT_EQ(driveless({Missing()}), u"\\d\\f.x");
  const Variant no = Variant::Boolean(VARIANT_FALSE);
  const Variant zero = N(0);
  EXPECT_EQ(driveless({no.get()}), u"d\\f.x");
  EXPECT_EQ(driveless({zero.get()}), u"d\\f.x");
  Text text;
  EXPECT_EQ(Returned([&](BSTR* result) { return filename_->GetDrivelessCompleteFilenameEx(nullptr, result); }),
            u"\\d\\f.x");
}

TEST_F(InvokeTest, ObjectsAnswerTheirInterfacesOnly) {
  void* other = this;
  EXPECT_EQ(orvix_->QueryInterface(IID__classFilename, &other), E_NOINTERFACE);
  EXPECT_EQ(other, nullptr);
  ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(orvix_->QueryInterface(IID_ISupportErrorInfo, support.ReceiveVoid()), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__classOrvix), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__classFilename), S_FALSE);
  ComPtr<IUnknown> one;
  ComPtr<IUnknown> two;
  ASSERT_EQ(orvix_->QueryInterface(IID_IUnknown, one.ReceiveVoid()), S_OK);
  ASSERT_EQ(support->QueryInterface(IID_IUnknown, two.ReceiveVoid()), S_OK);
  EXPECT_EQ(one.get(), two.get());
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(DllGetClassObject(CLSID_classStack, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  void* made = this;
  EXPECT_EQ(factory->CreateInstance(one.get(), IID_IUnknown, &made), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(DllGetClassObject(IID_IUnknown, IID_IClassFactory, &made), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(InvokeTest, TheCallersOwnValueIsKept) {
  LONG value = -1;
  EXPECT_EQ(orvix_->get_lChopCodeTiming2(&value), S_OK);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(orvix_->put_lChopCodeTiming2(-2147483647 - 1), S_OK);
  Variant result;
  EXPECT_EQ(
      InvokeNamed(orvix_.get(), u"lChopCodeTiming2", DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}, result.Receive()),
      S_OK);
  EXPECT_EQ(result.get().lVal, -2147483647 - 1);
}

}  // namespace
}  // namespace Orvix::testing
