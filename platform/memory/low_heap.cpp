#include "platform/memory/low_heap.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace Orvix {
namespace {

// Between two blocks, so that the sanitizer sees the first byte past the end.
constexpr std::size_t kRedZone = kPoisons ? 16 : 0;
constexpr std::size_t kLargestBlock = 0x7F000000;

constexpr std::size_t SizeOfClass(std::size_t size_class) {
  if (size_class < kFineClasses) return (size_class + 1) * kSmallStep;
  const std::size_t step = size_class - kFineClasses;
  return (kLastFineSize << step / 4) / 4 * (5 + step % 4);
}
static_assert(SizeOfClass(0) == 16 && SizeOfClass(31) == 512 && SizeOfClass(32) == 640 && SizeOfClass(36) == 1280);
static_assert(SizeOfClass(kClassCount - 1) == kLargestSmallBlock);

constexpr std::size_t ClassOf(std::size_t bytes) {
  if (bytes <= kLastFineSize) return bytes == 0 ? 0 : (bytes - 1) / kSmallStep;
  const std::size_t doubling = std::bit_width((bytes - 1) / kLastFineSize) - 1;
  const std::size_t quarter = (kLastFineSize << doubling) / 4;
  return kFineClasses + doubling * 4 + (bytes - 1) / quarter - 4;
}
static_assert(ClassOf(1) == 0 && ClassOf(16) == 0 && ClassOf(17) == 1 && ClassOf(512) == 31 && ClassOf(513) == 32);
static_assert(ClassOf(640) == 32 && ClassOf(641) == 33 && ClassOf(1024) == 35 && ClassOf(1025) == 36);
static_assert(ClassOf(kLargestSmallBlock) == kClassCount - 1);

std::size_t InPages(std::size_t bytes) {
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}

// What is asked of the block and what lies behind it.
void ShowBlock(void* block, std::size_t bytes, std::size_t capacity) {
  Unpoison(block, bytes);
  Poison(static_cast<std::byte*>(block) + bytes, capacity - bytes);
}

// Lets the sanitizer report a block that was given back before.
void TouchBlock([[maybe_unused]] const void* block) {
  if constexpr (kPoisons) static_cast<void>(*static_cast<const volatile char*>(block));
}

}  // namespace

LowHeap::Region* LowHeap::RegionOfBlock(const void* block) noexcept {
  const std::size_t number = RegionOf(block);
  if (number >= kRegionCount || regions_[number].kind == Kind::kNone) return nullptr;
  const auto offset = static_cast<std::size_t>(static_cast<const std::byte*>(block) - AddressOf(number));
  Region& region = regions_[number];
  if (region.kind == Kind::kLarge) return offset == 0 ? &region : nullptr;
  const std::size_t size = SizeOfClass(region.size_class);
  return offset % size == 0 && offset / size < region.fresh ? &region : nullptr;
}

std::size_t LowHeap::CapacityOf(const Region& region) noexcept {
  return region.kind == Kind::kLarge ? region.bytes : SizeOfClass(region.size_class);
}

void LowHeap::Link(std::size_t number) noexcept {
  Region& region = regions_[number];
  region.previous = 0;
  region.next = with_room_[region.size_class];
  if (region.next != 0) regions_[region.next].previous = static_cast<std::uint16_t>(number);
  with_room_[region.size_class] = static_cast<std::uint16_t>(number);
}

void LowHeap::Unlink(std::size_t number) noexcept {
  const Region& region = regions_[number];
  if (region.next != 0) regions_[region.next].previous = region.previous;
  (region.previous != 0 ? regions_[region.previous].next : with_room_[region.size_class]) = region.next;
}

std::size_t LowHeap::TakeEmptyRegion() noexcept {
  if (empty_count_ > 0) return empty_[--empty_count_];
  void* const start = pages_.Map(kRegionBytes);
  if (start == nullptr) return 0;
  Poison(start, kRegionBytes);
  return RegionOf(start);
}

