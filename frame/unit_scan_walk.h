// The walk over whole blocks. Included once per instruction set by
// unit_scan.cpp, in a namespace that defines Bits and under that set's compiler
// options, so it has no include guard.

// Counts occurrences of a target of one or two units four blocks at a time, from
// `block` on. Stops before four blocks in which the limit is reached, or in
// which finds of a doubled unit touch, so that one may hide the next; and when
// fewer than four blocks are left. Returns the index it stopped at.
inline std::size_t CountFourBlocks(TextView text, TextView target, std::size_t block, std::size_t limit,
                                   Progress& progress) {
  const char16_t* units = text.data();
  const char16_t first = target.front();
  const char16_t last = target.back();
  const bool doubled = target.size() == 2 && first == last;
  // A doubled unit is two neighbouring bits of the single one's.
  const std::size_t distance = doubled ? 0 : target.size() - 1;
  if (progress.next > block) return block;
  std::uint64_t reaches_in = 0;  // 1 when the last find covers the first position too
  for (; text.size() - block >= 4 * kBlock + 1; block += 4 * kBlock) {
    std::uint64_t low = Bits(units + block, distance, first, last) |
                        static_cast<std::uint64_t>(Bits(units + block + kBlock, distance, first, last)) << 32;
    std::uint64_t high = Bits(units + block + 2 * kBlock, distance, first, last) |
                         static_cast<std::uint64_t>(Bits(units + block + 3 * kBlock, distance, first, last)) << 32;
    if (doubled) {
      const std::uint64_t after = units[block + 4 * kBlock] == first ? 1 : 0;
      low &= low >> 1 | high << 63;
      high &= high >> 1 | after << 63;
      if (((low & low >> 1) | (high & high >> 1) | (low >> 63 & high) | (low & reaches_in)) != 0) break;
    }
    const auto found = static_cast<std::size_t>(std::popcount(low) + std::popcount(high));
    if (progress.count + found >= limit) break;
    progress.count += found;
    reaches_in = doubled ? high >> 63 : 0;
  }
  if (reaches_in != 0) progress.next = block + 1;
  return block;
}

// The whole blocks of a walk; returns the first index that was not looked at.
inline std::size_t WalkBlocks(TextView text, TextView target, std::size_t from, std::size_t limit, Progress& progress) {
  const std::size_t width = target.size();
  const char16_t* units = text.data();
  std::size_t block = from;
  for (;;) {
    if (width <= 2) block = CountFourBlocks(text, target, block, limit, progress);
    for (int careful = 0; careful < 4; ++careful) {
      if (text.size() - block < kBlock + width - 1) return block;
      const std::uint32_t bits = Bits(units + block, width - 1, target.front(), target.back());
      if (TakeOneByOne(units, block, bits, target, limit, progress)) return block;
      block += kBlock;
    }
  }
}

inline void FillBits(const char16_t* units, std::size_t blocks, std::size_t distance, char16_t first, char16_t last,
                     std::uint32_t* bits) {
  for (std::size_t block = 0; block < blocks; ++block) {
    bits[block] = Bits(units + block * kBlock, distance, first, last);
  }
}
