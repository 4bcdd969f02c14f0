// The vector scan against the plainest search, at every size and place where
// blocks begin and end.
#include "containers/byte_scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace Orvix::component {
namespace {

TEST(ByteScan, FindsAPatternAtEveryPlaceOfEverySize) {
  for (const std::string pattern : {"x", "xy", "xyz", "xxxx", "eetaeetaeetaeetaeetaZ", "Zeetaeetaeetaeetaeeta"}) {
    const BytePattern ready(pattern);
    for (std::size_t size = pattern.size(); size < 300; ++size) {
      const std::string nothing(size, '-');
      ASSERT_EQ(ready.FindIn(nothing, 0), kNoBytes);
      for (std::size_t at = 0; at + pattern.size() <= size; at += size < 180 ? 1 : 13) {
        std::string bytes = nothing;
        bytes.replace(at, pattern.size(), pattern);
        ASSERT_EQ(ready.FindIn(bytes, 0), at) << pattern << " in " << size;
        ASSERT_EQ(ready.FindIn(bytes, at), at) << pattern << " in " << size;
        ASSERT_EQ(ready.FindIn(bytes, at + 1), kNoBytes) << pattern << " in " << size;
        ASSERT_EQ(ready.FindIn(std::string_view(bytes).substr(0, at + pattern.size() - 1), 0), kNoBytes);
      }
    }
  }
}

TEST(ByteScan, AgreesWithThePlainSearchOnRandomBytes) {
  std::mt19937 random(20240607);
  const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random()) % bound; };
  for (int round = 0; round < 3000; ++round) {
    std::string bytes;
    const std::size_t size = below(700);
    const std::size_t letters = 2 + below(3);
    for (std::size_t i = 0; i < size; ++i) bytes += "ab\xe9\0"[below(letters)];
    std::string pattern;
    const std::size_t width = 1 + below(round % 2 == 0 ? 6 : 40);
    for (std::size_t i = 0; i < width; ++i) pattern += "ab\xe9\0"[below(letters)];
    if (round % 3 == 0 && width < size) pattern = bytes.substr(below(size - width), width);
    const std::size_t from = below(size + 2);
    ASSERT_EQ(BytePattern(pattern).FindIn(bytes, from), std::string_view(bytes).find(pattern, from));
  }
}

TEST(ByteScan, BytesThatNearlyMatchEverywhereAreSearchedLinearly) {
  // A scan that compared the pattern afresh at every place would look at some
  // 10^12 bytes here.
  const std::string doubled(1 << 19, 'e');
  std::string near;
  for (int i = 0; i < 16; ++i) near += doubled.substr(1) + "t";
  EXPECT_EQ(BytePattern(doubled).FindIn(near, 0), kNoBytes);
  EXPECT_EQ(BytePattern(doubled).FindIn(near + "e" + doubled, 0), near.size());
}

TEST(ByteScan, EmptyPatternIsNowhere) {
  EXPECT_EQ(BytePattern().FindIn("abc", 0), kNoBytes);
  EXPECT_EQ(BytePattern("a").FindIn("", 0), kNoBytes);
  EXPECT_EQ(BytePattern("a").FindIn("a", 1), kNoBytes);
  EXPECT_EQ(BytePattern("a").FindIn("a", kNoBytes), kNoBytes);
}

}  // namespace
}  // namespace Orvix::component
