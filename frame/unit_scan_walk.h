// The walk over whole blocks. Included once per instruction set by
// unit_scan.cpp, in a namespace that defines Bits and under that set's compiler
// options, so it has no include guard.

// The whole blocks of a walk; returns the first index that was not looked at.
inline std::size_t WalkBlocks(TextView text, TextView target, std::size_t from, std::size_t limit, Progress& progress) {
  const std::size_t width = target.size();
  const char16_t* units = text.data();
  const char16_t first = target.front();
  const char16_t last = target.back();
  const bool touches_itself = width == 2 && first == last;
  std::size_t block = from;
  for (; text.size() - block >= kBlock + width - 1; block += kBlock) {
    std::uint32_t bits = Bits(units + block, width - 1, first, last);
    if (bits == 0) continue;
    if (width <= 2) {
      // Positions that the last find covers are no finds.
      if (progress.next > block) bits &= ~0U << (progress.next - block);
      const auto found = static_cast<std::size_t>(std::popcount(bits));
      const bool overlap = touches_itself && (bits & bits >> 1) != 0;
      if (!overlap && progress.count + found < limit) {
        if (bits == 0) continue;
        progress.count += found;
        progress.last = block + kBlock - 1 - static_cast<std::size_t>(std::countl_zero(bits));
        progress.next = progress.last + width;
        continue;
      }
    }
    if (TakeOneByOne(units, block, bits, target, limit, progress)) break;
  }
  return block;
}