void* LowHeap::AllocateSmall(std::size_t size_class) noexcept {
  const std::size_t size = SizeOfClass(size_class);
  const std::size_t blocks = kRegionBytes / size;
  std::size_t number = with_room_[size_class];
  if (number == 0) {
    number = TakeEmptyRegion();
    if (number == 0) return nullptr;
    regions_[number] = {Kind::kSmall, static_cast<std::uint8_t>(size_class), 0, 0, 0, 0, 0, 0, 0};
    Link(number);
  }
  Region& region = regions_[number];
  std::byte* block = nullptr;
  if (region.free != 0) {
    block = AddressOf(number) + (region.free - 1U) * size;
    Unpoison(block, sizeof region.free);
    std::memcpy(&region.free, block, sizeof region.free);
    // The link stood in memory that a caller once had: written over after it
    // was given back, it must not lead out of the region.
    if (region.free > region.fresh) region.free = 0;
  } else {
    block = AddressOf(number) + region.fresh++ * size;
  }
  ++region.used;
  if (region.free == 0 && region.fresh == blocks) Unlink(number);
  return block;
}

void LowHeap::FreeSmall(void* block) noexcept {
  const std::size_t number = RegionOf(block);
  Region& region = regions_[number];
  const std::size_t size = SizeOfClass(region.size_class);
  const bool was_full = region.free == 0 && region.fresh == kRegionBytes / size;
  Unpoison(block, sizeof region.free);
  std::memcpy(block, &region.free, sizeof region.free);
  Poison(block, size);
  region.free = static_cast<std::uint16_t>(
      static_cast<std::size_t>(static_cast<std::byte*>(block) - AddressOf(number)) / size + 1);
  if (was_full) Link(number);
  if (--region.used > 0) return;
  Unlink(number);
  region.kind = Kind::kNone;
  if (empty_count_ < kMostEmptyRegions) {
    empty_[empty_count_++] = static_cast<std::uint16_t>(number);
    return;
  }
  UnmapRegion(number);
}

// Under the sanitizer a freed block waits, poisoned, until many others came.
void LowHeap::Quarantine(void* block) noexcept {
  void*& oldest = quarantine_[quarantine_next_++ % kQuarantined];
  if (oldest != nullptr) FreeSmall(oldest);
  oldest = block;
}

// What is kept for later goes back to the system. False when there was nothing.
bool LowHeap::GiveBackReserves() noexcept {
  for (void*& block : quarantine_) {
    if (block != nullptr) FreeSmall(std::exchange(block, nullptr));
  }
  const bool found = empty_count_ > 0;
  while (empty_count_ > 0) UnmapRegion(empty_[--empty_count_]);
  return found;
}

void LowHeap::UnmapRegion(std::size_t number) noexcept {
  Unpoison(AddressOf(number), kRegionBytes);
  pages_.Unmap(AddressOf(number), kRegionBytes);
}

void* LowHeap::AllocateLarge(std::size_t bytes) noexcept {
  const std::size_t mapped = InPages(bytes);
  void* const start = pages_.Map(mapped);
  if (start == nullptr) return nullptr;
  Region& region = regions_[RegionOf(start)];
  region = {};
  region.kind = Kind::kLarge;
  region.bytes = static_cast<std::uint32_t>(mapped);
  return start;
}

void LowHeap::FreeLarge(Region& region, void* block) noexcept {
  Unpoison(block, region.bytes);
  region.kind = Kind::kNone;
  pages_.Unmap(block, region.bytes);
}

void* LowHeap::Allocate(std::size_t bytes) noexcept {
  if (bytes > kLargestBlock) return nullptr;
  const std::size_t wanted = std::max<std::size_t>(bytes, 1) + kRedZone;
  const auto take = [&] {
    return wanted <= kLargestSmallBlock ? AllocateSmall(ClassOf(wanted)) : AllocateLarge(wanted);
  };
  void* block = take();
  // A quarantined block may free one of the same class, too.
  if (block == nullptr && (GiveBackReserves() || kPoisons)) block = take();
  if (block != nullptr) {
    Region& region = regions_[RegionOf(block)];
    region.shown = static_cast<std::uint32_t>(std::max<std::size_t>(bytes, 1));
    ShowBlock(block, region.shown, CapacityOf(region));
  }
  return block;
}

