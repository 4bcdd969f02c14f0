// How the runtime's functions fail inside (an exception that carries a number)
// and at their C edge (a result code with the standard description).
#ifndef ORVIX_FRAME_RUNTIME_RUNTIME_ERROR_H
#define ORVIX_FRAME_RUNTIME_RUNTIME_ERROR_H

#include <concepts>

#include "orvix/runtime.h"

namespace Orvix {

struct RuntimeError {
  LONG number;
};

// 0x800A0000 + number, with the standard description as the thread's error info.
HRESULT FailWithNumber(LONG number) noexcept;
// The number of the exception under way: a RuntimeError's own, 7 for
// std::bad_alloc, 51 for anything else.
LONG NumberOfCurrentException() noexcept;

// Runs `body` at the C edge of the run-time.
template <std::invocable Body>
HRESULT AtRuntimeEdge(Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (...) {
    return FailWithNumber(NumberOfCurrentException());
  }
}

}  // namespace Orvix

#endif
