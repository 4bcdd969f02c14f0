// Invoke: arguments are matched to parameters by position and by name, converted
// where their type differs, handed to the member's slot, and written back.
#include <array>
#include <cstring>
#include <utility>

#include "frame/com_ptr.h"
#include "frame/dispatch.h"
#include "frame/record_info.h"

namespace Orvix::component {

namespace {

constexpr VARTYPE kTypeBits = static_cast<VARTYPE>(~VT_BYREF);

// What a conversion back owes the caller's variable.
enum class WriteBack : std::uint8_t { kNone, kIntoVariant, kIntoTyped };

// One argument on its way into a slot.
struct Passed {
  VARIANT temporary;  // what was converted, or copied, for the call
  bool temporary_in_use = false;
  WriteBack write_back = WriteBack::kNone;
  VARIANT* caller = nullptr;    // the caller's variable
  VARTYPE typed = VT_EMPTY;     // what `target` is, when the caller gave a typed reference
  void* target = nullptr;       // where that reference leads
  SAFEARRAY* locked = nullptr;  // the caller's array, kept from being destroyed
};

// Follows by-reference VARIANTs to the one that holds the value or the typed
// reference.
VARIANT* Innermost(VARIANT* argument) {
  for (int depth = 0; argument->vt == (VT_BYREF | VT_VARIANT) && argument->pvarVal != nullptr && depth < 16; ++depth) {
    argument = argument->pvarVal;
  }
  return argument;
}

class Call {
 public:
  explicit Call(const MemberRow& row) : row_(row) {}
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  ~Call() {
    for (std::size_t i = 0; i < row_.count; ++i) {
      if (passed_[i].temporary_in_use) VariantClear(&passed_[i].temporary);
      if (passed_[i].locked != nullptr) SafeArrayUnlock(passed_[i].locked);
    }
  }

  // Finds each parameter's argument. `put` says that the last parameter takes
  // the value named DISPID_PROPERTYPUT.
  HRESULT Match(const DISPPARAMS& params, bool put, UINT* argument_error) {
    const std::size_t takes = row_.count;
    UINT named = params.cNamedArgs;
    const std::size_t positional = params.cArgs - named;
    if (put) {
      if (named == 0 || params.rgdispidNamedArgs == nullptr) return DISP_E_PARAMNOTFOUND;
      bool found = false;
      for (UINT i = 0; i < named; ++i) found = found || params.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT;
      if (!found) return DISP_E_PARAMNOTFOUND;
    }
    const std::size_t free_places = put ? takes - 1 : takes;
    if (positional > free_places) {
      const bool parameterless_get = row_.kind == INVOKE_PROPERTYGET && takes == 0;
      return parameterless_get ? DISP_E_NOTACOLLECTION : DISP_E_BADPARAMCOUNT;
    }
    for (std::size_t i = 0; i < positional; ++i) given_[i] = &params.rgvarg[params.cArgs - 1 - i];
    for (UINT i = 0; i < named; ++i) {
      DISPID place = params.rgdispidNamedArgs[i];
      if (put && place == DISPID_PROPERTYPUT) place = static_cast<DISPID>(takes - 1);
      if (place < 0 || static_cast<std::size_t>(place) >= takes || given_[static_cast<std::size_t>(place)] != nullptr) {
        if (argument_error != nullptr) *argument_error = i;
        return DISP_E_PARAMNOTFOUND;
      }
      given_[static_cast<std::size_t>(place)] = &params.rgvarg[i];
    }
    for (std::size_t i = 0; i < takes; ++i) {
      if (given_[i] == nullptr) {
        if (!row_.types[i].optional) return DISP_E_BADPARAMCOUNT;
        continue;
      }
      if (!IsMissing(*Innermost(given_[i]))) continue;
      if (!row_.types[i].optional) {
        if (argument_error != nullptr) *argument_error = static_cast<UINT>(given_[i] - params.rgvarg);
        return DISP_E_PARAMNOTOPTIONAL;
      }
      given_[i] = nullptr;
    }
    return S_OK;
  }

  HRESULT Prepare(const DISPPARAMS& params, UINT* argument_error) {
    for (std::size_t i = 0; i < row_.count; ++i) {
      if (given_[i] == nullptr) continue;
      const HRESULT result = PrepareOne(i);
      if (FAILED(result)) {
        if (argument_error != nullptr) *argument_error = static_cast<UINT>(given_[i] - params.rgvarg);
        return result;
      }
    }
    return S_OK;
  }

  HRESULT Run(IDispatch* object, void* result) { return row_.invoke(object, arguments_.data(), result); }

  // Gives the caller what the member wrote into converted arguments. A value
  // that does not convert back leaves the caller's as it is.
  void WriteBackAll() {
    for (std::size_t i = 0; i < row_.count; ++i) {
      Passed& passed = passed_[i];
      if (passed.write_back == WriteBack::kNone) continue;
      if (passed.write_back == WriteBack::kIntoVariant) {
        // Stored before the old value is released, which may look here again.
        // An array that is locked stays where it is.
        VARIANT old = *passed.caller;
        *passed.caller = passed.temporary;
        passed.temporary_in_use = FAILED(VariantClear(&old));
        if (passed.temporary_in_use) *passed.caller = old;
        continue;
      }
      WriteTyped(passed);
    }
  }

