// A block of bytes becomes one bit a position where the pattern's two chosen
// bytes stand at the right distance; the rest works on these bits.
#include "containers/byte_scan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#if defined(__x86_64__) || defined(_M_X64) || defined(__i386__) || defined(_M_IX86)
#include <immintrin.h>
#define ORVIX_HAS_X86 1
#endif

namespace Orvix::component {

namespace {

constexpr std::size_t kBlock = 32;
// Comparisons may cost so much, and so much per byte scanned, before the scan
// gives way to a search whose worst case is linear.
constexpr std::size_t kFreeCost = 65536;
constexpr std::size_t kCostPerByte = 4;

// How common a byte is in texts, roughly: 0 is rare.
constexpr std::array<std::uint8_t, 256> kCommonness = [] {
  std::array<std::uint8_t, 256> ranks{};
  for (std::size_t byte = 0; byte < ranks.size(); ++byte) {
    const bool is_sign = byte > 32 && byte < 127;
    const bool is_small_letter = byte >= 'a' && byte <= 'z';
    ranks[byte] = static_cast<std::uint8_t>(is_small_letter ? 60 : is_sign ? 30 : byte >= 192 ? 20 : 10);
  }
  std::uint8_t rank = 250;
  for (const char byte : {' ', '\0', 'e', 't', 'a', 'o', 'i', 'n', 's', 'r', 'h', 'l',  'd',  'c', 'u', 'm',
                          'f', 'p',  'g', 'w', 'y', 'b', ',', '.', '0', '1', '2', '\n', '\r', 'v', 'k', '"'}) {
    ranks[static_cast<unsigned char>(byte)] = rank;
    rank = static_cast<std::uint8_t>(rank - 5);
  }
  return ranks;
}();

std::uint8_t CommonnessOf(char byte) { return kCommonness[static_cast<unsigned char>(byte)]; }

struct Scan {
  const char* bytes;
  std::string_view pattern;
  std::size_t first;  // indexes of the two chosen bytes, in no order
  std::size_t second;
  std::size_t from;
  std::size_t at;
  std::size_t end;       // one past the last position where the pattern could start
  std::size_t cost = 0;  // bytes compared in vain
  std::size_t vain = 0;  // comparisons in vain
};

inline std::uint64_t EightBytes(const char* from) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, from, sizeof eight);
  return eight;
}

// The chosen bytes were no good here: the first one that differs takes the place
// of the older of them, so that the scan learns what is rare in these bytes.
inline void ChooseByteThatDiffers(Scan& scan, std::size_t at) {
  std::size_t differs = 0;
  while (scan.bytes[at + differs] == scan.pattern[differs]) ++differs;
  scan.second = std::exchange(scan.first, differs);
}

inline bool MatchesAt(Scan& scan, std::size_t at) {
  constexpr std::size_t kGlance = 8;
  constexpr std::size_t kPatience = 16;
  const std::size_t size = scan.pattern.size();
  const bool differs_at_a_glance = size >= kGlance && EightBytes(scan.bytes + at) != EightBytes(scan.pattern.data());
  if (!differs_at_a_glance && std::memcmp(scan.bytes + at, scan.pattern.data(), size) == 0) return true;
  scan.cost += differs_at_a_glance ? kGlance : size;
  if (++scan.vain % kPatience == 0) ChooseByteThatDiffers(scan, at);
  return false;
}

// The candidates among the 32 positions from `block` on; true, with scan.at at
// it, when one is the pattern.
inline bool CompareCandidates(Scan& scan, std::size_t block, std::uint32_t bits) {
  for (; bits != 0; bits &= bits - 1) {
    const std::size_t at = block + static_cast<std::size_t>(std::countr_zero(bits));
    if (!MatchesAt(scan, at)) continue;
    scan.at = at;
    return true;
  }
  return false;
}

// Each Bits gives the bits of the 32 positions from `at` on where the two chosen
// bytes stand.
#if ORVIX_HAS_X86
namespace sse2 {
inline std::uint32_t Bits(const char* at, const Scan& scan) {
  const __m128i first = _mm_set1_epi8(scan.pattern[scan.first]);
  const __m128i second = _mm_set1_epi8(scan.pattern[scan.second]);
  const auto sixteen = [&](const char* from) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + scan.first));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + scan.second));
    return static_cast<std::uint32_t>(
        _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(low, first), _mm_cmpeq_epi8(high, second))));
  };
  return sixteen(at) | sixteen(at + 16) << 16;
}
#include "containers/byte_scan_walk.h"
}  // namespace sse2
#else
namespace portable {
inline std::uint32_t Bits(const char* at, const Scan& scan) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    bits |= static_cast<std::uint32_t>(at[i + scan.first] == scan.pattern[scan.first] &&
                                       at[i + scan.second] == scan.pattern[scan.second])
            << i;
  }
  return bits;
}
#include "containers/byte_scan_walk.h"
}  // namespace portable
#endif

