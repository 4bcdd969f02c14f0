// VariantChangeType: what to convert, objects, arrays and the values that are no
// numbers. Numbers and texts are in number_change.cpp.
#include "platform/automation/variant_change.h"

#include <new>

#include "platform/automation/variant.h"

namespace Orvix {
namespace {

// An object whose default member is an object, and so on, ends here.
constexpr int kMostDefaultMembers = 32;

HRESULT ChangeArray(const VARIANT& from, VARTYPE type, VARIANT* to) {
  constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;
  if (from.vt == VT_BSTR && type == kBytes) {
    const UINT count = SysStringByteLen(from.bstrVal);
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, count);
    if (array == nullptr) return E_OUTOFMEMORY;
    for (UINT i = 0; i < count; ++i) {
      static_cast<BYTE*>(array->pvData)[i] = reinterpret_cast<const BYTE*>(from.bstrVal)[i];
    }
    to->parray = array;
    to->vt = kBytes;
    return S_OK;
  }
  if (from.vt != kBytes || type != VT_BSTR) return DISP_E_TYPEMISMATCH;
  if (from.parray != nullptr && from.parray->cDims != 1) return DISP_E_TYPEMISMATCH;
  const bool empty = from.parray == nullptr || from.parray->pvData == nullptr;
  to->bstrVal = SysAllocStringByteLen(empty ? nullptr : static_cast<const char*>(from.parray->pvData),
                                      empty ? 0 : from.parray->rgsabound[0].cElements);
  if (to->bstrVal == nullptr) return E_OUTOFMEMORY;
  to->vt = VT_BSTR;
  return S_OK;
}

HRESULT ChangeEmpty(VARTYPE type, VARIANT* to) {
  if (type == VT_BSTR) {
    to->bstrVal = SysAllocStringLen(nullptr, 0);
    if (to->bstrVal == nullptr) return E_OUTOFMEMORY;
    to->vt = VT_BSTR;
    return S_OK;
  }
  if (!IsNumberType(type)) return DISP_E_TYPEMISMATCH;
  VariantInit(to);  // zero is all zeros in every one of these types
  to->vt = type;
  return S_OK;
}

HRESULT ChangeInterface(IUnknown* object, VARTYPE type, VARIANT* to) {
  void* found = nullptr;
  if (object != nullptr) {
    const HRESULT result = object->QueryInterface(type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown, &found);
    if (FAILED(result)) return result;  // whatever it left in the place
  }
  if (type == VT_DISPATCH) {
    to->pdispVal = static_cast<IDispatch*>(found);
  } else {
    to->punkVal = static_cast<IUnknown*>(found);
  }
  to->vt = type;
  return S_OK;
}

HRESULT GetDefaultMember(IDispatch* object, VARIANT* value) {
  if (object == nullptr) return DISP_E_TYPEMISMATCH;
  DISPPARAMS none{};
  EXCEPINFO exception{};
  object->AddRef();  // its owner may be changed from within the call
  const HRESULT result =
      object->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, value, &exception, nullptr);
  object->Release();
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return FAILED(result) ? DISP_E_TYPEMISMATCH : S_OK;
}

// Conversion of the value that `object`, or the default member of its default
// member, gives.
HRESULT ChangeObject(IDispatch* object, USHORT flags, VARTYPE type, int depth, VARIANT* to) {
  if ((flags & VARIANT_NOVALUEPROP) != 0 || depth == 0) return DISP_E_TYPEMISMATCH;
  OwnedVariant member;
  HRESULT result = GetDefaultMember(object, &member.value);
  if (FAILED(result)) return result;
  VARIANT seen;
  result = FollowReference(member.value, &seen);
  if (FAILED(result)) return DISP_E_TYPEMISMATCH;
  if (seen.vt == VT_DISPATCH) return ChangeObject(seen.pdispVal, flags, type, depth - 1, to);
  return ChangeValue(seen, flags, type, to);
}

HRESULT ChangeChecked(VARIANT* to, const VARIANT& from, USHORT flags, VARTYPE type) {
  VARIANT seen;
  const HRESULT followed = FollowReference(from, &seen);
  if (FAILED(followed)) return followed == DISP_E_BADVARTYPE ? followed : DISP_E_TYPEMISMATCH;
  OwnedVariant changed;
  const HRESULT result = ChangeValue(seen, flags, type, &changed.value);
  return FAILED(result) ? result : ReplaceValue(to, &changed.value);
}

}  // namespace

HRESULT ChangeValue(const VARIANT& from, USHORT flags, VARTYPE type, VARIANT* to) {
  if (from.vt == type) return Duplicate(from, to);
  if (((from.vt | type) & VT_ARRAY) != 0) return ChangeArray(from, type, to);
  switch (from.vt) {
    case VT_NULL:
    case VT_ERROR:
    case VT_RECORD:
      return DISP_E_TYPEMISMATCH;
    default:
      break;
  }
  if (type == VT_EMPTY || type == VT_NULL) {
    to->vt = type;
    return S_OK;
  }
  if (type == VT_ERROR || type == VT_RECORD) return DISP_E_TYPEMISMATCH;
  if (from.vt == VT_EMPTY) return ChangeEmpty(type, to);
  if (from.vt == VT_UNKNOWN) {
    return type == VT_DISPATCH ? ChangeInterface(from.punkVal, type, to) : DISP_E_TYPEMISMATCH;
  }
  if (from.vt == VT_DISPATCH) {
    if (type == VT_UNKNOWN) return ChangeInterface(from.pdispVal, type, to);
    return ChangeObject(from.pdispVal, flags, type, kMostDefaultMembers, to);
  }
  if (!IsNumberType(type) && type != VT_BSTR) return DISP_E_TYPEMISMATCH;
  if (from.vt == VT_BSTR) return ChangeText(ViewOf(from.bstrVal), type, to);
  return IsNumberType(from.vt) ? ChangeNumber(from, flags, type, to) : DISP_E_TYPEMISMATCH;
}

}  // namespace Orvix

using namespace Orvix;

HRESULT VariantChangeType(VARIANTARG* to, const VARIANTARG* from, USHORT flags, VARTYPE type) {
  return VariantChangeTypeEx(to, from, 0, flags, type);
}

// `from`, followed when it is a reference, as a value of `type` in place of
// `*to`; both may be the same. Every locale is the invariant English one. Flags:
// VARIANT_NOVALUEPROP (no default members), VARIANT_ALPHABOOL and
// VARIANT_LOCALBOOL (Booleans as "True" and "False"). Errors, with `*to` as
// before: DISP_E_BADVARTYPE, DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, E_INVALIDARG
// for a broken DECIMAL or a date out of range, E_OUTOFMEMORY.
HRESULT VariantChangeTypeEx(VARIANTARG* to, const VARIANTARG* from, LCID, USHORT flags, VARTYPE type) {
  if (to == nullptr || from == nullptr) return E_INVALIDARG;
  if (!IsValidType(type) || !IsValidType(from->vt)) return DISP_E_BADVARTYPE;
  if (type == VT_VARIANT || (type & VT_BYREF) != 0) return DISP_E_TYPEMISMATCH;
  if (to == from && from->vt == type) return S_OK;
  try {
    return ChangeChecked(to, *from, flags, type);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}
