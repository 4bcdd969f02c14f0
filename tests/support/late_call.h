// Calls by name on any object: looks the name up, then invokes.
#ifndef ORVIX_TESTS_SUPPORT_LATE_CALL_H
#define ORVIX_TESTS_SUPPORT_LATE_CALL_H

#include <algorithm>
#include <string>
#include <vector>

#include "frame/com_ptr.h"

namespace Orvix::testing {

struct LateResult {
  HRESULT code = S_OK;
  component::Variant value;
  SCODE scode = 0;
  std::u16string source;
  std::u16string description;
  UINT argument_error = 99;  // 99 as long as nothing is written
};

inline VARIANT Missing() {
  VARIANT value{};
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

// Arguments in natural order, borrowed.
inline LateResult CallById(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> arguments,
                           std::vector<DISPID> named = {}) {
  std::reverse(arguments.begin(), arguments.end());
  DISPPARAMS params{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                    static_cast<UINT>(named.size())};
  LateResult result;
  EXCEPINFO exception{};
  result.code = object->Invoke(id, IID_NULL, LOCALE_INVARIANT, flags, &params, result.value.Receive(), &exception,
                               &result.argument_error);
  result.scode = exception.scode;
  result.source = ViewOf(exception.bstrSource);
  result.description = ViewOf(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return result;
}

inline DISPID IdOf(IDispatch* object, std::u16string name) {
  OLECHAR* names = name.data();
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_INVARIANT, &id);
  return id;
}

inline LateResult CallByName(IDispatch* object, const char16_t* name, std::vector<VARIANT> arguments = {}) {
  return CallById(object, IdOf(object, name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments));
}

inline LateResult PutByName(IDispatch* object, const char16_t* name, VARIANT value) {
  return CallById(object, IdOf(object, name), DISPATCH_PROPERTYPUT, {value}, {DISPID_PROPERTYPUT});
}

}  // namespace Orvix::testing

#endif
