// The edge between an interface and a plain member: exceptions become result
// codes here and nowhere else.
#ifndef ORVIX_FRAME_BOUNDARY_H
#define ORVIX_FRAME_BOUNDARY_H

#include <concepts>
#include <string_view>

#include "frame/modOrvix.h"

namespace Orvix::component {

// The result code of the exception under way, with the thread's error info set:
// number, source (or `Orvix.` and `class_name`) and description.
HRESULT ResultOfCurrentException(std::string_view class_name) noexcept;

template <std::invocable Body>
HRESULT AtBoundary(std::string_view class_name, Body&& body) noexcept {
  try {
    body();
    SetErrorInfo(0, nullptr);  // a success leaves no error info behind
    return S_OK;
  } catch (...) {
    return ResultOfCurrentException(class_name);
  }
}

}  // namespace Orvix::component

#endif
