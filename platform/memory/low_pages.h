// Address space below 2^31, handed out in regions of 64 KiB.
#ifndef ORVIX_PLATFORM_MEMORY_LOW_PAGES_H
#define ORVIX_PLATFORM_MEMORY_LOW_PAGES_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace Orvix {

inline constexpr std::size_t kRegionBytes = 0x10000;
inline constexpr std::size_t kRegionCount = 0x8000;  // up to 2^31

inline std::size_t RegionOf(const void* address) { return reinterpret_cast<std::uintptr_t>(address) / kRegionBytes; }
inline std::byte* AddressOf(std::size_t region) {
  return reinterpret_cast<std::byte*>(region * kRegionBytes);  // NOLINT(performance-no-int-to-ptr)
}

// Not thread safe: its owner locks. Mappings start at a region and are zero.
class LowPages {
 public:
  constexpr LowPages() = default;

  // Null when there is no room below 2^31 or the system has no more memory.
  [[nodiscard]] void* Map(std::size_t bytes) noexcept;
  void Unmap(void* start, std::size_t bytes) noexcept;
  // Grows or shrinks a mapping, moving its pages when there is no room behind
  // it. Null leaves everything as it was.
  [[nodiscard]] void* Resize(void* start, std::size_t old_bytes, std::size_t new_bytes) noexcept;

 private:
  // One bit for each region, the lowest in the lowest bit of the first word.
  using Regions = std::array<std::uint64_t, kRegionCount / 64>;

  [[nodiscard]] std::size_t HighestRun(std::size_t count) const noexcept;
  [[nodiscard]] void* MapRun(std::size_t bytes, bool* exhausted) noexcept;
  [[nodiscard]] bool NoteForeign(std::size_t region, std::size_t count) noexcept;
  [[nodiscard]] bool IsTaken(std::size_t region) const noexcept;
  static void Mark(Regions& regions, std::size_t region, std::size_t count, bool taken) noexcept;

  Regions used_{};
  Regions foreign_{};  // what else the process had there when it was last looked at
};

}  // namespace Orvix

#endif
