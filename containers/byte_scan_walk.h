// The scan over whole blocks. Included once per instruction set by
// byte_scan.cpp, in a namespace that defines Bits and under that set's compiler
// options, so it has no include guard.

// Looks at the positions from scan.at on, whole blocks only, until the pattern is
// found or the comparisons cost too much. Leaves scan.at at the find, or at the
// first position that was not looked at.
inline bool ScanBlocks(Scan& scan) {
  const char* const bytes = scan.bytes;
  for (; scan.end - scan.at >= 4 * kBlock; scan.at += 4 * kBlock) {
    const char* const at = bytes + scan.at;
    const std::uint32_t bits[4] = {Bits(at, scan), Bits(at + kBlock, scan), Bits(at + 2 * kBlock, scan),
                                   Bits(at + 3 * kBlock, scan)};
    if ((bits[0] | bits[1] | bits[2] | bits[3]) == 0) continue;
    for (std::size_t i = 0; i < 4; ++i) {
      if (bits[i] != 0 && CompareCandidates(scan, scan.at + i * kBlock, bits[i])) return true;
    }
    if (scan.cost > kFreeCost && scan.cost / kCostPerByte > scan.at - scan.from) {
      scan.at += 4 * kBlock;
      return false;
    }
  }
  for (; scan.end - scan.at >= kBlock; scan.at += kBlock) {
    const std::uint32_t bits = Bits(bytes + scan.at, scan);
    if (bits != 0 && CompareCandidates(scan, scan.at, bits)) return true;
  }
  return false;
}
