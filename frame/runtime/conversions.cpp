// The runtime's conversions: those of the platform, in the invariant locale,
// with Booleans as words, default members of objects and numbered errors.
#include <algorithm>
#include <utility>

#include "frame/runtime/runtime_error.h"

namespace Orvix {
namespace {

// One value, cleared at the end.
class Value {
 public:
  Value() noexcept { VariantInit(&value_); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(&value_); }
  [[nodiscard]] VARIANT* Address() noexcept { return &value_; }
  [[nodiscard]] const VARIANT& get() const noexcept { return value_; }
  void Swap(Value& other) noexcept { std::swap(value_, other.value_); }

 private:
  VARIANT value_;
};

// An error that a caller's object raised: it passes through with the object's
// own source and description, which are the thread's error info already.
struct ForeignError {
  HRESULT code;
};

void Check(HRESULT result) {
  if (FAILED(result)) throw RuntimeError{OxErrorNumber(result)};
}

// Makes what an object told about its failure the thread's error info, and
// frees it.
void PublishException(EXCEPINFO& exception) noexcept {
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  ICreateErrorInfo* created = nullptr;
  if (SUCCEEDED(CreateErrorInfo(&created))) {
    created->SetSource(exception.bstrSource);
    created->SetDescription(exception.bstrDescription);
    created->SetHelpFile(exception.bstrHelpFile);
    created->SetHelpContext(exception.dwHelpContext);
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(created->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
      SetErrorInfo(0, info);
      info->Release();
    }
    created->Release();
  }
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
}

// The value of an object's default member. Error 13 for Nothing and for an
// object without one; an error that the member raises is the object's own.
void ReadDefaultMember(IDispatch* object, VARIANT* value) {
  if (object == nullptr) throw RuntimeError{13};
  DISPPARAMS none{};
  EXCEPINFO exception{};
  const HRESULT result = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_INVARIANT,
                                        DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, value, &exception, nullptr);
  if (SUCCEEDED(result)) return;
  if (result != DISP_E_EXCEPTION) throw RuntimeError{13};
  PublishException(exception);
  const HRESULT numbered = exception.wCode != 0 ? MakeResult(0x800A0000U + exception.wCode) : exception.scode;
  throw ForeignError{FAILED(numbered) ? numbered : E_FAIL};
}

// An object is asked by name, also when it came as something less.
void AskForNames(Value& value) {
  IUnknown* const object = value.get().punkVal;
  void* asked = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(IID_IDispatch, &asked))) throw RuntimeError{13};
  Value named;
  named.Address()->pdispVal = static_cast<IDispatch*>(asked);
  named.Address()->vt = VT_DISPATCH;
  value.Swap(named);
}

// `from` without references, objects replaced by what their default member
// says. An object that leads to objects without end is error 13.
void Resolve(const VARIANT& from, Value& value) {
  constexpr int kMostObjects = 16;
  Check(VariantCopyInd(value.Address(), &from));
  for (int i = 0; value.get().vt == VT_DISPATCH || value.get().vt == VT_UNKNOWN; ++i) {
    if (i == kMostObjects) throw RuntimeError{13};
    if (value.get().vt == VT_UNKNOWN) AskForNames(value);
    Value next;
    ReadDefaultMember(value.get().pdispVal, next.Address());
    Value plain;
    Check(VariantCopyInd(plain.Address(), &next.get()));
    value.Swap(plain);
  }
}

HRESULT Change(const VARIANT& from, VARTYPE type, Value& to) {
  return VariantChangeTypeEx(to.Address(), &from, LOCALE_INVARIANT, VARIANT_ALPHABOOL, type);
}

BSTR TextOf(const VARIANT& from) {
  Value value;
  Resolve(from, value);
  if (value.get().vt == VT_NULL) throw RuntimeError{94};
  // Bytes too: what the platform would take for a text is none to callers.
  if ((value.get().vt & VT_ARRAY) != 0) throw RuntimeError{13};
  Value text;
  Check(Change(value.get(), VT_BSTR, text));
  return std::exchange(text.Address()->bstrVal, nullptr);
}

LONG LongOf(const VARIANT& from) {
  Value value;
  Resolve(from, value);
  // The platform's change of type keeps the bits of an unsigned number; here a
  // value beyond the range is an overflow like any other.
  const VARIANT& held = value.get();
  if ((held.vt == VT_UI4 || held.vt == VT_UINT) && held.ulVal > 0x7FFFFFFF) throw RuntimeError{6};
  Value number;
  Check(Change(value.get(), VT_I4, number));
  return number.get().lVal;
}

DATE DateOf(const VARIANT& from) {
  Value value;
  Resolve(from, value);
  if (value.get().vt == VT_NULL) throw RuntimeError{94};
  Value date;
  HRESULT result = Change(value.get(), VT_DATE, date);
  if (result == DISP_E_TYPEMISMATCH && value.get().vt == VT_BSTR) {
    Value days;
    Check(Change(value.get(), VT_R8, days));
    result = Change(days.get(), VT_DATE, date);
  }
  Check(result);
  return date.get().date;
}

// The edge for conversions: an object's own error keeps what it said.
template <class Result>
HRESULT Convert(const VARIANT* value, Result* result, Result (*convert)(const VARIANT&)) noexcept {
  if (value == nullptr || result == nullptr) return E_POINTER;
  *result = Result{};
  HRESULT foreign = S_OK;
  const HRESULT own = AtRuntimeEdge([&] {
    try {
      *result = convert(*value);
    } catch (const ForeignError& error) {
      foreign = error.code;
    }
  });
  return FAILED(foreign) ? foreign : own;
}

}  // namespace
}  // namespace Orvix

HRESULT ORVIX_CALL OxTextOf(const VARIANT* value, BSTR* text) { return Orvix::Convert(value, text, Orvix::TextOf); }

HRESULT ORVIX_CALL OxLongOf(const VARIANT* value, LONG* number) { return Orvix::Convert(value, number, Orvix::LongOf); }

HRESULT ORVIX_CALL OxDateOf(const VARIANT* value, DATE* date) { return Orvix::Convert(value, date, Orvix::DateOf); }
