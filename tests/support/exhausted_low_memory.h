// Takes low memory while it lives, so that the next request for a new region
// finds none; what is free inside regions in use may still serve small ones.
#ifndef ORVIX_TESTS_SUPPORT_EXHAUSTED_LOW_MEMORY_H
#define ORVIX_TESTS_SUPPORT_EXHAUSTED_LOW_MEMORY_H

#include <vector>

#include "orvix/runtime.h"

namespace Orvix::testing {

class ExhaustedLowMemory {
 public:
  // Large blocks first; they are not touched, so they cost address space only.
  ExhaustedLowMemory() {
    for (std::size_t bytes = std::size_t{1} << 30; bytes > 0; bytes /= 2) {
      while (void* const block = OxLowAlloc(bytes)) blocks_.push_back(block);
    }
  }
  ~ExhaustedLowMemory() {
    for (void* const block : blocks_) OxLowFree(block);
  }
  ExhaustedLowMemory(ExhaustedLowMemory&&) = delete;

 private:
  std::vector<void*> blocks_;
};

}  // namespace Orvix::testing

#endif
