#include "frame/error.h"

#include <new>

#include "frame/com_ptr.h"
#include "frame/modErrorCodes.h"
#include "frame/modOrvix.h"

namespace Orvix::component {

namespace {

Text StandardDescription(LONG number) {
  BstrHandle text;
  OxErrorDescription(number, text.Receive());
  return Text(text.View());
}

ComPtr<IErrorInfo> TakeErrorInfo() {
  ComPtr<IErrorInfo> info;
  GetErrorInfo(0, info.Receive());
  return info;
}

[[noreturn]] void RaiseWithInfo(HRESULT failure, const ComPtr<IErrorInfo>& info) {
  const LONG number = OxErrorNumber(failure);
  if (!info) RaiseRuntimeError(number);
  BstrHandle source;
  BstrHandle description;
  info->GetSource(source.Receive());
  info->GetDescription(description.Receive());
  throw Error(number, Text(source.View()),
              description.View().empty() ? StandardDescription(number) : Text(description.View()));
}

}  // namespace

void RaiseLibraryError(LONG number, TextView source, TextView description) {
  throw Error(number, Text(source), Text(description));
}

void RaiseRuntimeError(LONG number) { throw Error(number, {}, StandardDescription(number)); }

void RaiseFailure(HRESULT failure) {
  const LONG number = OxErrorNumber(failure);
  if (number == kOutOfMemory) throw std::bad_alloc();
  TakeErrorInfo();  // the runtime's own report says the same
  RaiseRuntimeError(number);
}

void RaiseFailedConversion(HRESULT failure) { RaiseWithInfo(failure, TakeErrorInfo()); }

void RaiseFailureOfObject(HRESULT failure, IUnknown* object, REFIID iid) {
  ComPtr<ISupportErrorInfo> support;
  const bool informs = SUCCEEDED(support.Ask(*object, IID_ISupportErrorInfo)) && support &&
                       support->InterfaceSupportsErrorInfo(iid) == S_OK;
  const ComPtr<IErrorInfo> info = TakeErrorInfo();
  RaiseWithInfo(failure, informs ? info : nullptr);
}

HRESULT ResultOfNumber(LONG number) noexcept {
  // Numbers above this have no way back.
  constexpr LONG kLargest = 0x1FFFF;
  if (number == 0 || number > kLargest) return E_FAIL;
  if (number < 0) return number;
  return static_cast<HRESULT>(0x800A0000U + static_cast<ULONG>(number));
}

}  // namespace Orvix::component
