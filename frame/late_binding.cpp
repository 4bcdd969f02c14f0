#include "frame/late_binding.h"

#include <vector>

#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr LONG kObjectRequired = 424;
constexpr LONG kNoInterface = 430;
constexpr LONG kAutomationError = 440;

// What an object says about its failure; the texts are ours to free.
class Exception {
 public:
  Exception() = default;
  Exception(Exception&&) = delete;
  ~Exception() {
    for (BSTR text : {info_.bstrSource, info_.bstrDescription, info_.bstrHelpFile}) {
      if (text != nullptr) SysFreeString(text);
    }
  }

  [[nodiscard]] EXCEPINFO* Address() { return &info_; }

  [[noreturn]] void Raise() {
    // An object may put off the work of describing until somebody asks.
    if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
    const LONG number = Number();
    const TextView source = ViewOf(info_.bstrSource);
    const TextView description = ViewOf(info_.bstrDescription);
    if (!description.empty()) RaiseLibraryError(number, source, description);
    BstrHandle standard;
    OxErrorDescription(number, standard.Receive());
    RaiseLibraryError(number, source, standard.View());
  }

 private:
  [[nodiscard]] LONG Number() const {
    if (info_.scode != 0) return OxErrorNumber(info_.scode);
    return info_.wCode != 0 ? LONG{info_.wCode} : kAutomationError;
  }

  EXCEPINFO info_{};
};

DISPID Resolve(IDispatch* object, TextView name) {
  if (object == nullptr) RaiseRuntimeError(kObjectNotSet);
  Text spelling(name);
  OLECHAR* names[] = {spelling.data()};
  DISPID member = DISPID_UNKNOWN;
  CheckRuntime(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_INVARIANT, &member));
  return member;
}

// One call; `result` is empty before, and null when nothing is to come back.
void Invoke(IDispatch* object, DISPID member, WORD flags, DISPPARAMS& params, Variant* result) {
  Exception exception;
  UINT wrong_argument = 0;
  const HRESULT outcome =
      object->Invoke(member, IID_NULL, LOCALE_INVARIANT, flags, &params,
                     result == nullptr ? nullptr : result->Address(), exception.Address(), &wrong_argument);
  if (outcome == DISP_E_EXCEPTION) exception.Raise();
  CheckRuntime(outcome);
  if (result == nullptr || (result->get().vt & VT_BYREF) == 0) return;
  Variant followed;
  CheckRuntime(VariantCopyInd(followed.Address(), result->Address()));
  *result = std::move(followed);
}

Variant InvokeMember(IDispatch* object, TextView name, WORD flags, std::span<const VARIANT> arguments,
                     const VARIANT* new_value) {
  const ComPtr<IDispatch> held = ComPtr<IDispatch>::Share(object);
  const DISPID member = Resolve(held.get(), name);
  // Last first, and a new value before all others, under its own name.
  std::vector<VARIANT> reversed;
  reversed.reserve(arguments.size() + 1);
  if (new_value != nullptr) reversed.push_back(*new_value);
  reversed.insert(reversed.end(), arguments.rbegin(), arguments.rend());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if (new_value != nullptr) {
    params.rgdispidNamedArgs = &put;
    params.cNamedArgs = 1;
  }
  Variant result;
  Invoke(held.get(), member, flags, params, new_value == nullptr ? &result : nullptr);
  return result;
}

}  // namespace

void IndexedMember::Read(LONG index, Variant& value) {
  if (member_ == DISPID_UNKNOWN) member_ = Resolve(object_, name_);
  VARIANT argument;
  argument.vt = VT_I4;
  argument.lVal = index;
  DISPPARAMS params{&argument, nullptr, 1, 0};
  value.Receive();
  Invoke(object_, member_, DISPATCH_METHOD | DISPATCH_PROPERTYGET, params, &value);
}

Variant GetMember(IDispatch* object, TextView name, std::span<const VARIANT> arguments) {
  return InvokeMember(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, nullptr);
}

Variant CallMember(IDispatch* object, TextView name, std::span<const VARIANT> arguments) {
  return InvokeMember(object, name, DISPATCH_METHOD, arguments, nullptr);
}

void PutMember(IDispatch* object, TextView name, const VARIANT& value, std::span<const VARIANT> indexes) {
  InvokeMember(object, name, DISPATCH_PROPERTYPUT, indexes, &value);
}

ComPtr<IDispatch> ObjectOf(const Variant& value) {
  const VARIANT& held = value.get();
  if (held.vt == VT_DISPATCH) return ComPtr<IDispatch>::Share(held.pdispVal);
  if (held.vt != VT_UNKNOWN) RaiseRuntimeError(kObjectRequired);
  ComPtr<IDispatch> object;
  if (held.punkVal != nullptr && FAILED(object.Ask(*held.punkVal, IID_IDispatch))) {
    RaiseRuntimeError(kNoInterface);
  }
  return object;
}

}  // namespace Orvix::component
