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
constexpr std::size_t kWord = 64;

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

void LowPages::Mark(Regions& regions, std::size_t region, std::size_t count, bool taken) noexcept {
  for (std::size_t i = region; i < region + count; ++i) {
    const std::uint64_t bit = std::uint64_t{1} << i % kWord;
    regions[i / kWord] = taken ? regions[i / kWord] | bit : regions[i / kWord] & ~bit;
  }
}

bool LowPages::IsTaken(std::size_t region) const noexcept {
  return ((used_[region / kWord] | foreign_[region / kWord]) >> region % kWord & 1) != 0;
}

// The first region of the highest run of `count` free ones, 0 without one. Always
// the highest: what was given back is used again before new ground, and the runs
// that grow together below stay long.
std::size_t LowPages::HighestRun(std::size_t count) const noexcept {
  std::size_t run = 0;
  for (std::size_t region = kEndRegion; region-- > kFirstRegion;) {
    if (region % kWord == kWord - 1) {
      const std::uint64_t word = used_[region / kWord] | foreign_[region / kWord];
      if (word == ~std::uint64_t{0} || (word == 0 && run + kWord < count)) {
        run = word == 0 ? run + kWord : 0;
        region -= kWord - 1;
        continue;
      }
    }
    run = IsTaken(region) ? 0 : run + 1;
    if (run == count) return region;
  }
  return 0;
}

// Looks which region of a run something else of the process lies in.
bool LowPages::NoteForeign(std::size_t region, std::size_t count) noexcept {
  for (std::size_t i = region; i < region + count; ++i) {
    void* const start = MapAt(AddressOf(i), kRegionBytes);
    if (start != MAP_FAILED) {
      munmap(start, kRegionBytes);
      continue;
    }
    Mark(foreign_, i, 1, true);
    return true;
  }
  return false;
}

void* LowPages::MapRun(std::size_t bytes, bool* exhausted) noexcept {
  const std::size_t count = RegionsOf(bytes);
  while (const std::size_t region = HighestRun(count)) {
    void* const start = MapAt(AddressOf(region), bytes);
    if (start != MAP_FAILED) {
      Mark(used_, region, count, true);
      return start;
    }
    *exhausted = errno != EEXIST && errno != EPERM;
    if (*exhausted || !NoteForeign(region, count)) return nullptr;
  }
  return nullptr;
}

void* LowPages::Map(std::size_t bytes) noexcept {
  const std::size_t count = RegionsOf(bytes);
  if (count == 0 || count > kEndRegion - kFirstRegion) return nullptr;
  bool exhausted = false;
  void* start = MapRun(bytes, &exhausted);
  if (start == nullptr && !exhausted) {
    foreign_ = {};  // it may be gone by now
    start = MapRun(bytes, &exhausted);
  }
  return start;
}

void LowPages::Unmap(void* start, std::size_t bytes) noexcept {
  munmap(start, bytes);
  Mark(used_, RegionOf(start), RegionsOf(bytes), false);
}

void* LowPages::Resize(void* start, std::size_t old_bytes, std::size_t new_bytes) noexcept {
  const std::size_t region = RegionOf(start);
  const std::size_t old_count = RegionsOf(old_bytes);
  const std::size_t new_count = RegionsOf(new_bytes);
  if (new_count > kEndRegion - kFirstRegion) return nullptr;
  bool has_room = region + new_count <= kEndRegion;
  for (std::size_t i = region + old_count; has_room && i < region + new_count; ++i) has_room = !IsTaken(i);
  if (has_room && mremap(start, old_bytes, new_bytes, 0) != MAP_FAILED) {
    Mark(used_, region, std::max(old_count, new_count), false);
    Mark(used_, region, new_count, true);
    return start;
  }
  // Pages move to a place that is held for them; nothing is copied.
  void* const place = Map(new_bytes);
  if (place == nullptr) return nullptr;
  if (mremap(start, old_bytes, new_bytes, MREMAP_MAYMOVE | MREMAP_FIXED, place) == MAP_FAILED) {
    // A failed move may have taken the place away already.
    munmap(place, new_bytes);
    Mark(used_, RegionOf(place), new_count, false);
    return nullptr;
  }
  Mark(used_, region, old_count, false);
  return place;
}

}  // namespace Orvix
