#include <gtest/gtest.h>

#include <array>

#include "orvix/host.h"
#include "orvix/platform.h"

namespace {

struct Requests {
  std::array<LONG, 7> seen{};
  LONG answer = 0;
};

class WindowTest : public ::testing::Test {
 protected:
  ~WindowTest() override { OxSetHost(nullptr); }

  static void* Handle(std::intptr_t value) { return reinterpret_cast<void*>(value); }
  void Install(OxHost table) {
    table.size = sizeof table;
    table.context = &requests_;
    ASSERT_EQ(OxSetHost(&table), S_OK);
  }
  Requests requests_;
};

TEST_F(WindowTest, AHostIsAskedWithHandlesOf32Bits) {
  OxHost table{};
  table.SetWindowPos = [](void* context, LONG hwnd, LONG after, LONG x, LONG y, LONG cx, LONG cy, LONG flags) -> LONG {
    auto* const requests = static_cast<Requests*>(context);
    requests->seen = {hwnd, after, x, y, cx, cy, flags};
    return requests->answer;
  };
  Install(table);
  const std::array<LONG, 7> expected = {-2, -1, -10, 20, 300, 400, 0x50};
  EXPECT_EQ(SetWindowPos(Handle(-2), Handle(-1), -10, 20, 300, 400, 0x50), 0);
  EXPECT_EQ(requests_.seen, expected);
  requests_.answer = 1;
  EXPECT_EQ(SetWindowPos(Handle(0x7FFFFFFF), nullptr, 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(requests_.seen[0], 0x7FFFFFFF);
  EXPECT_EQ(requests_.seen[1], 0);
}

TEST_F(WindowTest, WithoutADisplayNothingHappensAndNoInputWaits) {
  EXPECT_EQ(SetWindowPos(Handle(1), Handle(-1), 0, 0, 0, 0, 0x50), 1);
  EXPECT_EQ(GetInputState(), 0);
}

TEST_F(WindowTest, TheHostTellsWhetherInputWaits) {
  OxHost table{};
  table.GetInputState = [](void* context) -> LONG { return static_cast<Requests*>(context)->answer; };
  Install(table);
  EXPECT_EQ(GetInputState(), 0);
  requests_.answer = 1;
  EXPECT_EQ(GetInputState(), 1);
}

}  // namespace
