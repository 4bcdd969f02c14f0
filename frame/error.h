// Errors inside the component: an exception with number, source and
// description, and the ways to raise one.
#ifndef ORVIX_FRAME_ERROR_H
#define ORVIX_FRAME_ERROR_H

#include <utility>

#include "orvix/text.h"

namespace Orvix::component {

// An empty source stands for the component's default source, `Orvix.` and the
// class called, which the edge fills in.
class Error {
 public:
  Error(LONG number, Text source, Text description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  [[nodiscard]] LONG number() const { return number_; }
  [[nodiscard]] const Text& source() const { return source_; }
  [[nodiscard]] const Text& description() const { return description_; }

 private:
  LONG number_;
  Text source_;
  Text description_;
};

// Ends the current member with an error of the library's own. No source: the
// default one. No help file and no help context are ever given.
[[noreturn]] void RaiseLibraryError(LONG number, TextView source, TextView description);

// Raises one of the platform's errors with its standard description.
[[noreturn]] void RaiseRuntimeError(LONG number);

// Raises what a failed call of the platform or the runtime stands for: number
// and standard description; no source.
[[noreturn]] void RaiseFailure(HRESULT failure);

// Raises what a failed conversion stands for. A default member's own error
// passes through, with its number, source and description.
[[noreturn]] void RaiseFailedConversion(HRESULT failure);
// Raises what a failed member of an object's interface stands for: number,
// source and description when the object supports error info for it.
[[noreturn]] void RaiseFailureOfObject(HRESULT failure, IUnknown* object, REFIID iid);

inline void CheckRuntime(HRESULT result) {
  if (FAILED(result)) RaiseFailure(result);
}
inline void CheckConversion(HRESULT result) {
  if (FAILED(result)) RaiseFailedConversion(result);
}

// The result code that carries an error number: 0x800A0000 plus a positive
// number, a negative number as it is.
[[nodiscard]] HRESULT ResultOfNumber(LONG number) noexcept;

}  // namespace Orvix::component

#endif
