// Every occurrence of a text, handed over one by one without leaving the loop:
// for members that copy between occurrences that may stand close together.
#ifndef ORVIX_TEXT_OCCURRENCES_H
#define ORVIX_TEXT_OCCURRENCES_H

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "frame/unit_scan.h"

namespace Orvix::component {

// Calls `visit` with the 0-based index of each occurrence of `target` (not
// empty) in `text`, from index `start` on, left to right; the search goes on just
// past each of them.
template <class Visit>
void ForEachOccurrence(TextView text, TextView target, std::size_t start, Visit&& visit) {
  const std::size_t width = target.size();
  if (text.size() < width) return;
  const std::size_t end = text.size() - width + 1;  // no occurrence begins here or later
  const char16_t* const units = text.data();
  std::size_t next = start;  // where the last occurrence ended
  // The middle of a target whose ends are known to match; of a short one by a
  // single comparison.
  constexpr std::size_t kFour = 4;
  std::uint64_t second = 0;
  if (width > kFour) std::memcpy(&second, target.data() + 1, sizeof second);
  const auto matches = [&](const char16_t* at) {
    if (width > kFour) {
      std::uint64_t there = 0;
      std::memcpy(&there, at + 1, sizeof there);
      if (there != second) return false;
      if (width <= kFour + 2) return true;
      return std::memcmp(at + kFour + 1, target.data() + kFour + 1, (width - kFour - 2) * sizeof(char16_t)) == 0;
    }
    for (std::size_t i = 1; i + 1 < width; ++i) {
      if (at[i] != target[i]) return false;
    }
    return true;
  };
  const auto consider = [&](std::size_t at) {
    if (at < next || !matches(units + at)) return;
    visit(at);
    next = at + width;
  };
  std::size_t at = start;
  while (at < end && end - at >= kUnitBlock) {
    constexpr std::size_t kBlocks = 64;
    std::uint32_t bits[kBlocks];
    const std::size_t blocks = std::min((end - at) / kUnitBlock, kBlocks);
    FindCandidates(units + at, blocks, width - 1, target.front(), target.back(), bits);
    for (std::size_t block = 0; block < blocks; ++block, at += kUnitBlock) {
      for (std::uint32_t left = bits[block]; left != 0; left &= left - 1) {
        consider(at + static_cast<std::size_t>(std::countr_zero(left)));
      }
    }
  }
  for (; at < end; ++at) {
    if (units[at] == target.front() && units[at + width - 1] == target.back()) consider(at);
  }
}

}  // namespace Orvix::component

#endif
