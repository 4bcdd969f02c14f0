// A count of references that costs no more than a plain number while the process
// has one thread, and that threads may share from the moment there are two.
#ifndef ORVIX_FRAME_REFERENCE_COUNT_H
#define ORVIX_FRAME_REFERENCE_COUNT_H

#include <atomic>
#include <cstdint>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

namespace Orvix {

class ReferenceCount {
 public:
  // Both give the new count.
  std::uint32_t Add() noexcept { return Change(1); }
  std::uint32_t Drop() noexcept { return Change(~std::uint32_t{0}); }
  void Set(std::uint32_t count) noexcept { count_ = count; }

 private:
  std::uint32_t Change(std::uint32_t by) noexcept {
#if __has_include(<sys/single_threaded.h>)
    // Turns false before a second thread can begin, whose start orders all that
    // was done without it.
    if (__libc_single_threaded != 0) {
      const std::uint32_t count = count_.load(std::memory_order_relaxed) + by;
      count_.store(count, std::memory_order_relaxed);
      return count;
    }
#endif
    return count_.fetch_add(by, std::memory_order_acq_rel) + by;
  }

  std::atomic<std::uint32_t> count_{1};
};

}  // namespace Orvix

#endif
