#include "frame/runtime/runtime_error.h"

#include <new>

namespace Orvix {

HRESULT FailWithNumber(LONG number) noexcept {
  ICreateErrorInfo* created = nullptr;
  if (SUCCEEDED(CreateErrorInfo(&created))) {
    BSTR description = nullptr;
    OxErrorDescription(number, &description);
    created->SetDescription(description);
    SysFreeString(description);
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(created->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
      SetErrorInfo(0, info);
      info->Release();
    }
    created->Release();
  }
  return static_cast<HRESULT>(0x800A0000U + static_cast<ULONG>(number));
}

LONG NumberOfCurrentException() noexcept {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error.number;
  } catch (const std::bad_alloc&) {
    return 7;
  } catch (...) {
    return 51;
  }
}

}  // namespace Orvix
