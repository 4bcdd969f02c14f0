#include "platform/automation/late_object.h"

#include <algorithm>
#include <new>

#include "frame/runtime/runtime_error.h"
#include "platform/automation/variant.h"

namespace Orvix {
namespace {

// Member and parameter names are ASCII.
char16_t LowerAscii(char16_t unit) { return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit; }

bool SameName(TextView left, TextView right) { return std::ranges::equal(left, right, {}, LowerAscii, LowerAscii); }

std::size_t ParameterCount(const LateMember& member) {
  const auto end = std::ranges::find_if(member.parameters, &TextView::empty);
  return static_cast<std::size_t>(end - std::begin(member.parameters));
}

bool IsMissing(const VARIANT& value) { return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND; }

// Puts each argument to its parameter. The values seen through references live
// in `seen`, one for each argument.
HRESULT PlaceArguments(const LateMember& member, const DISPPARAMS& params, bool is_put, std::span<VARIANT> seen,
                       LateArguments* placed, UINT* argument_error) {
  const std::size_t parameters = ParameterCount(member);
  for (UINT i = 0; i < params.cArgs; ++i) {
    const auto fail = [&](HRESULT code) {
      if (argument_error != nullptr) *argument_error = i;
      return code;
    };
    const HRESULT followed = FollowReference(params.rgvarg[i], &seen[i]);
    if (FAILED(followed)) return fail(followed);
    std::size_t position = params.cArgs - 1 - i;
    if (i < params.cNamedArgs) {
      const DISPID name = params.rgdispidNamedArgs[i];
      if (is_put && name == DISPID_PROPERTYPUT) {
        placed->put_value = &seen[i];
        continue;
      }
      if (name < 0 || static_cast<std::size_t>(name) >= parameters) return fail(DISP_E_PARAMNOTFOUND);
      position = static_cast<std::size_t>(name);
    }
    if (position >= parameters) return DISP_E_BADPARAMCOUNT;
    if (placed->given[position] != nullptr) return fail(DISP_E_PARAMNOTFOUND);
    if (!IsMissing(seen[i])) placed->given[position] = &seen[i];
  }
  if (is_put && placed->put_value == nullptr) return DISP_E_PARAMNOTFOUND;
  for (std::size_t i = 0; i < member.required; ++i) {
    if (placed->given[i] == nullptr) return i < params.cArgs ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
  }
  return S_OK;
}

HRESULT ReportNumber(LONG number, TextView source, EXCEPINFO* exception) noexcept {
  if (exception != nullptr) {
    *exception = EXCEPINFO{};
    exception->bstrSource = NewBstr(source);
    OxErrorDescription(number, &exception->bstrDescription);
    exception->scode = MakeResult(0x800A0000U + static_cast<ULONG>(number));
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

EndsInTurn& EndsOfThisThread() noexcept {
  // In the space that every thread has from its start: nothing is allocated.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local EndsInTurn ends;
  return ends;
}

HRESULT LateObject::QueryInterface(REFIID riid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = riid == IID_IUnknown || riid == IID_IDispatch ? static_cast<IDispatch*>(this) : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG LateObject::AddRef() noexcept { return references_.Add(); }

ULONG LateObject::Release() noexcept {
  const ULONG left = references_.Drop();
  if (left == 0) {
    // What it holds may take and drop references to it once more.
    references_.Set(1U << 30);
    EndsOfThisThread().Run(this, [](WaitingEnd* entry) noexcept { delete static_cast<LateObject*>(entry); });
  }
  return left;
}

HRESULT LateObject::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT LateObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT LateObject::GetIDsOfNames(REFIID riid, OLECHAR** names, UINT count, LCID, DISPID* ids) noexcept {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (count == 0 || names == nullptr || ids == nullptr || names[0] == nullptr) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto members = Members();
  const auto member = std::ranges::find_if(members, [&](const LateMember& m) { return SameName(m.name, names[0]); });
  if (member == members.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = member->id;
  HRESULT result = S_OK;
  for (UINT i = 1; i < count; ++i) {
    const std::size_t parameters = ParameterCount(*member);
    for (std::size_t p = 0; names[i] != nullptr && p < parameters; ++p) {
      if (SameName(member->parameters[p], names[i])) ids[i] = static_cast<DISPID>(p);
    }
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT LateObject::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                           EXCEPINFO* exception, UINT* argument_error) noexcept {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (params == nullptr || params->cNamedArgs > params->cArgs) return E_INVALIDARG;
  if (params->cArgs > 0 && params->rgvarg == nullptr) return E_INVALIDARG;
  if (params->cNamedArgs > 0 && params->rgdispidNamedArgs == nullptr) return E_INVALIDARG;
  const auto members = Members();
  const auto member = std::ranges::find_if(members, [&](const LateMember& m) { return m.id == id; });
  if (member == members.end() || (member->kinds & flags) == 0) return DISP_E_MEMBERNOTFOUND;
  constexpr UINT kMostArguments = kMostLateParameters + 1;
  if (params->cArgs > kMostArguments) return DISP_E_BADPARAMCOUNT;

  // The member may drop the last reference of its caller.
  AddRef();
  const LateOwner<IUnknown> alive(this);
  VARIANT seen[kMostArguments];
  LateArguments arguments;
  const bool is_put = (member->kinds & flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  const HRESULT placed = PlaceArguments(*member, *params, is_put, seen, &arguments, argument_error);
  if (FAILED(placed)) return placed;
  OwnedVariant value;
  try {
    Call(id, arguments, &value.value);
  } catch (const LateFailure& failure) {
    return failure.code;
  } catch (...) {
    return ReportNumber(NumberOfCurrentException(), ClassName(), exception);
  }
  // Overwritten, not cleared: not every caller has initialised it.
  if (result != nullptr) *result = std::exchange(value.value, VARIANT{});
  return S_OK;
}

LONG LongOfArgument(const VARIANT& argument) {
  OwnedVariant number;
  const HRESULT result = VariantChangeTypeEx(&number.value, &argument, LOCALE_INVARIANT, 0, VT_I4);
  if (FAILED(result)) throw RuntimeError{OxErrorNumber(result)};
  return number.value.lVal;
}

}  // namespace Orvix