// The same block for another size. Of a large block only the difference is
// marked: it may be long, and grow often.
void LowHeap::ShowAgain(Region& region, void* block, std::size_t bytes) noexcept {
  if (region.kind == Kind::kSmall) return ShowBlock(block, bytes, CapacityOf(region));
  constexpr std::size_t kGranule = 8;  // of the sanitizer's marks
  const std::size_t from = std::min<std::size_t>(bytes, region.shown) / kGranule * kGranule;
  const std::size_t end = std::max<std::size_t>(bytes, region.shown);
  ShowBlock(static_cast<std::byte*>(block) + from, bytes - from, std::min(end + kGranule, CapacityOf(region)) - from);
  region.shown = static_cast<std::uint32_t>(bytes);
}

void* LowHeap::ResizeLarge(Region& region, void* block, std::size_t bytes) noexcept {
  const std::size_t old_bytes = region.bytes;
  // A block that grows once will grow again: half as much in reserve, unless
  // that is more than there is.
  const std::size_t exact = InPages(bytes + kRedZone);
  const std::size_t roomy = std::min(InPages(bytes + bytes / 2), InPages(kLargestBlock));
  Unpoison(block, old_bytes);
  const bool grows = exact > old_bytes;
  std::size_t new_bytes = grows ? std::max(exact, roomy) : exact;
  void* moved = pages_.Resize(block, old_bytes, new_bytes);
  if (moved == nullptr && grows) {
    GiveBackReserves();
    new_bytes = exact;
    moved = pages_.Resize(block, old_bytes, new_bytes);
  }
  if (moved == nullptr) {
    ShowBlock(block, region.shown, old_bytes);
    return nullptr;
  }
  region.kind = Kind::kNone;
  Region& now = regions_[RegionOf(moved)];
  now = {};
  now.kind = Kind::kLarge;
  now.bytes = static_cast<std::uint32_t>(new_bytes);
  now.shown = static_cast<std::uint32_t>(bytes);
  ShowBlock(moved, bytes, new_bytes);
  return moved;
}

void* LowHeap::Reallocate(void* block, std::size_t bytes) noexcept {
  if (block == nullptr) return Allocate(bytes);
  Region* const region = RegionOfBlock(block);
  if (region == nullptr || bytes > kLargestBlock) return nullptr;
  TouchBlock(block);
  bytes = std::max<std::size_t>(bytes, 1);
  const std::size_t capacity = CapacityOf(*region);
  const std::size_t wanted = bytes + kRedZone;
  // A block stays where it is while less than half of it goes unused.
  if (wanted <= capacity && (wanted >= capacity / 2 || capacity <= kSmallStep)) {
    ShowAgain(*region, block, bytes);
    return block;
  }
  if (region->kind == Kind::kLarge && wanted > kLargestSmallBlock) {
    void* const resized = ResizeLarge(*region, block, bytes);
    if (resized != nullptr) return resized;
  } else if (void* const moved = Allocate(bytes); moved != nullptr) {
    Unpoison(block, capacity);
    std::memcpy(moved, block, std::min(bytes, capacity));
    Free(block);
    return moved;
  }
  if (wanted > capacity) return nullptr;
  ShowAgain(*region, block, bytes);
  return block;
}

void LowHeap::Free(void* block) noexcept {
  Region* const region = RegionOfBlock(block);
  if (block == nullptr || region == nullptr) return;
  TouchBlock(block);
  if (region->kind == Kind::kLarge) return FreeLarge(*region, block);
  if constexpr (kPoisons) {
    Poison(block, CapacityOf(*region));
    Quarantine(block);
  } else {
    FreeSmall(block);
  }
}

}  // namespace Orvix
