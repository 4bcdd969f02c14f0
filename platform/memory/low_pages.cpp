#include "platform/memory/low_pages.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>

namespace Orvix {
namespace {

// Programs linked to fixed addresses, and their heap, lie at the bottom. The
// last region stays free, so that the end of a block is below 2^31 as well.
constexpr std::size_t kFirstRegion = 0x0800;
constexpr std::size_t kEndRegion = kRegionCount - 1;

constexpr int kAccess = PROT_READ | PROT_WRITE;
constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;

std::size_t RegionsOf(std::size_t bytes) { return (bytes + kRegionBytes - 1) / kRegionBytes; }

// Maps exactly there, or not at all.
void* MapAt(void* wanted, std::size_t bytes) {
  void* const start = mmap(wanted, bytes, kAccess, kFlags | MAP_FIXED_NOREPLACE, -1, 0);
  if (start == MAP_FAILED || start == wanted) return start;
  munmap(start, bytes);  // a kernel that takes the address for a hint
  errno = EEXIST;
  return MAP_FAILED;
}

}  // namespace

void LowPages::Mark(std::size_t region, std::size_t count, bool used) noexcept {
  for (std::size_t i = region; i < region + count; ++i) used_[i] = used;
}

// From the top down over runs of `count` regions within [first, end).
void* LowPages::MapAmong(std::size_t first, std::size_t end, std::size_t count, std::size_t bytes,
                         bool* exhausted) noexcept {
  std::size_t run = 0;
  for (std::size_t region = end; region-- > first;) {
    run = used_[region] ? 0 : run + 1;
    if (run < count) continue;
    void* const start = MapAt(AddressOf(region), bytes);
    if (start != MAP_FAILED) {
      Mark(region, count, true);
      cursor_ = region;
      return start;
    }
    // Something else of the process lies there: try one region further down.
    *exhausted = errno != EEXIST && errno != EPERM;
    if (*exhausted) return nullptr;
  }
  return nullptr;
}

void* LowPages::Map(std::size_t bytes) noexcept {
  const std::size_t count = RegionsOf(bytes);
  if (count == 0 || count > kEndRegion - kFirstRegion) return nullptr;
  bool exhausted = false;
  void* start = nullptr;
  if (cursor_ > kFirstRegion) start = MapAmong(kFirstRegion, cursor_, count, bytes, &exhausted);
  if (start == nullptr && !exhausted) start = MapAmong(kFirstRegion, kEndRegion, count, bytes, &exhausted);
  return start;
}

void LowPages::Unmap(void* start, std::size_t bytes) noexcept {
  munmap(start, bytes);
  Mark(RegionOf(start), RegionsOf(bytes), false);
}

void* LowPages::Resize(void* start, std::size_t old_bytes, std::size_t new_bytes) noexcept {
  const std::size_t region = RegionOf(start);
  const std::size_t old_count = RegionsOf(old_bytes);
  const std::size_t new_count = RegionsOf(new_bytes);
  if (new_count > kEndRegion - kFirstRegion) return nullptr;
  bool has_room = region + new_count <= kEndRegion;
  for (std::size_t i = region + old_count; has_room && i < region + new_count; ++i) has_room = !used_[i];
  if (has_room && mremap(start, old_bytes, new_bytes, 0) != MAP_FAILED) {
    Mark(region, std::max(old_count, new_count), false);
    Mark(region, new_count, true);
    return start;
  }
  // Pages move to a place that is held for them; nothing is copied.
  void* const place = Map(new_bytes);
  if (place == nullptr) return nullptr;
  if (mremap(start, old_bytes, new_bytes, MREMAP_MAYMOVE | MREMAP_FIXED, place) == MAP_FAILED) {
    // A failed move may have taken the place away already.
    munmap(place, new_bytes);
    Mark(RegionOf(place), new_count, false);
    return nullptr;
  }
  Mark(region, old_count, false);
  return place;
}

}  // namespace Orvix
