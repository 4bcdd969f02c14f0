// Objects of the component as an application holds them: made by their class
// objects, called through vtable and IDispatch, texts as UTF-16.
#ifndef ORVIX_TESTS_SUPPORT_COMPONENT_H
#define ORVIX_TESTS_SUPPORT_COMPONENT_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/com_ptr.h"
#include "orvix/orvix.h"
#include "tests/support/late_call.h"

namespace Orvix::testing {

using component::BstrHandle;
using component::ComPtr;
using component::Variant;

template <class Interface>
ComPtr<Interface> Make(const CLSID& clsid, const IID& iid) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(DllGetClassObject(clsid, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  ComPtr<Interface> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, iid, object.ReceiveVoid()), S_OK);
  return object;
}
inline ComPtr<_classOrvix> MakeOrvix() { return Make<_classOrvix>(CLSID_classOrvix, IID__classOrvix); }
inline ComPtr<_classFilename> MakeFilename() { return Make<_classFilename>(CLSID_classFilename, IID__classFilename); }
inline ComPtr<_classDirectory> MakeDirectory() {
  return Make<_classDirectory>(CLSID_classDirectory, IID__classDirectory);
}

// What the thread's error info says, which is emptied.
struct Failure {
  Text source;
  Text description;
  bool operator==(const Failure&) const = default;
};
inline Failure TakeFailure() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return {u"(none)", u"(none)"};
  BstrHandle source;
  BstrHandle description;
  info->GetSource(source.Receive());
  info->GetDescription(description.Receive());
  return {Text(source.View()), Text(description.View())};
}

// A text result of a member: Returned([&](BSTR* result) { return object->Member(..., result); }).
template <class Call>
Text Returned(Call&& call) {
  BstrHandle text;
  EXPECT_EQ(call(text.Receive()), S_OK);
  return Text(text.View());
}

// Calls a member by name; arguments in natural order, borrowed.
inline HRESULT InvokeNamed(IDispatch* object, const char16_t* name, WORD flags, std::vector<VARIANT> arguments,
                           VARIANT* result = nullptr, EXCEPINFO* exception = nullptr, UINT* argument_error = nullptr) {
  Text spelling(name);
  OLECHAR* names[] = {spelling.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  if (FAILED(found)) return found;
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS params{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()), puts ? 1U : 0U};
  return object->Invoke(id, IID_NULL, 0, flags, &params, result, exception, argument_error);
}

template <class T>
VARIANT ByReference(VARTYPE type, T* target) {
  VARIANT value;
  VariantInit(&value);
  value.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.byref = target;
  return value;
}

}  // namespace Orvix::testing

#endif
