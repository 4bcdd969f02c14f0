// Failures as an exception: the number, source and description that the failing
// member left, or the platform's own words when it left none.
#ifndef ORVIX_WRAPPER_ERROR_HPP
#define ORVIX_WRAPPER_ERROR_HPP

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "orvix/runtime.h"
#include "orvix/wrapper/pointer.hpp"
#include "orvix/wrapper/text.hpp"

namespace Orvix {

class Error : public std::exception {
 public:
  Error(HRESULT result, LONG number, Text source, Text description)
      : facts_(std::make_shared<const Facts>(result, number, std::move(source), std::move(description))) {}

  // The error's number (61206, 13 ...), for comparison with the catalogue.
  [[nodiscard]] LONG Number() const noexcept { return facts_->number; }
  // The result code that carried it.
  [[nodiscard]] HRESULT Result() const noexcept { return facts_->result; }
  // Who failed ("classFilename.CompleteFilename"); may be empty.
  [[nodiscard]] const Text& Source() const noexcept { return facts_->source; }
  [[nodiscard]] const Text& Description() const noexcept { return facts_->description; }
  // "Error 61206 (Orvix.classDirectory): Index out of range", in UTF-8.
  [[nodiscard]] const char* what() const noexcept override { return facts_->what.c_str(); }

 private:
  struct Facts {
    Facts(HRESULT the_result, LONG the_number, Text the_source, Text the_description)
        : result(the_result),
          number(the_number),
          source(std::move(the_source)),
          description(std::move(the_description)) {
      what = "Error " + std::to_string(number);
      if (!source.empty()) what += " (" + ToUtf8(source) + ")";
      what += ": " + ToUtf8(description);
    }
    HRESULT result;
    LONG number;
    Text source;
    Text description;
    std::string what;
  };
  std::shared_ptr<const Facts> facts_;  // shared, so that a copy cannot throw
};

namespace wrapper_detail {

// The error behind `result`. The thread's error info counts only when `object`
// vouches for the interface that was called; without an object it counts as it
// is (functions of the run-time). Null `object` and no info: the platform's text.
inline Error ErrorOf(HRESULT result, IUnknown* object, const IID* iid) {
  const LONG number = OxErrorNumber(result);
  bool vouched = object == nullptr;
  if (object != nullptr && iid != nullptr) {
    Pointer<ISupportErrorInfo> support;
    vouched = SUCCEEDED(object->QueryInterface(IID_ISupportErrorInfo, support.ReceiveVoid())) && support &&
              support->InterfaceSupportsErrorInfo(*iid) == S_OK;
  }
  String source;
  String description;
  Pointer<IErrorInfo> info;
  if (vouched && GetErrorInfo(0, info.Receive()) == S_OK && info) {
    info->GetSource(source.Receive());
    info->GetDescription(description.Receive());
  }
  if (description.IsEmpty()) OxErrorDescription(number, description.Receive());
  return Error(result, number, Text(source.View()), Text(description.View()));
}

// Kept out of line, so that a call costs one comparison when it succeeds.
#if defined(__GNUC__)
[[noreturn, gnu::noinline, gnu::cold]]
#else
[[noreturn]]
#endif
inline void
Throw(HRESULT result, IUnknown* object, const IID* iid) {
  throw ErrorOf(result, object, iid);
}

[[noreturn]] inline void ThrowNumber(LONG number, TextView source) {
  String description;
  OxErrorDescription(number, description.Receive());
  throw Error(MakeResult(0x800A0000U + static_cast<ULONG>(number)), number, Text(source), Text(description.View()));
}

}  // namespace wrapper_detail

// Throws when `result`, which a function of the run-time gave, is a failure.
inline void Check(HRESULT result) {
  if (FAILED(result)) wrapper_detail::Throw(result, nullptr, nullptr);
}
// The same for a member of `object`, called through the interface `iid`.
inline void Check(HRESULT result, IUnknown* object, REFIID iid) {
  if (FAILED(result)) wrapper_detail::Throw(result, object, &iid);
}

}  // namespace Orvix

#endif
