// The error styles that a member may have, one helper each. A member that calls
// none lets errors pass through.
#ifndef ORVIX_FRAME_ERROR_STYLES_H
#define ORVIX_FRAME_ERROR_STYLES_H

#include <concepts>
#include <new>
#include <type_traits>

#include "frame/error.h"

namespace Orvix::component {

inline constexpr TextView kOutOfMemoryText = u"Out of memory";

// Requests a message box: the member's fixed text, CR LF, the description of
// the caught error; style 16, title "Orvix". The answer is not used. `fixed_text`
// is a literal, which is reported alone when there is no memory for the rest.
void ReportError(TextView fixed_text, TextView description) noexcept;

// Report and continue: a failure of `body` is reported, the result is `fallback`.
template <class Fallback, std::invocable Body>
auto ReportAndContinue(TextView fixed_text, const Fallback& fallback, Body&& body) -> std::invoke_result_t<Body> {
  try {
    return body();
  } catch (const Error& error) {
    ReportError(fixed_text, error.description());
  } catch (const std::bad_alloc&) {
    ReportError(fixed_text, kOutOfMemoryText);
  }
  return std::invoke_result_t<Body>(fallback);
}

// The same for a member without a result.
template <std::invocable Body>
void ReportAndContinue(TextView fixed_text, Body&& body) {
  try {
    body();
  } catch (const Error& error) {
    ReportError(fixed_text, error.description());
  } catch (const std::bad_alloc&) {
    ReportError(fixed_text, kOutOfMemoryText);
  }
}

// Silent fallback: a failure of `body` gives `fallback`, without any report.
template <class Fallback, std::invocable Body>
auto FallBackSilently(const Fallback& fallback, Body&& body) -> std::invoke_result_t<Body> {
  try {
    return body();
  } catch (const Error&) {
  } catch (const std::bad_alloc&) {
  }
  return std::invoke_result_t<Body>(fallback);
}

// Ignore and go on: one step, skipped when it fails.
template <std::invocable Step>
void SkipIfFails(Step&& step) {
  try {
    step();
  } catch (const Error&) {
  } catch (const std::bad_alloc&) {
  }
}

// Translation: a failure is raised again with this number and source, keeping
// the caught description.
template <std::invocable Body>
auto TranslateTo(LONG number, TextView source, Body&& body) -> std::invoke_result_t<Body> {
  try {
    return body();
  } catch (const Error& error) {
    RaiseLibraryError(number, source, error.description());
  } catch (const std::bad_alloc&) {
    RaiseLibraryError(number, source, kOutOfMemoryText);
  }
}

}  // namespace Orvix::component

#endif
