// The allocator of blocks below 2^31: small ones from regions of one size class
// each, large ones in a mapping of their own.
#ifndef ORVIX_PLATFORM_MEMORY_LOW_HEAP_H
#define ORVIX_PLATFORM_MEMORY_LOW_HEAP_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/memory/low_pages.h"
#include "platform/memory/poison.h"

namespace Orvix {

// Block sizes in steps of 16 up to 512, from there four to each doubling.
inline constexpr std::size_t kSmallStep = 16;
inline constexpr std::size_t kLastFineSize = 512;
inline constexpr std::size_t kLargestSmallBlock = 16384;
inline constexpr std::size_t kFineClasses = kLastFineSize / kSmallStep;
inline constexpr std::size_t kClassCount = kFineClasses + 20;

// Not thread safe: its owner locks. What stands about a block is kept outside
// low memory, so a caller that writes past its end harms no bookkeeping but the
// links of free blocks.
class LowHeap {
 public:
  constexpr LowHeap() = default;

  [[nodiscard]] void* Allocate(std::size_t bytes) noexcept;
  // Shrinking always succeeds; growing leaves the block as it was when it fails.
  [[nodiscard]] void* Reallocate(void* block, std::size_t bytes) noexcept;
  // An address that is no block is left alone.
  void Free(void* block) noexcept;

 private:
  enum class Kind : std::uint8_t { kNone, kSmall, kLarge };
  // Regions with free blocks form a list for each class, linked by number; 0
  // ends it. Free blocks of a region form a list too, linked by index + 1.
  struct Region {
    Kind kind;
    std::uint8_t size_class;
    std::uint16_t used;   // blocks handed out or in quarantine
    std::uint16_t fresh;  // blocks that were never handed out lie from this index on
    std::uint16_t free;
    std::uint16_t previous;
    std::uint16_t next;
    std::uint32_t bytes;  // of a large mapping
    std::uint32_t shown;  // how many of them the caller asked for
  };

  [[nodiscard]] void* AllocateSmall(std::size_t size_class) noexcept;
  [[nodiscard]] void* AllocateLarge(std::size_t bytes) noexcept;
  [[nodiscard]] std::size_t TakeEmptyRegion() noexcept;
  [[nodiscard]] static std::size_t CapacityOf(const Region& region) noexcept;
  [[nodiscard]] Region* RegionOfBlock(const void* block) noexcept;
  [[nodiscard]] void* ResizeLarge(Region& region, void* block, std::size_t bytes) noexcept;
  static void ShowAgain(Region& region, void* block, std::size_t bytes) noexcept;
  void FreeSmall(void* block) noexcept;
  void FreeLarge(Region& region, void* block) noexcept;
  void Quarantine(void* block) noexcept;
  bool GiveBackReserves() noexcept;
  void UnmapRegion(std::size_t number) noexcept;
  void Link(std::size_t number) noexcept;
  void Unlink(std::size_t number) noexcept;

  static constexpr std::size_t kMostEmptyRegions = 16;
  static constexpr std::size_t kQuarantined = kPoisons ? 256 : 1;

  LowPages pages_;
  std::array<Region, kRegionCount> regions_{};
  std::array<std::uint16_t, kClassCount> with_room_{};
  std::array<std::uint16_t, kMostEmptyRegions> empty_{};  // mapped regions without a class
  std::size_t empty_count_ = 0;
  std::array<void*, kQuarantined> quarantine_{};
  std::size_t quarantine_next_ = 0;
};

}  // namespace Orvix

#endif
