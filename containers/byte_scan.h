// Searching for bytes at the speed of memory: two bytes of the pattern, chosen
// to be rare, are looked for many positions at a time; other two when they turn
// out not to be. Vector instructions are
// chosen at run time where the processor has them.
#ifndef ORVIX_CONTAINERS_BYTE_SCAN_H
#define ORVIX_CONTAINERS_BYTE_SCAN_H

#include <cstddef>
#include <string_view>

namespace Orvix::component {

inline constexpr std::size_t kNoBytes = static_cast<std::size_t>(-1);

// A pattern made ready for searches. It borrows its bytes.
class BytePattern {
 public:
  BytePattern() = default;
  explicit BytePattern(std::string_view pattern);

  [[nodiscard]] std::string_view bytes() const { return pattern_; }

  // The lowest 0-based index from `from` on at which the pattern occurs in
  // `bytes`, or kNoBytes; the empty pattern occurs nowhere. Time is linear in
  // both sizes, whatever the bytes.
  [[nodiscard]] std::size_t FindIn(std::string_view bytes, std::size_t from) const;

 private:
  std::string_view pattern_;
  // Indexes of the two bytes that a scan compares first.
  std::size_t first_ = 0;
  std::size_t second_ = 0;
};

}  // namespace Orvix::component

#endif