 private:
  HRESULT PrepareOne(std::size_t i) {
    const TypeWords& words = row_.types[i];
    VARIANT* argument = given_[i];
    if (words.type == VT_VARIANT) {
      // A VARIANT parameter takes the argument as it is.
      arguments_[i] = Innermost(argument);
      return S_OK;
    }
    VARIANT* inner = Innermost(argument);
    const VARTYPE held = inner->vt & kTypeBits;
    const bool by_typed_reference = (inner->vt & VT_BYREF) != 0;
    if (held == words.type && words.iid == nullptr) {
      if (by_typed_reference) {
        if (inner->byref == nullptr) return DISP_E_TYPEMISMATCH;
        // A by-value text is the member's own: the caller's variable may change
        // while the member runs.
        if (words.type != VT_BSTR || words.by_reference) {
          arguments_[i] = inner->byref;
          return S_OK;
        }
      } else if (inner == argument) {
        // A by-value argument is the caller's own and must not change.
        if (!words.written) {
          arguments_[i] = &inner->llVal;
          return S_OK;
        }
      } else if ((words.type & VT_ARRAY) != 0 && !words.written) {
        return LockArray(i, inner->parray);
      }
      // A VARIANT variable may change its type while the member runs, so the
      // member gets a copy of what is in it.
    }
    return Convert(i, inner, inner != argument || by_typed_reference);
  }

  // What a VARIANT variable held when the call began, without copying it.
  HRESULT LockArray(std::size_t i, SAFEARRAY* array) {
    Passed& passed = passed_[i];
    if (array != nullptr) {
      const HRESULT result = SafeArrayLock(array);
      if (FAILED(result)) return result;
      passed.locked = array;
    }
    VariantInit(&passed.temporary);
    passed.temporary.parray = array;
    arguments_[i] = &passed.temporary.parray;
    return S_OK;
  }

  HRESULT Convert(std::size_t i, VARIANT* inner, bool by_reference) {
    const TypeWords& words = row_.types[i];
    Passed& passed = passed_[i];
    VariantInit(&passed.temporary);
    passed.temporary_in_use = true;
    passed.caller = inner;
    const bool typed = (inner->vt & VT_BYREF) != 0;
    if (typed) {
      passed.typed = inner->vt & kTypeBits;
      passed.target = inner->byref;
    }
    HRESULT result = S_OK;
    if (words.iid != nullptr || words.type == VT_DISPATCH) {
      result = ConvertObject(words.iid != nullptr ? *words.iid : IID_IDispatch, inner, passed.temporary);
    } else if ((words.type & VT_ARRAY) != 0 && (inner->vt & VT_ARRAY) == 0) {
      result = DISP_E_TYPEMISMATCH;
    } else {
      result = VariantChangeType(&passed.temporary, inner, 0, words.type);
    }
    if (FAILED(result)) return result;
    arguments_[i] = &passed.temporary.llVal;
    // What a member only reads stays as the caller has it.
    if (words.written && by_reference) {
      passed.write_back = typed ? WriteBack::kIntoTyped : WriteBack::kIntoVariant;
    }
    return S_OK;
  }

