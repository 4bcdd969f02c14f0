#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "platform/memory/poison.h"
#include "tests/support/exhausted_low_memory.h"

namespace {

std::uintptr_t AddressOf(const void* block) { return reinterpret_cast<std::uintptr_t>(block); }

void ExpectLow(const void* block, std::size_t bytes) {
  ASSERT_NE(block, nullptr) << bytes;
  EXPECT_LT(AddressOf(block) + bytes, 0x80000000u);
  EXPECT_EQ(AddressOf(block) % 16, 0u);
}

// A block with a pattern of its own in every byte.
struct Filled {
  unsigned char* bytes;
  std::size_t size;
  unsigned char seed;

  void Fill(std::size_t from = 0) const {
    for (std::size_t i = from; i < size; ++i) bytes[i] = static_cast<unsigned char>(seed + i * 7);
  }
  [[nodiscard]] bool IsIntact() const {
    for (std::size_t i = 0; i < size; ++i) {
      if (bytes[i] != static_cast<unsigned char>(seed + i * 7)) return false;
    }
    return true;
  }
};

TEST(LowMemoryTest, BlocksOfEverySizeLieBelowTwoGigabytesAndApart) {
  std::vector<Filled> blocks;
  for (std::size_t size :
       {1u, 15u, 16u, 17u, 256u, 257u, 512u, 513u, 640u, 641u, 16383u, 16384u, 16385u, 65536u, 65537u, 1000000u}) {
    for (int copy = 0; copy < 3; ++copy) {
      void* const block = OxLowAlloc(size);
      ExpectLow(block, size);
      blocks.push_back({static_cast<unsigned char*>(block), size, static_cast<unsigned char>(blocks.size())});
      blocks.back().Fill();
    }
  }
  for (const Filled& block : blocks) {
    EXPECT_TRUE(block.IsIntact()) << block.size;
    OxLowFree(block.bytes);
  }
}

TEST(LowMemoryTest, NothingAskedForIsStillABlock) {
  void* const first = OxLowAlloc(0);
  void* const second = OxLowAlloc(0);
  ExpectLow(first, 1);
  EXPECT_NE(first, second);
  OxLowFree(first);
  OxLowFree(second);
  OxLowFree(nullptr);
}

TEST(LowMemoryTest, ReallocKeepsTheCommonPart) {
  constexpr std::size_t kSizes[] = {1,     16,     17,      300,    257,  512,  513,   16384, 16385, 70000,
                                    66000, 200000, 5000000, 100000, 4096, 5000, 40000, 16384, 100,   1};
  Filled block{nullptr, 0, 3};
  for (const std::size_t size : kSizes) {
    block.bytes = static_cast<unsigned char*>(OxLowRealloc(block.bytes, size));
    ExpectLow(block.bytes, size);
    const std::size_t common = std::min(block.size, size);
    block.size = common;
    EXPECT_TRUE(block.IsIntact()) << size;
    block.size = size;
    block.Fill(common);
  }
  OxLowFree(block.bytes);
}

TEST(LowMemoryTest, MixedUseNeverMixesBlocks) {
  std::mt19937 random(12345);
  std::vector<Filled> blocks;
  for (int step = 0; step < 6000; ++step) {
    const std::size_t size = random() % 3 == 0 ? random() % 100000 : random() % 700;
    const std::size_t pick = blocks.empty() ? 0 : random() % blocks.size();
    const auto action = blocks.size() < 50 ? 0UL : random() % 3;
    if (action == 0 && blocks.size() < 300) {
      blocks.push_back({static_cast<unsigned char*>(OxLowAlloc(size)), size, static_cast<unsigned char>(step)});
      ASSERT_NE(blocks.back().bytes, nullptr);
      blocks.back().Fill();
    } else if (action == 1) {
      Filled& block = blocks[pick];
      block.bytes = static_cast<unsigned char*>(OxLowRealloc(block.bytes, size));
      ASSERT_NE(block.bytes, nullptr);
      const std::size_t common = std::min(block.size, size);
      block.size = size;
      block.Fill(common);
      ASSERT_TRUE(block.IsIntact());
    } else {
      ASSERT_TRUE(blocks[pick].IsIntact());
      OxLowFree(blocks[pick].bytes);
      blocks[pick] = blocks.back();
      blocks.pop_back();
    }
  }
  for (const Filled& block : blocks) {
    EXPECT_TRUE(block.IsIntact());
    OxLowFree(block.bytes);
  }
}

// Two at a time, so that each is in the other's way.
TEST(LowMemoryTest, AMillionSmallGrowthsMoveTheBlocksOnlyNowAndThen) {
  void* blocks[2] = {OxLowAlloc(10), OxLowAlloc(10)};
  int moves = 0;
  for (std::size_t size = 20; size <= 5'000'000; size += 10) {
    for (void*& block : blocks) {
      void* const grown = OxLowRealloc(block, size);
      ASSERT_NE(grown, nullptr);
      static_cast<char*>(grown)[size - 1] = 1;
      if (grown != block) ++moves;
      block = grown;
    }
  }
  EXPECT_LT(moves, 150);  // 52 sizes of small blocks, then half as much more each time
  for (void* const block : blocks) OxLowFree(block);
}

TEST(LowMemoryTest, RoomOfFreedBlocksIsUsedAgain) {
  constexpr std::size_t kBlocks = 4000;
  std::vector<void*> blocks;
  std::set<std::uintptr_t> pages;
  for (std::size_t i = 0; i < kBlocks; ++i) {
    blocks.push_back(OxLowAlloc(1000));
    pages.insert(AddressOf(blocks.back()) / 4096);
  }
  const std::size_t pages_before = pages.size();
  for (int round = 0; round < 3; ++round) {
    for (std::size_t i = 0; i < kBlocks; i += 2) OxLowFree(blocks[i]);
    for (std::size_t i = 0; i < kBlocks; i += 2) {
      blocks[i] = OxLowAlloc(1000);
      pages.insert(AddressOf(blocks[i]) / 4096);
    }
  }
  EXPECT_LT(pages.size() - pages_before, 100u);  // the sanitizer's build keeps some back
  for (void* const block : blocks) OxLowFree(block);
}

TEST(LowMemoryTest, ManySmallBlocksCostLittleMoreThanTheirBytes) {
  constexpr std::size_t kBlocks = 10000;
  std::vector<void*> blocks;
  std::set<std::uintptr_t> pages;
  for (std::size_t i = 0; i < kBlocks; ++i) {
    void* const block = OxLowAlloc(257);
    blocks.push_back(block);
    pages.insert(AddressOf(block) / 4096);
    pages.insert((AddressOf(block) + 256) / 4096);
  }
  EXPECT_LT(pages.size() * 4096 / kBlocks, 257u + 48u);
  for (void* const block : blocks) OxLowFree(block);
}

TEST(LowMemoryTest, ExhaustionGivesNullAndLosesNothing) {
  void* const small = OxLowAlloc(100);
  void* const large = OxLowAlloc(100000);
  std::memset(small, 'a', 100);
  std::memset(large, 'b', 100000);
  {
    const Orvix::testing::ExhaustedLowMemory exhausted;
    EXPECT_EQ(OxLowAlloc(1), nullptr);
    EXPECT_EQ(OxLowAlloc(100000), nullptr);
    EXPECT_EQ(OxLowRealloc(small, 5000), nullptr);
    EXPECT_EQ(OxLowRealloc(large, 300000000), nullptr);
    EXPECT_EQ(OxLowRealloc(large, SIZE_MAX), nullptr);
    EXPECT_EQ(static_cast<char*>(small)[99], 'a');
    EXPECT_EQ(static_cast<char*>(large)[99999], 'b');
    EXPECT_NE(OxLowRealloc(small, 1), nullptr);  // shrinking needs nothing
  }
  void* const again = OxLowAlloc(300000000);
  EXPECT_NE(again, nullptr);
  OxLowFree(again);
  OxLowFree(small);
  OxLowFree(large);
}

// 0.3 GB in use at any time, in blocks of 1 byte to 1 MiB that come and go.
TEST(LowMemoryTest, LargeRunsStayWholeHoweverManyBlocksCameAndWent) {
  std::mt19937 random(1);
  std::vector<void*> blocks(600);
  for (int i = 0; i < 10000; ++i) {
    void*& block = blocks[random() % blocks.size()];
    OxLowFree(block);
    block = OxLowAlloc(std::size_t{1} << random() % 21);
    ASSERT_NE(block, nullptr);
  }
  void* const large = OxLowAlloc(std::size_t{1} << 30);
  EXPECT_NE(large, nullptr);
  OxLowFree(large);
  for (void* block : blocks) OxLowFree(block);
}

TEST(LowMemoryTest, SizesBeyondLowMemoryAreRefused) {
  EXPECT_EQ(OxLowAlloc(0x80000000u), nullptr);
  EXPECT_EQ(OxLowAlloc(SIZE_MAX), nullptr);
}

TEST(LowMemoryTest, ThreadsShareTheHeap) {
  std::vector<std::thread> threads;
  for (unsigned char seed = 0; seed < 4; ++seed) {
    threads.emplace_back([seed] {
      std::mt19937 random(seed);
      for (int i = 0; i < 2000; ++i) {
        const std::size_t size = 1 + random() % (i % 50 == 0 ? 50000 : 600);
        Filled block{static_cast<unsigned char*>(OxLowAlloc(size)), size, seed};
        block.Fill();
        block.bytes = static_cast<unsigned char*>(OxLowRealloc(block.bytes, size * 2));
        EXPECT_TRUE(block.IsIntact());
        OxLowFree(block.bytes);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

#if defined(ORVIX_ADDRESS_SANITIZER)
TEST(LowMemoryTest, TheSanitizerKnowsWhatIsInUse) {
  for (const std::size_t size : {1u, 16u, 257u, 272u, 16384u, 100000u}) {
    auto* block = static_cast<char*>(OxLowAlloc(size));
    EXPECT_FALSE(__asan_address_is_poisoned(block + size - 1)) << size;
    EXPECT_TRUE(__asan_address_is_poisoned(block + size)) << size;
    block = static_cast<char*>(OxLowRealloc(block, size + 5));
    EXPECT_FALSE(__asan_address_is_poisoned(block + size + 4)) << size;
    EXPECT_TRUE(__asan_address_is_poisoned(block + size + 5)) << size;
    OxLowFree(block);
  }
}

TEST(LowMemoryTest, TheSanitizerKeepsAFreedBlockFromReuse) {
  auto* const block = static_cast<char*>(OxLowAlloc(100));
  OxLowFree(block);
  EXPECT_TRUE(__asan_address_is_poisoned(block));
  void* const next = OxLowAlloc(100);
  EXPECT_NE(next, block);
  OxLowFree(next);
}
#endif

TEST(RunsTest, MoveKeepsOverlappingRunsAndFillFills) {
  char bytes[] = "abcdef";
  RtlMoveMemory(bytes + 2, bytes, 4);
  EXPECT_STREQ(bytes, "ababcd");
  RtlMoveMemory(bytes, bytes + 1, 5);
  EXPECT_STREQ(bytes, "babcdd");
  RtlFillMemory(bytes + 1, 2, 'x');
  EXPECT_STREQ(bytes, "bxxcdd");
  RtlMoveMemory(nullptr, nullptr, 0);
  RtlFillMemory(nullptr, 0, 1);
}

}  // namespace
