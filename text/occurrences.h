// Every occurrence of a text, handed over one by one without leaving the loop:
// for members that copy between occurrences that may stand close together.
#ifndef ORVIX_TEXT_OCCURRENCES_H
#define ORVIX_TEXT_OCCURRENCES_H

#include <bit>
#include <cstdint>
#include <cstring>

#include "orvix/text.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ORVIX_OCCURRENCES_SSE2 1
#endif

namespace Orvix::component {

namespace occurrences_detail {

inline constexpr std::size_t kBlock = 32;

// One bit for each of the 32 positions at `units` where `first` stands and
// `last` stands `distance` units further on; reads kBlock + distance units.
inline std::uint32_t Candidates(const char16_t* units, std::size_t distance, char16_t first, char16_t last) {
#if ORVIX_OCCURRENCES_SSE2
  const __m128i wanted_first = _mm_set1_epi16(static_cast<short>(first));
  const __m128i wanted_last = _mm_set1_epi16(static_cast<short>(last));
  const auto eight = [&](std::size_t at) {
    __m128i same = _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units + at)), wanted_first);
    if (distance != 0) {
      const __m128i tail = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + at + distance));
      same = _mm_and_si128(same, _mm_cmpeq_epi16(tail, wanted_last));
    }
    return same;
  };
  const auto low = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(eight(0), eight(8))));
  const auto high = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(eight(16), eight(24))));
  return low | high << 16;
#else
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    bits |= static_cast<std::uint32_t>(units[i] == first && units[i + distance] == last) << i;
  }
  return bits;
#endif
}

}  // namespace occurrences_detail

// Calls `visit` with the 0-based index of each occurrence of `target` (not
// empty) in `text`, left to right; the search goes on just past each of them.
template <class Visit>
void ForEachOccurrence(TextView text, TextView target, Visit&& visit) {
  using occurrences_detail::kBlock;
  const std::size_t width = target.size();
  if (text.size() < width) return;
  const std::size_t end = text.size() - width + 1;  // no occurrence begins here or later
  const char16_t* units = text.data();
  std::size_t next = 0;  // where the last occurrence ended
  const auto consider = [&](std::size_t at) {
    if (at < next) return;
    if (width > 2 && std::memcmp(units + at + 1, target.data() + 1, (width - 2) * sizeof(char16_t)) != 0) return;
    visit(at);
    next = at + width;
  };
  std::size_t at = 0;
  for (; end - at >= kBlock; at += kBlock) {
    std::uint32_t bits = occurrences_detail::Candidates(units + at, width - 1, target.front(), target.back());
    for (; bits != 0; bits &= bits - 1) consider(at + static_cast<std::size_t>(std::countr_zero(bits)));
  }
  for (; at < end; ++at) {
    if (units[at] == target.front() && units[at + width - 1] == target.back()) consider(at);
  }
}

}  // namespace Orvix::component

#endif
