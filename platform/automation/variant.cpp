// Values: initialising, clearing and copying. A record belongs to its VARIANT:
// it is copied with RecordCreateCopy and ended with RecordDestroy, which clears
// its fields and frees it; the record info is counted beside it.
#include "platform/automation/variant.h"

#include <cstring>

namespace Orvix {
namespace {

bool IsPlainType(VARTYPE type) { return type <= VT_DECIMAL || (type >= VT_I1 && type <= VT_UINT) || type == VT_RECORD; }

bool HasValidFlags(VARTYPE type) {
  if ((type & (VT_VECTOR | VT_RESERVED)) != 0) return false;
  return (type & (VT_ARRAY | VT_BYREF)) == 0 || (type & VT_TYPEMASK) > VT_NULL;
}

bool IsClearable(VARTYPE type) {
  const VARTYPE plain = type & VT_TYPEMASK;
  return HasValidFlags(type) && (IsPlainType(plain) || plain == VT_CLSID);
}

HRESULT DuplicateRecord(const VARIANT& from, VARIANT* copy) {
  void* record = nullptr;
  if (from.pvRecord != nullptr) {
    if (from.pRecInfo == nullptr) return E_INVALIDARG;
    const HRESULT result = from.pRecInfo->RecordCreateCopy(from.pvRecord, &record);
    if (FAILED(result)) return result;
  }
  VariantInit(copy);
  copy->vt = VT_RECORD;
  copy->pvRecord = record;
  copy->pRecInfo = from.pRecInfo;
  if (copy->pRecInfo != nullptr) copy->pRecInfo->AddRef();
  return S_OK;
}

}  // namespace

bool IsValidType(VARTYPE type) noexcept { return HasValidFlags(type) && IsPlainType(type & VT_TYPEMASK); }

std::uint32_t SizeOfType(VARTYPE type) noexcept {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

HRESULT FollowReference(const VARIANT& from, VARIANT* seen) noexcept {
  if (!IsValidType(from.vt)) return DISP_E_BADVARTYPE;
  if ((from.vt & VT_BYREF) == 0) {
    *seen = from;
    return S_OK;
  }
  if (from.byref == nullptr) return E_INVALIDARG;
  const auto type = static_cast<VARTYPE>(from.vt & ~VT_BYREF);
  if (type == VT_VARIANT) {
    const VARIANT& inner = *from.pvarVal;
    if ((inner.vt & ~VT_BYREF) == VT_VARIANT) return E_INVALIDARG;
    return FollowReference(inner, seen);
  }
  VARIANT value;
  VariantInit(&value);
  if (type == VT_RECORD) {
    value = from;
  } else if (type == VT_DECIMAL) {
    std::memcpy(&value.decVal, from.byref, sizeof value.decVal);
  } else {
    const std::size_t size = (type & VT_ARRAY) != 0 ? sizeof value.parray : SizeOfType(type);
    std::memcpy(&value.llVal, from.byref, size);
  }
  value.vt = type;
  *seen = value;
  return S_OK;
}

HRESULT Duplicate(const VARIANT& from, VARIANT* copy) noexcept {
  if (!IsValidType(from.vt)) return DISP_E_BADVARTYPE;
  VARIANT value = from;
  if ((from.vt & VT_BYREF) != 0) {
    *copy = value;
    return S_OK;
  }
  if ((from.vt & VT_ARRAY) != 0) {
    const HRESULT result = SafeArrayCopy(from.parray, &value.parray);
    if (FAILED(result)) return result;
    *copy = value;
    return S_OK;
  }
  switch (from.vt) {
    case VT_BSTR:
      // Null becomes the empty text: receivers count on a pointer.
      value.bstrVal =
          SysAllocStringByteLen(reinterpret_cast<const char*>(from.bstrVal), SysStringByteLen(from.bstrVal));
      if (value.bstrVal == nullptr) return E_OUTOFMEMORY;
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (value.punkVal != nullptr) value.punkVal->AddRef();
      break;
    case VT_RECORD:
      return DuplicateRecord(from, copy);
    default:
      break;
  }
  *copy = value;
  return S_OK;
}

HRESULT ReplaceValue(VARIANT* to, VARIANT* owned) noexcept {
  // Stored before the old one ends, which may write a value of its own here: that
  // one is the later, and nothing is lost.
  VARIANT old = *to;
  *to = *owned;
  const HRESULT result = VariantClear(&old);
  if (SUCCEEDED(result)) {
    owned->vt = VT_EMPTY;
  } else {
    *to = old;
  }
  return result;
}

}  // namespace Orvix

using namespace Orvix;

void VariantInit(VARIANTARG* value) {
  if (value != nullptr) std::memset(static_cast<void*>(value), 0, sizeof *value);
}

// Ends what the value owns and makes it Empty; the value bytes stay. References
// are only detached. DISP_E_BADVARTYPE, or DISP_E_ARRAYISLOCKED for a locked
// array, with nothing changed.
HRESULT VariantClear(VARIANTARG* value) {
  if (value == nullptr) return E_INVALIDARG;
  if (!IsClearable(value->vt)) return DISP_E_BADVARTYPE;
  const VARTYPE type = value->vt;
  if ((type & (VT_ARRAY | VT_BYREF)) == VT_ARRAY) {
    const HRESULT result = SafeArrayDestroy(value->parray);
    if (SUCCEEDED(result)) value->vt = VT_EMPTY;
    return result;
  }
  // Empty before the content goes: an object's end may look at this value.
  value->vt = VT_EMPTY;
  switch (type) {
    case VT_BSTR:
      SysFreeString(value->bstrVal);
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (value->punkVal != nullptr) value->punkVal->Release();
      break;
    case VT_RECORD: {
      void* record = value->pvRecord;
      IRecordInfo* info = value->pRecInfo;
      if (info == nullptr) break;
      if (record != nullptr) info->RecordDestroy(record);
      info->Release();
      break;
    }
    default:
      break;
  }
  return S_OK;
}

// A copy of its own of `from` replaces `*to`. Copying onto itself does nothing.
// DISP_E_BADVARTYPE when either type is invalid; on any failure `*to` is as
// before.
HRESULT VariantCopy(VARIANTARG* to, const VARIANTARG* from) {
  if (to == nullptr || from == nullptr) return E_INVALIDARG;
  if (to == from) return S_OK;
  if (!IsClearable(to->vt)) return DISP_E_BADVARTYPE;
  OwnedVariant copy;
  const HRESULT result = Duplicate(*from, &copy.value);
  return FAILED(result) ? result : ReplaceValue(to, &copy.value);
}

// The same, following a reference first, and a reference to a VARIANT that is a
// plain reference to the end. E_INVALIDARG for a null reference and for one to a
// reference to a VARIANT. Works in place.
HRESULT VariantCopyInd(VARIANT* to, const VARIANTARG* from) {
  if (to == nullptr || from == nullptr) return E_INVALIDARG;
  if ((from->vt & VT_BYREF) == 0) return VariantCopy(to, from);
  if (!IsClearable(to->vt)) return DISP_E_BADVARTYPE;
  VARIANT seen;
  HRESULT result = FollowReference(*from, &seen);
  if (FAILED(result)) return result;
  OwnedVariant copy;
  result = Duplicate(seen, &copy.value);
  return FAILED(result) ? result : ReplaceValue(to, &copy.value);
}
