// A block of units becomes one bit a position where the target's first and last
// unit stand at the right distance; the rest works on these bits.
#include "frame/unit_scan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(_M_X64) || defined(__i386__) || defined(_M_IX86)
#include <immintrin.h>
#define ORVIX_HAS_X86 1
#endif

namespace Orvix::component {

namespace {

constexpr std::size_t kBlock = kUnitBlock;

// The middle of a target whose ends are known to match.
inline bool MiddleMatches(const char16_t* at, TextView target) {
  return target.size() <= 2 || std::memcmp(at + 1, target.data() + 1, (target.size() - 2) * sizeof(char16_t)) == 0;
}

// What a walk has passed so far.
struct Progress {
  std::size_t count = 0;
  std::size_t last = kNotFound;
  std::size_t next = 0;  // no occurrence may begin before this index
};

// Takes the occurrences out of one block's bits; true when `limit` is reached.
inline bool TakeOneByOne(const char16_t* units, std::size_t block, std::uint32_t bits, TextView target,
                         std::size_t limit, Progress& progress) {
  while (bits != 0) {
    const std::size_t at = block + static_cast<std::size_t>(std::countr_zero(bits));
    bits &= bits - 1;
    if (at < progress.next || !MiddleMatches(units + at, target)) continue;
    progress.last = at;
    progress.next = at + target.size();
    if (++progress.count == limit) return true;
  }
  return false;
}

// Each Bits gives the bits of the 32 positions at `units` where `first` stands
// and `last` stands `distance` units further on; it reads kBlock + distance
// units.
namespace portable {
inline std::uint32_t Bits(const char16_t* units, std::size_t distance, char16_t first, char16_t last) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    bits |= static_cast<std::uint32_t>(units[i] == first && units[i + distance] == last) << i;
  }
  return bits;
}
#include "frame/unit_scan_walk.h"
}  // namespace portable

#if ORVIX_HAS_X86
namespace sse2 {
inline std::uint32_t Bits(const char16_t* units, std::size_t distance, char16_t first, char16_t last) {
  const __m128i wanted_first = _mm_set1_epi16(static_cast<short>(first));
  const __m128i wanted_last = _mm_set1_epi16(static_cast<short>(last));
  const auto eight = [&](std::size_t at) {
    const __m128i head = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + at));
    const __m128i tail = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + at + distance));
    return _mm_and_si128(_mm_cmpeq_epi16(head, wanted_first), _mm_cmpeq_epi16(tail, wanted_last));
  };
  const auto low = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(eight(0), eight(8))));
  const auto high = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(eight(16), eight(24))));
  return low | high << 16;
}
#include "frame/unit_scan_walk.h"
}  // namespace sse2
#endif

#if ORVIX_HAS_X86 && defined(__GNUC__)
#define ORVIX_HAS_AVX2 1
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,popcnt,bmi,lzcnt"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,popcnt,bmi,lzcnt")
#endif
namespace avx2 {
inline std::uint32_t Bits(const char16_t* units, std::size_t distance, char16_t first, char16_t last) {
  const auto sixteen = [](const char16_t* at) { return reinterpret_cast<const __m256i*>(at); };
  const __m256i wanted_first = _mm256_set1_epi16(static_cast<short>(first));
  __m256i low = _mm256_cmpeq_epi16(_mm256_loadu_si256(sixteen(units)), wanted_first);
  __m256i high = _mm256_cmpeq_epi16(_mm256_loadu_si256(sixteen(units + 16)), wanted_first);
  if (distance != 0) {
    const __m256i wanted_last = _mm256_set1_epi16(static_cast<short>(last));
    const char16_t* tail = units + distance;
    low = _mm256_and_si256(low, _mm256_cmpeq_epi16(_mm256_loadu_si256(sixteen(tail)), wanted_last));
    high = _mm256_and_si256(high, _mm256_cmpeq_epi16(_mm256_loadu_si256(sixteen(tail + 16)), wanted_last));
  }
  const __m256i packed = _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), 0xD8);
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(packed));
}
#include "frame/unit_scan_walk.h"
}  // namespace avx2
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
#endif

struct Scanner {
  decltype(&portable::WalkBlocks) walk;
  decltype(&portable::FillBits) fill;
};

Scanner BestScanner() {
#if ORVIX_HAS_AVX2
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt")) {
    return {avx2::WalkBlocks, avx2::FillBits};
  }
#endif
#if ORVIX_HAS_X86
  return {sse2::WalkBlocks, sse2::FillBits};
#else
  return {portable::WalkBlocks, portable::FillBits};
#endif
}

const Scanner kScanner = BestScanner();

}  // namespace

Walk WalkOccurrences(TextView text, TextView target, std::size_t from, std::size_t limit) {
  Progress progress;
  const std::size_t width = target.size();
  if (limit == 0 || text.size() < width || from > text.size() - width) return {0, kNotFound};
  std::size_t at = kScanner.walk(text, target, from, limit, progress);
  // The last units, which fill no block.
  const char16_t* units = text.data();
  for (; progress.count < limit && at + width <= text.size(); ++at) {
    if (at < progress.next || units[at] != target.front() || units[at + width - 1] != target.back()) continue;
    if (!MiddleMatches(units + at, target)) continue;
    progress.last = at;
    progress.next = at + width;
    ++progress.count;
  }
  return {progress.count, progress.count == limit ? progress.last : kNotFound};
}

void FindCandidates(const char16_t* units, std::size_t blocks, std::size_t distance, char16_t first, char16_t last,
                    std::uint32_t* bits) {
  kScanner.fill(units, blocks, distance, first, last, bits);
}

std::size_t FindUnits(TextView text, TextView target, std::size_t from) {
  // Short distances, as in lists, do not pay for a block.
  const std::size_t width = target.size();
  if (text.size() < width || from > text.size() - width) return kNotFound;
  const std::size_t near_end = std::min(text.size() - width, from + 8);
  for (std::size_t at = from; at <= near_end; ++at) {
    if (text[at] == target.front() && text[at + width - 1] == target.back() &&
        MiddleMatches(text.data() + at, target)) {
      return at;
    }
  }
  return WalkOccurrences(text, target, near_end + 1, 1).last;
}

}  // namespace Orvix::component
