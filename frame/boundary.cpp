#include "frame/boundary.h"

#include <new>

#include "frame/com_ptr.h"
#include "frame/error.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

void PublishErrorInfo(const Text& source, const Text& description) noexcept {
  SetErrorInfo(0, nullptr);
  ComPtr<ICreateErrorInfo> created;
  if (FAILED(CreateErrorInfo(created.Receive()))) return;
  created->SetSource(const_cast<OLECHAR*>(source.c_str()));
  created->SetDescription(const_cast<OLECHAR*>(description.c_str()));
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(info.Ask(*created.get(), IID_IErrorInfo))) SetErrorInfo(0, info.get());
}

HRESULT PublishError(LONG number, TextView source, TextView description, std::string_view class_name) noexcept {
  try {
    const Text given = source.empty() ? Text(u"Orvix.").append(class_name.begin(), class_name.end()) : Text(source);
    PublishErrorInfo(given, Text(description));
  } catch (const std::bad_alloc&) {
    SetErrorInfo(0, nullptr);  // the number still arrives
  }
  return ResultOfNumber(number);
}

}  // namespace

HRESULT ResultOfCurrentException(std::string_view class_name) noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return PublishError(error.number(), error.source(), error.description(), class_name);
  } catch (const std::bad_alloc&) {
    return PublishError(kOutOfMemory, {}, kOutOfMemoryText, class_name);
  } catch (...) {
    SetErrorInfo(0, nullptr);
    return E_UNEXPECTED;
  }
}

}  // namespace Orvix::component
