// The random numbers of the process: their first ones, their spread, threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <latch>
#include <thread>
#include <vector>

#include "orvix/runtime.h"

namespace {

double Next() {
  double number = -1;
  EXPECT_EQ(OxRandom(&number), S_OK);
  return number;
}

// Drawn before any test runs, so the first of the process.
const std::array<double, 3> kFirst = [] {
  std::array<double, 3> drawn{};
  for (double& number : drawn) OxRandom(&number);
  return drawn;
}();

// Nobody seeds the source: every process draws the same numbers. The seed is
// 0x4F72766978, and the numbers are those of SplitMix64, the upper 53 bits.
TEST(RandomTest, EveryProcessStartsWithTheSameNumbers) {
  EXPECT_EQ(kFirst, (std::array{0x1.451ade9384023p-1, 0x1.4f3de7d103666p-2, 0x1.94ede1f0728f4p-3}));
}

TEST(RandomTest, NumbersFillTheUnitIntervalEvenly) {
  std::array<int, 16> counts{};
  for (int i = 0; i < 160000; ++i) {
    const double number = Next();
    ASSERT_GE(number, 0.0);
    ASSERT_LT(number, 1.0);
    ++counts[static_cast<std::size_t>(number * 16)];
  }
  // 10000 each, standard deviation about 97.
  for (const int count : counts) {
    EXPECT_GT(count, 9500);
    EXPECT_LT(count, 10500);
  }
}

TEST(RandomTest, NeighboursAreIndependent) {
  std::array<int, 16> pairs{};
  for (int i = 0; i < 80000; ++i) {
    const auto first = static_cast<std::size_t>(Next() * 4);
    ++pairs[first * 4 + static_cast<std::size_t>(Next() * 4)];
  }
  for (const int count : pairs) {
    EXPECT_GT(count, 4600);  // 5000 each, standard deviation about 68
    EXPECT_LT(count, 5400);
  }
}

TEST(RandomTest, NoTwoThreadsDrawTheSameNumber) {
  constexpr int kDraws = 200000;
  std::array<std::vector<double>, 4> drawn;
  std::latch start(4);
  std::vector<std::thread> threads;
  for (std::vector<double>& mine : drawn) {
    threads.emplace_back([&mine, &start] {
      mine.reserve(kDraws);
      start.arrive_and_wait();
      for (int i = 0; i < kDraws; ++i) mine.push_back(Next());
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<double> all;
  for (const std::vector<double>& mine : drawn) all.insert(all.end(), mine.begin(), mine.end());
  std::sort(all.begin(), all.end());
  EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
  EXPECT_EQ(OxRandom(nullptr), E_POINTER);
}

}  // namespace