  // An object goes in through the interface that the parameter names.
  static HRESULT ConvertObject(REFIID iid, VARIANT* inner, VARIANT& temporary) {
    const VARTYPE held = inner->vt & kTypeBits;
    if (held != VT_DISPATCH && held != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
    IUnknown* object = (inner->vt & VT_BYREF) == 0  ? inner->punkVal
                       : inner->ppunkVal == nullptr ? nullptr
                                                    : *inner->ppunkVal;
    // The variable may lose it while it is asked.
    const ComPtr<IUnknown> held_object = ComPtr<IUnknown>::Share(object);
    ComPtr<IDispatch> asked;
    if (object != nullptr && FAILED(asked.Ask(*object, iid))) return DISP_E_TYPEMISMATCH;
    temporary.pdispVal = asked.Detach();
    temporary.vt = VT_DISPATCH;
    return S_OK;
  }

  static void WriteTyped(Passed& passed) {
    Variant converted;
    if (FAILED(VariantChangeType(converted.Address(), &passed.temporary, 0, passed.typed))) return;
    VARIANT value = converted.Detach();
    void* target = passed.target;
    switch (passed.typed) {
      case VT_BSTR:
        SysFreeString(std::exchange(*static_cast<BSTR*>(target), value.bstrVal));
        return;
      case VT_I1:
      case VT_UI1:
        std::memcpy(target, &value.bVal, 1);
        return;
      case VT_I2:
      case VT_UI2:
      case VT_BOOL:
        std::memcpy(target, &value.iVal, 2);
        return;
      case VT_I4:
      case VT_UI4:
      case VT_INT:
      case VT_UINT:
      case VT_R4:
      case VT_ERROR:
        std::memcpy(target, &value.lVal, 4);
        return;
      case VT_DECIMAL: {
        auto* number = static_cast<DECIMAL*>(target);
        value.decVal.wReserved = number->wReserved;
        *number = value.decVal;
        return;
      }
      case VT_I8:
      case VT_UI8:
      case VT_R8:
      case VT_DATE:
      case VT_CY:
        std::memcpy(target, &value.llVal, 8);
        return;
      default:
        VariantClear(&value);
        return;
    }
  }

  const MemberRow& row_;
  std::array<VARIANT*, kMaxParameters> given_{};
  std::array<void*, kMaxParameters> arguments_{};
  std::array<Passed, kMaxParameters> passed_{};
};

// Moves the thread's error info into `exception`.
void DescribeFailure(HRESULT failure, EXCEPINFO* exception) noexcept {
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, info.Receive());
  if (exception == nullptr) return;
  *exception = {};
  exception->scode = failure;
  if (!info) return;
  info->GetSource(&exception->bstrSource);
  info->GetDescription(&exception->bstrDescription);
  info->GetHelpFile(&exception->bstrHelpFile);
  info->GetHelpContext(&exception->dwHelpContext);
}

// The result of a call, kept until it is known to be one.
class Returned {
 public:
  explicit Returned(const TypeWords& words) : words_(words) {
    VariantInit(&value_);
    if (words.type == VT_RECORD) record_ = FileType{};
  }
  Returned(const Returned&) = delete;
  Returned& operator=(const Returned&) = delete;

  void* Place() {
    if (words_.type == VT_EMPTY) return nullptr;
    if (words_.type == VT_VARIANT) return &value_;
    if (words_.type == VT_RECORD) return &record_;
    return &value_.llVal;
  }
  // Hands the result over, or drops it when nobody asked for it.
  HRESULT Deliver(VARIANT* result) {
    if (words_.type == VT_RECORD) return DeliverRecord(result);
    if (words_.type != VT_EMPTY && words_.type != VT_VARIANT) value_.vt = words_.type;
    if (result != nullptr) {
      *result = value_;
    } else {
      VariantClear(&value_);
    }
    return S_OK;
  }

 private:
  HRESULT DeliverRecord(VARIANT* result) {
    FileRecord owner;
    owner.get() = record_;
    if (result == nullptr) return S_OK;
    IRecordInfo* info = FileTypeRecordInfo();
    auto* record = static_cast<FileType*>(info->RecordCreate());
    if (record == nullptr) {
      info->Release();
      return E_OUTOFMEMORY;
    }
    *record = owner.Detach();
    value_.pvRecord = record;
    value_.pRecInfo = info;
    value_.vt = VT_RECORD;
    *result = value_;
    return S_OK;
  }

  const TypeWords& words_;
  VARIANT value_;
  FileType record_{};
};

// Whether the value of a put is an object.
bool PutsObject(const DISPPARAMS& params) {
  for (UINT i = 0; i < params.cNamedArgs; ++i) {
    if (params.rgdispidNamedArgs[i] != DISPID_PROPERTYPUT) continue;
    const VARTYPE held = Innermost(&params.rgvarg[i])->vt & kTypeBits;
    return held == VT_DISPATCH || held == VT_UNKNOWN;
  }
  return false;
}

}  // namespace

HRESULT InvokeByName(const DispatchIndex& index, IDispatch* object, DISPID member, REFIID riid, WORD flags,
                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument_error) noexcept {
  // What an earlier call left behind must not pass for this one's failure.
  const auto refuse = [](HRESULT reason) {
    SetErrorInfo(0, nullptr);
    return reason;
  };
  if (riid != IID_NULL) return refuse(DISP_E_UNKNOWNINTERFACE);
  if (params == nullptr || params->cNamedArgs > params->cArgs || (params->cArgs != 0 && params->rgvarg == nullptr) ||
      (params->cNamedArgs != 0 && params->rgdispidNamedArgs == nullptr)) {
    return refuse(E_INVALIDARG);
  }
  const MemberRow* row = index.RowOf(member, flags, PutsObject(*params));
  if (row == nullptr) return refuse(DISP_E_MEMBERNOTFOUND);
  const bool put = row->kind == INVOKE_PROPERTYPUT || row->kind == INVOKE_PROPERTYPUTREF;
  Call call(*row);
  HRESULT done = call.Match(*params, put, argument_error);
  if (SUCCEEDED(done)) done = call.Prepare(*params, argument_error);
  if (FAILED(done)) return refuse(done);
  Returned returned(row->result);
  done = call.Run(object, returned.Place());
  call.WriteBackAll();
  if (SUCCEEDED(done)) return returned.Deliver(result);
  if (done == DISP_E_PARAMNOTOPTIONAL) return refuse(done);
  DescribeFailure(done, exception);
  return DISP_E_EXCEPTION;
}

}  // namespace Orvix::component
