// Short forms for tests of values: an owner of a VARIANT, makers, texts of
// results, and an object that counts its references and has a default member.
#ifndef ORVIX_TESTS_PLATFORM_AUTOMATION_VALUES_H
#define ORVIX_TESTS_PLATFORM_AUTOMATION_VALUES_H

#include <cstring>
#include <string>

#include "orvix/text.h"

namespace Orvix::testing {

struct Value : VARIANT {
  Value() noexcept { VariantInit(this); }
  explicit Value(VARTYPE type) noexcept : Value() { vt = type; }
  Value(const Value& other) : Value() { VariantCopy(this, &other); }
  Value& operator=(const Value& other) {
    VariantCopy(this, &other);
    return *this;
  }
  ~Value() { VariantClear(this); }
};

inline Value Integer(VARTYPE type, std::int64_t number) {
  Value value(type);
  // The low bytes are the number in each integer type.
  value.llVal = number;
  return value;
}
inline Value Single(float number) {
  Value value(VT_R4);
  value.fltVal = number;
  return value;
}
inline Value Double(double number, VARTYPE type = VT_R8) {
  Value value(type);
  value.dblVal = number;
  return value;
}
inline Value Bool(VARIANT_BOOL flag) {
  Value value(VT_BOOL);
  value.boolVal = flag;
  return value;
}
inline Value Currency(std::int64_t units) {
  Value value(VT_CY);
  value.cyVal.int64 = units;
  return value;
}
inline Value Decimal(std::uint64_t low, std::uint8_t scale, std::uint8_t sign = 0, std::uint32_t high = 0) {
  Value value;
  value.decVal = DECIMAL{0, scale, sign, high, low};
  value.vt = VT_DECIMAL;
  return value;
}
inline Value String(TextView text) {
  Value value(VT_BSTR);
  value.bstrVal = NewBstr(text);
  return value;
}
// A reference to anything; whoever owns it must outlive the value.
inline Value Reference(VARTYPE type, const void* address) {
  Value value(static_cast<VARTYPE>(type | VT_BYREF));
  value.byref = const_cast<void*>(address);
  return value;
}

inline std::string Utf8(TextView text) { return ToUtf8(text); }

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // on the stack of a test, never deleted through

// The default member gives `value`, or fails when `fails`.
class CountedObject final : public IDispatch {
 public:
  HRESULT QueryInterface(REFIID riid, void** object) override {
    *object = nullptr;
    if (riid != IID_IUnknown && (riid != IID_IDispatch || !is_dispatch)) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID member, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                 EXCEPINFO* exception, UINT*) override {
    if (member != DISPID_VALUE || riid != IID_NULL || flags != DISPATCH_PROPERTYGET || params->cArgs != 0) {
      return DISP_E_MEMBERNOTFOUND;
    }
    if (fails) {
      exception->bstrDescription = SysAllocString(u"refused");
      return DISP_E_EXCEPTION;
    }
    return VariantCopy(result, value);
  }

  ULONG references = 1;
  bool is_dispatch = true;
  bool fails = false;
  const VARIANT* value = nullptr;
};

inline Value Object(CountedObject& object, VARTYPE type = VT_DISPATCH) {
  Value value(type);
  value.pdispVal = &object;
  object.AddRef();
  return value;
}

// Records of one BSTR. Counts the records alive; the n-th copy may fail.
class NameRecord final : public IRecordInfo {
 public:
  HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT RecordInit(void* record) override {
    *static_cast<BSTR*>(record) = nullptr;
    return S_OK;
  }
  HRESULT RecordClear(void* record) override {
    SysFreeString(*static_cast<BSTR*>(record));
    return RecordInit(record);
  }
  HRESULT RecordCopy(void* from, void* to) override {
    if (--copies_left < 0) return E_OUTOFMEMORY;
    RecordClear(to);
    *static_cast<BSTR*>(to) = SysAllocString(*static_cast<BSTR*>(from));
    return S_OK;
  }
  HRESULT GetGuid(GUID*) override { return E_NOTIMPL; }
  HRESULT GetName(BSTR*) override { return E_NOTIMPL; }
  HRESULT GetSize(ULONG* size) override {
    *size = sizeof(BSTR);
    return S_OK;
  }
  HRESULT GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetField(void*, const OLECHAR*, VARIANT*) override { return E_NOTIMPL; }
  HRESULT GetFieldNoCopy(void*, const OLECHAR*, VARIANT*, void**) override { return E_NOTIMPL; }
  HRESULT PutField(ULONG, void*, const OLECHAR*, VARIANT*) override { return E_NOTIMPL; }
  HRESULT PutFieldNoCopy(ULONG, void*, const OLECHAR*, VARIANT*) override { return E_NOTIMPL; }
  HRESULT GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
  BOOL IsMatchingType(IRecordInfo* other) override { return other == this ? 1 : 0; }
  void* RecordCreate() override {
    ++alive;
    return new BSTR(nullptr);
  }
  HRESULT RecordCreateCopy(void* source, void** copy) override {
    *copy = RecordCreate();
    return RecordCopy(source, *copy);
  }
  HRESULT RecordDestroy(void* record) override {
    RecordClear(record);
    delete static_cast<BSTR*>(record);
    --alive;
    return S_OK;
  }

  ULONG references = 1;
  int alive = 0;
  int copies_left = 1000;
};

#pragma GCC diagnostic pop

}  // namespace Orvix::testing

#endif