#if ORVIX_HAS_X86 && defined(__GNUC__)
#define ORVIX_HAS_AVX2 1
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,bmi"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,bmi")
#endif
namespace avx2 {
inline std::uint32_t Bits(const char* at, const Scan& scan) {
  const __m256i first = _mm256_set1_epi8(scan.pattern[scan.first]);
  const __m256i second = _mm256_set1_epi8(scan.pattern[scan.second]);
  const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + scan.first));
  const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + scan.second));
  return static_cast<std::uint32_t>(
      _mm256_movemask_epi8(_mm256_and_si256(_mm256_cmpeq_epi8(low, first), _mm256_cmpeq_epi8(high, second))));
}
#include "containers/byte_scan_walk.h"
}  // namespace avx2
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
#endif

using Scanner = bool (*)(Scan&);

Scanner BestScanner() {
#if ORVIX_HAS_AVX2
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi")) return avx2::ScanBlocks;
#endif
#if ORVIX_HAS_X86
  return sse2::ScanBlocks;
#else
  return portable::ScanBlocks;
#endif
}

const Scanner kScanner = BestScanner();

// Bytes that nearly match everywhere: the search that never looks back.
std::size_t FindWithoutLookingBack(std::string_view bytes, std::string_view pattern, std::size_t from) {
  // For each length of a matched beginning, the longest shorter one that is its
  // end as well.
  std::vector<std::size_t> shorter(pattern.size() + 1, 0);
  for (std::size_t i = 1, same = 0; i < pattern.size(); ++i) {
    while (same > 0 && pattern[i] != pattern[same]) same = shorter[same];
    if (pattern[i] == pattern[same]) ++same;
    shorter[i + 1] = same;
  }
  for (std::size_t i = from, same = 0; i < bytes.size(); ++i) {
    while (same > 0 && bytes[i] != pattern[same]) same = shorter[same];
    if (bytes[i] == pattern[same]) ++same;
    if (same == pattern.size()) return i + 1 - same;
  }
  return kNoBytes;
}

}  // namespace

BytePattern::BytePattern(std::string_view pattern) : pattern_(pattern) {
  const std::size_t size = pattern.size();
  if (size < 2) return;
  // The rarest byte, and the rarest other one, or else the byte furthest away.
  std::size_t rarest = 0;
  for (std::size_t i = 1; i < size; ++i) {
    if (CommonnessOf(pattern[i]) < CommonnessOf(pattern[rarest])) rarest = i;
  }
  std::size_t other = kNoBytes;
  for (std::size_t i = 0; i < size; ++i) {
    if (pattern[i] == pattern[rarest]) continue;
    if (other == kNoBytes || CommonnessOf(pattern[i]) < CommonnessOf(pattern[other])) other = i;
  }
  if (other == kNoBytes) other = rarest == 0 ? size - 1 : 0;
  first_ = rarest;
  second_ = other;
}

std::size_t BytePattern::FindIn(std::string_view bytes, std::size_t from) const {
  const std::size_t size = pattern_.size();
  if (size == 0 || bytes.size() < size || from > bytes.size() - size) return kNoBytes;
  if (size == 1) {
    const void* const found = std::memchr(bytes.data() + from, pattern_.front(), bytes.size() - from);
    return found == nullptr ? kNoBytes : static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
  }
  Scan scan{bytes.data(), pattern_, first_, second_, from, from, bytes.size() - size + 1};
  const auto step = [&](std::size_t end) {
    for (; scan.at < end; ++scan.at) {
      if (bytes[scan.at + first_] == pattern_[first_] && bytes[scan.at + second_] == pattern_[second_] &&
          MatchesAt(scan, scan.at)) {
        return true;
      }
    }
    return false;
  };
  // Short distances, as in lists, do not pay for a block.
  constexpr std::size_t kNear = 8;
  if (step(std::min(scan.end, from + kNear)) || kScanner(scan)) return scan.at;
  if (scan.end - scan.at >= 4 * kBlock) return FindWithoutLookingBack(bytes, pattern_, scan.at);
  return step(scan.end) ? scan.at : kNoBytes;
}

}  // namespace Orvix::component
