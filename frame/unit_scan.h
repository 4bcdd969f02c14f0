// Scanning of UTF-16 units at the speed of memory: the first occurrence of a
// text, the walk from occurrence to occurrence, and places worth a look. Vector instructions are
// chosen at run time where the processor has them.
#ifndef ORVIX_FRAME_UNIT_SCAN_H
#define ORVIX_FRAME_UNIT_SCAN_H

#include <cstddef>
#include <cstdint>

#include "orvix/text.h"

namespace Orvix::component {

inline constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

// The lowest 0-based index from `from` on at which `target` (not empty) occurs
// in `text`, or kNotFound.
[[nodiscard]] std::size_t FindUnits(TextView text, TextView target, std::size_t from);

struct Walk {
  std::size_t count;  // occurrences passed
  std::size_t last;   // 0-based index of the last of them when `limit` was reached, else kNotFound
};

// Passes up to `limit` occurrences of `target` (not empty) from the 0-based
// index `from` on, left to right, each search going on just past the last find.
[[nodiscard]] Walk WalkOccurrences(TextView text, TextView target, std::size_t from, std::size_t limit);

// One bit for each position of `blocks` blocks of kUnitBlock units from `units` on:
// whether `first` stands there and `last` stands `distance` units further on.
// Reads that many units and `distance` more.
inline constexpr std::size_t kUnitBlock = 32;
void FindCandidates(const char16_t* units, std::size_t blocks, std::size_t distance, char16_t first, char16_t last,
                    std::uint32_t* bits);

}  // namespace Orvix::component

#endif
