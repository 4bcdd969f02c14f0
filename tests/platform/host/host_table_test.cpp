#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "orvix/host.h"
#include "orvix/platform.h"

namespace {

// Answers with what the context says.
LONG ContextAsLong(void* context) { return *static_cast<LONG*>(context); }

class HostTableTest : public ::testing::Test {
 protected:
  ~HostTableTest() override { OxSetHost(nullptr); }

  OxHost TableWithInputState(uint32_t size) {
    OxHost table{};
    table.size = size;
    table.context = &answer_;
    table.GetInputState = ContextAsLong;
    return table;
  }
  LONG answer_ = 5;
};

constexpr uint32_t kInputState = offsetof(OxHost, GetInputState);

TEST_F(HostTableTest, AMemberCountsOnlyWhenTheSizeReachesItsEnd) {
  struct Case {
    uint32_t size;
    BOOL expected;
  };
  for (const Case& c : {Case{16, 0}, Case{kInputState, 0}, Case{kInputState + 7, 0}, Case{kInputState + 8, 5},
                        Case{sizeof(OxHost), 5}}) {
    const OxHost table = TableWithInputState(c.size);
    EXPECT_EQ(OxSetHost(&table), S_OK) << c.size;
    EXPECT_EQ(GetInputState(), c.expected) << c.size;
  }
}

TEST_F(HostTableTest, ALongerTableOfTheFutureIsUnderstood) {
  struct {
    OxHost known;
    void* more[3];
  } future{TableWithInputState(sizeof future), {}};
  EXPECT_EQ(OxSetHost(&future.known), S_OK);
  EXPECT_EQ(GetInputState(), 5);
}

TEST_F(HostTableTest, ATableWithoutItsContextIsRefusedAndTheOldOneStays) {
  const OxHost table = TableWithInputState(sizeof table);
  ASSERT_EQ(OxSetHost(&table), S_OK);
  LONG other = 6;
  OxHost bad = TableWithInputState(15);
  bad.context = &other;
  EXPECT_EQ(OxSetHost(&bad), E_INVALIDARG);
  bad.size = 0;
  EXPECT_EQ(OxSetHost(&bad), E_INVALIDARG);
  EXPECT_EQ(GetInputState(), 5);
}

TEST_F(HostTableTest, TheTableIsCopiedAndNullRestoresTheDefaults) {
  OxHost table = TableWithInputState(sizeof table);
  ASSERT_EQ(OxSetHost(&table), S_OK);
  table.GetInputState = nullptr;
  EXPECT_EQ(GetInputState(), 5);
  EXPECT_EQ(OxSetHost(nullptr), S_OK);
  EXPECT_EQ(GetInputState(), 0);
}

// A member must meet the context it was installed with, whichever table wins.
TEST_F(HostTableTest, ACallSeesOneTableWhileOthersAreInstalled) {
  LONG one = 1;
  LONG two = 2;
  OxHost first{};
  first.size = sizeof first;
  first.context = &one;
  first.GetInputState = [](void* context) -> LONG { return context != nullptr && ContextAsLong(context) == 1; };
  OxHost second = first;
  second.context = &two;
  second.GetInputState = [](void* context) -> LONG { return context != nullptr && ContextAsLong(context) == 2; };
  ASSERT_EQ(OxSetHost(&first), S_OK);
  std::atomic<bool> torn = false;
  std::vector<std::thread> threads;
  for (int reader = 0; reader < 2; ++reader) {
    threads.emplace_back([&] {
      for (int i = 0; i < 20000; ++i) {
        if (GetInputState() != 1) torn = true;
      }
    });
  }
  for (int i = 0; i < 10000; ++i) OxSetHost(i % 2 == 0 ? &second : &first);
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(torn);
}

}  // namespace
