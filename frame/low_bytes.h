// A run of low memory: its address fits in 31 bits, so that a 32-bit number can
// carry it.
#ifndef ORVIX_FRAME_LOW_BYTES_H
#define ORVIX_FRAME_LOW_BYTES_H

#include <cstddef>

#include "frame/modOrvix.h"

namespace Orvix::component {

// The address sanitizer is told where a run ends, so a run keeps no more than it
// was asked for.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kKeepsReserve = false;
#elif defined(__has_feature)
inline constexpr bool kKeepsReserve = !__has_feature(address_sanitizer);
#else
inline constexpr bool kKeepsReserve = true;
#endif

class LowBytes {
 public:
  LowBytes() = default;
  LowBytes(LowBytes&&) = delete;
  ~LowBytes() { OxLowFree(data_); }

  [[nodiscard]] BYTE* data() const { return data_; }

  // Makes room for `bytes`; what was there up to the smaller of both sizes
  // stays, what is added is undefined. False, with nothing changed, when low
  // memory is exhausted; a smaller size always succeeds.
  [[nodiscard]] bool Resize(std::size_t bytes) noexcept {
    if (kKeepsReserve && bytes <= room_ && bytes > room_ / 2) return true;
    return Reallocate(bytes) || bytes <= room_;
  }
  // The same for a run that will grow again: half as much more room in reserve,
  // where there is that much, so that growing by small steps is linear.
  [[nodiscard]] bool Extend(std::size_t bytes) noexcept {
    if (!kKeepsReserve) return Resize(bytes);
    if (bytes <= room_) return true;
    return (bytes < room_ + room_ / 2 && Reallocate(room_ + room_ / 2)) || Reallocate(bytes);
  }

 private:
  bool Reallocate(std::size_t bytes) noexcept {
    void* const moved = data_ == nullptr ? OxLowAlloc(bytes) : OxLowRealloc(data_, bytes);
    if (moved == nullptr) return false;
    data_ = static_cast<BYTE*>(moved);
    room_ = bytes;
    return true;
  }

  BYTE* data_ = nullptr;
  std::size_t room_ = 0;
};

}  // namespace Orvix::component

#endif
